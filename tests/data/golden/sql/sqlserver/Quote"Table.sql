BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Quote"Table]') AND type IN ('U'))
	DROP TABLE [Quote"Table]
GO
CREATE TABLE [Quote"Table] (
	[ID] int,
	[Col"Q] varchar(20),
	[O'Col] varchar(20))
GO

INSERT INTO [Quote"Table] ([ID], [Col"Q], [O'Col]) VALUES (1, 'dq " in value', 'sq '' in value');
GO


COMMIT
