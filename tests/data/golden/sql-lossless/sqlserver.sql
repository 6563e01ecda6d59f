SET NOCOUNT ON;
GO

DROP TABLE IF EXISTS [a]]b];
GO
CREATE TABLE [a]]b] (
	[ID] int,
	[Value] nvarchar(20)
);
GO

BEGIN TRANSACTION;
INSERT INTO [a]]b] ([ID], [Value]) VALUES (1, N'bracket table');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [AllTypes];
GO
CREATE TABLE [AllTypes] (
	[ID] int NOT NULL,
	[ColBoolean] bit,
	[ColByte] tinyint,
	[ColInt] smallint,
	[ColLong] int,
	[ColMoney] decimal(19,4),
	[ColFloat] real,
	[ColDouble] float(53),
	[ColDate] datetime2(0),
	[ColBinary] varbinary(510),
	[ColText255] nvarchar(255),
	[ColText50] nvarchar(50),
	[ColOle] varbinary(max),
	[ColMemo] nvarchar(max),
	[ColGuid] uniqueidentifier,
	[ColNumeric] decimal(18,4),
	PRIMARY KEY ([ID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (1, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (2, 0, 0, 0, 0, 0.0000, 0e0, 0e0, '1899-12-30 00:00:00', NULL, NULL, NULL, NULL, NULL, '00000000-0000-0000-0000-000000000000', 0.0000);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (3, 1, 1, 1, 1, 1.5000, 3.14e0, 2.718281828459045e0, '2010-03-04 13:05:00', 0x000102030405060708090a0b0c0d0e0f, N'Hello', N'World', 0x726177206f6c65206279746573, N'Memo text', '6F9619FF-8B86-D011-B42D-00C04FC964FF', 12345.6789);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (4, 1, 34, 34, 34, 34.0000, NULL, NULL, NULL, NULL, N'He said "hi"', N'O''Neil\x', NULL, N'Quote " single '' backslash \ end', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (5, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'tab	here', N'line1' + NCHAR(10) + N'line2', NULL, N'CRLF line1' + NCHAR(13) + NCHAR(10) + N'line2' + NCHAR(13) + NCHAR(10) + N'and a lone CR' + NCHAR(13) + N'end', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (6, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'Café Grüße naïve Ærø', N'日本語テキスト', NULL, N'Emoji 😀 and 日本語 and é', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (7, 1, 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38, 1.7976931348623157e+308, '2100-01-01 00:00:00', NULL, NULL, NULL, NULL, NULL, 'FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF', 99999999999999.9999);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (8, 0, 0, -32768, -2147483648, -922337203685477.5808, -1.5e0, -1e-300, '1800-06-15 06:30:00', NULL, NULL, NULL, NULL, NULL, NULL, -99999999999999.9999);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (9, 0, NULL, NULL, NULL, 0.0001, 0.1e0, 0.1e0, '1999-12-31 23:59:59', NULL, N'  padded  ', N' ', NULL, N' ', NULL, 0.0001);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (10, 0, NULL, NULL, NULL, -0.0100, 1e-10, 100000000000000000000e0, '1899-12-30 13:05:00', NULL, N'time-only value in ColDate', NULL, NULL, NULL, NULL, -0.5000);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (11, 0, NULL, NULL, NULL, 1234.5000, 123456.79e0, 123456789.12345679e0, '2000-01-01 00:00:00', 0xffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff, N'012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', N'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', NULL, N'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', NULL, 1234.5000);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (12, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1899-12-29 12:00:00', NULL, N'day before epoch at noon', NULL, NULL, NULL, NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (13, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1900-01-01 00:00:00', NULL, N'a,b;c|d', N'<tag a="v">&amp;</tag>', NULL, N'<xml>&lt;</xml>', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (14, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1970-01-01 00:00:00', NULL, N'00123', N'2010-03-04', NULL, N'NULL', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (15, 0, 128, -1, -1, -1.0000, -0e0, -0e0, '9999-12-31 23:59:59', NULL, N'=1+2', N'-', NULL, N'	', '0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9', -1.0000);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (16, 0, NULL, NULL, 100000, 100000.0000, 100000e0, 100000e0, '2024-02-29 12:30:45', NULL, N'Smörgåsbord', N'Ελληνικά', NULL, N'Русский текст', NULL, 100000.0000);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (17, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'trailing backslash \', N'''', NULL, N'"', NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (18, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NCHAR(1) + N'control' + NCHAR(31), N'NUL-free', NULL, N'line' + NCHAR(10), NULL, NULL);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (19, 0, 7, 7, 7, 7.7700, 7.77e0, 7.77e0, '2010-03-04 00:00:00', 0x00, N'7', N'7', 0x00, N'7', '11111111-2222-3333-4444-555555555555', 7.7700);
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (20, 0, NULL, NULL, NULL, NULL, NULL, NULL, '2010-04-03 00:00:00', NULL, N'last row', N'last', NULL, NULL, NULL, NULL);
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [Customers];
GO
CREATE TABLE [Customers] (
	[CustomerID] int NOT NULL,
	[Code] nvarchar(10),
	[Country] nvarchar(30),
	[Name] nvarchar(50),
	PRIMARY KEY ([CustomerID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (1, N'ALFKI', N'Germany', N'Alfreds Futterkiste');
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (2, N'ANATR', N'Mexico', N'Ana Trujillo');
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (3, N'AROUT', N'UK', N'Around the Horn');
COMMIT TRANSACTION;
GO

CREATE UNIQUE INDEX [.rB] ON [Customers] ([CustomerID] ASC);
GO
CREATE UNIQUE INDEX [.rC] ON [Customers] ([Code] ASC, [Country] ASC);
GO
CREATE UNIQUE INDEX [ux_CodeCountry] ON [Customers] ([Code] ASC, [Country] ASC);
GO

DROP TABLE IF EXISTS [Empty];
GO
CREATE TABLE [Empty] (
	[ID] int NOT NULL,
	[Name] nvarchar(50),
	[Amount] decimal(19,4),
	[When] datetime2(0),
	PRIMARY KEY ([ID])
);
GO


DROP TABLE IF EXISTS [Items];
GO
CREATE TABLE [Items] (
	[ItemID] int NOT NULL,
	[Name] nvarchar(50),
	[Code] nvarchar(10),
	PRIMARY KEY ([ItemID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (1, N'Chai', N'C1');
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (2, N'Chang', N'C2');
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (3, N'Aniseed Syrup', N'A1');
COMMIT TRANSACTION;
GO

CREATE UNIQUE INDEX [ix] ON [Items] ([Code] ASC);
GO
CREATE INDEX [ORDERS_1] ON [Items] ([Name] ASC);
GO

DROP TABLE IF EXISTS [OrderLines];
GO
CREATE TABLE [OrderLines] (
	[OrderID] int NOT NULL,
	[LineNo] smallint NOT NULL,
	[Item] nvarchar(50),
	[Price] decimal(19,4),
	[Qty] smallint,
	PRIMARY KEY ([OrderID], [LineNo])
);
GO

BEGIN TRANSACTION;
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 1, N'Queso', 14.0000, 12);
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 2, N'Tofu', 9.8000, 10);
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10249, 1, N'Chai', 18.0000, 1);
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10250, 1, N'Ikura', 31.0000, 5);
COMMIT TRANSACTION;
GO

CREATE INDEX [ixPriceDesc] ON [OrderLines] ([Price] DESC);
GO
CREATE INDEX [OrdersOrderLines] ON [OrderLines] ([OrderID] ASC);
GO

DROP TABLE IF EXISTS [Orders];
GO
CREATE TABLE [Orders] (
	[OrderID] int NOT NULL,
	[CustomerID] int,
	[ShipToID] int,
	[CustCode] nvarchar(10),
	[CustCountry] nvarchar(30),
	[OrderDate] datetime2(0),
	PRIMARY KEY ([OrderID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10248, 1, 2, N'ALFKI', N'Germany', '2010-03-04 13:05:00');
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10249, 1, NULL, N'ANATR', N'Mexico', '2010-03-05 09:00:00');
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10250, 3, 99, NULL, NULL, '2010-03-06 00:00:00');
COMMIT TRANSACTION;
GO

CREATE UNIQUE INDEX [.rB_1] ON [Orders] ([OrderID] ASC);
GO
CREATE INDEX [CustomersOrders] ON [Orders] ([CustomerID] ASC);
GO
CREATE INDEX [CustomersOrdersCode] ON [Orders] ([CustCode] ASC, [CustCountry] ASC);
GO
CREATE INDEX [ix_1] ON [Orders] ([OrderDate] ASC);
GO

DROP TABLE IF EXISTS [Props];
GO
CREATE TABLE [Props] (
	[ID] int NOT NULL,
	[TextAZLTrue] nvarchar(50),
	[TextAZLFalse] nvarchar(50),
	[ReqLong] int,
	[DblAuto] float(53),
	[Money2] decimal(19,4),
	[DefText] nvarchar(50),
	[DescCol] nvarchar(50),
	[AlignRight] nvarchar(20),
	[AlignOdd] nvarchar(20),
	[AlignGeneral] nvarchar(20),
	[RichMemo] nvarchar(max),
	[RichText] nvarchar(50),
	[PlainMemo] nvarchar(max),
	[Link] nvarchar(max),
	[UniComp] nvarchar(50),
	PRIMARY KEY ([ID])
);
GO
EXEC sp_addextendedproperty N'MS_Description', N'Row number', N'SCHEMA', N'dbo', N'TABLE', N'Props', N'COLUMN', N'ID';
GO
EXEC sp_addextendedproperty N'MS_Description', N'O''Neil''s "quoted" column', N'SCHEMA', N'dbo', N'TABLE', N'Props', N'COLUMN', N'DescCol';
GO
EXEC sp_addextendedproperty N'MS_Description', N'Hyperlink column', N'SCHEMA', N'dbo', N'TABLE', N'Props', N'COLUMN', N'Link';
GO

BEGIN TRANSACTION;
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (1, NULL, N'required text', 7, 0.3333333333333333e0, 19.9900, N'given', N'd', N'right', N'odd', N'general', N'<div><b>bold</b> text</div>', N'<b>not rich</b>', N'plain memo', N'Docs#https://example.com/docs#', N'compressed');
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (2, NULL, N'x', 42, NULL, 0.0000, N'n/a', NULL, NULL, NULL, NULL, N'<div>second</div>', NULL, NULL, N'#mailto:someone@example.com#', NULL);
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (3, NULL, N'defaults applied', -5, 2.5e0, 0.0000, N'n/a', NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'Display only#file:///tmp/x.txt#sub#tip', N'Ünïcödé');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [Quote"Table];
GO
CREATE TABLE [Quote"Table] (
	[ID] int,
	[Col"Q] nvarchar(20),
	[O'Col] nvarchar(20)
);
GO

BEGIN TRANSACTION;
INSERT INTO [Quote"Table] ([ID], [Col"Q], [O'Col]) VALUES (1, N'dq " in value', N'sq '' in value');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [Space Table];
GO
CREATE TABLE [Space Table] (
	[ID] int,
	[Space Col] nvarchar(20),
	[Order] nvarchar(20),
	[Date] datetime2(0)
);
GO

BEGIN TRANSACTION;
INSERT INTO [Space Table] ([ID], [Space Col], [Order], [Date]) VALUES (1, N'x y', N'reserved words', '2010-03-04 13:05:00');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [table1];
GO
CREATE TABLE [table1] (
	[ID] int NOT NULL,
	[Label] nvarchar(50),
	PRIMARY KEY ([ID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [table1] ([ID], [Label]) VALUES (1, N'row one of table1');
INSERT INTO [table1] ([ID], [Label]) VALUES (2, N'row two of table1');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [Table2];
GO
CREATE TABLE [Table2] (
	[ID] int NOT NULL,
	[Label] nvarchar(50),
	PRIMARY KEY ([ID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [Table2] ([ID], [Label]) VALUES (1, N'row one of Table2');
INSERT INTO [Table2] ([ID], [Label]) VALUES (2, N'row two of Table2');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [table10];
GO
CREATE TABLE [table10] (
	[ID] int NOT NULL,
	[Label] nvarchar(50),
	PRIMARY KEY ([ID])
);
GO

BEGIN TRANSACTION;
INSERT INTO [table10] ([ID], [Label]) VALUES (1, N'row one of table10');
INSERT INTO [table10] ([ID], [Label]) VALUES (2, N'row two of table10');
COMMIT TRANSACTION;
GO


DROP TABLE IF EXISTS [Ünïcode 表];
GO
CREATE TABLE [Ünïcode 表] (
	[ID] int,
	[Größe] nvarchar(20)
);
GO

BEGIN TRANSACTION;
INSERT INTO [Ünïcode 表] ([ID], [Größe]) VALUES (1, N'groß');
COMMIT TRANSACTION;
GO


ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrders] FOREIGN KEY ([CustomerID]) REFERENCES [Customers] ([CustomerID]) ON UPDATE CASCADE ON DELETE NO ACTION;
GO
ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrdersCode] FOREIGN KEY ([CustCode], [CustCountry]) REFERENCES [Customers] ([Code], [Country]) ON UPDATE NO ACTION ON DELETE NO ACTION;
GO
ALTER TABLE [OrderLines] ADD CONSTRAINT [OrdersOrderLines] FOREIGN KEY ([OrderID]) REFERENCES [Orders] ([OrderID]) ON UPDATE CASCADE ON DELETE CASCADE;
GO

