SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Customers` CASCADE;
CREATE TABLE `Customers` (
	`CustomerID` int NOT NULL,
	`Code` varchar(10),
	`Country` varchar(30),
	`Name` varchar(50),
	PRIMARY KEY (`CustomerID`),
	INDEX `.rB` (`CustomerID` ASC),
	INDEX `.rC` (`Code` ASC, `Country` ASC),
	INDEX `ux_CodeCountry` (`Code` ASC, `Country` ASC)
);

INSERT INTO `Customers` (`CustomerID`, `Code`, `Country`, `Name`) VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
INSERT INTO `Customers` (`CustomerID`, `Code`, `Country`, `Name`) VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
INSERT INTO `Customers` (`CustomerID`, `Code`, `Country`, `Name`) VALUES (3, 'AROUT', 'UK', 'Around the Horn');


SET FOREIGN_KEY_CHECKS = 1;
