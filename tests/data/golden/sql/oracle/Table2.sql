DROP TABLE "Table2" CASCADE CONSTRAINTS;
CREATE TABLE "Table2" (
	"ID" NUMBER(11) NOT NULL,
	"Label" VARCHAR2(50),
	PRIMARY KEY ("ID")
);

INSERT INTO "Table2" ("ID", "Label") VALUES ('1', 'row one of Table2');
INSERT INTO "Table2" ("ID", "Label") VALUES ('2', 'row two of Table2');


