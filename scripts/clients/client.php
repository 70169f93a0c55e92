<?php
// The rounds of PDO over FreeTDS (dblib) and over ODBC. Usage: php client.php dblib|odbc PORT ROUND
[, $name, $port, $round] = $argv;

function connect($password) {
    global $name, $port;
    $source = $name === 'dblib' ? "dblib:host=127.0.0.1:$port;dbname=Clients;charset=UTF-8"
        : "odbc:DRIVER=FreeTDS;SERVER=127.0.0.1;PORT=$port;DATABASE=Clients;UID=sa;PWD=$password";
    return new PDO($source, 'sa', $password, [PDO::ATTR_ERRMODE => PDO::ERRMODE_EXCEPTION]);
}

function show(array $values) {
    $text = fn($value) => preg_match('/[^\x20-\x7e]/', $value) ? '0x' . bin2hex($value) : $value;
    echo implode("\t", array_map($text, $values)), "\n";
}

$pdo = connect('');
switch ($round) {
    case 'login':
        try { connect('wrong'); show(['let in']); } catch (PDOException $refused) { show(['ok']); }
        break;
    case 'types':
        foreach (['SELECT * FROM Strict', 'SELECT * FROM Loose', 'SELECT 1'] as $query)
            show($pdo->query($query)->fetch(PDO::FETCH_NUM));
        break;
    case 'rows':
        show([count($pdo->query('SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c')
            ->fetchAll())]);
        break;
    case 'cancel':
        $statement = $pdo->query('SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d');
        $statement->fetch();
        $statement->closeCursor();
        show($pdo->query('SELECT 7')->fetch(PDO::FETCH_NUM));
        break;
    case 'parameters':
    case 'prepared':
        // Over ODBC every parameter comes as a text.
        $number = $name === 'odbc' ? 'CONVERT(int, CONVERT(varchar(9), ?))' : '?';
        $statement = $pdo->prepare("SELECT $number + 1, ?");
        foreach ($round === 'prepared' ? [5, 6] : [5] as $given) {
            $statement->bindValue(1, $given, $name === 'odbc' ? PDO::PARAM_STR : PDO::PARAM_INT);
            $statement->bindValue(2, "b'a");
            $statement->execute();
            show($statement->fetch(PDO::FETCH_NUM));
            $statement->closeCursor();
        }
        break;
    case 'metadata':
        show([count($pdo->query("sp_columns 'Strict'")->fetchAll())]);
        break;
}
