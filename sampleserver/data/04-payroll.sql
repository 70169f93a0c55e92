-- A database whose door is closed to clerk: neither a user of that login nor a guest is in it.
CREATE DATABASE Payroll
GO
USE Payroll
GO
EXEC sp_grantdbaccess 'auditor'
GO
CREATE TABLE Employee (
    EmployeeId int NOT NULL PRIMARY KEY,
    Name       nvarchar (60) NOT NULL,
    BankCode   char (8) NOT NULL,
    Account    varchar (20) NOT NULL
)
CREATE TABLE Wage (
    EmployeeId int NOT NULL REFERENCES Employee (EmployeeId),
    PaidFor    smalldatetime NOT NULL,
    Gross      money NOT NULL CHECK (Gross > 0),
    Tax        money NOT NULL,
    PRIMARY KEY (EmployeeId, PaidFor)
)
GO
INSERT Employee VALUES (1, N'Greta Lindqvist', 'RIVTGB22', '4410-220'), (2, N'Tom Baker', 'RIVTGB22', '4410-377')
INSERT Wage VALUES (1, '19980228', 3400, 890.5), (2, '19980228', 2480, 512), (1, '19980331', 3400, 890.5), (2, '19980331', 2611.2, 548.3)
GO
