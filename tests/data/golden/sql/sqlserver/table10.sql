BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[table10]') AND type IN ('U'))
	DROP TABLE [table10]
GO
CREATE TABLE [table10] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [table10_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [table10] ([ID], [Label]) VALUES (1, 'row one of table10');
GO
INSERT INTO [table10] ([ID], [Label]) VALUES (2, 'row two of table10');
GO


COMMIT
