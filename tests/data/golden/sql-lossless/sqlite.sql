PRAGMA foreign_keys = OFF;

DROP TABLE IF EXISTS "a]b";
CREATE TABLE "a]b" (
	"ID" INTEGER,
	"Value" TEXT
);

BEGIN;
INSERT INTO "a]b" ("ID", "Value") VALUES
(1, 'bracket table');
COMMIT;


DROP TABLE IF EXISTS "AllTypes";
CREATE TABLE "AllTypes" (
	"ID" INTEGER NOT NULL,
	"ColBoolean" BOOLEAN,
	"ColByte" INTEGER,
	"ColInt" INTEGER,
	"ColLong" INTEGER,
	"ColMoney" DECIMAL(19,4),
	"ColFloat" REAL,
	"ColDouble" REAL,
	"ColDate" DATETIME,
	"ColBinary" BLOB,
	"ColText255" TEXT,
	"ColText50" TEXT,
	"ColOle" BLOB,
	"ColMemo" TEXT,
	"ColGuid" CHAR(38),
	"ColNumeric" DECIMAL(18,4),
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES
(1, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL),
(2, 0, 0, 0, 0, '0.0000', 0e0, 0e0, '1899-12-30 00:00:00', NULL, NULL, NULL, NULL, NULL, '{00000000-0000-0000-0000-000000000000}', '0.0000'),
(3, 1, 1, 1, 1, '1.5000', 3.14e0, (6121026514868073.0 / 2251799813685248.0), '2010-03-04 13:05:00', X'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', X'726177206f6c65206279746573', 'Memo text', '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', '12345.6789'),
(4, 1, 34, 34, 34, '34.0000', NULL, NULL, NULL, NULL, 'He said "hi"', 'O''Neil\x', NULL, 'Quote " single '' backslash \ end', NULL, NULL),
(5, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'tab	here', 'line1
line2', NULL, CAST(X'43524c46206c696e65310d0a6c696e65320d0a616e642061206c6f6e652043520d656e64' AS TEXT), NULL, NULL),
(6, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Café Grüße naïve Ærø', '日本語テキスト', NULL, 'Emoji 😀 and 日本語 and é', NULL, NULL),
(7, 1, 255, 32767, 2147483647, '922337203685477.5807', 3.4028235e+38, (9007199254740991.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 4611686018427387904.0 * 2199023255552.0), '2100-01-01 00:00:00', NULL, NULL, NULL, NULL, NULL, '{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', '99999999999999.9999'),
(8, 0, 0, -32768, -2147483648, '-922337203685477.5808', -1.5e0, -1e-300, '1800-06-15 06:30:00', NULL, NULL, NULL, NULL, NULL, NULL, '-99999999999999.9999'),
(9, 0, NULL, NULL, NULL, '0.0001', 0.1e0, 0.1e0, '1999-12-31 23:59:59', NULL, '  padded  ', ' ', NULL, ' ', NULL, '0.0001'),
(10, 0, NULL, NULL, NULL, '-0.0100', 1e-10, 100000000000000000000e0, '1899-12-30 13:05:00', NULL, 'time-only value in ColDate', NULL, NULL, NULL, NULL, '-0.5000'),
(11, 0, NULL, NULL, NULL, '1234.5000', 123456.79e0, (8285044871162741.0 / 67108864.0), '2000-01-01 00:00:00', X'ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', NULL, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', NULL, '1234.5000'),
(12, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1899-12-29 12:00:00', NULL, 'day before epoch at noon', NULL, NULL, NULL, NULL, NULL),
(13, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1900-01-01 00:00:00', NULL, 'a,b;c|d', '<tag a="v">&amp;</tag>', NULL, '<xml>&lt;</xml>', NULL, NULL),
(14, 0, NULL, NULL, NULL, NULL, NULL, NULL, '1970-01-01 00:00:00', NULL, '00123', '2010-03-04', NULL, 'NULL', NULL, NULL),
(15, 0, 128, -1, -1, '-1.0000', -0e0, -0e0, '9999-12-31 23:59:59', NULL, '=1+2', '-', NULL, '	', '{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}', '-1.0000'),
(16, 0, NULL, NULL, 100000, '100000.0000', 100000e0, 100000e0, '2024-02-29 12:30:45', NULL, 'Smörgåsbord', 'Ελληνικά', NULL, 'Русский текст', NULL, '100000.0000'),
(17, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'trailing backslash \', '''', NULL, '"', NULL, NULL),
(18, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'control', 'NUL-free', NULL, 'line
', NULL, NULL),
(19, 0, 7, 7, 7, '7.7700', 7.77e0, 7.77e0, '2010-03-04 00:00:00', X'00', '7', '7', X'00', '7', '{11111111-2222-3333-4444-555555555555}', '7.7700'),
(20, 0, NULL, NULL, NULL, NULL, NULL, NULL, '2010-04-03 00:00:00', NULL, 'last row', 'last', NULL, NULL, NULL, NULL);
COMMIT;


DROP TABLE IF EXISTS "Customers";
CREATE TABLE "Customers" (
	"CustomerID" INTEGER NOT NULL,
	"Code" TEXT,
	"Country" TEXT,
	"Name" TEXT,
	PRIMARY KEY ("CustomerID")
);

BEGIN;
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES
(1, 'ALFKI', 'Germany', 'Alfreds Futterkiste'),
(2, 'ANATR', 'Mexico', 'Ana Trujillo'),
(3, 'AROUT', 'UK', 'Around the Horn');
COMMIT;

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);
CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);
CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

DROP TABLE IF EXISTS "Empty";
CREATE TABLE "Empty" (
	"ID" INTEGER NOT NULL,
	"Name" TEXT,
	"Amount" DECIMAL(19,4),
	"When" DATETIME,
	PRIMARY KEY ("ID")
);


DROP TABLE IF EXISTS "Items";
CREATE TABLE "Items" (
	"ItemID" INTEGER NOT NULL,
	"Name" TEXT,
	"Code" TEXT,
	PRIMARY KEY ("ItemID")
);

BEGIN;
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES
(1, 'Chai', 'C1'),
(2, 'Chang', 'C2'),
(3, 'Aniseed Syrup', 'A1');
COMMIT;

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);
CREATE INDEX "ORDERS_1" ON "Items" ("Name" ASC);

DROP TABLE IF EXISTS "OrderLines";
CREATE TABLE "OrderLines" (
	"OrderID" INTEGER NOT NULL,
	"LineNo" INTEGER NOT NULL,
	"Item" TEXT,
	"Price" DECIMAL(19,4),
	"Qty" INTEGER,
	PRIMARY KEY ("OrderID", "LineNo"),
	CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON UPDATE CASCADE ON DELETE CASCADE
);

BEGIN;
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES
(10248, 1, 'Queso', '14.0000', 12),
(10248, 2, 'Tofu', '9.8000', 10),
(10249, 1, 'Chai', '18.0000', 1),
(10250, 1, 'Ikura', '31.0000', 5);
COMMIT;

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);
CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

DROP TABLE IF EXISTS "Orders";
CREATE TABLE "Orders" (
	"OrderID" INTEGER NOT NULL,
	"CustomerID" INTEGER,
	"ShipToID" INTEGER,
	"CustCode" TEXT,
	"CustCountry" TEXT,
	"OrderDate" DATETIME,
	PRIMARY KEY ("OrderID"),
	CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE NO ACTION,
	CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE NO ACTION ON DELETE NO ACTION
);

BEGIN;
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES
(10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00'),
(10249, 1, NULL, 'ANATR', 'Mexico', '2010-03-05 09:00:00'),
(10250, 3, 99, NULL, NULL, '2010-03-06 00:00:00');
COMMIT;

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);
CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);
CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);
CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

DROP TABLE IF EXISTS "Props";
CREATE TABLE "Props" (
	"ID" INTEGER NOT NULL,
	"TextAZLTrue" TEXT,
	"TextAZLFalse" TEXT,
	"ReqLong" INTEGER,
	"DblAuto" REAL,
	"Money2" DECIMAL(19,4),
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

BEGIN;
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES
(1, NULL, 'required text', 7, (6004799503160661.0 / 18014398509481984.0), '19.9900', 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed'),
(2, NULL, 'x', 42, NULL, '0.0000', 'n/a', NULL, NULL, NULL, NULL, '<div>second</div>', NULL, NULL, '#mailto:someone@example.com#', NULL),
(3, NULL, 'defaults applied', -5, 2.5e0, '0.0000', 'n/a', NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');
COMMIT;


DROP TABLE IF EXISTS "Quote""Table";
CREATE TABLE "Quote""Table" (
	"ID" INTEGER,
	"Col""Q" TEXT,
	"O'Col" TEXT
);

BEGIN;
INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES
(1, 'dq " in value', 'sq '' in value');
COMMIT;


DROP TABLE IF EXISTS "Space Table";
CREATE TABLE "Space Table" (
	"ID" INTEGER,
	"Space Col" TEXT,
	"Order" TEXT,
	"Date" DATETIME
);

BEGIN;
INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES
(1, 'x y', 'reserved words', '2010-03-04 13:05:00');
COMMIT;


DROP TABLE IF EXISTS "table1";
CREATE TABLE "table1" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "table1" ("ID", "Label") VALUES
(1, 'row one of table1'),
(2, 'row two of table1');
COMMIT;


DROP TABLE IF EXISTS "Table2";
CREATE TABLE "Table2" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "Table2" ("ID", "Label") VALUES
(1, 'row one of Table2'),
(2, 'row two of Table2');
COMMIT;


DROP TABLE IF EXISTS "table10";
CREATE TABLE "table10" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "table10" ("ID", "Label") VALUES
(1, 'row one of table10'),
(2, 'row two of table10');
COMMIT;


DROP TABLE IF EXISTS "Ünïcode 表";
CREATE TABLE "Ünïcode 表" (
	"ID" INTEGER,
	"Größe" TEXT
);

BEGIN;
INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES
(1, 'groß');
COMMIT;


PRAGMA foreign_keys = ON;
