-- Every type of SQL Server 7.0 with its least and greatest value, null, empty and long.
CREATE DATABASE TypeSamples
GO
USE TypeSamples
GO
EXEC sp_grantdbaccess 'guest'
GO
CREATE TABLE AllTypes (
    Id            int NOT NULL CONSTRAINT PK_AllTypes PRIMARY KEY,
    What          varchar (30) NOT NULL,
    ABit          bit NULL,
    ATinyInt      tinyint NULL,
    ASmallInt     smallint NULL,
    AnInt         int NULL,
    ADecimal      decimal (18, 4) NULL,
    AWideDecimal  decimal (38, 10) NULL,
    AHugeDecimal  decimal (38, 0) NULL,
    ANumeric      numeric (28) NULL,
    AMoney        money NULL,
    ASmallMoney   smallmoney NULL,
    AFloat        float NULL,
    AReal         real NULL,
    ADateTime     datetime NULL,
    ASmallDate    smalldatetime NULL,
    AChar         char (10) NULL,
    AVarChar      varchar (8000) NULL,
    AText         text NULL,
    ANChar        nchar (10) NULL,
    ANVarChar     nvarchar (4000) NULL,
    ANText        ntext NULL,
    ABinary       binary (8) NULL,
    AVarBinary    varbinary (8000) NULL,
    AnImage       image NULL,
    AGuid         uniqueidentifier NULL,
    ASysname      sysname NULL,
    AStamp        timestamp NOT NULL
)
GO
INSERT AllTypes (Id, What) VALUES (1, 'null')
INSERT AllTypes VALUES (2, 'least', 0, 0, -32768, -2147483648,
    -99999999999999.9999, -9999999999999999999999999999.9999999999,
    -99999999999999999999999999999999999999, -9999999999999999999999999999,
    -922337203685477.5808, -214748.3648, -1.79E+308, -3.4E+38, '1753-01-01T00:00:00', '19000101',
    'a', 'a', 'a', N'a', N'a', N'a', 0x00, 0x00, 0x00, '00000000-0000-0000-0000-000000000000', N'a', NULL)
INSERT AllTypes VALUES (3, 'greatest', 1, 255, 32767, 2147483647,
    99999999999999.9999, 9999999999999999999999999999.9999999999,
    99999999999999999999999999999999999999, 9999999999999999999999999999,
    922337203685477.5807, 214748.3647, 1.79E+308, 3.4E+38, '9999-12-31T23:59:59.997', '2079-06-06T23:59:00',
    'zzzzzzzzzz', REPLICATE('z', 8000), 'z', N'zzzzzzzzzz', REPLICATE(N'Ω', 4000), N'z',
    0xFFFFFFFFFFFFFFFF, 0xFF, 0xFF, 'FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF', N'z', DEFAULT)
INSERT AllTypes VALUES (4, 'empty', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '19000101', '19000101',
    '', '', '', N'', N'', N'', 0x, 0x, 0x, '6F9619FF-8B86-D011-B42D-00C04FC964FF', N'', NULL)
INSERT AllTypes VALUES (5, 'smallest steps', 1, 1, -1, -1, 0.0001, 0.0000000001, 1, 1, 0.0001, -0.0001, 2.23E-308, 1.18E-38,
    '1998-07-01T12:34:56.003', '1998-07-01T12:34:00', 'ends in  ', 'ends in  ', 'ends in  ', N'ends in  ', N'ends in  ',
    N'ends in  ', 0x0100, 0x0100, 0x0100, '01234567-89AB-CDEF-0123-456789ABCDEF', N'x', NULL)
INSERT AllTypes (Id, What, AnInt, AChar, AVarChar, AText, ANChar, ANVarChar, ANText) VALUES (6, 'beyond the first plane', 65536,
    'café', 'naïve – “€”', 'line one' + CHAR(13) + CHAR(10) + 'line two' + CHAR(9) + 'tab',
    N'🚲🔧', N'𝄞 clef, 🚲 bicycle, é as e' + NCHAR(769), N'𠜎𠜱 rare characters, العربية, עברית, ไทย')
-- REPLICATE of a long value is not cut at 8000 bytes.
INSERT AllTypes (Id, What, AVarChar, ANVarChar, AText, ANText, AnImage) VALUES (7, 'long',
    REPLICATE('€', 8000), REPLICATE(N'🚲', 2000),
    REPLICATE(CAST('0123456789abcdef' AS text), 8192), REPLICATE(CAST(N'Länge über alles 🚲 ' AS ntext), 5000),
    REPLICATE(CAST(0x00FF7F80 AS image), 25000))
-- The ends of what the formats hold, and values that take all digits to read back the same.
INSERT AllTypes (Id, What, AFloat, AReal, ADateTime, ASmallDate) VALUES
    (8, 'floats'' ends', 1.7976931348623157E+308, 3.40282346E+38, '1998-07-01T12:34:56', '1998-07-01T23:59:00'),
    (9, 'floats'' other ends', -1.7976931348623157E+308, -3.40282346E+38, '1998-07-01T00:00:00.997', '2000-02-29'),
    (10, 'digits', 0.30000000000000004, 0.1, '1998-07-01T23:59:59.007', '1998-07-01T00:01:00'),
    (11, 'more digits', 123456789.12345679, 16777217, '2000-02-29T12:00:00.5', '19991231'),
    (12, 'round', 1E+15, 100000, '19000101', '19000102')
GO

-- Types by the names that people write instead of the server's own.
CREATE TABLE Synonyms (
    A integer NOT NULL,
    B dec (9, 2) NULL,
    C character (3) NULL,
    D character varying (30) NULL,
    E national character (3) NULL,
    F national char varying (30) NULL,
    G double precision NULL,
    H float (24) NULL,
    I binary varying (5) NULL,
    J national text NULL,
    K [decimal] NULL,
    timestamp
)
CREATE TABLE Identities (
    Id   numeric (10, 0) IDENTITY (-5, 5) NOT NULL PRIMARY KEY,
    Text varchar (10) NULL
)
INSERT Identities (Text) VALUES ('first'), ('second'), ('third')
SET IDENTITY_INSERT Identities ON
INSERT Identities (Id, Text) VALUES (100, 'chosen')
SET IDENTITY_INSERT Identities OFF
INSERT Identities (Text) VALUES ('after')
GO
