DROP TABLE IF EXISTS "Orders" CASCADE;
CREATE TABLE "Orders" (
	"OrderID" INTEGER NOT NULL,
	"CustomerID" INTEGER,
	"ShipToID" INTEGER,
	"CustCode" VARCHAR(10),
	"CustCountry" VARCHAR(30),
	"OrderDate" TIMESTAMP WITHOUT TIME ZONE,
	CONSTRAINT "Orders_pkey" PRIMARY KEY ("OrderID")
);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10249, 1, null, 'ANATR', 'Mexico', '2010-03-05 09:00:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10250, 3, 99, null, null, '2010-03-06 00:00:00');

ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE SET NULL;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE SET NULL ON DELETE SET NULL;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON UPDATE SET NULL ON DELETE SET NULL;

