DROP TABLE "Ünïcode 表" CASCADE CONSTRAINTS;
CREATE TABLE "Ünïcode 表" (
	"ID" NUMBER(11),
	"Größe" VARCHAR2(20)
);

INSERT INTO "Ünïcode 表" ("ID", "Größe") VALUES ('1', 'groß');


