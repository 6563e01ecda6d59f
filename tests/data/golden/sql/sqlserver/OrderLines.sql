BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[OrderLines]') AND type IN ('U'))
	DROP TABLE [OrderLines]
GO
CREATE TABLE [OrderLines] (
	[OrderID] int NOT NULL,
	[LineNo] smallint NOT NULL,
	[Item] varchar(50),
	[Price] money,
	[Qty] smallint,
	CONSTRAINT [OrderLines_pkey] PRIMARY KEY CLUSTERED ([OrderID], [LineNo]))
GO

CREATE INDEX [ixPriceDesc] ON [OrderLines] ([Price] DESC);

CREATE INDEX [OrdersOrderLines] ON [OrderLines] ([OrderID] ASC);

INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 1, 'Queso', 14.0000, 12);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10248, 2, 'Tofu', 9.8000, 10);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10249, 1, 'Chai', 18.0000, 1);
GO
INSERT INTO [OrderLines] ([OrderID], [LineNo], [Item], [Price], [Qty]) VALUES (10250, 1, 'Ikura', 31.0000, 5);
GO

ALTER TABLE [OrderLines] ADD CONSTRAINT [OrdersOrderLines] FOREIGN KEY ([OrderID]) REFERENCES [Orders] ([OrderID]) ON UPDATE CASCADE ON DELETE CASCADE
GO

COMMIT
