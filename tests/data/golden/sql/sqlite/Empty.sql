PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Empty";
CREATE TABLE "Empty" (
	"ID" INTEGER NOT NULL,
	"Name" TEXT,
	"Amount" REAL,
	"When" TEXT,
	PRIMARY KEY ("ID")
);


PRAGMA foreign_keys = true;
