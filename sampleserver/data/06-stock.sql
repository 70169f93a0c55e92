-- Database and table names that run into each other: Stock + room1 is Stockroom + 1.
CREATE DATABASE Stock
CREATE DATABASE Stockroom
GO
USE Stock
GO
EXEC sp_grantdbaccess 'guest'
GO
CREATE TABLE room1   (Shelf int NOT NULL PRIMARY KEY, Holds nvarchar (40) NULL)
CREATE TABLE Article (ArticleId int NOT NULL PRIMARY KEY, Title nvarchar (40) NOT NULL)
INSERT room1 VALUES (1, N'tyres'), (2, N'tubes'), (3, NULL)
INSERT Article VALUES (1, N'Bell'), (2, N'Basket')
GO
USE Stockroom
GO
EXEC sp_grantdbaccess 'guest'
GO
CREATE TABLE [1]    (Shelf int NOT NULL PRIMARY KEY, Holds nvarchar (40) NULL)
CREATE TABLE [2]    (Shelf int NOT NULL PRIMARY KEY)
INSERT [1] VALUES (1, N'frames'), (2, N'forks')
GO
