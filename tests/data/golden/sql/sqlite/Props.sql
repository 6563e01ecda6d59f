PRAGMA foreign_keys = false;

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
INSERT INTO "Props" ("ID", "TextAZLTrue", "TextAZLFalse", "ReqLong", "DblAuto", "Money2", "DefText", "DescCol", "AlignRight", "AlignOdd", "AlignGeneral", "RichMemo", "RichText", "PlainMemo", "Link", "UniComp") VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');

PRAGMA foreign_keys = true;
