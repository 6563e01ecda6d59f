BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Empty]') AND type IN ('U'))
	DROP TABLE [Empty]
GO
CREATE TABLE [Empty] (
	[ID] int NOT NULL,
	[Name] varchar(50),
	[Amount] money,
	[When] smalldatetime,
	CONSTRAINT [Empty_pkey] PRIMARY KEY CLUSTERED ([ID]))
GO



COMMIT
