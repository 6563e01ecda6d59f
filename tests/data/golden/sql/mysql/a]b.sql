SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `a]b` CASCADE;
CREATE TABLE `a]b` (
	`ID` int,
	`Value` varchar(20)
);

INSERT INTO `a]b` (`ID`, `Value`) VALUES (1, 'bracket table');


SET FOREIGN_KEY_CHECKS = 1;
