// The rounds of Mono's client. Usage: mono client.exe PORT ROUND
using System;
using System.Data.SqlClient;
using System.Globalization;

class Client {
    static string port;

    static SqlConnection Connect(string password) {
        var connection = new SqlConnection("Server=127.0.0.1," + port + ";Database=Clients;User ID=sa;Password=" +
                                           password + ";Pooling=false");
        connection.Open();
        return connection;
    }

    static string Text(object value) {
        if (value is byte[]) return "0x" + BitConverter.ToString((byte[])value).Replace("-", "");
        if (value is DateTime) return ((DateTime)value).ToString("s");
        return Convert.ToString(value, CultureInfo.InvariantCulture);
    }

    static int Show(SqlCommand command, bool quiet = false) {
        int count = 0;
        using (var rows = command.ExecuteReader())
            for (; rows.Read(); ++count) {
                var texts = new string[rows.FieldCount];
                for (int i = 0; i < texts.Length; ++i) texts[i] = Text(rows[i]);
                if (!quiet) Console.WriteLine(string.Join("\t", texts));
            }
        return count;
    }

    static void Main(string[] arguments) {
        port = arguments[0];
        var connection = Connect("");
        var command = connection.CreateCommand();
        switch (arguments[1]) {
            case "login":
                try { Connect("wrong"); } catch (SqlException) { Console.WriteLine("ok"); }
                break;
            case "types":
                foreach (var query in new[] {"SELECT * FROM Strict", "SELECT * FROM Loose", "SELECT 1"}) {
                    command.CommandText = query;
                    Show(command);
                }
                break;
            case "rows":
                command.CommandText = "SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c";
                Console.WriteLine(Show(command, true));
                break;
            case "cancel": {
                command.CommandText = "SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d";
                var rows = command.ExecuteReader();
                rows.Read();
                command.Cancel();
                rows.Close();
                command.CommandText = "SELECT 7";
                Show(command);
                break;
            }
            case "parameters":
            case "prepared":
                command.CommandText = "SELECT @a + 1, @b";
                command.Parameters.Add("@a", System.Data.SqlDbType.Int).Value = 5;
                command.Parameters.Add("@b", System.Data.SqlDbType.NVarChar, 10).Value = "b'\u00e4";
                if (arguments[1] == "prepared") command.Prepare();
                Show(command);
                if (arguments[1] == "parameters") break;
                command.Parameters["@a"].Value = 6;
                Show(command);
                break;
            case "metadata":
                command.CommandType = System.Data.CommandType.StoredProcedure;
                command.CommandText = "sp_columns";
                command.Parameters.AddWithValue("@table_name", "Strict");
                Console.WriteLine(Show(command, true));
                break;
        }
    }
}
