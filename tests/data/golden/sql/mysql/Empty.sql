SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Empty` CASCADE;
CREATE TABLE `Empty` (
	`ID` int NOT NULL,
	`Name` varchar(50),
	`Amount` float,
	`When` datetime,
	PRIMARY KEY (`ID`)
);



SET FOREIGN_KEY_CHECKS = 1;
