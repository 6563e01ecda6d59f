SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `table1` CASCADE;
CREATE TABLE `table1` (
	`ID` int NOT NULL,
	`Label` varchar(50),
	PRIMARY KEY (`ID`)
);

INSERT INTO `table1` (`ID`, `Label`) VALUES (1, 'row one of table1');
INSERT INTO `table1` (`ID`, `Label`) VALUES (2, 'row two of table1');


SET FOREIGN_KEY_CHECKS = 1;
