PRAGMA foreign_keys = false;

DROP TABLE IF EXISTS "Orders";
CREATE TABLE "Orders" (
	"OrderID" INTEGER NOT NULL,
	"CustomerID" INTEGER,
	"ShipToID" INTEGER,
	"CustCode" TEXT,
	"CustCountry" TEXT,
	"OrderDate" TEXT,
	PRIMARY KEY ("OrderID"),
	CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON UPDATE CASCADE ON DELETE SET NULL,
	CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON UPDATE SET NULL ON DELETE SET NULL,
	CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON UPDATE SET NULL ON DELETE SET NULL
);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10248, 1, 2, 'ALFKI', 'Germany', '03/04/2010 13:05:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10249, 1, null, 'ANATR', 'Mexico', '03/05/2010 09:00:00');
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES (10250, 3, 99, null, null, '03/06/2010 00:00:00');

PRAGMA foreign_keys = true;
