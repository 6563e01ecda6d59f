BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Space Table]') AND type IN ('U'))
	DROP TABLE [Space Table]
GO
CREATE TABLE [Space Table] (
	[ID] int,
	[Space Col] varchar(20),
	[Order] varchar(20),
	[Date] smalldatetime)
GO

INSERT INTO [Space Table] ([ID], [Space Col], [Order], [Date]) VALUES (1, 'x y', 'reserved words', '2010-03-04 13:05:00');
GO


COMMIT
