// The rounds of jTDS. Usage: java -cp JAR Client.java PORT ROUND
import java.sql.*;

class Client {
    static String port;

    static Connection connect(String password) throws SQLException {
        return DriverManager.getConnection("jdbc:jtds:sqlserver://127.0.0.1:" + port + "/Clients", "sa", password);
    }

    static void show(ResultSet rows) throws SQLException {
        StringBuilder line = new StringBuilder();
        for (int i = 1; i <= rows.getMetaData().getColumnCount(); ++i) {
            if (i > 1) line.append('\t');
            if (rows.getMetaData().getColumnTypeName(i).matches(".*(binary|image).*")) line.append("0x");
            line.append(rows.getString(i));
        }
        System.out.println(line);
    }

    public static void main(String[] arguments) throws Exception {
        Class.forName("net.sourceforge.jtds.jdbc.Driver");
        port = arguments[0];
        Connection connection = connect("");
        Statement statement = connection.createStatement();
        switch (arguments[1]) {
            case "login":
                try {
                    connect("wrong");
                } catch (SQLException refused) {
                    System.out.println("ok");
                }
                break;
            case "types":
                for (String query : new String[] {"SELECT * FROM Strict", "SELECT * FROM Loose", "SELECT 1"}) {
                    ResultSet rows = statement.executeQuery(query);
                    rows.next();
                    show(rows);
                }
                break;
            case "rows": {
                ResultSet rows = statement.executeQuery(
                        "SELECT TOP 20000 a.colid, b.name FROM syscolumns a, syscolumns b, syscolumns c");
                int count = 0;
                while (rows.next()) ++count;
                System.out.println(count);
                break;
            }
            case "cancel": {
                ResultSet rows = statement.executeQuery(
                        "SELECT a.colid FROM syscolumns a, syscolumns b, syscolumns c, syscolumns d");
                rows.next();
                statement.cancel();
                statement = connection.createStatement();
                rows = statement.executeQuery("SELECT 7");
                rows.next();
                show(rows);
                break;
            }
            case "parameters":
            case "prepared": {
                PreparedStatement prepared = connection.prepareStatement("SELECT ? + 1, ?");
                for (int i = 5; i <= (arguments[1].equals("prepared") ? 6 : 5); ++i) {
                    prepared.setInt(1, i);
                    prepared.setString(2, "b'\u00e4");
                    ResultSet rows = prepared.executeQuery();
                    rows.next();
                    show(rows);
                }
                break;
            }
            case "metadata": {
                ResultSet rows = connection.getMetaData().getColumns("Clients", "dbo", "Strict", "%");
                int count = 0;
                while (rows.next()) ++count;
                System.out.println(count);
                break;
            }
        }
        connection.close();
    }
}
