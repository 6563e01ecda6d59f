PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Quote""Table";
CREATE TABLE "Quote""Table" (
	"ID" INTEGER,
	"Col""Q" TEXT,
	"O'Col" TEXT
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES (1, 'dq " in value', 'sq '' in value');

PRAGMA foreign_keys = true;
