SET NAMES utf8mb4;
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `a]b`;
CREATE TABLE `a]b` (
	`ID` INT,
	`Value` VARCHAR(20)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `a]b` (`ID`, `Value`) VALUES
(1, 'bracket table');
COMMIT;


DROP TABLE IF EXISTS `AllTypes`;
CREATE TABLE `AllTypes` (
	`ID` INT NOT NULL,
	`ColBoolean` BOOLEAN,
	`ColByte` TINYINT UNSIGNED,
	`ColInt` SMALLINT,
	`ColLong` INT,
	`ColMoney` DECIMAL(19,4),
	`ColFloat` FLOAT,
	`ColDouble` DOUBLE,
	`ColDate` DATETIME,
	`ColBinary` VARBINARY(510),
	`ColText255` VARCHAR(255),
	`ColText50` VARCHAR(50),
	`ColOle` LONGBLOB,
	`ColMemo` LONGTEXT,
	`ColGuid` CHAR(38),
	`ColNumeric` DECIMAL(18,4),
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `AllTypes` (`ID`, `ColBoolean`, `ColByte`, `ColInt`, `ColLong`, `ColMoney`, `ColFloat`, `ColDouble`, `ColDate`, `ColBinary`, `ColText255`, `ColText50`, `ColOle`, `ColMemo`, `ColGuid`, `ColNumeric`) VALUES
(1, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL),
(2, FALSE, 0, 0, 0, 0.0000, 0e0, 0e0, '1899-12-30 00:00:00', NULL, NULL, NULL, NULL, NULL, '{00000000-0000-0000-0000-000000000000}', 0.0000),
(3, TRUE, 1, 1, 1, 1.5000, 3.140000104904175e0, 2.718281828459045e0, '2010-03-04 13:05:00', X'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', X'726177206f6c65206279746573', 'Memo text', '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', 12345.6789),
(4, TRUE, 34, 34, 34, 34.0000, NULL, NULL, NULL, NULL, 'He said "hi"', 'O''Neil\\x', NULL, 'Quote " single '' backslash \\ end', NULL, NULL),
(5, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'tab	here', 'line1\nline2', NULL, 'CRLF line1\r\nline2\r\nand a lone CR\rend', NULL, NULL),
(6, TRUE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Café Grüße naïve Ærø', '日本語テキスト', NULL, 'Emoji 😀 and 日本語 and é', NULL, NULL),
(7, TRUE, 255, 32767, 2147483647, 922337203685477.5807, 3.4028234663852886e+38, 1.7976931348623157e+308, '2100-01-01 00:00:00', NULL, NULL, NULL, NULL, NULL, '{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}', 99999999999999.9999),
(8, FALSE, 0, -32768, -2147483648, -922337203685477.5808, -1.5e0, -1e-300, '1800-06-15 06:30:00', NULL, NULL, NULL, NULL, NULL, NULL, -99999999999999.9999),
(9, FALSE, NULL, NULL, NULL, 0.0001, 0.10000000149011612e0, 0.1e0, '1999-12-31 23:59:59', NULL, '  padded  ', ' ', NULL, ' ', NULL, 0.0001),
(10, FALSE, NULL, NULL, NULL, -0.0100, 1.000000013351432e-10, 100000000000000000000e0, '1899-12-30 13:05:00', NULL, 'time-only value in ColDate', NULL, NULL, NULL, NULL, -0.5000),
(11, FALSE, NULL, NULL, NULL, 1234.5000, 123456.7890625e0, 123456789.12345679e0, '2000-01-01 00:00:00', X'ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', NULL, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', NULL, 1234.5000),
(12, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1899-12-29 12:00:00', NULL, 'day before epoch at noon', NULL, NULL, NULL, NULL, NULL),
(13, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1900-01-01 00:00:00', NULL, 'a,b;c|d', '<tag a="v">&amp;</tag>', NULL, '<xml>&lt;</xml>', NULL, NULL),
(14, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '1970-01-01 00:00:00', NULL, '00123', '2010-03-04', NULL, 'NULL', NULL, NULL),
(15, FALSE, 128, -1, -1, -1.0000, -0e0, -0e0, '9999-12-31 23:59:59', NULL, '=1+2', '-', NULL, '	', '{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}', -1.0000),
(16, FALSE, NULL, NULL, 100000, 100000.0000, 1e+05, 100000e0, '2024-02-29 12:30:45', NULL, 'Smörgåsbord', 'Ελληνικά', NULL, 'Русский текст', NULL, 100000.0000),
(17, TRUE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'trailing backslash \\', '''', NULL, '"', NULL, NULL),
(18, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'control', 'NUL-free', NULL, 'line\n', NULL, NULL),
(19, FALSE, 7, 7, 7, 7.7700, 7.769999980926514e0, 7.77e0, '2010-03-04 00:00:00', X'00', '7', '7', X'00', '7', '{11111111-2222-3333-4444-555555555555}', 7.7700),
(20, FALSE, NULL, NULL, NULL, NULL, NULL, NULL, '2010-04-03 00:00:00', NULL, 'last row', 'last', NULL, NULL, NULL, NULL);
COMMIT;


DROP TABLE IF EXISTS `Customers`;
CREATE TABLE `Customers` (
	`CustomerID` INT NOT NULL,
	`Code` VARCHAR(10),
	`Country` VARCHAR(30),
	`Name` VARCHAR(50),
	PRIMARY KEY (`CustomerID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Customers` (`CustomerID`, `Code`, `Country`, `Name`) VALUES
(1, 'ALFKI', 'Germany', 'Alfreds Futterkiste'),
(2, 'ANATR', 'Mexico', 'Ana Trujillo'),
(3, 'AROUT', 'UK', 'Around the Horn');
COMMIT;

CREATE UNIQUE INDEX `.rB` ON `Customers` (`CustomerID` ASC);
CREATE UNIQUE INDEX `.rC` ON `Customers` (`Code` ASC, `Country` ASC);
CREATE UNIQUE INDEX `ux_CodeCountry` ON `Customers` (`Code` ASC, `Country` ASC);

DROP TABLE IF EXISTS `Empty`;
CREATE TABLE `Empty` (
	`ID` INT NOT NULL,
	`Name` VARCHAR(50),
	`Amount` DECIMAL(19,4),
	`When` DATETIME,
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;


DROP TABLE IF EXISTS `Items`;
CREATE TABLE `Items` (
	`ItemID` INT NOT NULL,
	`Name` VARCHAR(50),
	`Code` VARCHAR(10),
	PRIMARY KEY (`ItemID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Items` (`ItemID`, `Name`, `Code`) VALUES
(1, 'Chai', 'C1'),
(2, 'Chang', 'C2'),
(3, 'Aniseed Syrup', 'A1');
COMMIT;

CREATE UNIQUE INDEX `ix` ON `Items` (`Code` ASC);
CREATE INDEX `ORDERS_1` ON `Items` (`Name` ASC);

DROP TABLE IF EXISTS `OrderLines`;
CREATE TABLE `OrderLines` (
	`OrderID` INT NOT NULL,
	`LineNo` SMALLINT NOT NULL,
	`Item` VARCHAR(50),
	`Price` DECIMAL(19,4),
	`Qty` SMALLINT,
	PRIMARY KEY (`OrderID`, `LineNo`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `OrderLines` (`OrderID`, `LineNo`, `Item`, `Price`, `Qty`) VALUES
(10248, 1, 'Queso', 14.0000, 12),
(10248, 2, 'Tofu', 9.8000, 10),
(10249, 1, 'Chai', 18.0000, 1),
(10250, 1, 'Ikura', 31.0000, 5);
COMMIT;

CREATE INDEX `ixPriceDesc` ON `OrderLines` (`Price` DESC);
CREATE INDEX `OrdersOrderLines` ON `OrderLines` (`OrderID` ASC);

DROP TABLE IF EXISTS `Orders`;
CREATE TABLE `Orders` (
	`OrderID` INT NOT NULL,
	`CustomerID` INT,
	`ShipToID` INT,
	`CustCode` VARCHAR(10),
	`CustCountry` VARCHAR(30),
	`OrderDate` DATETIME,
	PRIMARY KEY (`OrderID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Orders` (`OrderID`, `CustomerID`, `ShipToID`, `CustCode`, `CustCountry`, `OrderDate`) VALUES
(10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00'),
(10249, 1, NULL, 'ANATR', 'Mexico', '2010-03-05 09:00:00'),
(10250, 3, 99, NULL, NULL, '2010-03-06 00:00:00');
COMMIT;

CREATE UNIQUE INDEX `.rB_1` ON `Orders` (`OrderID` ASC);
CREATE INDEX `CustomersOrders` ON `Orders` (`CustomerID` ASC);
CREATE INDEX `CustomersOrdersCode` ON `Orders` (`CustCode` ASC, `CustCountry` ASC);
CREATE INDEX `ix_1` ON `Orders` (`OrderDate` ASC);

DROP TABLE IF EXISTS `Props`;
CREATE TABLE `Props` (
	`ID` INT NOT NULL COMMENT 'Row number',
	`TextAZLTrue` VARCHAR(50),
	`TextAZLFalse` VARCHAR(50),
	`ReqLong` INT,
	`DblAuto` DOUBLE,
	`Money2` DECIMAL(19,4),
	`DefText` VARCHAR(50),
	`DescCol` VARCHAR(50) COMMENT 'O''Neil''s "quoted" column',
	`AlignRight` VARCHAR(20),
	`AlignOdd` VARCHAR(20),
	`AlignGeneral` VARCHAR(20),
	`RichMemo` LONGTEXT,
	`RichText` VARCHAR(50),
	`PlainMemo` LONGTEXT,
	`Link` LONGTEXT COMMENT 'Hyperlink column',
	`UniComp` VARCHAR(50),
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Props` (`ID`, `TextAZLTrue`, `TextAZLFalse`, `ReqLong`, `DblAuto`, `Money2`, `DefText`, `DescCol`, `AlignRight`, `AlignOdd`, `AlignGeneral`, `RichMemo`, `RichText`, `PlainMemo`, `Link`, `UniComp`) VALUES
(1, NULL, 'required text', 7, 0.3333333333333333e0, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed'),
(2, NULL, 'x', 42, NULL, 0.0000, 'n/a', NULL, NULL, NULL, NULL, '<div>second</div>', NULL, NULL, '#mailto:someone@example.com#', NULL),
(3, NULL, 'defaults applied', -5, 2.5e0, 0.0000, 'n/a', NULL, NULL, NULL, NULL, NULL, NULL, NULL, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');
COMMIT;


DROP TABLE IF EXISTS `Quote"Table`;
CREATE TABLE `Quote"Table` (
	`ID` INT,
	`Col"Q` VARCHAR(20),
	`O'Col` VARCHAR(20)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Quote"Table` (`ID`, `Col"Q`, `O'Col`) VALUES
(1, 'dq " in value', 'sq '' in value');
COMMIT;


DROP TABLE IF EXISTS `Space Table`;
CREATE TABLE `Space Table` (
	`ID` INT,
	`Space Col` VARCHAR(20),
	`Order` VARCHAR(20),
	`Date` DATETIME
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Space Table` (`ID`, `Space Col`, `Order`, `Date`) VALUES
(1, 'x y', 'reserved words', '2010-03-04 13:05:00');
COMMIT;


DROP TABLE IF EXISTS `table1`;
CREATE TABLE `table1` (
	`ID` INT NOT NULL,
	`Label` VARCHAR(50),
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `table1` (`ID`, `Label`) VALUES
(1, 'row one of table1'),
(2, 'row two of table1');
COMMIT;


DROP TABLE IF EXISTS `Table2`;
CREATE TABLE `Table2` (
	`ID` INT NOT NULL,
	`Label` VARCHAR(50),
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Table2` (`ID`, `Label`) VALUES
(1, 'row one of Table2'),
(2, 'row two of Table2');
COMMIT;


DROP TABLE IF EXISTS `table10`;
CREATE TABLE `table10` (
	`ID` INT NOT NULL,
	`Label` VARCHAR(50),
	PRIMARY KEY (`ID`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `table10` (`ID`, `Label`) VALUES
(1, 'row one of table10'),
(2, 'row two of table10');
COMMIT;


DROP TABLE IF EXISTS `Ünïcode 表`;
CREATE TABLE `Ünïcode 表` (
	`ID` INT,
	`Größe` VARCHAR(20)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin;

START TRANSACTION;
INSERT INTO `Ünïcode 表` (`ID`, `Größe`) VALUES
(1, 'groß');
COMMIT;


ALTER TABLE `Orders` ADD CONSTRAINT `CustomersOrders` FOREIGN KEY (`CustomerID`) REFERENCES `Customers` (`CustomerID`) ON UPDATE CASCADE ON DELETE NO ACTION;
ALTER TABLE `Orders` ADD CONSTRAINT `CustomersOrdersCode` FOREIGN KEY (`CustCode`, `CustCountry`) REFERENCES `Customers` (`Code`, `Country`) ON UPDATE NO ACTION ON DELETE NO ACTION;
ALTER TABLE `OrderLines` ADD CONSTRAINT `OrdersOrderLines` FOREIGN KEY (`OrderID`) REFERENCES `Orders` (`OrderID`) ON UPDATE CASCADE ON DELETE CASCADE;

SET FOREIGN_KEY_CHECKS = 1;
