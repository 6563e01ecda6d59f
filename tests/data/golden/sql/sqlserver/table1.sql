BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[table1]') AND type IN ('U'))
	DROP TABLE [table1]
GO
CREATE TABLE [table1] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [table1_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [table1] ([ID], [Label]) VALUES (1, 'row one of table1');
GO
INSERT INTO [table1] ([ID], [Label]) VALUES (2, 'row two of table1');
GO


COMMIT
