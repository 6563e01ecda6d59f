PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Space Table";
CREATE TABLE "Space Table" (
	"ID" INTEGER,
	"Space Col" TEXT,
	"Order" TEXT,
	"Date" TEXT
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES (1, 'x y', 'reserved words', '03/04/2010 13:05:00');

PRAGMA foreign_keys = true;
