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
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES ('3', null, 'defaults applied', '-5', '2.5', '0.0000', 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');


