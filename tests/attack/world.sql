-- Two databases that differ a little: small, so that a session is short, and with something for every routine.
CREATE DATABASE First
GO
USE First
GO
EXEC sp_addlogin 'ann', 'ann'
EXEC sp_grantdbaccess 'ann'
CREATE TABLE Shelf (ShelfId int NOT NULL CONSTRAINT PK_Shelf PRIMARY KEY, Room varchar (20) NOT NULL)
CREATE TABLE Box (BoxId int NOT NULL CONSTRAINT PK_Box PRIMARY KEY, Label nvarchar (200) NULL,
    ShelfId int NULL CONSTRAINT FK_Box_Shelf REFERENCES Shelf (ShelfId),
    Weight decimal (9, 3) NULL CONSTRAINT CK_Box_Weight CHECK (Weight > 0), Packed datetime NULL, Open1 bit NOT NULL)
CREATE INDEX IX_Box ON Box (Label, ShelfId)
CREATE TABLE ann.Own (A money NULL, B uniqueidentifier NULL)
CREATE TABLE Piece (PieceId int NOT NULL, Body text NULL, Wide ntext NULL, Picture image NULL, Bytes varbinary (20) NULL,
    Ratio float NULL, Small real NULL)
GO
INSERT Shelf VALUES (1, 'cellar'), (2, 'attic')
INSERT Box VALUES (1, N'screws', 1, 0.5, '20010203', 1), (2, N'Schräubchen €', 1, 12.25, NULL, 0), (3, NULL, NULL, NULL, NULL, 1)
INSERT Box VALUES (4, REPLICATE(N'nails 4', 25), 2, 4, NULL, 0), (5, REPLICATE(N'nails 5', 25), 2, 5, NULL, 0), (6, REPLICATE(N'nails 6', 25), 2, 6, NULL, 0),
    (7, REPLICATE(N'nails 7', 25), 2, 7, NULL, 0), (8, REPLICATE(N'nails 8', 25), 2, 8, NULL, 0), (9, REPLICATE(N'nails 9', 25), 2, 9, NULL, 0),
    (10, REPLICATE(N'nails 10', 25), 2, 10, NULL, 0), (11, REPLICATE(N'nails 11', 25), 2, 11, NULL, 0), (12, REPLICATE(N'nails 12', 25), 2, 12, NULL, 0),
    (13, REPLICATE(N'nails 13', 25), 2, 13, NULL, 0), (14, REPLICATE(N'nails 14', 25), 2, 14, NULL, 0), (15, REPLICATE(N'nails 15', 25), 2, 15, NULL, 0),
    (16, REPLICATE(N'nails 16', 25), 2, 16, NULL, 0), (17, REPLICATE(N'nails 17', 25), 2, 17, NULL, 0), (18, REPLICATE(N'nails 18', 25), 2, 18, NULL, 0)
INSERT ann.Own VALUES (1.25, '6F9619FF-8B86-D011-B42D-00C04FC964FF'), (NULL, NULL)
INSERT Piece VALUES (1, REPLICATE('text ', 300), REPLICATE(CAST(N'wide ' AS ntext), 900), 0x0102, 0xFF, 1.5, 2.5), (2, NULL, NULL, NULL, NULL, NULL, NULL),
    (3, '', N'', 0x, 0x, 0, 0), (4, 'short', N'😀', 0x00, 0x00, -1E300, 1E-30)
GO
CREATE DATABASE Second
GO
USE Second
GO
CREATE TABLE Shelf (ShelfId int NOT NULL CONSTRAINT PK_Shelf PRIMARY KEY, Room varchar (30) NOT NULL)
CREATE TABLE Box (BoxId int NOT NULL CONSTRAINT PK_Box PRIMARY KEY, Label nvarchar (40) NOT NULL,
    ShelfId int NULL CONSTRAINT FK_Box_Shelf REFERENCES Shelf (ShelfId), Weight int NULL CONSTRAINT CK_Box CHECK (Weight < 9))
CREATE INDEX IX_Box ON Box (ShelfId)
CREATE TABLE Lid (LidId int NULL)
GO
