PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Customers";
CREATE TABLE "Customers" (
	"CustomerID" INTEGER NOT NULL,
	"Code" TEXT,
	"Country" TEXT,
	"Name" TEXT,
	PRIMARY KEY ("CustomerID")
);

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (3, 'AROUT', 'UK', 'Around the Horn');

PRAGMA foreign_keys = true;
