SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Table2` CASCADE;
CREATE TABLE `Table2` (
	`ID` int NOT NULL,
	`Label` varchar(50),
	PRIMARY KEY (`ID`)
);

INSERT INTO `Table2` (`ID`, `Label`) VALUES (1, 'row one of Table2');
INSERT INTO `Table2` (`ID`, `Label`) VALUES (2, 'row two of Table2');


SET FOREIGN_KEY_CHECKS = 1;
