SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `table10` CASCADE;
CREATE TABLE `table10` (
	`ID` int NOT NULL,
	`Label` varchar(50),
	PRIMARY KEY (`ID`)
);

INSERT INTO `table10` (`ID`, `Label`) VALUES (1, 'row one of table10');
INSERT INTO `table10` (`ID`, `Label`) VALUES (2, 'row two of table10');


SET FOREIGN_KEY_CHECKS = 1;
