BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[a]]b]') AND type IN ('U'))
	DROP TABLE [a]]b]
GO
CREATE TABLE [a]]b] (
	[ID] int,
	[Value] varchar(20))
GO

INSERT INTO [a]]b] ([ID], [Value]) VALUES (1, 'bracket table');
GO


COMMIT
