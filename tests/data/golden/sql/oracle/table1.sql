DROP TABLE "table1" CASCADE CONSTRAINTS;
CREATE TABLE "table1" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "table1" ("ID", "Label") VALUES ('1', 'row one of table1');
INSERT INTO "table1" ("ID", "Label") VALUES ('2', 'row two of table1');


