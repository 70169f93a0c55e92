-- A bicycle workshop's books, first edition. 03-workshop2.sql is the same business a year later; the two
-- differ in every way that a comparison of schemas can show.
CREATE DATABASE Workshop
GO
USE Workshop
GO
EXEC sp_grantdbaccess 'clerk'
EXEC sp_addrolemember 'db_datareader', 'clerk'
EXEC sp_addrole 'bookkeeping'
EXEC sp_addrolemember 'bookkeeping', 'clerk'
EXEC sp_grantdbaccess 'auditor'
GO

CREATE TABLE Customer (
    CustomerId int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_Customer PRIMARY KEY,
    Name       nvarchar (60) NOT NULL,
    Street     nvarchar (80) NULL,
    City       nvarchar (40) NOT NULL CONSTRAINT DF_Customer_City DEFAULT (N'Riverton'),
    Phone      varchar (20) NULL,
    Since      datetime NOT NULL DEFAULT (getdate()),
    Note       ntext NULL
)
CREATE INDEX IX_Customer_Name ON Customer (Name)
CREATE INDEX IX_Customer_City ON Customer (City, Name)
GO

CREATE TABLE LoyaltyCard (
    CardNo     char (8) NOT NULL CONSTRAINT PK_LoyaltyCard PRIMARY KEY,
    CustomerId int NOT NULL CONSTRAINT UQ_LoyaltyCard_Customer UNIQUE
               CONSTRAINT FK_LoyaltyCard_Customer REFERENCES Customer (CustomerId),
    Points     int NOT NULL CONSTRAINT DF_LoyaltyCard_Points DEFAULT 0 CONSTRAINT CK_LoyaltyCard_Points CHECK (Points >= 0)
)
GO

CREATE TABLE Bicycle (
    BicycleId  int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_Bicycle PRIMARY KEY,
    CustomerId int NOT NULL CONSTRAINT FK_Bicycle_Customer REFERENCES Customer (CustomerId),
    Brand      varchar (30) NOT NULL,
    Model      nvarchar (40) NOT NULL,
    FrameNo    char (12) NULL CONSTRAINT UQ_Bicycle_FrameNo UNIQUE,
    Colour     nvarchar (20) NULL,
    WheelSize  decimal (4, 1) NULL,
    CONSTRAINT CK_Bicycle_WheelSize CHECK (WheelSize BETWEEN 12 AND 36)
)
CREATE INDEX IX_Bicycle_Brand ON Bicycle (Brand)
GO

CREATE TABLE Mechanic (
    MechanicId smallint NOT NULL CONSTRAINT PK_Mechanic PRIMARY KEY,
    Name       nvarchar (60) NOT NULL,
    BossId     smallint NULL CONSTRAINT FK_Mechanic_Boss REFERENCES Mechanic (MechanicId),
    HiredOn    smalldatetime NOT NULL,
    HourlyRate smallmoney NOT NULL CONSTRAINT CK_Mechanic_HourlyRate CHECK (HourlyRate > 0),
    Photo      image NULL
)
GO

CREATE TABLE Supplier (
    SupplierId int IDENTITY (100, 10) NOT NULL CONSTRAINT PK_Supplier PRIMARY KEY,
    Name       nvarchar (60) NOT NULL CONSTRAINT UQ_Supplier_Name UNIQUE,
    Country    char (2) NOT NULL,
    Homepage   varchar (100) NULL
)
CREATE TABLE SupplierTerms (
    SupplierId int NOT NULL CONSTRAINT PK_SupplierTerms PRIMARY KEY
               CONSTRAINT FK_SupplierTerms_Supplier REFERENCES Supplier,
    Discount   numeric (5, 4) NOT NULL CONSTRAINT CK_SupplierTerms_Discount CHECK (Discount >= 0 AND Discount < 1),
    Terms      text NULL
)
GO

CREATE TABLE PartCategory (
    Code  char (4) NOT NULL CONSTRAINT PK_PartCategory PRIMARY KEY,
    Title nvarchar (40) NOT NULL
)
CREATE TABLE Part (
    PartNo       varchar (15) NOT NULL CONSTRAINT PK_Part PRIMARY KEY NONCLUSTERED,
    CategoryCode char (4) NOT NULL CONSTRAINT FK_Part_Category REFERENCES PartCategory (Code),
    SupplierId   int NULL CONSTRAINT FK_Part_Supplier REFERENCES Supplier (SupplierId),
    Title        nvarchar (60) NOT NULL,
    Price        money NOT NULL CONSTRAINT CK_Part_Price CHECK (Price >= 0),
    InStock      int NOT NULL CONSTRAINT DF_Part_InStock DEFAULT (0),
    ReorderAt    smallint NULL,
    RowGuid      uniqueidentifier ROWGUIDCOL NOT NULL CONSTRAINT DF_Part_RowGuid DEFAULT (newid()),
    Changed      timestamp
)
CREATE CLUSTERED INDEX IX_Part_Category ON Part (CategoryCode, Title)
CREATE INDEX IX_Part_Supplier ON Part (SupplierId)
CREATE STATISTICS _WA_Sys_Price_4A8310C6 ON Part (Price)
GO

CREATE TABLE RepairOrder (
    OrderId    int IDENTITY (1000, 1) NOT NULL CONSTRAINT PK_RepairOrder PRIMARY KEY,
    BicycleId  int NOT NULL CONSTRAINT FK_RepairOrder_Bicycle REFERENCES Bicycle (BicycleId),
    MechanicId smallint NULL,
    TakenIn    datetime NOT NULL CONSTRAINT DF_RepairOrder_TakenIn DEFAULT (getdate()),
    Promised   datetime NULL,
    Finished   datetime NULL,
    Status     char (1) NOT NULL CONSTRAINT CK_RepairOrder_Status CHECK (Status IN ('O', 'W', 'D')),
    Complaint  nvarchar (400) NOT NULL,
    CONSTRAINT CK_RepairOrder_Dates CHECK (Promised >= TakenIn)
)
CREATE INDEX IX_RepairOrder_Status ON RepairOrder (Status, TakenIn)
CREATE INDEX IX_RepairOrder_Mechanic ON RepairOrder (MechanicId)
GO

CREATE TABLE RepairLine (
    OrderId   int NOT NULL CONSTRAINT FK_RepairLine_Order REFERENCES RepairOrder (OrderId),
    Position  smallint NOT NULL,
    PartNo    varchar (15) NOT NULL,
    Quantity  decimal (8, 2) NOT NULL CONSTRAINT CK_RepairLine_Quantity CHECK (Quantity > 0),
    UnitPrice money NOT NULL,
    CONSTRAINT PK_RepairLine PRIMARY KEY (OrderId, Position),
    CONSTRAINT FK_RepairLine_Part FOREIGN KEY (PartNo) REFERENCES Part (PartNo)
)
CREATE TABLE RepairLineNote (
    NoteId    int IDENTITY NOT NULL PRIMARY KEY,
    OrderId   int NOT NULL,
    Position  smallint NOT NULL,
    WrittenBy smallint NULL FOREIGN KEY REFERENCES Mechanic (MechanicId),
    Remark    nvarchar (200) NOT NULL,
    CONSTRAINT FK_RepairLineNote_Line FOREIGN KEY (OrderId, Position) REFERENCES RepairLine (OrderId, Position)
)
CREATE TABLE LabourLine (
    OrderId    int NOT NULL CONSTRAINT FK_LabourLine_Order REFERENCES RepairOrder (OrderId),
    Position   smallint NOT NULL,
    MechanicId smallint NOT NULL CONSTRAINT FK_LabourLine_Mechanic REFERENCES Mechanic (MechanicId),
    Hours      decimal (5, 2) NOT NULL,
    CONSTRAINT PK_LabourLine PRIMARY KEY CLUSTERED (OrderId, Position) WITH FILLFACTOR = 90 ON [PRIMARY]
)
CREATE INDEX IX_LabourLine_Mechanic ON LabourLine (MechanicId, OrderId)
GO

CREATE TABLE Invoice (
    InvoiceNo int NOT NULL CONSTRAINT PK_Invoice PRIMARY KEY,
    OrderId   int NOT NULL CONSTRAINT UQ_Invoice_Order UNIQUE CONSTRAINT FK_Invoice_Order REFERENCES RepairOrder (OrderId),
    IssuedOn  smalldatetime NOT NULL,
    Total     money NOT NULL,
    Paid      bit NOT NULL CONSTRAINT DF_Invoice_Paid DEFAULT (0)
)
CREATE TABLE Payment (
    PaymentId int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_Payment PRIMARY KEY,
    InvoiceNo int NOT NULL CONSTRAINT FK_Payment_Invoice REFERENCES Invoice (InvoiceNo),
    Amount    money NOT NULL CONSTRAINT CK_Payment_Amount CHECK (Amount <> 0),
    PaidOn    smalldatetime NOT NULL,
    Method    varchar (10) NOT NULL CONSTRAINT CK_Payment_Method CHECK (Method IN ('cash', 'card', 'cheque'))
)
CREATE INDEX IX_Payment_PaidOn ON Payment (PaidOn)
GO

-- One column that refers to two tables.
CREATE TABLE CourtesyLoan (
    LoanId     int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_CourtesyLoan PRIMARY KEY,
    CustomerId int NOT NULL,
    LentOn     smalldatetime NOT NULL,
    BackOn     smalldatetime NULL,
    CONSTRAINT FK_CourtesyLoan_Customer FOREIGN KEY (CustomerId) REFERENCES Customer (CustomerId),
    CONSTRAINT FK_CourtesyLoan_Card FOREIGN KEY (CustomerId) REFERENCES LoyaltyCard (CustomerId)
)
CREATE TABLE OpeningHours (
    Weekday  tinyint NOT NULL CONSTRAINT PK_OpeningHours PRIMARY KEY,
    OpensAt  char (5) NULL,
    ClosesAt char (5) NULL
)
CREATE TABLE Holiday (
    HeldOn smalldatetime NOT NULL CONSTRAINT PK_Holiday PRIMARY KEY,
    Title  nvarchar (40) NOT NULL
)
-- No key, no index, no row.
CREATE TABLE LostAndFound (
    FoundOn smalldatetime NULL,
    Thing   nvarchar (100) NULL
)
GO
DENY SELECT ON SupplierTerms TO clerk
GO

INSERT INTO Customer (Name, Street, City, Phone, Since, Note) VALUES
    (N'Ada Whitfield',      N'12 Mill Lane',        N'Riverton',   '0555-0101', '19970312', N'Prefers to be called in the evening.'),
    (N'Søren Ødegård',      N'Fjordveien 3',        N'Bergen',     '0555-0102', '19970420', NULL),
    (N'Łukasz Żak',         N'ul. Różana 7',        N'Gdańsk',     NULL,        '19970505', N''),
    (N'María José Núñez',   N'Calle del Río 21',    N'Riverton',   '0555-0104', '19970511', N'Rides to work every day, winter included.'),
    (N'Jürgen Groß',        NULL,                   N'Riverton',   '0555-0105', '19970630', NULL),
    (N'Οδυσσέας Νικολάου',  N'4 Harbour Row',       N'Saltmarsh',  '0555-0106', '19970719', NULL),
    (N'大野 さくら',          N'88 Station Road',     N'Riverton',   '0555-0107', '19970901', N'Racing bicycle; carbon parts only.'),
    (N'Patrick O''Leary',   N'Rose Cottage',        N'Saltmarsh',  '0555-0108', '19980114', NULL)
INSERT Customer (Name) VALUES (N'Walk-in customer')
GO
INSERT LoyaltyCard VALUES ('C0000001', 1, 120), ('C0000002', 2, 45), ('C0000004', 4, 310)
INSERT LoyaltyCard (CardNo, CustomerId) VALUES ('C0000007', 7)
GO
INSERT Bicycle (CustomerId, Brand, Model, FrameNo, Colour, WheelSize) VALUES
    (1, 'Hawthorn',   N'Tourer 21',        'HW1996-00417', N'green',       28),
    (2, 'Nordlys',    N'Ålesund',          'NL-000981',    N'white',       28.0),
    (3, 'Hawthorn',   N'City Lady',        'HW1994-11873', N'dark red',    26),
    (4, 'Pedregal',   N'Montaña XT',       'PG55-20031',   N'black',       26),
    (4, 'Pedregal',   N'Niña',             'PG12-00012',   N'yellow',      16.5),
    (5, 'Drahtesel',  N'Größe L',          NULL,           NULL,           28),
    (6, 'Hawthorn',   N'Messenger',        'HW1997-02210', N'silver',      NULL),
    (7, 'Tsubame',    N'燕 Comp',           'TB-7-7777',    N'blue',        27.5)
GO
INSERT Mechanic (MechanicId, Name, BossId, HiredOn, HourlyRate, Photo) VALUES
    (1, N'Greta Lindqvist', NULL, '19950401', $42.50, 0x89504E470D0A1A0A),
    (2, N'Tom Baker',       1,    '19960615', $31,    NULL),
    (3, N'Zoë Okonkwo',     1,    '19970201', $31.75, 0x),
    (4, N'Émile Roux',      3,    '19980309', $18.20, NULL)
GO
INSERT Supplier (Name, Country, Homepage) VALUES
    (N'Kettle & Chain Ltd',  'GB', 'http://kettle-and-chain.example'),
    (N'Fahrradteile Böhm',   'DE', 'http://boehm.example/teile'),
    (N'Jízdní kola Dvořák',  'CZ', NULL)
INSERT SupplierTerms VALUES (100, 0.1250, 'Thirty days net.'), (110, 0.05, 'Fourteen days, two per cent off for cash.'), (120, 0, NULL)
INSERT PartCategory VALUES ('BRAK', N'Brakes'), ('CHN', N'Chains and cassettes'), ('LAMP', N'Lamps'), ('TYRE', N'Tyres and tubes')
INSERT Part (PartNo, CategoryCode, SupplierId, Title, Price, InStock, ReorderAt) VALUES
    ('BR-100',   'BRAK', 100,  N'Brake pad, pair',              6.9,     48, 20),
    ('BR-210',   'BRAK', 110,  N'Brake cable, stainless',       3.45,    75, 30),
    ('CH-8S',    'CHN',  110,  N'Chain, eight speeds',          17.80,   12, 5),
    ('CS-1128',  'CHN',  110,  N'Cassette 11–28',               34.00,   4,  2),
    ('LP-HAL',   'LAMP', 120,  N'Halogen head lamp',            22.5,    9,  4),
    ('LP-REAR',  'LAMP', NULL, N'Rear lamp “Glühwürmchen”',     12.95,   0,  4),
    ('TY-28-37', 'TYRE', 100,  N'Tyre 28″, 37 mm',              19.9,    22, 10),
    ('TU-28',    'TYRE', 100,  N'Tube 28″, Dunlop valve',       4.2,     60, 25),
    ('TU-16',    'TYRE', 120,  N'Tube 16″',                     3.9,     DEFAULT, NULL)
GO
INSERT RepairOrder (BicycleId, MechanicId, TakenIn, Promised, Finished, Status, Complaint) VALUES
    (1, 2,    '1998-03-02T09:15:00', '19980304', '1998-03-03T16:40:00', 'D', N'Rear brake squeals; new pads.'),
    (2, 1,    '1998-03-02T10:05:00', '19980306', '1998-03-06T11:20:30', 'D', N'Chain jumps on the small sprockets.'),
    (4, 3,    '1998-03-04T08:45:00', '19980305', '1998-03-05T17:55:00', 'D', N'Puncture in front, tyre worn through.'),
    (8, 1,    '1998-03-09T14:30:00', '19980312', NULL,                  'W', N'Check before the season: 全体点検.'),
    (5, 4,    '1998-03-10T16:10:00', '19980311', NULL,                  'W', N'Flat tyre. The child is waiting…'),
    (6, NULL, '1998-03-11T09:00:00', NULL,       NULL,                  'O', N'No light at all, neither front nor rear.')
INSERT RepairLine VALUES
    (1000, 1, 'BR-100', 2, 6.9), (1000, 2, 'BR-210', 1, 3.45),
    (1001, 1, 'CH-8S', 1, 17.8), (1001, 2, 'CS-1128', 1, 34),
    (1002, 1, 'TY-28-37', 1, 19.9), (1002, 2, 'TU-28', 1, 4.2),
    (1004, 1, 'TU-16', 1, 3.9)
INSERT RepairLineNote (OrderId, Position, WrittenBy, Remark) VALUES
    (1000, 1, 2, N'Old pads were down to the metal.'),
    (1001, 2, 1, N'Cassette ordered from Böhm, came two days late.'),
    (1002, 1, NULL, N'Customer took the old tyre home.')
INSERT LabourLine VALUES
    (1000, 1, 2, 0.50), (1001, 1, 1, 1.25), (1001, 2, 4, 0.25), (1002, 1, 3, 0.75), (1003, 1, 1, 1.5), (1004, 1, 4, .5)
INSERT Invoice VALUES
    (98001, 1000, '19980303', $32.75, 1), (98002, 1001, '19980306', $104.93, 1), (98003, 1002, '19980305', $47.91, DEFAULT)
INSERT Payment (InvoiceNo, Amount, PaidOn, Method) VALUES
    (98001, 32.75, '19980303', 'cash'), (98002, 50, '19980306', 'card'), (98002, 54.93, '19980320', 'cheque')
INSERT CourtesyLoan (CustomerId, LentOn, BackOn) VALUES (1, '19980302', '19980303'), (2, '19980302', '19980306'), (7, '19980309', NULL)
INSERT OpeningHours VALUES
    (1, '09:00', '18:00'), (2, '09:00', '18:00'), (3, '09:00', '13:00'), (4, '09:00', '20:00'), (5, '09:00', '18:00'),
    (6, '10:00', '14:00'), (7, NULL, NULL)
INSERT Holiday VALUES ('19980101', N'New Year''s Day'), ('19980501', N'May Day'), ('19981225', N'Christmas Day')
GO
