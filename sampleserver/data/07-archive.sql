-- A database without any table, open to everyone.
CREATE DATABASE Archive
GO
USE Archive
GO
EXEC sp_grantdbaccess 'guest'
GO
