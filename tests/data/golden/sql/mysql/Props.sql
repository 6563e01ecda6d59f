SET NAMES 'UTF8';
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `Props` CASCADE;
CREATE TABLE `Props` (
	`ID` int NOT NULL COMMENT 'Row number',
	`TextAZLTrue` varchar(50),
	`TextAZLFalse` varchar(50) NOT NULL,
	`ReqLong` int,
	`DblAuto` float,
	`Money2` float,
	`DefText` varchar(50),
	`DescCol` varchar(50) COMMENT 'O\'Neil\'s "quoted" column',
	`AlignRight` varchar(20),
	`AlignOdd` varchar(20),
	`AlignGeneral` varchar(20),
	`RichMemo` text(8000),
	`RichText` varchar(50),
	`PlainMemo` text(8000),
	`Link` text(8000) COMMENT 'Hyperlink column',
	`UniComp` varchar(50),
	PRIMARY KEY (`ID`)
);

INSERT INTO `Props` (`ID`, `TextAZLTrue`, `TextAZLFalse`, `ReqLong`, `DblAuto`, `Money2`, `DefText`, `DescCol`, `AlignRight`, `AlignOdd`, `AlignGeneral`, `RichMemo`, `RichText`, `PlainMemo`, `Link`, `UniComp`) VALUES (1, null, 'required text', 7, 0.3333333333333333, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
INSERT INTO `Props` (`ID`, `TextAZLTrue`, `TextAZLFalse`, `ReqLong`, `DblAuto`, `Money2`, `DefText`, `DescCol`, `AlignRight`, `AlignOdd`, `AlignGeneral`, `RichMemo`, `RichText`, `PlainMemo`, `Link`, `UniComp`) VALUES (2, null, 'x', 42, null, 0.0000, 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
INSERT INTO `Props` (`ID`, `TextAZLTrue`, `TextAZLFalse`, `ReqLong`, `DblAuto`, `Money2`, `DefText`, `DescCol`, `AlignRight`, `AlignOdd`, `AlignGeneral`, `RichMemo`, `RichText`, `PlainMemo`, `Link`, `UniComp`) VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');


SET FOREIGN_KEY_CHECKS = 1;
