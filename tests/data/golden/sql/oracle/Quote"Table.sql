DROP TABLE "Quote""Table" CASCADE CONSTRAINTS;
CREATE TABLE "Quote""Table" (
	"ID" NUMBER(11),
	"Col""Q" VARCHAR2(20),
	"O'Col" VARCHAR2(20)
);

INSERT INTO "Quote""Table" ("ID", "Col""Q", "O'Col") VALUES ('1', 'dq " in value', 'sq '' in value');


