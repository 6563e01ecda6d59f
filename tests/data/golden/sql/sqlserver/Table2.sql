BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Table2]') AND type IN ('U'))
	DROP TABLE [Table2]
GO
CREATE TABLE [Table2] (
	[ID] int NOT NULL,
	[Label] varchar(50),
	CONSTRAINT [Table2_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO

INSERT INTO [Table2] ([ID], [Label]) VALUES (1, 'row one of Table2');
GO
INSERT INTO [Table2] ([ID], [Label]) VALUES (2, 'row two of Table2');
GO


COMMIT
