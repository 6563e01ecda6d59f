PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Items";
CREATE TABLE "Items" (
	"ItemID" INTEGER NOT NULL,
	"Name" TEXT,
	"Code" TEXT,
	PRIMARY KEY ("ItemID")
);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS" ON "Items" ("Name" ASC);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (1, 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (2, 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (3, 'Aniseed Syrup', 'A1');

PRAGMA foreign_keys = true;
