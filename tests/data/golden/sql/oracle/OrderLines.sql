DROP TABLE "OrderLines" CASCADE CONSTRAINTS;
CREATE TABLE "OrderLines" (
	"OrderID" NUMBER(11) NOT NULL,
	"LineNo" NUMBER(5) NOT NULL,
	"Item" VARCHAR2(50),
	"Price" NUMBER(15,2),
	"Qty" NUMBER(5),
	PRIMARY KEY ("OrderID", "LineNo")
);

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);

CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10248', '1', 'Queso', '14.0000', '12');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10248', '2', 'Tofu', '9.8000', '10');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10249', '1', 'Chai', '18.0000', '1');
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES ('10250', '1', 'Ikura', '31.0000', '5');

ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON DELETE CASCADE ENABLE;

