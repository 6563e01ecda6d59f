PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "a]b";
CREATE TABLE "a]b" (
	"ID" INTEGER,
	"Value" TEXT
);

INSERT INTO "a]b" ("ID", "Value") VALUES (1, 'bracket table');

PRAGMA foreign_keys = true;
