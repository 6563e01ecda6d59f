PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "a]b";
CREATE TABLE "a]b" (
	"ID" INTEGER,
	"Value" TEXT
);

INSERT INTO "a]b" ("ID", "Value") VALUES (1, 'bracket table');

DROP TABLE IF EXISTS "AllTypes";
CREATE TABLE "AllTypes" (
	"ID" INTEGER NOT NULL,
	"ColBoolean" INTEGER,
	"ColByte" INTEGER,
	"ColInt" INTEGER,
	"ColLong" INTEGER,
	"ColMoney" REAL,
	"ColFloat" REAL,
	"ColDouble" REAL,
	"ColDate" TEXT,
	"ColBinary" BLOB,
	"ColText255" TEXT,
	"ColText50" TEXT,
	"ColOle" BLOB,
	"ColMemo" TEXT,
	"ColGuid" TEXT,
	"ColNumeric" INTEGER,
	PRIMARY KEY ("ID")
);

INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (1, 0, null, null, null, null, null, null, null, null, null, null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (2, 0, 0, 0, 0, 0.0000, 0, 0, '12/30/1899 00:00:00', null, null, null, null, null, {00000000-0000-0000-0000-000000000000}, 0.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (3, 1, 1, 1, 1, 1.5000, 3.14, 2.718281828459045, '03/04/2010 13:05:00', x'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', x'726177206f6c65206279746573', 'Memo text', {6F9619FF-8B86-D011-B42D-00C04FC964FF}, 12345.6789);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (4, 1, 34, 34, 34, 34.0000, null, null, null, null, 'He said "hi"', 'O''Neil\\x', null, 'Quote " single '' backslash \\ end', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (5, 0, null, null, null, null, null, null, null, null, 'tab	here', 'line1
line2', null, 'CRLF line1
line2
and a lone CRend', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (6, 1, null, null, null, null, null, null, null, null, 'Caf√© Gr√º√üe na√Øve √Ür√∏', 'Êó•Êú¨Ë™û„ÉÜ„Ç≠„Çπ„Éà', null, 'Emoji üòÄ and Êó•Êú¨Ë™û and √©', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (7, 1, 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38, 1.7976931348623157e+308, '01/01/2100 00:00:00', null, null, null, null, null, {FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}, 99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (8, 0, 0, -32768, -2147483648, -922337203685477.5808, -1.5, -1e-300, '06/15/1800 06:30:00', null, null, null, null, null, null, -99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (9, 0, null, null, null, 0.0001, 0.1, 0.1, '12/31/1999 23:59:59', null, '  padded  ', ' ', null, ' ', null, 0.0001);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (10, 0, null, null, null, -0.0100, 1e-10, 100000000000000000000, '12/30/1899 13:05:00', null, 'time-only value in ColDate', null, null, null, null, -0.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (11, 0, null, null, null, 1234.5000, 123456.79, 123456789.12345679, '01/01/2000 00:00:00', 'ˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇ', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', null, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', null, 1234.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (12, 0, null, null, null, null, null, null, '12/29/1899 12:00:00', null, 'day before epoch at noon', null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (13, 0, null, null, null, null, null, null, '01/01/1900 00:00:00', null, 'a,b;c|d', '<tag a="v">&amp;</tag>', null, '<xml>&lt;</xml>', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (14, 0, null, null, null, null, null, null, '01/01/1970 00:00:00', null, '00123', '2010-03-04', null, 'NULL', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (15, 0, 128, -1, -1, -1.0000, -0, -0, '12/31/9999 23:59:59', null, '=1+2', '-', null, '	', {0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}, -1.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (16, 0, null, null, 100000, 100000.0000, 100000, 100000, '02/29/2024 12:30:45', null, 'Sm√∂rg√•sbord', 'ŒïŒªŒªŒ∑ŒΩŒπŒ∫Œ¨', null, '–†—É—Å—Å–∫–∏–π —Ç–µ–∫—Å—Ç', null, 100000.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (17, 1, null, null, null, null, null, null, null, null, 'trailing backslash \\', '''', null, '"', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (18, 0, null, null, null, null, null, null, null, null, 'control', 'NUL-free', null, 'line
', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (19, 0, 7, 7, 7, 7.7700, 7.77, 7.77, '03/04/2010 00:00:00', x'00', '7', '7', x'00', '7', {11111111-2222-3333-4444-555555555555}, 7.7700);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (20, 0, null, null, null, null, null, null, '04/03/2010 00:00:00', null, 'last row', 'last', null, null, null, null);

DROP TABLE IF EXISTS "Customers";
CREATE TABLE "Customers" (
	"CustomerID" INTEGER NOT NULL,
	"Code" TEXT,
	"Country" TEXT,
	"Name" TEXT,
	PRIMARY KEY ("CustomerID")
);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (3, 'AROUT', 'UK', 'Around the Horn');

DROP TABLE IF EXISTS "Empty";
CREATE TABLE "Empty" (
	"ID" INTEGER NOT NULL,
	"Name" TEXT,
	"Amount" REAL,
	"When" TEXT,
	PRIMARY KEY ("ID")
);


DROP TABLE IF EXISTS "Items";
CREATE TABLE "Items" (
	"ItemID" INTEGER NOT NULL,
	"Name" TEXT,
	"Code" TEXT,
	PRIMARY KEY ("ItemID")
);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (1, 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (2, 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (3, 'Aniseed Syrup', 'A1');

DROP TABLE IF EXISTS "OrderLines";
CREATE TABLE "OrderLines" (
	"OrderID" INTEGER NOT NULL,
	"LineNo" INTEGER NOT NULL,
	"Item" TEXT,
	"Price" REAL,
	"Qty" INTEGER,
	PRIMARY KEY ("OrderID", "LineNo"),
	CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON UPDATE CASCADE ON DELETE CASCADE
);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 1, 'Queso', 14.0000, 12);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 2, 'Tofu', 9.8000, 10);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10249, 1, 'Chai', 18.0000, 1);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10250, 1, 'Ikura', 31.0000, 5);

DROP TABLE IF EXISTS "Orders";
CREATE TABLE "Orders" (
	"OrderID" INTEGER NOT NULL,
	"CustomerID" INTEGER,
	"ShipToID" INTEGER,
	"CustCode" TEXT,
	"CustCountry" TEXT,
	"OrderDate" TEXT,
	PRIMARY KEY ("OrderID"),
	CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE SET NULL,
	CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE SET NULL ON DELETE SET NULL,
	CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON UPDATE SET NULL ON DELETE SET NULL
);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10248, 1, 2, 'ALFKI', 'Germany', '03/04/2010 13:05:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10249, 1, null, 'ANATR', 'Mexico', '03/05/2010 09:00:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10250, 3, 99, null, null, '03/06/2010 00:00:00');

DROP TABLE IF EXISTS "Props";
CREATE TABLE "Props" (
	"ID" INTEGER NOT NULL,
	"TextAZLTrue" TEXT,
	"TextAZLFalse" TEXT NOT NULL,
	"ReqLong" INTEGER,
	"DblAuto" REAL,
	"Money2" REAL,
	"DefText" TEXT,
	"DescCol" TEXT,
	"AlignRight" TEXT,
	"AlignOdd" TEXT,
	"AlignGeneral" TEXT,
	"RichMemo" TEXT,
	"RichText" TEXT,
	"PlainMemo" TEXT,
	"Link" TEXT,
	"UniComp" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (1, null, 'required text', 7, 0.3333333333333333, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (2, null, 'x', 42, null, 0.0000, 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', '√ún√Øc√∂d√©');

DROP TABLE IF EXISTS "Quote""Table";
CREATE TABLE "Quote""Table" (
	"ID" INTEGER,
	"Col""Q" TEXT,
	"O'Col" TEXT
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES (1, 'dq " in value', 'sq '' in value');

DROP TABLE IF EXISTS "Space Table";
CREATE TABLE "Space Table" (
	"ID" INTEGER,
	"Space Col" TEXT,
	"Order" TEXT,
	"Date" TEXT
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES (1, 'x y', 'reserved words', '03/04/2010 13:05:00');

DROP TABLE IF EXISTS "table1";
CREATE TABLE "table1" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES (1, 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES (2, 'row two of table1');

DROP TABLE IF EXISTS "Table2";
CREATE TABLE "Table2" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES (1, 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES (2, 'row two of Table2');

DROP TABLE IF EXISTS "table10";
CREATE TABLE "table10" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES (1, 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES (2, 'row two of table10');

DROP TABLE IF EXISTS "√ún√Øcode Ë°®";
CREATE TABLE "√ún√Øcode Ë°®" (
	"ID" INTEGER,
	"Gr√∂√üe" TEXT
);

INSERT INTO "√ún√Øcode Ë°®" ("ID", "Gr√∂√üe") VALUES (1, 'gro√ü');


CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS_1" ON "Items" ("Name" ASC);

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);

CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

PRAGMA foreign_keys = true;
