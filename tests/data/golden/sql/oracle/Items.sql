DROP TABLE "Items" CASCADE CONSTRAINTS;
CREATE TABLE "Items" (
	"ItemID" NUMBER(11) NOT NULL,
	"Name" VARCHAR2(50),
	"Code" VARCHAR2(10),
	PRIMARY KEY ("ItemID")
);

CREATE UNIQUE INDEX "ix" ON "Items" ("Code" ASC);

CREATE INDEX "ORDERS" ON "Items" ("Name" ASC);

INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('1', 'Chai', 'C1');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('2', 'Chang', 'C2');
INSERT INTO "Items" ("ItemID", "Name", "Code") VALUES ('3', 'Aniseed Syrup', 'A1');


