DROP TABLE IF EXISTS "Ünïcode 表" CASCADE;
CREATE TABLE "Ünïcode 表" (
	"ID" INTEGER,
	"Größe" VARCHAR(20)
);

INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES (1, 'groß');


