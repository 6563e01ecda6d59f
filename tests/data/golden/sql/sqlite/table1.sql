PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "table1";
CREATE TABLE "table1" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES (1, 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES (2, 'row two of table1');

PRAGMA foreign_keys = true;
