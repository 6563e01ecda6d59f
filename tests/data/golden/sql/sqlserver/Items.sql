BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Items]') AND type IN ('U'))
	DROP TABLE [Items]
GO
CREATE TABLE [Items] (
	[ItemID] int NOT NULL,
	[Name] varchar(50),
	[Code] varchar(10),
	CONSTRAINT [Items_pkey] PRIMARY KEY CLUSTERED ([ItemID]))
GO

CREATE UNIQUE INDEX [ix] ON [Items] ([Code] ASC);

CREATE INDEX [ORDERS] ON [Items] ([Name] ASC);

INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (1, 'Chai', 'C1');
GO
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (2, 'Chang', 'C2');
GO
INSERT INTO [Items] ([ItemID], [Name], [Code]) VALUES (3, 'Aniseed Syrup', 'A1');
GO


COMMIT
