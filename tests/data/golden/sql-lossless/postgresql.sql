SET client_encoding = 'UTF8';
SET standard_conforming_strings = on;

DROP TABLE IF EXISTS "a]b" CASCADE;
CREATE TABLE "a]b" (
	"ID" integer,
	"Value" varchar(20)
);

BEGIN;
INSERT INTO "a]b" ("ID", "Value") VALUES
(1, 'bracket table');
COMMIT;


DROP TABLE IF EXISTS "AllTypes" CASCADE;
CREATE TABLE "AllTypes" (
	"ID" integer NOT NULL,
	"ColBoolean" boolean,
	"ColByte" smallint,
	"ColInt" smallint,
	"ColLong" integer,
	"ColMoney" numeric(19,4),
	"ColFloat" real,
	"ColDouble" double precision,
	"ColDate" timestamp(0),
	"ColBinary" bytea,
	"ColText255" varchar(255),
	"ColText50" varchar(50),
	"ColOle" bytea,
	"ColMemo" text,
	"ColGuid" uuid,
	"ColNumeric" numeric(18,4),
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES
(1, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL),
(2, FALSE, 0, 0, 0, 0.0000, '0', '0', '1899-12-30 00:00:00', NULL, NULL, NULL, NULL, NULL, '{00000000-0000-0000-0000-000000000000}', 0.0000),
(3, TRUE, 1, 1, 1, 1.5000, '3.14', '2.718281828459045', '2010-03-04 13:05:00', '\x000102030405060708090a0b0c0d0e0f', 'Hello', 'World', '\x726177206f6c65206279746573', 'Memo text', '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', 12345.6789),
(4, TRUE, 34, 34, 34, 34.0000, NULL, NULL, NULL, NULL, 'He said "hi"', 'O''Neil\x', NULL, 'Quote " single '' backslash \ end', NULL, NULL),
(5, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'tab	here', 'line1
line2', NULL, 'CRLF line1
line2
and a lone CRend', NULL, NULL),
(6, TRUE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Café Grüße naïve Ærø', '日本語テキスト', NULL, 'Emoji 😀 and 日本語 and é', NULL, NULL),
(7, TRUE, 255, 32767, 2147483647, 922337203685477.5807, '3.4028235e+38', '1.7976931348623157e+308', '2100-01-01 00:00:00', NULL, NULL, NULL, NULL, NULL, '{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', 99999999999999.9999),
(8, FALSE, 0, -32768, -2147483648, -922337203685477.5808, '-1.5', '-1e-300', '1800-06-15 06:30:00', NULL, NULL, NULL, NULL, NULL, NULL, -99999999999999.9999),
(9, FALSE, NULL, NULL, NULL, 0.0001, '0.1', '0.1', '1999-12-31 23:59:59', NULL, '  padded  ', ' ', NULL, ' ', NULL, 0.0001),
(10, FALSE, NULL, NULL, NULL, -0.0100, '1e-10', '100000000000000000000', '1899-12-30 13:05:00', NULL, 'time-only value in ColDate', NULL, NULL, NULL, NULL, -0.5000),
(11, FALSE, NULL, NULL, NULL, 1234.5000, '123456.79', '123456789.12345679', '2000-01-01 00:00:00', '\xffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', NULL, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', NULL, 1234.5000),
(12, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1899-12-29 12:00:00', NULL, 'day before epoch at noon', NULL, NULL, NULL, NULL, NULL),
(13, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1900-01-01 00:00:00', NULL, 'a,b;c|d', '<tag a="v">&amp;</tag>', NULL, '<xml>&lt;</xml>', NULL, NULL),
(14, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1970-01-01 00:00:00', NULL, '00123', '2010-03-04', NULL, 'NULL', NULL, NULL),
(15, FALSE, 128, -1, -1, -1.0000, '-0', '-0', '9999-12-31 23:59:59', NULL, '=1+2', '-', NULL, '	', '{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}', -1.0000),
(16, FALSE, NULL, NULL, 100000, 100000.0000, '100000', '100000', '2024-02-29 12:30:45', NULL, 'Smörgåsbord', 'Ελληνικά', NULL, 'Русский текст', NULL, 100000.0000),
(17, TRUE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'trailing backslash \', '''', NULL, '"', NULL, NULL),
(18, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'control', 'NUL-free', NULL, 'line
', NULL, NULL),
(19, FALSE, 7, 7, 7, 7.7700, '7.77', '7.77', '2010-03-04 00:00:00', '\x00', '7', '7', '\x00', '7', '{11111111-2222-3333-4444-555555555555}', 7.7700),
(20, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '2010-04-03 00:00:00', NULL, 'last row', 'last', NULL, NULL, NULL, NULL);
COMMIT;


DROP TABLE IF EXISTS "Customers" CASCADE;
CREATE TABLE "Customers" (
	"CustomerID" integer NOT NULL,
	"Code" varchar(10),
	"Country" varchar(30),
	"Name" varchar(50),
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

DROP TABLE IF EXISTS "Empty" CASCADE;
CREATE TABLE "Empty" (
	"ID" integer NOT NULL,
	"Name" varchar(50),
	"Amount" numeric(19,4),
	"When" timestamp(0),
	PRIMARY KEY ("ID")
);


DROP TABLE IF EXISTS "Items" CASCADE;
CREATE TABLE "Items" (
	"ItemID" integer NOT NULL,
	"Name" varchar(50),
	"Code" varchar(10),
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

DROP TABLE IF EXISTS "OrderLines" CASCADE;
CREATE TABLE "OrderLines" (
	"OrderID" integer NOT NULL,
	"LineNo" smallint NOT NULL,
	"Item" varchar(50),
	"Price" numeric(19,4),
	"Qty" smallint,
	PRIMARY KEY ("OrderID", "LineNo")
);

BEGIN;
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES
(10248, 1, 'Queso', 14.0000, 12),
(10248, 2, 'Tofu', 9.8000, 10),
(10249, 1, 'Chai', 18.0000, 1),
(10250, 1, 'Ikura', 31.0000, 5);
COMMIT;

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);
CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

DROP TABLE IF EXISTS "Orders" CASCADE;
CREATE TABLE "Orders" (
	"OrderID" integer NOT NULL,
	"CustomerID" integer,
	"ShipToID" integer,
	"CustCode" varchar(10),
	"CustCountry" varchar(30),
	"OrderDate" timestamp(0),
	PRIMARY KEY ("OrderID")
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

DROP TABLE IF EXISTS "Props" CASCADE;
CREATE TABLE "Props" (
	"ID" integer NOT NULL,
	"TextAZLTrue" varchar(50),
	"TextAZLFalse" varchar(50),
	"ReqLong" integer,
	"DblAuto" double precision,
	"Money2" numeric(19,4),
	"DefText" varchar(50),
	"DescCol" varchar(50),
	"AlignRight" varchar(20),
	"AlignOdd" varchar(20),
	"AlignGeneral" varchar(20),
	"RichMemo" text,
	"RichText" varchar(50),
	"PlainMemo" text,
	"Link" text,
	"UniComp" varchar(50),
	PRIMARY KEY ("ID")
);
COMMENT ON COLUMN "Props"."ID" IS 'Row number';
COMMENT ON COLUMN "Props"."DescCol" IS 'O''Neil''s "quoted" column';
COMMENT ON COLUMN "Props"."Link" IS 'Hyperlink column';

BEGIN;
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES
(1, NULL, 'required text', 7, '0.3333333333333333', 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed'),
(2, NULL, 'x', 42, NULL, 0.0000, 'n/a', NULL, NULL, NULL, NULL, '<div>second</div>', NULL, NULL, '#mailto:someone@example.com#', NULL),
(3, NULL, 'defaults applied', -5, '2.5', 0.0000, 'n/a', NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');
COMMIT;


DROP TABLE IF EXISTS "Quote""Table" CASCADE;
CREATE TABLE "Quote""Table" (
	"ID" integer,
	"Col""Q" varchar(20),
	"O'Col" varchar(20)
);

BEGIN;
INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES
(1, 'dq " in value', 'sq '' in value');
COMMIT;


DROP TABLE IF EXISTS "Space Table" CASCADE;
CREATE TABLE "Space Table" (
	"ID" integer,
	"Space Col" varchar(20),
	"Order" varchar(20),
	"Date" timestamp(0)
);

BEGIN;
INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES
(1, 'x y', 'reserved words', '2010-03-04 13:05:00');
COMMIT;


DROP TABLE IF EXISTS "table1" CASCADE;
CREATE TABLE "table1" (
	"ID" integer NOT NULL,
	"Label" varchar(50),
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "table1" ("ID", "Label") VALUES
(1, 'row one of table1'),
(2, 'row two of table1');
COMMIT;


DROP TABLE IF EXISTS "Table2" CASCADE;
CREATE TABLE "Table2" (
	"ID" integer NOT NULL,
	"Label" varchar(50),
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "Table2" ("ID", "Label") VALUES
(1, 'row one of Table2'),
(2, 'row two of Table2');
COMMIT;


DROP TABLE IF EXISTS "table10" CASCADE;
CREATE TABLE "table10" (
	"ID" integer NOT NULL,
	"Label" varchar(50),
	PRIMARY KEY ("ID")
);

BEGIN;
INSERT INTO "table10" ("ID", "Label") VALUES
(1, 'row one of table10'),
(2, 'row two of table10');
COMMIT;


DROP TABLE IF EXISTS "Ünïcode 表" CASCADE;
CREATE TABLE "Ünïcode 表" (
	"ID" integer,
	"Größe" varchar(20)
);

BEGIN;
INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES
(1, 'groß');
COMMIT;


ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE NO ACTION;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE NO ACTION ON DELETE NO ACTION;
ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON UPDATE CASCADE ON DELETE CASCADE;

