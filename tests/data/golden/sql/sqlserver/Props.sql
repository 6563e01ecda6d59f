BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Props]') AND type IN ('U'))
	DROP TABLE [Props]
GO
CREATE TABLE [Props] (
	[ID] int NOT NULL,
	[TextAZLTrue] varchar(50),
	[TextAZLFalse] varchar(50) NOT NULL,
	[ReqLong] int,
	[DblAuto] float,
	[Money2] money,
	[DefText] varchar(50),
	[DescCol] varchar(50),
	[AlignRight] varchar(20),
	[AlignOdd] varchar(20),
	[AlignGeneral] varchar(20),
	[RichMemo] text,
	[RichText] varchar(50),
	[PlainMemo] text,
	[Link] text,
	[UniComp] varchar(50),
	CONSTRAINT [Props_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO
EXEC sp_addextendedproperty 'MS_Description', 'Row number', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'ID'
GO
EXEC sp_addextendedproperty 'MS_Description', 'O''Neil''s "quoted" column', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'DescCol'
GO
EXEC sp_addextendedproperty 'MS_Description', 'Hyperlink column', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Props', 'COLUMN', 'Link'
GO

INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (1, null, 'required text', 7, 0.3333333333333333, 19.9900, 'given', 'd', 'right', 'odd', 'general', '<div><b>bold</b> text</div>', '<b>not rich</b>', 'plain memo', 'Docs#https://example.com/docs#', 'compressed');
GO
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (2, null, 'x', 42, null, 0.0000, 'n/a', null, null, null, null, '<div>second</div>', null, null, '#mailto:someone@example.com#', null);
GO
INSERT INTO [Props] ([ID], [TextAZLTrue], [TextAZLFalse], [ReqLong], [DblAuto], [Money2], [DefText], [DescCol], [AlignRight], [AlignOdd], [AlignGeneral], [RichMemo], [RichText], [PlainMemo], [Link], [UniComp]) VALUES (3, null, 'defaults applied', -5, 2.5, 0.0000, 'n/a', null, null, null, null, null, null, null, 'Display only#file:///tmp/x.txt#sub#tip', 'Ünïcödé');
GO


COMMIT
