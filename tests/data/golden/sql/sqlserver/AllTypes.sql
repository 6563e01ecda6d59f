BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[AllTypes]') AND type IN ('U'))
	DROP TABLE [AllTypes]
GO
CREATE TABLE [AllTypes] (
	[ID] int NOT NULL,
	[ColBoolean] bit,
	[ColByte] char,
	[ColInt] smallint,
	[ColLong] int,
	[ColMoney] money,
	[ColFloat] real,
	[ColDouble] float,
	[ColDate] smalldatetime,
	[ColBinary] text,
	[ColText255] varchar(255),
	[ColText50] varchar(50),
	[ColOle] varbinary,
	[ColMemo] text,
	[ColGuid] Sybase_Replication ID,
	[ColNumeric] numeric,
	CONSTRAINT [AllTypes_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (1, 0, null, null, null, null, null, null, null, null, null, null, null, null, null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (2, 0, 0, 0, 0, 0.0000, 0, 0, '1899-12-30 00:00:00', null, null, null, null, null, {00000000-0000-0000-0000-000000000000}, 0.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (3, 1, 1, 1, 1, 1.5000, 3.14, 2.718281828459045, '2010-03-04 13:05:00', x'000102030405060708090a0b0c0d0e0f', 'Hello', 'World', x'726177206f6c65206279746573', 'Memo text', {6F9619FF-8B86-D011-B42D-00C04FC964FF}, 12345.6789);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (4, 1, 34, 34, 34, 34.0000, null, null, null, null, 'He said "hi"', 'O''Neil\\x', null, 'Quote " single '' backslash \\ end', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (5, 0, null, null, null, null, null, null, null, null, 'tab	here', 'line1
line2', null, 'CRLF line1
line2
and a lone CRend', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (6, 1, null, null, null, null, null, null, null, null, 'Caf√© Gr√º√üe na√Øve √Ür√∏', 'Êó•Êú¨Ë™û„ÉÜ„Ç≠„Çπ„Éà', null, 'Emoji üòÄ and Êó•Êú¨Ë™û and √©', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (7, 1, 255, 32767, 2147483647, 922337203685477.5807, 3.4028235e+38, 1.7976931348623157e+308, '2100-01-01 00:00:00', null, null, null, null, null, {FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}, 99999999999999.9999);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (8, 0, 0, -32768, -2147483648, -922337203685477.5808, -1.5, -1e-300, '1800-06-15 06:30:00', null, null, null, null, null, null, -99999999999999.9999);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (9, 0, null, null, null, 0.0001, 0.1, 0.1, '1999-12-31 23:59:59', null, '  padded  ', ' ', null, ' ', null, 0.0001);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (10, 0, null, null, null, -0.0100, 1e-10, 100000000000000000000, '1899-12-30 13:05:00', null, 'time-only value in ColDate', null, null, null, null, -0.5000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (11, 0, null, null, null, 1234.5000, 123456.79, 123456789.12345679, '2000-01-01 00:00:00', 'ˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇˇ', '012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234', 'ABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJABCDEFGHIJ', null, 'Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur adipiscing elit. Lorem ipsum dolor sit amet, consectetur a', null, 1234.5000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (12, 0, null, null, null, null, null, null, '1899-12-29 12:00:00', null, 'day before epoch at noon', null, null, null, null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (13, 0, null, null, null, null, null, null, '1900-01-01 00:00:00', null, 'a,b;c|d', '<tag a="v">&amp;</tag>', null, '<xml>&lt;</xml>', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (14, 0, null, null, null, null, null, null, '1970-01-01 00:00:00', null, '00123', '2010-03-04', null, 'NULL', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (15, 0, 128, -1, -1, -1.0000, -0, -0, '9999-12-31 23:59:59', null, '=1+2', '-', null, '	', {0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}, -1.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (16, 0, null, null, 100000, 100000.0000, 100000, 100000, '2024-02-29 12:30:45', null, 'Sm√∂rg√•sbord', 'ŒïŒªŒªŒ∑ŒΩŒπŒ∫Œ¨', null, '–†—É—Å—Å–∫–∏–π —Ç–µ–∫—Å—Ç', null, 100000.0000);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (17, 1, null, null, null, null, null, null, null, null, 'trailing backslash \\', '''', null, '"', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (18, 0, null, null, null, null, null, null, null, null, 'control', 'NUL-free', null, 'line
', null, null);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (19, 0, 7, 7, 7, 7.7700, 7.77, 7.77, '2010-03-04 00:00:00', x'00', '7', '7', x'00', '7', {11111111-2222-3333-4444-555555555555}, 7.7700);
GO
INSERT INTO [AllTypes] ([ID], [ColBoolean], [ColByte], [ColInt], [ColLong], [ColMoney], [ColFloat], [ColDouble], [ColDate], [ColBinary], [ColText255], [ColText50], [ColOle], [ColMemo], [ColGuid], [ColNumeric]) VALUES (20, 0, null, null, null, null, null, null, '2010-04-03 00:00:00', null, 'last row', 'last', null, null, null, null);
GO


COMMIT
