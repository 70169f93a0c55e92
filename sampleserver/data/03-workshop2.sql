-- The workshop's books a year later. Differences from 02-workshop.sql are marked.
CREATE DATABASE Workshop2
GO
USE Workshop2
GO
EXEC sp_grantdbaccess 'clerk'
GO

CREATE TABLE Customer (
    CustomerId int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_Customer PRIMARY KEY,
    Name       nvarchar (60) NOT NULL,
    Street     nvarchar (80) NULL,
    City       nvarchar (40) NOT NULL CONSTRAINT DF_Customer_City DEFAULT (N'Riverton'),
    Phone      nvarchar (25) NULL,                      -- other type and length
    Since      smalldatetime NOT NULL DEFAULT (getdate()),  -- other type
    Email      varchar (80) NULL                        -- new; Note is gone
)
CREATE INDEX IX_Customer_Name ON Customer (Name)
CREATE INDEX IX_Customer_City ON Customer (Name, City)  -- other order of columns
GO

CREATE TABLE LoyaltyCard (
    CardNo     char (10) NOT NULL CONSTRAINT PK_LoyaltyCard PRIMARY KEY,  -- longer
    CustomerId int NOT NULL CONSTRAINT UQ_LoyaltyCard_Customer UNIQUE
               CONSTRAINT FK_LoyaltyCard_Customer REFERENCES Customer (CustomerId),
    Points     int NOT NULL CONSTRAINT DF_LoyaltyCard_Points DEFAULT 0
               CONSTRAINT CK_LoyaltyCard_Points CHECK (Points >= 0 AND Points <= 100000)  -- other text
)
GO

CREATE TABLE Bicycle (
    BicycleId  int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_Bicycle PRIMARY KEY,
    CustomerId int NOT NULL CONSTRAINT FK_Bicycle_Owner REFERENCES Customer (CustomerId),  -- renamed
    Brand      varchar (30) NOT NULL,
    Model      nvarchar (40) NOT NULL,
    FrameNo    char (12) NULL CONSTRAINT UQ_Bicycle_FrameNo UNIQUE,
    Colour     nvarchar (20) NOT NULL CONSTRAINT DF_Bicycle_Colour DEFAULT (N'unknown'),   -- no nulls any more
    WheelSize  decimal (5, 2) NULL,                     -- other measures, which a list of columns does not show
    CONSTRAINT CK_Bicycle_WheelSize CHECK (WheelSize BETWEEN 12 AND 36)
)
CREATE INDEX IX_Bicycle_BrandModel ON Bicycle (Brand, Model)  -- instead of IX_Bicycle_Brand
GO

CREATE TABLE Mechanic (
    MechanicId smallint NOT NULL CONSTRAINT PK_Mechanic PRIMARY KEY,
    Name       nvarchar (60) NOT NULL,
    BossId     smallint NULL CONSTRAINT FK_Mechanic_Boss REFERENCES Mechanic (MechanicId),
    HiredOn    smalldatetime NOT NULL,
    HourlyRate money NOT NULL CONSTRAINT CK_Mechanic_HourlyRate CHECK (HourlyRate > 0),  -- other type
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
    Code     char (4) NOT NULL CONSTRAINT PK_PartCategory PRIMARY KEY,
    Title    nvarchar (40) NOT NULL,
    ParentOf char (4) NULL CONSTRAINT FK_PartCategory_Parent REFERENCES PartCategory (Code)  -- new, to itself
)
CREATE TABLE Part (
    PartNo       varchar (15) NOT NULL CONSTRAINT PK_Part PRIMARY KEY NONCLUSTERED,
    CategoryCode char (4) NOT NULL CONSTRAINT FK_Part_Category REFERENCES PartCategory (Code),
    SupplierId   int NULL,                              -- refers to nothing any more
    Title        nvarchar (80) NOT NULL,                -- longer
    Price        money NOT NULL,                        -- CK_Part_Price is gone
    InStock      int NOT NULL CONSTRAINT DF_Part_InStock DEFAULT (0)
                 CONSTRAINT CK_Part_InStock CHECK (InStock >= 0),  -- new
    ReorderAt    smallint NULL,
    RowGuid      uniqueidentifier ROWGUIDCOL NOT NULL CONSTRAINT DF_Part_RowGuid DEFAULT (newid()),
    Changed      timestamp
)
CREATE CLUSTERED INDEX IX_Part_Category ON Part (CategoryCode, Title)
CREATE INDEX IX_Part_SupplierId ON Part (SupplierId)    -- renamed
GO

CREATE TABLE RepairOrder (
    OrderId    int IDENTITY (2000, 1) NOT NULL CONSTRAINT PK_RepairOrder PRIMARY KEY,
    BicycleId  int NOT NULL CONSTRAINT FK_RepairOrder_Bicycle REFERENCES Bicycle (BicycleId),
    MechanicId smallint NULL CONSTRAINT FK_RepairOrder_Mechanic REFERENCES Mechanic (MechanicId),  -- new key
    TakenIn    datetime NOT NULL CONSTRAINT DF_RepairOrder_TakenIn DEFAULT (getdate()),
    Promised   datetime NULL,
    Finished   datetime NULL,
    Status     char (1) NOT NULL CONSTRAINT CK_RepairOrder_Status CHECK (Status IN ('O', 'W', 'D', 'P')),  -- other text
    Complaint  nvarchar (400) NOT NULL,
    CONSTRAINT CK_RepairOrder_Dates CHECK (Promised >= TakenIn)
)
CREATE INDEX IX_RepairOrder_Status ON RepairOrder (Status, TakenIn)
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
    CONSTRAINT FK_RepairLineNote_Line FOREIGN KEY (OrderId) REFERENCES RepairOrder (OrderId)  -- other table, one column
)
CREATE TABLE LabourLine (
    OrderId    int NOT NULL CONSTRAINT FK_LabourLine_Order REFERENCES RepairOrder (OrderId),
    Position   smallint NOT NULL,
    MechanicId smallint NOT NULL CONSTRAINT FK_LabourLine_Mechanic REFERENCES Mechanic (MechanicId),
    Hours      decimal (5, 2) NOT NULL,
    CONSTRAINT PK_LabourLine PRIMARY KEY CLUSTERED (OrderId, Position)
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
-- Without its primary key and its check of the amount.
CREATE TABLE Payment (
    PaymentId int IDENTITY (1, 1) NOT NULL,
    InvoiceNo int NOT NULL CONSTRAINT FK_Payment_Invoice REFERENCES Invoice (InvoiceNo),
    Amount    money NOT NULL,
    PaidOn    smalldatetime NOT NULL,
    Method    varchar (10) NOT NULL CONSTRAINT CK_Payment_Method CHECK (Method IN ('cash', 'card', 'cheque'))
)
CREATE INDEX IX_Payment_PaidOn ON Payment (PaidOn)
CREATE INDEX IX_Payment_Method ON Payment (Method, PaidOn)  -- new
GO

CREATE TABLE CourtesyLoan (
    LoanId     int IDENTITY (1, 1) NOT NULL CONSTRAINT PK_CourtesyLoan PRIMARY KEY,
    CustomerId int NOT NULL,
    LentOn     smalldatetime NOT NULL,
    BackOn     smalldatetime NULL,
    CONSTRAINT FK_CourtesyLoan_Customer FOREIGN KEY (CustomerId) REFERENCES Customer (CustomerId)  -- only one left
)
-- A name that differs only in the case of one letter.
CREATE TABLE Openinghours (
    Weekday  tinyint NOT NULL CONSTRAINT PK_OpeningHours PRIMARY KEY,
    OpensAt  char (5) NULL,
    ClosesAt char (5) NULL
)
-- Instead of Holiday.
CREATE TABLE ClosedDay (
    FirstDay smalldatetime NOT NULL,
    LastDay  smalldatetime NOT NULL,
    Reason   nvarchar (40) NOT NULL,
    CONSTRAINT PK_ClosedDay PRIMARY KEY (FirstDay, LastDay),
    CONSTRAINT CK_ClosedDay_Days CHECK (LastDay >= FirstDay)
)
CREATE TABLE LostAndFound (
    FoundOn smalldatetime NULL,
    Thing   nvarchar (100) NULL
)
GO

INSERT INTO Customer (Name, Street, City, Phone, Since, Email) VALUES
    (N'Ada Whitfield',     N'12 Mill Lane',     N'Riverton',  N'0555-0101', '19970312', 'ada@whitfield.example'),
    (N'Søren Ødegård',     N'Fjordveien 3',     N'Bergen',    N'0555-0102', '19970420', NULL),
    (N'María José Núñez',  N'Calle del Río 21', N'Riverton',  N'0555-0104', '19970511', 'mjn@ribera.example'),
    (N'Thandiwe Mbeki',    N'9 Orchard Close',  N'Riverton',  NULL,         '19990208', NULL)
INSERT LoyaltyCard VALUES ('C000000001', 1, 410), ('C000000002', 2, 45), ('C000000003', 3, 780)
INSERT Bicycle (CustomerId, Brand, Model, FrameNo, WheelSize) VALUES
    (1, 'Hawthorn', N'Tourer 21', 'HW1996-00417', 28), (2, 'Nordlys', N'Ålesund', 'NL-000981', 28), (3, 'Pedregal', N'Montaña XT', 'PG55-20031', 26)
INSERT Mechanic VALUES (1, N'Greta Lindqvist', NULL, '19950401', 45, NULL), (3, N'Zoë Okonkwo', 1, '19970201', 34.5, NULL)
INSERT Supplier (Name, Country) VALUES (N'Kettle & Chain Ltd', 'GB'), (N'Fahrradteile Böhm', 'DE')
INSERT SupplierTerms VALUES (100, 0.15, NULL), (110, 0.05, NULL)
INSERT PartCategory VALUES ('PART', N'All parts', NULL), ('BRAK', N'Brakes', 'PART'), ('TYRE', N'Tyres and tubes', 'PART')
INSERT Part (PartNo, CategoryCode, SupplierId, Title, Price, InStock) VALUES
    ('BR-100', 'BRAK', 100, N'Brake pad, pair', 7.1, 33), ('TU-28', 'TYRE', 100, N'Tube 28″, Dunlop valve', 4.4, 51)
INSERT RepairOrder (BicycleId, MechanicId, TakenIn, Promised, Status, Complaint) VALUES
    (1, 3, '1999-03-01T09:00:00', '19990303', 'P', N'The yearly service.'), (3, 1, '1999-03-02T11:30:00', NULL, 'O', N'Gears slip.')
INSERT RepairLine VALUES (2000, 1, 'BR-100', 2, 7.1), (2000, 2, 'TU-28', 1, 4.4)
INSERT RepairLineNote (OrderId, Position, WrittenBy, Remark) VALUES (2000, 1, 3, N'Pads again; check the rim.')
INSERT LabourLine VALUES (2000, 1, 3, 1)
INSERT Invoice VALUES (99001, 2000, '19990303', 53.1, 1)
INSERT Payment (InvoiceNo, Amount, PaidOn, Method) VALUES (99001, 53.1, '19990303', 'card')
INSERT CourtesyLoan (CustomerId, LentOn) VALUES (3, '19990302')
INSERT Openinghours VALUES (1, '09:00', '18:00'), (6, '10:00', '15:00'), (7, NULL, NULL)
INSERT ClosedDay VALUES ('19990101', '19990101', N'New Year''s Day'), ('19990719', '19990731', N'Summer closing')
GO
