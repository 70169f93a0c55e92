-- A small database for the lists of columns, rows and details.
CREATE DATABASE Listing
GO
USE Listing
GO
EXEC sp_grantdbaccess 'clerk'
EXEC sp_grantdbaccess 'maria'
GO
CREATE TABLE Region (Land char(2) NOT NULL, Code smallint NOT NULL, CONSTRAINT PK_Region PRIMARY KEY (Land, Code))
CREATE TABLE Person (Id int IDENTITY NOT NULL CONSTRAINT PK_Person PRIMARY KEY)
CREATE TABLE Company (Id int NOT NULL CONSTRAINT PK_Company PRIMARY KEY)
CREATE TABLE Deal (
    CustID int NOT NULL CONSTRAINT FK_Deal_Person REFERENCES Person CONSTRAINT FK_Deal_Company REFERENCES Company,
    Land   char(2) NULL,
    Code   smallint NULL,
    Amount money NULL,
    CONSTRAINT FK_Deal_Region FOREIGN KEY (Land, Code) REFERENCES Region (Land, Code),
    CONSTRAINT CK_Deal_Amount CHECK (Amount > 0)
)
CREATE INDEX IX_Deal_Place ON Deal (Land, Code)
CREATE TABLE Kinds (
    a char(10) NULL, b varchar(8000) NOT NULL, c nchar(1) NULL, d nvarchar(50) NULL, e ntext NULL, f text NULL,
    g int NOT NULL, h datetime NULL, i decimal(9, 2) NULL, j uniqueidentifier NULL, k image NULL, l bit NOT NULL
)
INSERT Kinds VALUES (NULL, '', N'x', N'', NULL, 'long', -1, '19991231 23:59:59.500', 12.50, NULL, 0x01, 1)
INSERT Kinds VALUES ('a', 'b', NULL, N'd', N'e', NULL, 0, '20000101', 0, NULL, NULL, 0)
CREATE TABLE Nothing (a int NULL, b int NULL)
CREATE TABLE [It's] (a int NULL)
CREATE TABLE maria.Notes (Text nvarchar(20) NULL)
INSERT maria.Notes VALUES (N'hers')
GO
CREATE DATABASE Bare
GO
CREATE DATABASE Checks
GO
USE Checks
GO
CREATE TABLE Form (
    a int NULL, b int NULL,
    CONSTRAINT CK_Form_1 CHECK (a > 1), CONSTRAINT CK_Form_2 CHECK (a > 2), CONSTRAINT CK_Form_3 CHECK (a > 3),
    CONSTRAINT CK_Form_4 CHECK (a > 4), CONSTRAINT CK_Form_5 CHECK (a > b)
)
CREATE INDEX IX_Form ON Form (a, b)
GO
