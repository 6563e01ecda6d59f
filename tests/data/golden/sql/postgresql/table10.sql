DROP TABLE IF EXISTS "table10" CASCADE;
CREATE TABLE "table10" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "table10_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES (1, 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES (2, 'row two of table10');


