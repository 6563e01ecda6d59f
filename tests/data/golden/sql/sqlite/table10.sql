PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "table10";
CREATE TABLE "table10" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES (1, 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES (2, 'row two of table10');

PRAGMA foreign_keys = true;
