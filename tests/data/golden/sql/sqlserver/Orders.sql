BEGIN TRANSACTION
GO
IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Orders]') AND type IN ('U'))
	DROP TABLE [Orders]
GO
CREATE TABLE [Orders] (
	[OrderID] int NOT NULL,
	[CustomerID] int,
	[ShipToID] int,
	[CustCode] varchar(10),
	[CustCountry] varchar(30),
	[OrderDate] smalldatetime,
	CONSTRAINT [Orders_pkey] PRIMARY KEY CLUSTERED ([OrderID]))
GO

CREATE UNIQUE INDEX [.rB_1] ON [Orders] ([OrderID] ASC);

CREATE INDEX [CustomersOrders] ON [Orders] ([CustomerID] ASC);

CREATE INDEX [CustomersOrdersCode] ON [Orders] ([CustCode] ASC, [CustCountry] ASC);

CREATE INDEX [ix_1] ON [Orders] ([OrderDate] ASC);

INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10248, 1, 2, 'ALFKI', 'Germany', '2010-03-04 13:05:00');
GO
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10249, 1, null, 'ANATR', 'Mexico', '2010-03-05 09:00:00');
GO
INSERT INTO [Orders] ([OrderID], [CustomerID], [ShipToID], [CustCode], [CustCountry], [OrderDate]) VALUES (10250, 3, 99, null, null, '2010-03-06 00:00:00');
GO

ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrders] FOREIGN KEY ([CustomerID]) REFERENCES [Customers] ([CustomerID]) ON UPDATE CASCADE ON DELETE SET NULL
GO
ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrdersCode] FOREIGN KEY ([CustCode], [CustCountry]) REFERENCES [Customers] ([Code], [Country]) ON UPDATE SET NULL ON DELETE SET NULL
GO
ALTER TABLE [Orders] ADD CONSTRAINT [CustomersOrdersShipTo] FOREIGN KEY ([ShipToID]) REFERENCES [Customers] ([CustomerID]) ON UPDATE SET NULL ON DELETE SET NULL
GO

COMMIT
