-- The same values in columns that take nulls and in columns that do not.
CREATE DATABASE Clients
GO
USE Clients
GO
CREATE TABLE Strict (
  c_bit bit NOT NULL, c_tinyint tinyint NOT NULL, c_smallint smallint NOT NULL, c_int int NOT NULL,
  c_decimal decimal(9, 2) NOT NULL, c_numeric numeric(20, 4) NOT NULL, c_money money NOT NULL,
  c_smallmoney smallmoney NOT NULL, c_float float NOT NULL, c_real real NOT NULL, c_datetime datetime NOT NULL,
  c_smalldatetime smalldatetime NOT NULL, c_char char(5) NOT NULL, c_varchar varchar(5) NOT NULL,
  c_nchar nchar(3) NOT NULL, c_nvarchar nvarchar(5) NOT NULL, c_binary binary(3) NOT NULL,
  c_varbinary varbinary(5) NOT NULL, c_guid uniqueidentifier NOT NULL, c_text text NOT NULL, c_ntext ntext NOT NULL,
  c_image image NOT NULL)
CREATE TABLE Loose (
  c_bit bit NULL, c_tinyint tinyint NULL, c_smallint smallint NULL, c_int int NULL, c_decimal decimal(9, 2) NULL,
  c_numeric numeric(20, 4) NULL, c_money money NULL, c_smallmoney smallmoney NULL, c_float float NULL, c_real real NULL,
  c_datetime datetime NULL, c_smalldatetime smalldatetime NULL, c_char char(5) NULL, c_varchar varchar(5) NULL,
  c_nchar nchar(3) NULL, c_nvarchar nvarchar(5) NULL, c_binary binary(3) NULL, c_varbinary varbinary(5) NULL,
  c_guid uniqueidentifier NULL, c_text text NULL, c_ntext ntext NULL, c_image image NULL)
GO
INSERT Strict VALUES (1, 200, -300, 70000, -12.34, 1234567890123456.7891, $12.3456, -1.5, 1.5, -2.25,
  '2001-02-03 04:05:06', '2001-02-03 04:05', 'ab', 'abc', N'x', N'yz', 0x010200, 0x00ff,
  '6F9619FF-8B86-D011-B42D-00C04FC964FF', 'long', N'longer', 0x0a0b)
INSERT Loose VALUES (1, 200, -300, 70000, -12.34, 1234567890123456.7891, $12.3456, -1.5, 1.5, -2.25,
  '2001-02-03 04:05:06', '2001-02-03 04:05', 'ab', 'abc', N'x', N'yz', 0x010200, 0x00ff,
  '6F9619FF-8B86-D011-B42D-00C04FC964FF', 'long', N'longer', 0x0a0b)
GO
