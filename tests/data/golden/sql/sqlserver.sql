BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[a]]b]') AND type IN ('U'))
	DROP TABLE [a]]b]
GO
CREATE TABLE [a]]b] (
	[ID] int,
	[Value] varchar(20))
GO

INSERT INTO [a]]b] ([ID], [Value]) VALUES (1, 'bracket table');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[AllTypes]') AND type IN ('U'))
	DROP TABLE [AllTypes]
GO
CREATE TABLE [AllTypes] (
	[ID] int NOT NULL,
	[ColBoolean] bit,
	[ColByte] char,
	[ColInt] smallint,
	[ColLong] int,
	[ColMoney] money,
	[ColFloat] real,
	[ColDouble] float,
	[ColDate] smalldatetime,
	[ColBinary] text,
	[ColText255] varchar(255),
	[ColText50] varchar(50),
	[ColOle] varbinary,
	[ColMemo] text,
	[ColGuid] Sybase_Replication ID,
	[ColNumeric] numeric,
	CONSTRAINT [AllTypes_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (1, 0, null, null, null, null, null, null, null, null, null, null, null, null, null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (2, 0, 0, 0, 0, 0.0000, 0, 0, '1899-12-30 00:00:00', null, null, null, null, null, {00000000-0000-0000-0000-000000000000}, 0.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (3, 1, 1, 1, 1, 1.5000, 3.14, 2.718281828459045, '2010-03-04 13:05:00', x'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', x'726177206f6c65206279746573', 'Memo text', {6F9619FF-8B86-D011-B42D-00C04FC964FF}, 12345.6789);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (4, 1, 34, 34, 34, 34.0000, null, null, null, null, 'He said "hi"', 'O''Neil\\x', null, 'Quote " single '' backslash \\ end', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (5, 0, null, null, null, null, null, null, null, null, 'tab	here', 'line1
line2', null, 'CRLF line1
line2
and a lone CRend', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (6, 1, null, null, null, null, null, null, null, null, 'Caf√© Gr√º√üe na√Øve √Ür√∏', 'Êó•Êú¨Ë™û„ÉÜ„Ç≠„Çπ„Éà', null, 'Emoji üòÄ and Êó•Êú¨Ë™û and √©', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (7, 1, 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38, 1.7976931348623157e+308, '2100-01-01 00:00:00', null, null, null, null, null, {FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}, 99999999999999.9999);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (8, 0, 0, -32768, -2147483648, -922337203685477.5808, -1.5, -1e-300, '1800-06-15 06:30:00', null, null, null, null, null, null, -99999999999999.9999);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (9, 0, null, null, null, 0.0001, 0.1, 0.1, '1999-12-31 23:59:59', null, '  padded  ', ' ', null, ' ', null, 0.0001);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (10, 0, null, null, null, -0.0100, 1e-10, 100000000000000000000, '1899-12-30 13:05:00', null, 'time-only value in ColDate', null, null, null, null, -0.5000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (11, 0, null, null, null, 1234.5000, 123456.79, 123456789.12345679, '2000-01-01 00:00:00', 'ˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇ', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', null, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', null, 1234.5000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (12, 0, null, null, null, null, null, null, '1899-12-29 12:00:00', null, 'day before epoch at noon', null, null, null, null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (13, 0, null, null, null, null, null, null, '1900-01-01 00:00:00', null, 'a,b;c|d', '<tag a="v">&amp;</tag>', null, '<xml>&lt;</xml>', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (14, 0, null, null, null, null, null, null, '1970-01-01 00:00:00', null, '00123', '2010-03-04', null, 'NULL', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (15, 0, 128, -1, -1, -1.0000, -0, -0, '9999-12-31 23:59:59', null, '=1+2', '-', null, '	', {0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}, -1.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (16, 0, null, null, 100000, 100000.0000, 100000, 100000, '2024-02-29 12:30:45', null, 'Sm√∂rg√•sbord', 'ŒïŒªŒªŒ∑ŒΩŒπŒ∫Œ¨', null, '–†—É—Å—Å–∫–∏–π —Ç–µ–∫—Å—Ç', null, 100000.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (17, 1, null, null, null, null, null, null, null, null, 'trailing backslash \\', '''', null, '"', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (18, 0, null, null, null, null, null, null, null, null, 'control', 'NUL-free', null, 'line
', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (19, 0, 7, 7, 7, 7.7700, 7.77, 7.77, '2010-03-04 00:00:00', x'00', '7', '7', x'00', '7', {11111111-2222-3333-4444-555555555555}, 7.7700);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (20, 0, null, null, null, null, null, null, '2010-04-03 00:00:00', null, 'last row', 'last', null, null, null, null);
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Customers]') AND type IN ('U'))
	DROP TABLE [Customers]
GO
CREATE TABLE [Customers] (
	[CustomerID] int NOT NULL,
	[Code] varchar(10),
	[Country] varchar(30),
	[Name] varchar(50),
	CONSTRAINT [Customers_pkey] PRIMARY KEY CLUSTERED ([CustomerID]))
GO

CREATE UNIQUE INDEX [.rB] ON [Customers] ([CustomerID] ASC);

CREATE UNIQUE INDEX [.rC] ON [Customers] ([Code] ASC, [Country] ASC);

CREATE UNIQUE INDEX [ux_CodeCountry] ON [Customers] ([Code] ASC, [Country] ASC);

INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
GO
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
GO
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (3, 'AROUT', 'UK', 'Around the Horn');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Empty]') AND type IN ('U'))
	DROP TABLE [Empty]
GO
CREATE TABLE [Empty] (
	[ID] int NOT NULL,
	[Name] varchar(50),
	[Amount] money,
	[When] smalldatetime,
	CONSTRAINT [Empty_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO


IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Items]') AND type IN ('U'))
	DROP TABLE [Items]
GO
CREATE TABLE [Items] (
	[ItemID] int NOT NULL,
	[Name] varchar(50),
	[Code] varchar(10),
	CONSTRAINT [Items_pkey] PRIMARY KEY CLUSTERED ([ItemID]))
GO

CREATE UNIQUE INDEX [ix] ON [Items] ([Code] ASC);

CREATE INDEX [ORDERS] ON [Items] ([Name] ASC);

INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (1, 'Chai', 'C1');
GO
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (2, 'Chang', 'C2');
GO
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (3, 'Aniseed Syrup', 'A1');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[OrderLines]') AND type IN ('U'))
	DROP TABLE [OrderLines]
GO
CREATE TABLE [OrderLines] (
	[OrderID] int NOT NULL,
	[LineNo] smallint NOT NULL,
	[Item] varchar(50),
	[Price] money,
	[Qty] smallint,
	CONSTRAINT [OrderLines_pkey] PRIMARY KEY CLUSTERED ([OrderID], [LineNo]))
GO

CREATE INDEX [ixPriceDesc] ON [OrderLines] ([Price] DESC);

CREATE INDEX [OrdersOrderLines] ON [OrderLines] ([OrderID] ASC);

INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 1, 'Queso', 14.0000, 12);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 2, 'Tofu', 9.8000, 10);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10249, 1, 'Chai', 18.0000, 1);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10250, 1, 'Ikura', 31.0000, 5);
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Orders]') AND type IN ('U'))
	DROP TABLE [Orders]
GO
CREATE TABLE [Orders] (
	[OrderID] int NOT NULL,
	[CustomerID] int,
	[ShipToID] int,
	[CustCode] varchar(10),
	[CustCountry] varchar(30),
	[OrderDate] smalldatetime,
	CONSTRAINT [Orders_pkey] PRIMARY KEY CLUSTERED ([OrderID]))
GO

CREATE UNIQUE INDEX [.rB_1] ON [Orders] ([OrderID] ASC);

CREATE INDEX [CustomersOrders] ON [Orders] ([CustomerID] ASC);

CREATE INDEX [CustomersOrdersCode] ON [Orders] ([CustCode] ASC, [CustCountry] ASC);

CREATE INDEX [ix_1] ON [Orders] ([OrderDate] ASC);

INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00');
GO
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10249, 1, null, 'ANATR', 'Mexico', '2010-03-05 09:00:00');
GO
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10250, 3, 99, null, null, '2010-03-06 00:00:00');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Props]') AND type IN ('U'))
	DROP TABLE [Props]
GO
CREATE TABLE [Props] (
	[ID] int NOT NULL,
	[TextAZLTrue] varchar(50),
	[TextAZLFalse] varchar(50) NOT NULL,
	[ReqLong] int,
	[DblAuto] float,
	[Money2] money,
	[DefText] varchar(50),
	[DescCol] varchar(50),
	[AlignRight] varchar(20),
	[AlignOdd] varchar(20),
	[AlignGeneral] varchar(20),
	[RichMemo] text,
	[RichText] varchar(50),
	[PlainMemo] text,
	[Link] text,
	[UniComp] varchar(50),
	CONSTRAINT [Props_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO
EXEC sp_addextendedproperty 'MS_Description', 'Row number', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'ID'
GO
EXEC sp_addextendedproperty 'MS_Description', 'O''Neil''s "quoted" column', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'DescCol'
GO
EXEC sp_addextendedproperty 'MS_Description', 'Hyperlink column', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'Link'
GO

INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (1, null, 'required text', 7, 0.3333333333333333, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
GO
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (2, null, 'x', 42, null, 0.0000, 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
GO
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', '√ún√Øc√∂d√©');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Quote"Table]') AND type IN ('U'))
	DROP TABLE [Quote"Table]
GO
CREATE TABLE [Quote"Table] (
	[ID] int,
	[Col"Q] varchar(20),
	[O'Col] varchar(20))
GO

INSERT INTO [Quote"Table] ([ID], [Col"Q], [O'Col]) VALUES (1, 'dq " in value', 'sq '' in value');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Space Table]') AND type IN ('U'))
	DROP TABLE [Space Table]
GO
CREATE TABLE [Space Table] (
	[ID] int,
	[Space Col] varchar(20),
	[Order] varchar(20),
	[Date] smalldatetime)
GO

INSERT INTO [Space Table] ([ID], [Space Col], [Order], [Date]) VALUES (1, 'x y', 'reserved words', '2010-03-04 13:05:00');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[table1]') AND type IN ('U'))
	DROP TABLE [table1]
GO
CREATE TABLE [table1] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [table1_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [table1] ([ID], [Label]) VALUES (1, 'row one of table1');
GO
INSERT INTO [table1] ([ID], [Label]) VALUES (2, 'row two of table1');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Table2]') AND type IN ('U'))
	DROP TABLE [Table2]
GO
CREATE TABLE [Table2] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [Table2_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [Table2] ([ID], [Label]) VALUES (1, 'row one of Table2');
GO
INSERT INTO [Table2] ([ID], [Label]) VALUES (2, 'row two of Table2');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[table10]') AND type IN ('U'))
	DROP TABLE [table10]
GO
CREATE TABLE [table10] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [table10_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [table10] ([ID], [Label]) VALUES (1, 'row one of table10');
GO
INSERT INTO [table10] ([ID], [Label]) VALUES (2, 'row two of table10');
GO

IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[√ún√Øcode Ë°®]') AND type IN ('U'))
	DROP TABLE [√ún√Øcode Ë°®]
GO
CREATE TABLE [√ún√Øcode Ë°®] (
	[ID] int,
	[Gr√∂√üe] varchar(20))
GO

INSERT INTO [√ún√Øcode Ë°®] ([ID], [Gr√∂√üe]) VALUES (1, 'gro√ü');
GO

ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrders] FOREIGN KEY ([CustomerID]) REFERENCES [Customers] ([CustomerID]) ON UPDATE CASCADE ON DELETE SET NULL
GO
ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrdersCode] FOREIGN KEY ([CustCode], [CustCountry]) REFERENCES [Customers] ([Code], [Country]) ON UPDATE SET NULL ON DELETE SET NULL
GO
ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrdersShipTo] FOREIGN KEY ([ShipToID]) REFERENCES [Customers] ([CustomerID]) ON UPDATE SET NULL ON DELETE SET NULL
GO
ALTER TABLE [OrderLines] ADD CONSTRAINT [OrdersOrderLines] FOREIGN KEY ([OrderID]) REFERENCES [Orders] ([OrderID]) ON UPDATE CASCADE ON DELETE CASCADE
GO

COMMIT
