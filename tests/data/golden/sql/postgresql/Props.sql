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
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');


