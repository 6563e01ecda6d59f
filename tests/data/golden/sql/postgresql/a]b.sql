DROP TABLE IF EXISTS "a]b" CASCADE;
CREATE TABLE "a]b" (
	"ID" INTEGER,
	"Value" VARCHAR(20)
);

INSERT INTO "a]b" ("ID", "Value") VALUES (1, 'bracket table');


