#!/usr/bin/python3
"""Prints each cell of a table as the program shows it beside what another client reads from the same server.

The other client is Debian's python3-tds, which shares no code with the ODBC driver. Without --server a sample
server is started for the purpose. The exit code is 1 when a cell differs.

Usage: scripts/compare-cells.py [--build build/dev] [--server HOST,PORT] [--user sa] [--password '']
                                [--database TypeSamples] [--table AllTypes]
"""

import argparse
import datetime
import decimal
import json
import os
import re
import struct
import subprocess
import sys
import uuid

import pytds

WIDEST = 48


def number_agrees(text, value, single):
    """The text reads back as the value, and no text with fewer digits would."""

    def stored(number):
        if not single:
            return number
        try:
            return struct.unpack("f", struct.pack("f", number))[0]
        except OverflowError:
            return float("inf")

    digits = len(re.sub(r"E.*|[-.]", "", text).strip("0"))
    shorter = f"{value:.{max(digits - 2, 0)}e}"
    return stored(float(text)) == value and (digits <= 1 or stored(float(shorter)) != value)


def expected_text(value, text):
    """The text that the rules for cells give for a value; None where number_agrees() has to tell."""
    if value is None:
        return "<NULL>"
    if isinstance(value, (bytes, bytearray)):
        return "<UNPRINTABLE>"
    if isinstance(value, float):
        return None
    if isinstance(value, decimal.Decimal):
        # The other client gives a zero without its scale.
        return text if value == 0 and re.fullmatch(r"0(\.0+)?", text) else f"{value:f}"
    if isinstance(value, uuid.UUID):
        return "{" + str(value).upper() + "}"
    if isinstance(value, datetime.datetime):
        # The server's clock has three hundred ticks to the second, which clients tell in milliseconds.
        milliseconds = round(value.microsecond / 1000)
        text = f"{value:%H:%M:%S}" + (f".{milliseconds:03}" if milliseconds else "")
        return f"{value.date().isoformat()} {text}"
    return str(value)


def shown(text):
    text = json.dumps(text, ensure_ascii=False)
    return text if len(text) <= WIDEST else f"{text[:WIDEST - 1]}\u2026 ({len(text) - 2})"


def read_both(arguments, server):
    host, port = server.split(",")
    connection_string = f"driver={{SQL Server}};server={server};uid={arguments.user};pwd={arguments.password}"
    environment = dict(os.environ, ODBCSYSINI=os.path.join(arguments.build, "odbc"))
    ours = subprocess.run(
        [os.path.join(arguments.build, "bin", "print-cells"), connection_string, arguments.database, arguments.table],
        env=environment, check=True, stdout=subprocess.PIPE)
    with pytds.connect(dsn=host, port=int(port), database=arguments.database, user=arguments.user,
                       password=arguments.password, autocommit=True) as connection:
        with connection.cursor() as cursor:
            cursor.execute(f"select * from [{arguments.table}]")
            theirs = cursor.fetchall()
    return json.loads(ours.stdout), theirs


def compare(arguments, server):
    ours, theirs = read_both(arguments, server)
    equal = different = 0
    for row, (texts, values) in enumerate(zip(ours["rows"], theirs, strict=True), 1):
        for column, text, value in zip(ours["headers"], texts, values, strict=True):
            expected = expected_text(value, text)
            if expected is None:
                agrees = number_agrees(text, value, column in arguments.real)
            else:
                agrees = text == expected
            equal, different = equal + agrees, different + (not agrees)
            told = value if isinstance(value, str) else str(value)
            print(f"{'=' if agrees else 'DIFFERENT':9} {row:3} {column:14} {shown(text):60} {shown(told)}")
    print(f"{equal} cells agree, {different} differ")
    return different == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/dev", help="folder of the build")
    parser.add_argument("--server", help="HOST,PORT; without it a sample server is started")
    parser.add_argument("--user", default="sa")
    parser.add_argument("--password", default="")
    parser.add_argument("--database", default="TypeSamples")
    parser.add_argument("--table", default="AllTypes")
    parser.add_argument("--real", nargs="*", default=["AReal"], help="columns in single precision")
    arguments = parser.parse_args()
    if arguments.server:
        return 0 if compare(arguments, arguments.server) else 1
    program = os.path.join(arguments.build, "bin", "tablewright-sample-server")
    with subprocess.Popen([program, "--port", "0", "--stay-with-stdin"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, text=True) as process:
        try:
            listening = process.stdout.readline().strip().rpartition(" ")[2]
            return 0 if compare(arguments, listening) else 1
        finally:
            process.stdin.close()


if __name__ == "__main__":
    sys.exit(main())
