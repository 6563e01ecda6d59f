PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Ünïcode 表";
CREATE TABLE "Ünïcode 表" (
	"ID" INTEGER,
	"Größe" TEXT
);

INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES (1, 'groß');

PRAGMA foreign_keys = true;
