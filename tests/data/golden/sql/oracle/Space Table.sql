DROP TABLE "Space Table" CASCADE CONSTRAINTS;
CREATE TABLE "Space Table" (
	"ID" NUMBER(11),
	"Space Col" VARCHAR2(20),
	"Order" VARCHAR2(20),
	"Date" TIMESTAMP
);

INSERT INTO "Space Table" ("ID", "Space Col", "Order", "Date") VALUES ('1', 'x y', 'reserved words', TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'));


