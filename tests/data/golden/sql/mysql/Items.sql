SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Items` CASCADE;
CREATE TABLE `Items` (
	`ItemID` int NOT NULL,
	`Name` varchar(50),
	`Code` varchar(10),
	PRIMARY KEY (`ItemID`),
	INDEX `ix` (`Code` ASC),
	INDEX `ORDERS` (`Name` ASC)
);

INSERT INTO `Items` (`ItemID`, `Name`, `Code`) VALUES (1, 'Chai', 'C1');
INSERT INTO `Items` (`ItemID`, `Name`, `Code`) VALUES (2, 'Chang', 'C2');
INSERT INTO `Items` (`ItemID`, `Name`, `Code`) VALUES (3, 'Aniseed Syrup', 'A1');


SET FOREIGN_KEY_CHECKS = 1;
