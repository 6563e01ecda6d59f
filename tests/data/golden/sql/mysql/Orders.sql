SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Orders` CASCADE;
CREATE TABLE `Orders` (
	`OrderID` int NOT NULL,
	`CustomerID` int,
	`ShipToID` int,
	`CustCode` varchar(10),
	`CustCountry` varchar(30),
	`OrderDate` datetime,
	PRIMARY KEY (`OrderID`),
	INDEX `.rB` (`OrderID` ASC),
	INDEX `CustomersOrders` (`CustomerID` ASC),
	INDEX `CustomersOrdersCode` (`CustCode` ASC, `CustCountry` ASC),
	INDEX `ix` (`OrderDate` ASC)
);

INSERT INTO `Orders` (`OrderID`, `CustomerID`, `ShipToID`, `CustCode`, `CustCountry`, `OrderDate`) VALUES (10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00');
INSERT INTO `Orders` (`OrderID`, `CustomerID`, `ShipToID`, `CustCode`, `CustCountry`, `OrderDate`) VALUES (10249, 1, null, 'ANATR', 'Mexico', '2010-03-05 09:00:00');
INSERT INTO `Orders` (`OrderID`, `CustomerID`, `ShipToID`, `CustCode`, `CustCountry`, `OrderDate`) VALUES (10250, 3, 99, null, null, '2010-03-06 00:00:00');

ALTER TABLE `Orders` ADD CONSTRAINT `CustomersOrders` FOREIGN KEY (`CustomerID`) REFERENCES `Customers` (`CustomerID`) ON UPDATE CASCADE ON DELETE SET NULL;
ALTER TABLE `Orders` ADD CONSTRAINT `CustomersOrdersCode` FOREIGN KEY (`CustCode`, `CustCountry`) REFERENCES `Customers` (`Code`, `Country`) ON UPDATE SET NULL ON DELETE SET NULL;
ALTER TABLE `Orders` ADD CONSTRAINT `CustomersOrdersShipTo` FOREIGN KEY (`ShipToID`) REFERENCES `Customers` (`CustomerID`) ON UPDATE SET NULL ON DELETE SET NULL;

SET FOREIGN_KEY_CHECKS = 1;
