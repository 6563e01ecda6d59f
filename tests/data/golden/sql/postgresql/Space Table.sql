DROP TABLE IF EXISTS "Space Table" CASCADE;
CREATE TABLE "Space Table" (
	"ID" INTEGER,
	"Space Col" VARCHAR(20),
	"Order" VARCHAR(20),
	"Date" TIMESTAMP WITHOUT TIME ZONE
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES (1, 'x y', 'reserved words', '2010-03-04 13:05:00');


