DROP TABLE "Customers" CASCADE CONSTRAINTS;
CREATE TABLE "Customers" (
	"CustomerID" NUMBER(11) NOT NULL,
	"Code" VARCHAR2(10),
	"Country" VARCHAR2(30),
	"Name" VARCHAR2(50),
	PRIMARY KEY ("CustomerID")
);

CREATE UNIQUE INDEX ".rB" ON "Customers" ("CustomerID" ASC);

CREATE UNIQUE INDEX ".rC" ON "Customers" ("Code" ASC, "Country" ASC);

CREATE UNIQUE INDEX "ux_CodeCountry" ON "Customers" ("Code" ASC, "Country" ASC);

INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('1', 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('2', 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO "Customers" ("CustomerID", "Code", "Country", "Name") VALUES ('3', 'AROUT', 'UK', 'Around the Horn');


