"""The rounds of a client that speaks Python's DB API. Usage: client.py pyodbc|pymssql|pytds PORT ROUND"""
import sys

NAME, PORT, ROUND = sys.argv[1], int(sys.argv[2]), sys.argv[3]


def connect(password=""):
    if NAME == "pyodbc":
        import pyodbc
        return pyodbc.connect(f"DRIVER=FreeTDS;SERVER=127.0.0.1;PORT={PORT};DATABASE=Clients;UID=sa;PWD={password}",
                              autocommit=True)
    if NAME == "pymssql":
        import pymssql
        return pymssql.connect(server="127.0.0.1", port=PORT, user="sa", password=password, database="Clients",
                               autocommit=True)
    import pytds
    return pytds.connect("127.0.0.1", port=PORT, user="sa", password=password, database="Clients", autocommit=True)


def show(*values):
    print("\t".join("0x" + bytes(v).hex() if isinstance(v, (bytes, bytearray)) else str(v) for v in values))


mark = "?" if NAME == "pyodbc" else "%s"
if ROUND == "login":
    connect()
    try:
        connect("wrong")
        show("let in")
    except Exception:
        show("ok")
    sys.exit()
connection = connect()
cursor = connection.cursor()
if ROUND == "types":
    for table in ("Strict", "Loose"):
        cursor.execute(f"SELECT * FROM {table}")
        show(*cursor.fetchone())
    cursor.execute("SELECT 1")
    show(*cursor.fetchone())
elif ROUND == "rows":
    cursor.execute("SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c")
    show(len(cursor.fetchall()))
elif ROUND == "cancel":
    cursor.execute("SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d")
    cursor.fetchone()
    cursor.cancel() if hasattr(cursor, "cancel") else cursor.close()
    cursor = cursor if hasattr(cursor, "cancel") else connection.cursor()
    cursor.execute("SELECT 7")
    show(cursor.fetchone()[0])
elif ROUND in ("parameters", "prepared"):
    for number in (5, 6) if ROUND == "prepared" else (5,):
        cursor.execute(f"SELECT {mark} + 1, {mark}", (number, "b'\u00e4"))
        show(*cursor.fetchone())
elif ROUND == "metadata":
    if NAME == "pyodbc":
        show(len(cursor.columns(table="Strict").fetchall()))
    else:
        cursor.callproc("sp_columns", ("Strict",))
        if NAME == "pymssql":
            cursor.nextset()
        show(len(cursor.fetchall()))
