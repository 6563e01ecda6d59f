DROP TABLE "table10" CASCADE CONSTRAINTS;
CREATE TABLE "table10" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table10" ("ID", "Label") VALUES ('1', 'row one of table10');
INSERT INTO "table10" ("ID", "Label") VALUES ('2', 'row two of table10');


