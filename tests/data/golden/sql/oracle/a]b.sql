DROP TABLE "a]b" CASCADE CONSTRAINTS;
CREATE TABLE "a]b" (
	"ID" NUMBER(11),
	"Value" VARCHAR2(20)
);

INSERT INTO "a]b" ("ID", "Value") VALUES ('1', 'bracket table');


