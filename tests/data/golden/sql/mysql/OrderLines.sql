SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `OrderLines` CASCADE;
CREATE TABLE `OrderLines` (
	`OrderID` int NOT NULL,
	`LineNo` int NOT NULL,
	`Item` varchar(50),
	`Price` float,
	`Qty` int,
	PRIMARY KEY (`OrderID`, `LineNo`),
	INDEX `ixPriceDesc` (`Price` DESC),
	INDEX `OrdersOrderLines` (`OrderID` ASC)
);

INSERT INTO `OrderLines` (`OrderID`, `LineNo`, `Item`, `Price`, `Qty`) VALUES (10248, 1, 'Queso', 14.0000, 12);
INSERT INTO `OrderLines` (`OrderID`, `LineNo`, `Item`, `Price`, `Qty`) VALUES (10248, 2, 'Tofu', 9.8000, 10);
INSERT INTO `OrderLines` (`OrderID`, `LineNo`, `Item`, `Price`, `Qty`) VALUES (10249, 1, 'Chai', 18.0000, 1);
INSERT INTO `OrderLines` (`OrderID`, `LineNo`, `Item`, `Price`, `Qty`) VALUES (10250, 1, 'Ikura', 31.0000, 5);

ALTER TABLE `OrderLines` ADD CONSTRAINT `OrdersOrderLines` FOREIGN KEY (`OrderID`) REFERENCES `Orders` (`OrderID`) ON UPDATE CASCADE ON DELETE CASCADE;

SET FOREIGN_KEY_CHECKS = 1;
