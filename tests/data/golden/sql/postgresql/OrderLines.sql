DROP TABLE IF EXISTS "OrderLines" CASCADE;
CREATE TABLE "OrderLines" (
	"OrderID" INTEGER NOT NULL,
	"LineNo" INTEGER NOT NULL,
	"Item" VARCHAR(50),
	"Price" NUMERIC(15,2),
	"Qty" INTEGER,
	CONSTRAINT "OrderLines_pkey" PRIMARY KEY ("OrderID", "LineNo")
);

CREATE INDEX "ixPriceDesc" ON "OrderLines" ("Price" DESC);

CREATE INDEX "OrdersOrderLines" ON "OrderLines" ("OrderID" ASC);

INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 1, 'Queso', 14.0000, 12);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10248, 2, 'Tofu', 9.8000, 10);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10249, 1, 'Chai', 18.0000, 1);
INSERT INTO "OrderLines" ("OrderID", "LineNo", "Item", "Price", "Qty") VALUES (10250, 1, 'Ikura', 31.0000, 5);

ALTER TABLE "OrderLines" ADD CONSTRAINT "OrdersOrderLines" FOREIGN KEY ("OrderID") REFERENCES "Orders" ("OrderID") ON UPDATE CASCADE ON DELETE CASCADE;

