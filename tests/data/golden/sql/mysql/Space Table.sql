SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Space Table` CASCADE;
CREATE TABLE `Space Table` (
	`ID` int,
	`Space Col` varchar(20),
	`Order` varchar(20),
	`Date` datetime
);

INSERT INTO `Space Table` (`ID`, `Space Col`, `Order`, `Date`) VALUES (1, 'x y', 'reserved words', '2010-03-04 13:05:00');


SET FOREIGN_KEY_CHECKS = 1;
