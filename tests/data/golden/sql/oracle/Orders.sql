DROP TABLE "Orders" CASCADE CONSTRAINTS;
CREATE TABLE "Orders" (
	"OrderID" NUMBER(11) NOT NULL,
	"CustomerID" NUMBER(11),
	"ShipToID" NUMBER(11),
	"CustCode" VARCHAR2(10),
	"CustCountry" VARCHAR2(30),
	"OrderDate" TIMESTAMP,
	PRIMARY KEY ("OrderID")
);

CREATE UNIQUE INDEX ".rB_1" ON "Orders" ("OrderID" ASC);

CREATE INDEX "CustomersOrders" ON "Orders" ("CustomerID" ASC);

CREATE INDEX "CustomersOrdersCode" ON "Orders" ("CustCode" ASC, "CustCountry" ASC);

CREATE INDEX "ix_1" ON "Orders" ("OrderDate" ASC);

INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10248', '1', '2', 'ALFKI', 'Germany', TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10249', '1', null, 'ANATR', 'Mexico', TO_DATE('03/05/2010 09:00:00', 'MM/DD/YYYY HH24:MI:SS'));
INSERT INTO "Orders" ("OrderID", "CustomerID", "ShipToID", "CustCode", "CustCountry", "OrderDate") VALUES ('10250', '3', '99', null, null, TO_DATE('03/06/2010 00:00:00', 'MM/DD/YYYY HH24:MI:SS'));

ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrders" FOREIGN KEY ("CustomerID") REFERENCES "Customers" ("CustomerID") ON DELETE SET NULL ENABLE;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersCode" FOREIGN KEY ("CustCode", "CustCountry") REFERENCES "Customers" ("Code", "Country") ON DELETE SET NULL ENABLE;
ALTER TABLE "Orders" ADD CONSTRAINT "CustomersOrdersShipTo" FOREIGN KEY ("ShipToID") REFERENCES "Customers" ("CustomerID") ON DELETE SET NULL ENABLE;

