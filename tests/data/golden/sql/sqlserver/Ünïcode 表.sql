BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Ünïcode 表]') AND type IN ('U'))
	DROP TABLE [Ünïcode 表]
GO
CREATE TABLE [Ünïcode 表] (
	[ID] int,
	[Größe] varchar(20))
GO

INSERT INTO [Ünïcode 表] ([ID], [Größe]) VALUES (1, 'groß');
GO


COMMIT
