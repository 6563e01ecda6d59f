DROP TABLE IF EXISTS "Quote""Table" CASCADE;
CREATE TABLE "Quote""Table" (
	"ID" INTEGER,
	"Col""Q" VARCHAR(20),
	"O'Col" VARCHAR(20)
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES (1, 'dq " in value', 'sq '' in value');


