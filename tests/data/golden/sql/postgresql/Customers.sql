DROP TABLE IF EXISTS "Customers" CASCADE;
CREATE TABLE "Customers" (
	"CustomerID" INTEGER NOT NULL,
	"Code" VARCHAR(10),
	"Country" VARCHAR(30),
	"Name" VARCHAR(50),
	CONSTRAINT "Customers_pkey" PRIMARY KEY ("CustomerID")
);

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES (3, 'AROUT', 'UK', 'Around the Horn');


