DROP TABLE IF EXISTS "table1" CASCADE;
CREATE TABLE "table1" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "table1_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES (1, 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES (2, 'row two of table1');


