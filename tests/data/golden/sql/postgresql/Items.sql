DROP TABLE IF EXISTS "Items" CASCADE;
CREATE TABLE "Items" (
	"ItemID" INTEGER NOT NULL,
	"Name" VARCHAR(50),
	"Code" VARCHAR(10),
	CONSTRAINT "Items_pkey" PRIMARY KEY ("ItemID")
);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS" ON "Items" ("Name" ASC);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (1, 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (2, 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES (3, 'Aniseed Syrup', 'A1');


