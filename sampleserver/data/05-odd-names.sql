-- Names that make trouble for whoever splices them into a statement, a key or a file name.
CREATE DATABASE [Odd Names]
GO
USE [Odd Names]
GO
EXEC sp_addlogin 'maria', 'maria', 'Odd Names'
EXEC sp_grantdbaccess 'maria'
EXEC sp_grantdbaccess 'clerk', 'shop clerk'
EXEC sp_addrolemember 'db_owner', 'maria'
EXEC sp_addrolemember 'db_ddladmin', 'maria'
GO

CREATE TABLE [Bob's bikes]  ([Bike's id] int NOT NULL CONSTRAINT [PK_Bob's] PRIMARY KEY, [it's] nvarchar (20) NULL)
CREATE TABLE [a]]b]         ([c]]d] int NOT NULL, [[e] varchar (10) NULL)
CREATE TABLE [two words]    ([first name] nvarchar (30) NULL, [last name] nvarchar (30) NULL)
CREATE TABLE [1998 results] ([1st] int NULL, [%] decimal (5, 2) NULL, [order] int NOT NULL, [select] bit NULL)
CREATE TABLE [dotted.name]  ([a.b] int NULL)
CREATE TABLE "quoted ""name""" (x int NULL)
CREATE TABLE [tab	and %_like[x]]] (y int NULL)
CREATE TABLE order_items    (id int NOT NULL PRIMARY KEY, n int NULL)
CREATE TABLE orderXitems    (id int NOT NULL PRIMARY KEY, other varchar (5) NULL)
CREATE TABLE [Müller-Straße] (größe float NULL, 名前 nvarchar (20) NULL, [Ελλάδα] nchar (3) NULL)
CREATE TABLE [中文表]         (編號 int NOT NULL PRIMARY KEY, [😀] ntext NULL)
CREATE TABLE [A name of one hundred and twenty-eight characters, which is as long as the server lets any name of a table or column be, 128 xxx]
    ([A column that has a name of one hundred and twenty-eight characters, too, so that a list gets something to cut or to scroll xxxx] int NULL)
GO

-- Tables that a list of user tables leaves out, and near misses of their names.
CREATE TABLE dtproperties      (id int NOT NULL, value varchar (64) NULL)
CREATE TABLE sysfiles1x        (fileid smallint NOT NULL)
CREATE TABLE sysdiagrams_copy  (name sysname, diagram_id int NOT NULL)
CREATE TABLE sys               (a int NULL)
CREATE TABLE SYSTEM            (Setting varchar (30) NOT NULL PRIMARY KEY, Value varchar (60) NULL)
GO

-- The same name under two owners, and one that dbo does not have.
CREATE TABLE dbo.Notes   (NoteId int NOT NULL PRIMARY KEY, Body nvarchar (100) NULL)
CREATE TABLE maria.Notes (NoteId int NOT NULL PRIMARY KEY, Body nvarchar (100) NULL, Written smalldatetime NULL)
CREATE TABLE maria.Sketches (SketchId int IDENTITY NOT NULL PRIMARY KEY, Title nvarchar (40) NOT NULL, NoteId int NULL
    CONSTRAINT FK_Sketches_Notes REFERENCES maria.Notes (NoteId))
CREATE TABLE [shop clerk].[to do] (What nvarchar (60) NOT NULL, Done bit NOT NULL DEFAULT 0)
CREATE UNIQUE INDEX [index of what] ON [shop clerk].[to do] (What)
CREATE TABLE Nothing (Nobody int NULL)
CREATE INDEX Nothing ON Nothing (Nobody)
GO

INSERT [Bob's bikes] VALUES (1, N'it''s red'), (2, N'')
INSERT [a]]b] VALUES (1, ']'), (2, '[')
INSERT [two words] VALUES (N'Grace', N'Hopper'), (NULL, N'Only Last'), (N' leading', N'trailing ')
INSERT [1998 results] VALUES (1, 99.5, 3, 1), (NULL, NULL, 1, NULL)
INSERT [dotted.name] VALUES (7)
INSERT "quoted ""name""" VALUES (8)
INSERT order_items VALUES (1, 10), (2, 20)
INSERT orderXitems VALUES (1, 'x')
INSERT [Müller-Straße] VALUES (1.75, N'名前', N'ΩΨΑ')
INSERT [中文表] VALUES (1, N'汉字 and 😀🚲')
INSERT dtproperties VALUES (1, 'left out of lists')
INSERT sysfiles1x VALUES (1)
INSERT sys VALUES (1)
INSERT SYSTEM VALUES ('colour', 'blue'), ('empty', ''), ('nothing', NULL)
INSERT dbo.Notes VALUES (1, N'dbo''s note')
INSERT maria.Notes VALUES (1, N'Maria''s note', '19980401'), (2, N'and another', NULL)
INSERT maria.Sketches (Title, NoteId) VALUES (N'Frame', 1), (N'Fork', NULL)
INSERT [shop clerk].[to do] (What) VALUES (N'Sweep the floor'), (N'Oil the door')
GO
