-- Databases whose keys in a tree are taken before they come: by the root, and by the table room1 of Stock.
CREATE DATABASE R
GO
USE R
GO
EXEC sp_grantdbaccess 'guest'
CREATE TABLE Apple (a int NULL)
GO
CREATE DATABASE Stockroom1
GO
USE Stockroom1
GO
EXEC sp_grantdbaccess 'guest'
CREATE TABLE Pear (a int NULL)
GO
