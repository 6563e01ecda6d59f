DROP TABLE IF EXISTS "Table2" CASCADE;
CREATE TABLE "Table2" (
	"ID" INTEGER NOT NULL,
	"Label" VARCHAR(50),
	CONSTRAINT "Table2_pkey" PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES (1, 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES (2, 'row two of Table2');


