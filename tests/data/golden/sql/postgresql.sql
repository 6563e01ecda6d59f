DROP TABLE IF EXISTS "a]b" CASCADE;
CREATE TABLE "a]b" (
	"ID" INTEGER,
	"Value" VARCHAR(20)
);

INSERT INTO "a]b" ("ID", "Value") VALUES (1, 'bracket table');

DROP TABLE IF EXISTS "AllTypes" CASCADE;
CREATE TABLE "AllTypes" (
	"ID" INTEGER NOT NULL,
	"ColBoolean" BOOL,
	"ColByte" SMALLINT,
	"ColInt" INTEGER,
	"ColLong" INTEGER,
	"ColMoney" NUMERIC(15,2),
	"ColFloat" REAL,
	"ColDouble" DOUBLE PRECISION,
	"ColDate" TIMESTAMP WITHOUT TIME ZONE,
	"ColBinary" BYTEA,
	"ColText255" VARCHAR(255),
	"ColText50" VARCHAR(50),
	"ColOle" BYTEA,
	"ColMemo" TEXT,
	"ColGuid" UUID,
	"ColNumeric" NUMERIC(15,2),
	CONSTRAINT "AllTypes_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (1, '0', null, null, null, null, null, null, null, null, null, null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (2, '0', 0, 0, 0, 0.0000, 0, 0, '1899-12-30 00:00:00', null, null, null, null, null, '00000000-0000-0000-0000-000000000000', 0.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (3, '1', 1, 1, 1, 1.5000, 3.14, 2.718281828459045, '2010-03-04 13:05:00', x'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', x'726177206f6c65206279746573', 'Memo text', '6F9619FF-8B86-D011-B42D-00C04FC964FF', 12345.6789);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (4, '1', 34, 34, 34, 34.0000, null, null, null, null, 'He said "hi"', 'O''Neil\\x', null, 'Quote " single '' backslash \\ end', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (5, '0', null, null, null, null, null, null, null, null, 'tab	here', 'line1
line2', null, 'CRLF line1
line2
and a lone CRend', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (6, '1', null, null, null, null, null, null, null, null, 'Caf√© Gr√º√üe na√Øve √Ür√∏', 'Êó•Êú¨Ë™û„ÉÜ„Ç≠„Çπ„Éà', null, 'Emoji üòÄ and Êó•Êú¨Ë™û and √©', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (7, '1', 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38, 1.7976931348623157e+308, '2100-01-01 00:00:00', null, null, null, null, null, 'FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF', 99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (8, '0', 0, -32768, -2147483648, -922337203685477.5808, -1.5, -1e-300, '1800-06-15 06:30:00', null, null, null, null, null, null, -99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (9, '0', null, null, null, 0.0001, 0.1, 0.1, '1999-12-31 23:59:59', null, '  padded  ', ' ', null, ' ', null, 0.0001);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (10, '0', null, null, null, -0.0100, 1e-10, 100000000000000000000, '1899-12-30 13:05:00', null, 'time-only value in ColDate', null, null, null, null, -0.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (11, '0', null, null, null, 1234.5000, 123456.79, 123456789.12345679, '2000-01-01 00:00:00', 'ˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇ', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', null, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', null, 1234.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (12, '0', null, null, null, null, null, null, '1899-12-29 12:00:00', null, 'day before epoch at noon', null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (13, '0', null, null, null, null, null, null, '1900-01-01 00:00:00', null, 'a,b;c|d', '<tag a="v">&amp;</tag>', null, '<xml>&lt;</xml>', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (14, '0', null, null, null, null, null, null, '1970-01-01 00:00:00', null, '00123', '2010-03-04', null, 'NULL', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (15, '0', 128, -1, -1, -1.0000, -0, -0, '9999-12-31 23:59:59', null, '=1+2', '-', null, '	', '0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9', -1.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (16, '0', null, null, 100000, 100000.0000, 100000, 100000, '2024-02-29 12:30:45', null, 'Sm√∂rg√•sbord', 'ŒïŒªŒªŒ∑ŒΩŒπŒ∫Œ¨', null, '–†—É—Å—Å–∫–∏–π —Ç–µ–∫—Å—Ç', null, 100000.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (17, '1', null, null, null, null, null, null, null, null, 'trailing backslash \\', '''', null, '"', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (18, '0', null, null, null, null, null, null, null, null, 'control', 'NUL-free', null, 'line
', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (19, '0', 7, 7, 7, 7.7700, 7.77, 7.77, '2010-03-04 00:00:00', x'00', '7', '7', x'00', '7', '11111111-2222-3333-4444-555555555555', 7.7700);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (20, '0', null, null, null, null, null, null, '2010-04-03 00:00:00', null, 'last row', 'last', null, null, null, null);

DROP TABLE IF EXISTS "Customers" CASCADE;
CREATE TABLE "Customers" (
	"CustomerID" INTEGER NOT NULL,
	"Code" VARCHAR(10),
	"Country" VARCHAR(30),
	"Name" VARCHAR(50),
	CONSTRAINT "Customers_pkey" PRIMARY KEY ("CustomerID")
);

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (3, 'AROUT', 'UK', 'Around the Horn');

DROP TABLE IF EXISTS "Empty" CASCADE;
CREATE TABLE "Empty" (
	"ID" INTEGER NOT NULL,
	"Name" VARCHAR(50),
	"Amount" NUMERIC(15,2),
	"When" TIMESTAMP WITHOUT TIME ZONE,
	CONSTRAINT "Empty_pkey" PRIMARY KEY ("ID")
);


DROP TABLE IF EXISTS "Items" CASCADE;
CREATE TABLE "Items" (
	"ItemID" INTEGER NOT NULL,
	"Name" VARCHAR(50),
	"Code" VARCHAR(10),
	CONSTRAINT "Items_pkey" PRIMARY KEY ("ItemID")
);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS" ON "Items" ("Name" ASC);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (1, 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (2, 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (3, 'Aniseed Syrup', 'A1');

DROP TABLE IF EXISTS "OrderLines" CASCADE;
CREATE TABLE "OrderLines" (
	"OrderID" INTEGER NOT NULL,
	"LineNo" INTEGER NOT NULL,
	"Item" VARCHAR(50),
	"Price" NUMERIC(15,2),
	"Qty" INTEGER,
	CONSTRAINT "OrderLines_pkey" PRIMARY KEY ("OrderID", "LineNo")
);

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);

CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 1, 'Queso', 14.0000, 12);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 2, 'Tofu', 9.8000, 10);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10249, 1, 'Chai', 18.0000, 1);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10250, 1, 'Ikura', 31.0000, 5);

DROP TABLE IF EXISTS "Orders" CASCADE;
CREATE TABLE "Orders" (
	"OrderID" INTEGER NOT NULL,
	"CustomerID" INTEGER,
	"ShipToID" INTEGER,
	"CustCode" VARCHAR(10),
	"CustCountry" VARCHAR(30),
	"OrderDate" TIMESTAMP WITHOUT TIME ZONE,
	CONSTRAINT "Orders_pkey" PRIMARY KEY ("OrderID")
);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10249, 1, null, 'ANATR', 'Mexico', '2010-03-05 09:00:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10250, 3, 99, null, null, '2010-03-06 00:00:00');

DROP TABLE IF EXISTS "Props" CASCADE;
CREATE TABLE "Props" (
	"ID" INTEGER NOT NULL,
	"TextAZLTrue" VARCHAR(50),
	"TextAZLFalse" VARCHAR(50) NOT NULL,
	"ReqLong" INTEGER,
	"DblAuto" DOUBLE PRECISION,
	"Money2" NUMERIC(15,2),
	"DefText" VARCHAR(50),
	"DescCol" VARCHAR(50),
	"AlignRight" VARCHAR(20),
	"AlignOdd" VARCHAR(20),
	"AlignGeneral" VARCHAR(20),
	"RichMemo" TEXT,
	"RichText" VARCHAR(50),
	"PlainMemo" TEXT,
	"Link" TEXT,
	"UniComp" VARCHAR(50),
	CONSTRAINT "Props_pkey" PRIMARY KEY ("ID")
);
COMMENT ON COLUMN "Props"."ID" IS 'Row number';
COMMENT ON COLUMN "Props"."DescCol" IS 'O''Neil''s "quoted" column';
COMMENT ON COLUMN "Props"."Link" IS 'Hyperlink column';

INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (1, null, 'required text', 7, 0.3333333333333333, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (2, null, 'x', 42, null, 0.0000, 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', '√ún√Øc√∂d√©');

DROP TABLE IF EXISTS "Quote""Table" CASCADE;
CREATE TABLE "Quote""Table" (
	"ID" INTEGER,
	"Col""Q" VARCHAR(20),
	"O'Col" VARCHAR(20)
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES (1, 'dq " in value', 'sq '' in value');

DROP TABLE IF EXISTS "Space Table" CASCADE;
CREATE TABLE "Space Table" (
	"ID" INTEGER,
	"Space Col" VARCHAR(20),
	"Order" VARCHAR(20),
	"Date" TIMESTAMP WITHOUT TIME ZONE
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES (1, 'x y', 'reserved words', '2010-03-04 13:05:00');

DROP TABLE IF EXISTS "table1" CASCADE;
CREATE TABLE "table1" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "table1_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES (1, 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES (2, 'row two of table1');

DROP TABLE IF EXISTS "Table2" CASCADE;
CREATE TABLE "Table2" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "Table2_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES (1, 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES (2, 'row two of Table2');

DROP TABLE IF EXISTS "table10" CASCADE;
CREATE TABLE "table10" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "table10_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES (1, 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES (2, 'row two of table10');

DROP TABLE IF EXISTS "√ún√Øcode Ë°®" CASCADE;
CREATE TABLE "√ún√Øcode Ë°®" (
	"ID" INTEGER,
	"Gr√∂√üe" VARCHAR(20)
);

INSERT INTO "√ún√Øcode Ë°®" ("ID", "Gr√∂√üe") VALUES (1, 'gro√ü');

ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE SET NULL;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE SET NULL ON DELETE SET NULL;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON UPDATE SET NULL ON DELETE SET NULL;
ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON UPDATE CASCADE ON DELETE CASCADE;

