-- What the query window is tried on besides the sample databases.
CREATE DATABASE Querying
GO
USE Querying
GO
CREATE TABLE Number (N int NOT NULL PRIMARY KEY, Name varchar (10) NULL)
INSERT Number VALUES (1, 'one'), (2, 'two'), (3, NULL), (4, ''), (5, 'five')
CREATE TABLE Other (N int NOT NULL, Letter char (1) NOT NULL)
INSERT Other VALUES (1, 'a'), (2, 'b')
CREATE TABLE Long (Body text NOT NULL)
INSERT Long VALUES (REPLICATE(CAST('0123456789abcdef' AS text), 65536))
GO
