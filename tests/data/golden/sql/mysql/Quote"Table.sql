SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Quote"Table` CASCADE;
CREATE TABLE `Quote"Table` (
	`ID` int,
	`Col"Q` varchar(20),
	`O'Col` varchar(20)
);

INSERT INTO `Quote"Table` (`ID`, `Col"Q`, `O'Col`) VALUES (1, 'dq " in value', 'sq '' in value');


SET FOREIGN_KEY_CHECKS = 1;
