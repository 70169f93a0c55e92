# The rounds of DBD::Sybase and DBD::ODBC. Usage: perl client.pl Sybase|ODBC PORT ROUND
use strict;
use warnings;
use DBI;
binmode STDOUT, ':utf8';
my ($name, $port, $round) = @ARGV;

sub connect_as {
    my $password = shift;
    my $source = $name eq 'Sybase'
        ? "dbi:Sybase:server=127.0.0.1:$port;database=Clients;charset=utf8"
        : "dbi:ODBC:DRIVER=FreeTDS;SERVER=127.0.0.1;PORT=$port;DATABASE=Clients;UID=sa;PWD=$password";
    my $handle = DBI->connect($source, 'sa', $password, {RaiseError => 1, PrintError => 0});
    $handle->{LongReadLen} = 1000;
    $handle->syb_date_fmt('ISO') if $name eq 'Sybase';
    return $handle;
}

sub show { print join("\t", map { /[^\x20-\x7e]/ ? '0x' . unpack('H*', $_) : $_ } @_), "\n" }

my $handle = connect_as('');
if ($round eq 'login') {
    show(eval { connect_as('wrong'); 1 } ? 'let in' : 'ok');
} elsif ($round eq 'types') {
    show($handle->selectrow_array($_)) for 'SELECT * FROM Strict', 'SELECT * FROM Loose', 'SELECT 1';
} elsif ($round eq 'rows') {
    show(scalar @{$handle->selectall_arrayref(
        'SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c')});
} elsif ($round eq 'cancel') {
    my $statement = $handle->prepare('SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d');
    $statement->execute;
    $statement->fetchrow_array;
    $statement->can('cancel') && $name eq 'ODBC' ? $statement->cancel : $statement->finish;
    undef $statement;
    show($handle->selectrow_array('SELECT 7'));
} elsif ($round eq 'parameters' || $round eq 'prepared') {
    my $statement = $handle->prepare('SELECT ? + 1, ?');
    for my $number ($round eq 'prepared' ? (5, 6) : 5) {
        $statement->bind_param(1, $number, DBI::SQL_INTEGER);
        $statement->bind_param(2, "b'a", DBI::SQL_VARCHAR);
        $statement->execute;
        show(@{$statement->fetchall_arrayref->[0]});
    }
} elsif ($round eq 'metadata') {
    my $statement = $name eq 'ODBC' ? $handle->column_info(undef, 'dbo', 'Strict', '%')
                                    : do { my $s = $handle->prepare("sp_columns 'Strict'"); $s->execute; $s };
    show(scalar @{$statement->fetchall_arrayref});
}
