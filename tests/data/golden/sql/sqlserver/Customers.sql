BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Customers]') AND type IN ('U'))
	DROP TABLE [Customers]
GO
CREATE TABLE [Customers] (
	[CustomerID] int NOT NULL,
	[Code] varchar(10),
	[Country] varchar(30),
	[Name] varchar(50),
	CONSTRAINT [Customers_pkey] PRIMARY KEY CLUSTERED ([CustomerID]))
GO

CREATE UNIQUE INDEX [.rB] ON [Customers] ([CustomerID] ASC);

CREATE UNIQUE INDEX [.rC] ON [Customers] ([Code] ASC, [Country] ASC);

CREATE UNIQUE INDEX [ux_CodeCountry] ON [Customers] ([Code] ASC, [Country] ASC);

INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (1, 'ALFKI', 'Germany', 'Alfreds Futterkiste');
GO
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (2, 'ANATR', 'Mexico', 'Ana Trujillo');
GO
INSERT INTO [Customers] ([CustomerID], [Code], [Country], [Name]) VALUES (3, 'AROUT', 'UK', 'Around the Horn');
GO


COMMIT
