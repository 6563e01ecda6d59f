PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Table2";
CREATE TABLE "Table2" (
	"ID" INTEGER NOT NULL,
	"Label" TEXT,
	PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES (1, 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES (2, 'row two of Table2');

PRAGMA foreign_keys = true;
