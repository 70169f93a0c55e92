#!/usr/bin/env python3
"""Tries the sample server with clients that nobody here wrote, and prints one table: what each of them made of a
login, every type, 20,000 rows, a cancel, parameters, prepared statements and metadata. scripts/clients/setup.sh
installs them. Usage: scripts/clients/run.py [--folder FOLDER of npm's] [--only CLIENT,..] SERVER [SERVER..]
With several servers (programs), the first is before and the last is after."""

import argparse
import decimal
import os
import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROUNDS = ["login", "types", "rows", "cancel", "parameters", "prepared", "metadata"]
PATIENCE = 30  # seconds; longer is a hang
MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()

# The row of types.sql: the kind of each value, and what it is.
ROW = [("number", value) for value in
       "1 200 -300 70000 -12.34 1234567890123456.7891 12.3456 -1.5 1.5 -2.25".split()] + [
    ("date", "20010203040506"), ("date", "20010203040500"), ("text", "ab"), ("text", "abc"), ("text", "x"),
    ("text", "yz"), ("bytes", "010200"), ("bytes", "00ff"), ("guid", "6f9619ff8b86d011b42d00c04fc964ff"),
    ("text", "long"), ("text", "longer"), ("bytes", "0a0b")]
COUNT = len(ROW)


def digits_of_date(text):
    """2001-02-03T04:05:06.000Z and Feb  3 2001 04:05:06:000AM alike as 20010203040506."""
    named = re.match(r"(\w{3})\s+(\d+)\s+(\d{4})\s+(\d+):(\d+)(?::(\d+))?[:.\d]*\s*([AP]M)?", text)
    if named:
        month, day, year, hour, minute, second, half = named.groups()
        hour = int(hour) % 12 + (12 if half == "PM" else 0) if half else int(hour)
        return f"{year}{MONTHS.index(month) + 1:02}{int(day):02}{hour:02}{minute}{second or '00'}"
    return re.sub(r"\D", "", text)[:14].ljust(14, "0")


def same(kind, expected, text):
    text = text.strip()
    if kind == "guid":  # as a text, or as its bytes on the wire
        return text.lower().replace("-", "") in (expected, "0xff19966f868b11d0b42d00c04fc964ff")
    if kind == "number":
        text = {"True": "1", "true": "1"}.get(text, text)
        try:
            # Some clients make a double of what is exact; that is theirs.
            return abs(decimal.Decimal(text) - decimal.Decimal(expected)) <= abs(decimal.Decimal(expected)) / 10**13
        except decimal.InvalidOperation:
            return False
    if kind == "date":
        short = re.search(r"\d:\d\d[AP]M$", text)  # told without seconds
        return digits_of_date(text) == (expected[:12] + "00" if short else expected)
    if kind == "bytes":
        return text.lower().removeprefix("0x") == expected
    return text == expected


def verdict(round_name, output):
    lines = [line for line in output.split("\n") if line]
    if round_name == "login":
        return lines == ["ok"]
    if round_name == "types":
        wanted = [ROW, ROW, [("number", "1")]]
        found = [line.split("\t") for line in lines]
        return len(found) == 3 and all(
            len(row) == len(want) and all(same(*expected, text) for expected, text in zip(want, row))
            for row, want in zip(found, wanted))
    if round_name == "rows":
        return lines == ["20000"]
    if round_name == "cancel":
        return lines == ["7"]
    if round_name == "metadata":
        return lines == [str(COUNT)]
    numbers = ["6", "7"] if round_name == "prepared" else ["6"]
    return [line.split("\t")[0] for line in lines] == numbers and all("b'" in line for line in lines)


ROWS = "SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c"
COMMANDS = {"types": ["SELECT * FROM Strict", "SELECT * FROM Loose", "SELECT 1"], "rows": [ROWS],
            "metadata": ["sp_columns 'Strict'"]}


def tool(name, port, round_name):
    """The tools of the command line have no cancel and no parameters; what comes back is told as clients tell it."""
    def run(password, commands):
        # A wrong password, or none: the tools take none for a question.
        login = {
            "tsql": ["tsql", "-o", "q", "-t", "\t", "-H", "127.0.0.1", "-p", str(port), "-U", "sa", "-P", password,
                     "-D", "Clients"],
            "bsqldb": ["bsqldb", "-q", "-h", "-t", "\t", "-S", f"127.0.0.1:{port}", "-U", "sa", "-P", password, "-D",
                       "Clients"],
            "isql": ["isql", "-b", "-d\t", "-k", f"DRIVER=FreeTDS;SERVER=127.0.0.1;PORT={port};DATABASE=Clients;"
                     f"UID=sa;PWD={password}"],
        }[name]
        between = "\n" if name == "isql" else "\nGO\n"
        given = between.join(commands) + between
        return subprocess.run(login, input=given, capture_output=True, text=True, timeout=PATIENCE, encoding="latin1")
    if round_name == "login":
        good, bad = run("", ["SELECT 7"]), run("wrong", ["SELECT 7"])
        return "ok" if "7" in good.stdout and "7" not in bad.stdout.replace("127", "") else good.stdout + bad.stdout
    if round_name not in COMMANDS:
        return None
    commands = COMMANDS[round_name]
    if name == "bsqldb" and round_name == "types":  # it takes no uniqueidentifier, whoever sends it
        columns = re.findall(r"(c_\w+) \w+.*? NOT NULL", (HERE / "types.sql").read_text())
        plain = ", ".join("CONVERT(char(36), c_guid)" if one == "c_guid" else one for one in columns)
        commands = [command.replace("*", plain) for command in commands]
    done = run("", commands)
    lines = [line for line in done.stdout.split("\n")
             if line and not re.match(r"c_bit|TABLE_|\(|locale|using|\d+ rows|SQLRow|-+", line) and line.strip()]
    if round_name == "types":
        return "\n".join(lines)
    count = sum("\t" in line and line[0] != "c" for line in lines)
    return str(count) if count else done.stdout + done.stderr


def clients(folder):
    jtds = "/usr/share/java/jtds.jar"
    program = str(HERE / "client")
    node = {"NODE_PATH": str(folder / "node_modules")}
    found = {name: None for name in ("tsql", "bsqldb", "isql")}
    for name in ("pyodbc", "pymssql", "pytds"):
        found[name] = (["/usr/bin/python3", program + ".py", name], {})
    found["jTDS"] = (["java", "-cp", jtds, str(HERE / "Client.java")], {})
    for name in ("tedious", "mssql"):
        found[name] = (["node", program + ".js", name], node)
    found["Mono"] = (["mono", str(folder / "client.exe")], {})
    for name in ("Sybase", "ODBC"):
        found["DBD::" + name] = (["perl", program + ".pl", name], {})
    for name in ("dblib", "odbc"):
        found["PDO " + name] = (["php", program + ".php", name], {})
    return found


def attempt(name, how, port, round_name):
    try:
        if how is None:
            output = tool(name, port, round_name)
            if output is None:
                return "-"
        else:
            command, environment = how
            done = subprocess.run([*command, str(port), round_name], capture_output=True, text=True, timeout=PATIENCE,
                                  env={**os.environ, "TDSVER": "7.4", **environment}, encoding="latin1")
            if done.returncode != 0:
                print(f"{name} {round_name}: {(done.stderr or done.stdout).strip()[:300]}", file=sys.stderr)
                return "fails"
            output = done.stdout
    except subprocess.TimeoutExpired:
        return "hangs"
    except FileNotFoundError:
        return "none"
    if verdict(round_name, output):
        return "ok"
    print(f"{name} {round_name}: {output[:600]}", file=sys.stderr)
    return "wrong"


def try_server(server, chosen):
    process = subprocess.Popen([server, "--port", "0", "--no-sample-data", "--stay-with-stdin", "--script",
                                str(HERE / "types.sql")], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    try:
        port = int(process.stdout.readline().rsplit(",", 1)[1])
        return {name: [attempt(name, how, port, one) for one in ROUNDS] for name, how in chosen.items()}
    finally:
        process.stdin.close()
        process.wait(PATIENCE)


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("servers", nargs="+")
    options.add_argument("--folder", type=pathlib.Path, default=HERE.parent.parent / "build" / "clients")
    options.add_argument("--only", default="")
    given = options.parse_args()
    subprocess.run(["mcs", "-r:System.Data.dll", f"-out:{given.folder}/client.exe", str(HERE / "client.cs")])
    only = [name for name in given.only.split(",") if name]
    chosen = {name: how for name, how in clients(given.folder).items() if not only or name in only}
    results = [try_server(server, chosen) for server in given.servers]
    print("| client | " + " | ".join(ROUNDS) + " |\n" + "| --- " * (len(ROUNDS) + 1) + "|")
    for name in chosen:
        cells = [" -> ".join(dict.fromkeys(result[name][i] for result in results)) for i in range(len(ROUNDS))]
        print(f"| {name} | " + " | ".join(cells) + " |")
    last = [cell for cells in results[-1].values() for cell in cells]
    print(f"\nwrong answers {last.count('wrong')}, hangs {last.count('hangs')}, failures {last.count('fails')}")
    sys.exit(0 if not {"wrong", "hangs", "fails"} & set(last) else 1)


if __name__ == "__main__":
    main()
