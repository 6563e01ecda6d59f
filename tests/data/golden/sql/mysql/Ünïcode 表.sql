SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Ünïcode 表` CASCADE;
CREATE TABLE `Ünïcode 表` (
	`ID` int,
	`Größe` varchar(20)
);

INSERT INTO `Ünïcode 表` (`ID`, `Größe`) VALUES (1, 'groß');


SET FOREIGN_KEY_CHECKS = 1;
