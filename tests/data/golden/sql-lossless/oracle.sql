SET DEFINE OFF

BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "a]b" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "a]b" (
	"ID" NUMBER(10),
	"Value" NVARCHAR2(20)
);

INSERT INTO "a]b" ("ID", "Value") VALUES (1, N'bracket table');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "AllTypes" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "AllTypes" (
	"ID" NUMBER(10) NOT NULL,
	"ColBoolean" NUMBER(1),
	"ColByte" NUMBER(3),
	"ColInt" NUMBER(5),
	"ColLong" NUMBER(10),
	"ColMoney" NUMBER(19,4),
	"ColFloat" BINARY_FLOAT,
	"ColDouble" BINARY_DOUBLE,
	"ColDate" TIMESTAMP(0),
	"ColBinary" RAW(510),
	"ColText255" NVARCHAR2(255),
	"ColText50" NVARCHAR2(50),
	"ColOle" BLOB,
	"ColMemo" NCLOB,
	"ColGuid" CHAR(38),
	"ColNumeric" NUMBER(18,4),
	PRIMARY KEY ("ID")
);

INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (1, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (2, 0, 0, 0, 0, 0.0000, 0f, 0d, TO_TIMESTAMP('1899-12-30 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, NULL, NULL, NULL, NULL, '{00000000-0000-0000-0000-000000000000}', 0.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (3, 1, 1, 1, 1, 1.5000, 3.14f, 2.718281828459045d, TO_TIMESTAMP('2010-03-04 13:05:00', 'YYYY-MM-DD HH24:MI:SS'), HEXTORAW('000102030405060708090a0b0c0d0e0f'), N'Hello', N'World', HEXTORAW('726177206f6c65206279746573'), N'Memo text', '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', 12345.6789);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (4, 1, 34, 34, 34, 34.0000, NULL, NULL, NULL, NULL, N'He said "hi"', N'O''Neil\x', NULL, N'Quote " single '' backslash \ end', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (5, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'tab	here', N'line1' || NCHR(10) || N'line2', NULL, TO_NCLOB(N'CRLF line1') || NCHR(13) || NCHR(10) || N'line2' || NCHR(13) || NCHR(10) || N'and a lone CR' || NCHR(13) || N'end', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (6, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'Café Grüße naïve Ærø', N'日本語テキスト', NULL, N'Emoji 😀 and 日本語 and é', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (7, 1, 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38f, 1.7976931348623157e+308d, TO_TIMESTAMP('2100-01-01 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, NULL, NULL, NULL, NULL, '{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', 99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (8, 0, 0, -32768, -2147483648, -922337203685477.5808, -1.5f, -1e-300d, TO_TIMESTAMP('1800-06-15 06:30:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, NULL, NULL, NULL, NULL, NULL, -99999999999999.9999);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (9, 0, NULL, NULL, NULL, 0.0001, 0.1f, 0.1d, TO_TIMESTAMP('1999-12-31 23:59:59', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'  padded  ', N' ', NULL, N' ', NULL, 0.0001);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (10, 0, NULL, NULL, NULL, -0.0100, 1e-10f, 100000000000000000000d, TO_TIMESTAMP('1899-12-30 13:05:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'time-only value in ColDate', NULL, NULL, NULL, NULL, -0.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (11, 0, NULL, NULL, NULL, 1234.5000, 123456.79f, 123456789.12345679d, TO_TIMESTAMP('2000-01-01 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), HEXTORAW('ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff'), N'012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', N'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', NULL, TO_NCLOB(N'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, con') || N'sectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem' || N' ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consecte'
|| N'tur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsu' || N'm dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', NULL, 1234.5000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (12, 0, NULL, NULL, NULL, NULL, NULL, NULL, TO_TIMESTAMP('1899-12-29 12:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'day before epoch at noon', NULL, NULL, NULL, NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (13, 0, NULL, NULL, NULL, NULL, NULL, NULL, TO_TIMESTAMP('1900-01-01 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'a,b;c|d', N'<tag a="v">&amp;</tag>', NULL, N'<xml>&lt;</xml>', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (14, 0, NULL, NULL, NULL, NULL, NULL, NULL, TO_TIMESTAMP('1970-01-01 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'00123', N'2010-03-04', NULL, N'NULL', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (15, 0, 128, -1, -1, -1.0000, -0f, -0d, TO_TIMESTAMP('9999-12-31 23:59:59', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'=1+2', N'-', NULL, N'	', '{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}', -1.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (16, 0, NULL, NULL, 100000, 100000.0000, 100000f, 100000d, TO_TIMESTAMP('2024-02-29 12:30:45', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'Smörgåsbord', N'Ελληνικά', NULL, N'Русский текст', NULL, 100000.0000);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (17, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'trailing backslash \', N'''', NULL, N'"', NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (18, 0, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NCHR(1) || N'control' || NCHR(31), N'NUL-free', NULL, TO_NCLOB(N'line') || NCHR(10), NULL, NULL);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (19, 0, 7, 7, 7, 7.7700, 7.77f, 7.77d, TO_TIMESTAMP('2010-03-04 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), HEXTORAW('00'), N'7', N'7', HEXTORAW('00'), N'7', '{11111111-2222-3333-4444-555555555555}', 7.7700);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES (20, 0, NULL, NULL, NULL, NULL, NULL, NULL, TO_TIMESTAMP('2010-04-03 00:00:00', 'YYYY-MM-DD HH24:MI:SS'), NULL, N'last row', N'last', NULL, NULL, NULL, NULL);
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Customers" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Customers" (
	"CustomerID" NUMBER(10) NOT NULL,
	"Code" NVARCHAR2(10),
	"Country" NVARCHAR2(30),
	"Name" NVARCHAR2(50),
	PRIMARY KEY ("CustomerID")
);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (1, N'ALFKI', N'Germany', N'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (2, N'ANATR', N'Mexico', N'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (3, N'AROUT', N'UK', N'Around the Horn');
COMMIT;

-- left out: index ".rB" has the columns of an earlier index
CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);
-- left out: index "ux_CodeCountry" has the columns of an earlier index

BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Empty" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Empty" (
	"ID" NUMBER(10) NOT NULL,
	"Name" NVARCHAR2(50),
	"Amount" NUMBER(19,4),
	"When" TIMESTAMP(0),
	PRIMARY KEY ("ID")
);


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Items" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Items" (
	"ItemID" NUMBER(10) NOT NULL,
	"Name" NVARCHAR2(50),
	"Code" NVARCHAR2(10),
	PRIMARY KEY ("ItemID")
);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (1, N'Chai', N'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (2, N'Chang', N'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (3, N'Aniseed Syrup', N'A1');
COMMIT;

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);
CREATE INDEX "ORDERS_1" ON "Items" ("Name" ASC);

BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "OrderLines" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "OrderLines" (
	"OrderID" NUMBER(10) NOT NULL,
	"LineNo" NUMBER(5) NOT NULL,
	"Item" NVARCHAR2(50),
	"Price" NUMBER(19,4),
	"Qty" NUMBER(5),
	PRIMARY KEY ("OrderID", "LineNo")
);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 1, N'Queso', 14.0000, 12);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 2, N'Tofu', 9.8000, 10);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10249, 1, N'Chai', 18.0000, 1);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10250, 1, N'Ikura', 31.0000, 5);
COMMIT;

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);
CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Orders" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Orders" (
	"OrderID" NUMBER(10) NOT NULL,
	"CustomerID" NUMBER(10),
	"ShipToID" NUMBER(10),
	"CustCode" NVARCHAR2(10),
	"CustCountry" NVARCHAR2(30),
	"OrderDate" TIMESTAMP(0),
	PRIMARY KEY ("OrderID")
);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10248, 1, 2, N'ALFKI', N'Germany', TO_TIMESTAMP('2010-03-04 13:05:00', 'YYYY-MM-DD HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10249, 1, NULL, N'ANATR', N'Mexico', TO_TIMESTAMP('2010-03-05 09:00:00', 'YYYY-MM-DD HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10250, 3, 99, NULL, NULL, TO_TIMESTAMP('2010-03-06 00:00:00', 'YYYY-MM-DD HH24:MI:SS'));
COMMIT;

-- left out: index ".rB_1" has the columns of an earlier index
CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);
CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);
CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Props" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Props" (
	"ID" NUMBER(10) NOT NULL,
	"TextAZLTrue" NVARCHAR2(50),
	"TextAZLFalse" NVARCHAR2(50),
	"ReqLong" NUMBER(10),
	"DblAuto" BINARY_DOUBLE,
	"Money2" NUMBER(19,4),
	"DefText" NVARCHAR2(50),
	"DescCol" NVARCHAR2(50),
	"AlignRight" NVARCHAR2(20),
	"AlignOdd" NVARCHAR2(20),
	"AlignGeneral" NVARCHAR2(20),
	"RichMemo" NCLOB,
	"RichText" NVARCHAR2(50),
	"PlainMemo" NCLOB,
	"Link" NCLOB,
	"UniComp" NVARCHAR2(50),
	PRIMARY KEY ("ID")
);
COMMENT ON COLUMN "Props"."ID" IS 'Row number';
COMMENT ON COLUMN "Props"."DescCol" IS 'O''Neil''s "quoted" column';
COMMENT ON COLUMN "Props"."Link" IS 'Hyperlink column';

INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (1, NULL, N'required text', 7, 0.3333333333333333d, 19.9900, N'given', N'd', N'right', N'odd', N'general', N'<div><b>bold</b> text</div>', N'<b>not rich</b>', N'plain memo', N'Docs#https://example.com/docs#', N'compressed');
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (2, NULL, N'x', 42, NULL, 0.0000, N'n/a', NULL, NULL, NULL, NULL, N'<div>second</div>', NULL, NULL, N'#mailto:someone@example.com#', NULL);
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (3, NULL, N'defaults applied', -5, 2.5d, 0.0000, N'n/a', NULL, NULL, NULL, NULL, NULL, NULL, NULL, N'Display only#file:///tmp/x.txt#sub#tip', N'Ünïcödé');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Quote""Table" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Quote""Table" (
	"ID" NUMBER(10),
	"Col""Q" NVARCHAR2(20),
	"O'Col" NVARCHAR2(20)
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES (1, N'dq " in value', N'sq '' in value');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Space Table" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Space Table" (
	"ID" NUMBER(10),
	"Space Col" NVARCHAR2(20),
	"Order" NVARCHAR2(20),
	"Date" TIMESTAMP(0)
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES (1, N'x y', N'reserved words', TO_TIMESTAMP('2010-03-04 13:05:00', 'YYYY-MM-DD HH24:MI:SS'));
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "table1" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "table1" (
	"ID" NUMBER(10) NOT NULL,
	"Label" NVARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES (1, N'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES (2, N'row two of table1');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Table2" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Table2" (
	"ID" NUMBER(10) NOT NULL,
	"Label" NVARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES (1, N'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES (2, N'row two of Table2');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "table10" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "table10" (
	"ID" NUMBER(10) NOT NULL,
	"Label" NVARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES (1, N'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES (2, N'row two of table10');
COMMIT;


BEGIN
  EXECUTE IMMEDIATE 'DROP TABLE "Ünïcode 表" CASCADE CONSTRAINTS';
EXCEPTION
  WHEN OTHERS THEN
    IF SQLCODE != -942 THEN
      RAISE;
    END IF;
END;
/
CREATE TABLE "Ünïcode 表" (
	"ID" NUMBER(10),
	"Größe" NVARCHAR2(20)
);

INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES (1, N'groß');
COMMIT;


ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID");
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country");
ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON DELETE CASCADE;

