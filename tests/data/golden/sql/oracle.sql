DROP TABLE "a]b" CASCADE CONSTRAINTS;
CREATE TABLE "a]b" (
	"ID" NUMBER(11),
	"Value" VARCHAR2(20)
);

INSERT INTO "a]b" ("ID", "Value") VALUES ('1', 'bracket table');

DROP TABLE "AllTypes" CASCADE CONSTRAINTS;
CREATE TABLE "AllTypes" (
	"ID" NUMBER(11) NOT NULL,
	"ColBoolean" NUMBER(1),
	"ColByte" NUMBER(3),
	"ColInt" NUMBER(5),
	"ColLong" NUMBER(11),
	"ColMoney" NUMBER(15,2),
	"ColFloat" FLOAT,
	"ColDouble" FLOAT,
	"ColDate" TIMESTAMP,
	"ColBinary" BINARY,
	"ColText255" VARCHAR2(255),
	"ColText50" VARCHAR2(50),
	"ColOle" BLOB,
	"ColMemo" CLOB,
	"ColGuid" NUMBER,
	"ColNumeric" NUMBER,
	PRIMARY KEY ("ID")
);

INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('1', '0', null, null, null, null, null, null, null, null, null, null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('2', '0', '0', '0', '0', '0.0000', '0', '0', TO_DATE('12/30/1899 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, null, null, null, null, '{00000000-0000-0000-0000-000000000000}', '0.0000');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('3', '1', '1', '1', '1', '1.5000', '3.14', '2.718281828459045', TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'), x'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', x'726177206f6c65206279746573', 'Memo text', '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', '12345.6789');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('4', '1', '34', '34', '34', '34.0000', null, null, null, null, 'He said "hi"', 'O''Neil\\x', null, 'Quote " single '' backslash \\ end', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('5', '0', null, null, null, null, null, null, null, null, 'tab	here', 'line1
line2', null, 'CRLF line1
line2
and a lone CRend', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('6', '1', null, null, null, null, null, null, null, null, 'Caf√© Gr√º√üe na√Øve √Ür√∏', 'Êó•Êú¨Ë™û„ÉÜ„Ç≠„Çπ„Éà', null, 'Emoji üòÄ and Êó•Êú¨Ë™û and √©', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('7', '1', '255', '32767', '2147483647', '922337203685477.5807', '3.4028235e+38', '1.7976931348623157e+308', TO_DATE('01/01/2100 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, null, null, null, null, '{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', '99999999999999.9999');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('8', '0', '0', '-32768', '-2147483648', '-922337203685477.5808', '-1.5', '-1e-300', TO_DATE('06/15/1800 06:30:00', 'MM/DD/YYYY HH24:MI:SS'), null, null, null, null, null, null, '-99999999999999.9999');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('9', '0', null, null, null, '0.0001', '0.1', '0.1', TO_DATE('12/31/1999 23:59:59', 'MM/DD/YYYY HH24:MI:SS'), null, '  padded  ', ' ', null, ' ', null, '0.0001');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('10', '0', null, null, null, '-0.0100', '1e-10', '100000000000000000000', TO_DATE('12/30/1899 13:05:00', 'MM/DD/YYYY HH24:MI:SS'), null, 'time-only value in ColDate', null, null, null, null, '-0.5000');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('11', '0', null, null, null, '1234.5000', '123456.79', '123456789.12345679', TO_DATE('01/01/2000 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), 'ˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇ', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', null, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', null, '1234.5000');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('12', '0', null, null, null, null, null, null, TO_DATE('12/29/1899 12:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, 'day before epoch at noon', null, null, null, null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('13', '0', null, null, null, null, null, null, TO_DATE('01/01/1900 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, 'a,b;c|d', '<tag a="v">&amp;</tag>', null, '<xml>&lt;</xml>', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('14', '0', null, null, null, null, null, null, TO_DATE('01/01/1970 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, '00123', '2010-03-04', null, 'NULL', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('15', '0', '128', '-1', '-1', '-1.0000', '-0', '-0', TO_DATE('12/31/9999 23:59:59', 'MM/DD/YYYY HH24:MI:SS'), null, '=1+2', '-', null, '	', '{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}', '-1.0000');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('16', '0', null, null, '100000', '100000.0000', '100000', '100000', TO_DATE('02/29/2024 12:30:45', 'MM/DD/YYYY HH24:MI:SS'), null, 'Sm√∂rg√•sbord', 'ŒïŒªŒªŒ∑ŒΩŒπŒ∫Œ¨', null, '–†—É—Å—Å–∫–∏–π —Ç–µ–∫—Å—Ç', null, '100000.0000');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('17', '1', null, null, null, null, null, null, null, null, 'trailing backslash \\', '''', null, '"', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('18', '0', null, null, null, null, null, null, null, null, 'control', 'NUL-free', null, 'line
', null, null);
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('19', '0', '7', '7', '7', '7.7700', '7.77', '7.77', TO_DATE('03/04/2010 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), x'00', '7', '7', x'00', '7', '{11111111-2222-3333-4444-555555555555}', '7.7700');
INSERT INTO "AllTypes" ("ID", "ColBoolean", "ColByte", "ColInt", "ColLong", "ColMoney", "ColFloat", "ColDouble", "ColDate", "ColBinary", "ColText255", "ColText50", "ColOle", "ColMemo", "ColGuid", "ColNumeric") VALUES ('20', '0', null, null, null, null, null, null, TO_DATE('04/03/2010 00:00:00', 'MM/DD/YYYY HH24:MI:SS'), null, 'last row', 'last', null, null, null, null);

DROP TABLE "Customers" CASCADE CONSTRAINTS;
CREATE TABLE "Customers" (
	"CustomerID" NUMBER(11) NOT NULL,
	"Code" VARCHAR2(10),
	"Country" VARCHAR2(30),
	"Name" VARCHAR2(50),
	PRIMARY KEY ("CustomerID")
);

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('1', 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('2', 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('3', 'AROUT', 'UK', 'Around the Horn');

DROP TABLE "Empty" CASCADE CONSTRAINTS;
CREATE TABLE "Empty" (
	"ID" NUMBER(11) NOT NULL,
	"Name" VARCHAR2(50),
	"Amount" NUMBER(15,2),
	"When" TIMESTAMP,
	PRIMARY KEY ("ID")
);


DROP TABLE "Items" CASCADE CONSTRAINTS;
CREATE TABLE "Items" (
	"ItemID" NUMBER(11) NOT NULL,
	"Name" VARCHAR2(50),
	"Code" VARCHAR2(10),
	PRIMARY KEY ("ItemID")
);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS" ON "Items" ("Name" ASC);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('1', 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('2', 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('3', 'Aniseed Syrup', 'A1');

DROP TABLE "OrderLines" CASCADE CONSTRAINTS;
CREATE TABLE "OrderLines" (
	"OrderID" NUMBER(11) NOT NULL,
	"LineNo" NUMBER(5) NOT NULL,
	"Item" VARCHAR2(50),
	"Price" NUMBER(15,2),
	"Qty" NUMBER(5),
	PRIMARY KEY ("OrderID", "LineNo")
);

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);

CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10248', '1', 'Queso', '14.0000', '12');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10248', '2', 'Tofu', '9.8000', '10');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10249', '1', 'Chai', '18.0000', '1');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10250', '1', 'Ikura', '31.0000', '5');

DROP TABLE "Orders" CASCADE CONSTRAINTS;
CREATE TABLE "Orders" (
	"OrderID" NUMBER(11) NOT NULL,
	"CustomerID" NUMBER(11),
	"ShipToID" NUMBER(11),
	"CustCode" VARCHAR2(10),
	"CustCountry" VARCHAR2(30),
	"OrderDate" TIMESTAMP,
	PRIMARY KEY ("OrderID")
);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10248', '1', '2', 'ALFKI', 'Germany', TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10249', '1', null, 'ANATR', 'Mexico', TO_DATE('03/05/2010 09:00:00', 'MM/DD/YYYY HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10250', '3', '99', null, null, TO_DATE('03/06/2010 00:00:00', 'MM/DD/YYYY HH24:MI:SS'));

DROP TABLE "Props" CASCADE CONSTRAINTS;
CREATE TABLE "Props" (
	"ID" NUMBER(11) NOT NULL,
	"TextAZLTrue" VARCHAR2(50),
	"TextAZLFalse" VARCHAR2(50) NOT NULL,
	"ReqLong" NUMBER(11),
	"DblAuto" FLOAT,
	"Money2" NUMBER(15,2),
	"DefText" VARCHAR2(50),
	"DescCol" VARCHAR2(50),
	"AlignRight" VARCHAR2(20),
	"AlignOdd" VARCHAR2(20),
	"AlignGeneral" VARCHAR2(20),
	"RichMemo" CLOB,
	"RichText" VARCHAR2(50),
	"PlainMemo" CLOB,
	"Link" CLOB,
	"UniComp" VARCHAR2(50),
	PRIMARY KEY ("ID")
);
COMMENT ON COLUMN "Props"."ID" IS 'Row number';
COMMENT ON COLUMN "Props"."DescCol" IS 'O''Neil''s "quoted" column';
COMMENT ON COLUMN "Props"."Link" IS 'Hyperlink column';

INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES ('1', null, 'required text', '7', '0.3333333333333333', '19.9900', 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES ('2', null, 'x', '42', null, '0.0000', 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES ('3', null, 'defaults applied', '-5', '2.5', '0.0000', 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', '√ún√Øc√∂d√©');

DROP TABLE "Quote""Table" CASCADE CONSTRAINTS;
CREATE TABLE "Quote""Table" (
	"ID" NUMBER(11),
	"Col""Q" VARCHAR2(20),
	"O'Col" VARCHAR2(20)
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES ('1', 'dq " in value', 'sq '' in value');

DROP TABLE "Space Table" CASCADE CONSTRAINTS;
CREATE TABLE "Space Table" (
	"ID" NUMBER(11),
	"Space Col" VARCHAR2(20),
	"Order" VARCHAR2(20),
	"Date" TIMESTAMP
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES ('1', 'x y', 'reserved words', TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'));

DROP TABLE "table1" CASCADE CONSTRAINTS;
CREATE TABLE "table1" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES ('1', 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES ('2', 'row two of table1');

DROP TABLE "Table2" CASCADE CONSTRAINTS;
CREATE TABLE "Table2" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES ('1', 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES ('2', 'row two of Table2');

DROP TABLE "table10" CASCADE CONSTRAINTS;
CREATE TABLE "table10" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES ('1', 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES ('2', 'row two of table10');

DROP TABLE "√ún√Øcode Ë°®" CASCADE CONSTRAINTS;
CREATE TABLE "√ún√Øcode Ë°®" (
	"ID" NUMBER(11),
	"Gr√∂√üe" VARCHAR2(20)
);

INSERT INTO "√ún√Øcode Ë°®" ("ID", "Gr√∂√üe") VALUES ('1', 'gro√ü');

ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON DELETE SET NULL ENABLE;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON DELETE SET NULL ENABLE;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON DELETE SET NULL ENABLE;
ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON DELETE CASCADE ENABLE;

