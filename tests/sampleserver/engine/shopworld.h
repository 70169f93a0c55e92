#pragma once

#include "engine/catalog/world.h"
#include "engine/session/scriptreader.h"
#include "engine/session/session.h"

#include <memory>

/// A small shop: two tables with a foreign key, nulls, every family of types, a table of another owner, a
/// table denied to one user, and a database closed to guests.
inline std::shared_ptr<const engine::World> shopWorld() {
    auto world = std::make_shared<engine::World>();
    engine::runScript(*world, QStringLiteral(R"sql(
CREATE DATABASE shop
CREATE DATABASE vault
GO
EXEC sp_addlogin 'clerk', 'till', 'shop'
EXEC sp_addlogin 'visitor', ''
GO
USE vault
GO
CREATE TABLE gold (bars int NOT NULL)
INSERT INTO gold VALUES (7)
GO
USE shop
GO
EXEC sp_grantdbaccess 'clerk'
EXEC sp_grantdbaccess 'guest'
GO
CREATE TABLE customers (
  id int NOT NULL CONSTRAINT pk_customers PRIMARY KEY,
  name varchar(30) NOT NULL,
  city char(10) NULL,
  credit money NULL,
  rate decimal(5,2) NULL,
  since datetime NULL,
  note text NULL,
  guid uniqueidentifier NULL,
  big decimal(30,5) NULL)
CREATE TABLE orders (
  id int IDENTITY(1,1) NOT NULL,
  cust int NOT NULL REFERENCES customers(id),
  qty smallint NOT NULL CONSTRAINT ck_qty CHECK (qty > 0),
  price float NULL,
  code nvarchar(10) NULL,
  flag bit NOT NULL DEFAULT 0,
  tiny tinyint NULL,
  raw varbinary(8) NULL,
  CONSTRAINT pk_orders PRIMARY KEY (id, cust))
CREATE INDEX ix_code ON orders (code, qty)
CREATE TABLE clerk.customers (id int NOT NULL, nick varchar(10) NULL)
CREATE TABLE secrets (id int NOT NULL)
DENY SELECT ON secrets TO clerk
GO
INSERT INTO customers VALUES (1, 'Ann', 'Rome', 10.5, 1.25, '2001-02-03 04:05:06', 'hello world', '6F9619FF-8B86-D011-B42D-00C04FC964FF', 12345678901234567890.12345)
INSERT INTO customers VALUES (2, 'bob', 'Paris', NULL, 2.50, '1999-12-31 23:59:59.997', NULL, NULL, 1)
INSERT INTO customers VALUES (3, 'Cid', NULL, 99.99, NULL, NULL, 'x', '00000000-0000-0000-0000-000000000001', -5)
INSERT INTO orders (cust, qty, price, code, flag, tiny, raw) VALUES (1, 5, 1.5, N'AB', 1, 200, 0x0102)
INSERT INTO orders (cust, qty, price, code, flag, tiny) VALUES (1, 7, 2.5, N'ab ', 0, 100)
INSERT INTO orders (cust, qty, price, code, flag, tiny) VALUES (2, 1, NULL, N'zz', 0, NULL)
INSERT INTO clerk.customers VALUES (9, 'Cl')
INSERT INTO secrets VALUES (1)
GO
)sql"));
    world->seal();
    return world;
}

/// A session of a login in database shop.
inline std::unique_ptr<engine::Session> shopSession(const std::shared_ptr<const engine::World>& world,
                                                    const QString& user = QStringLiteral("sa")) {
    auto session = std::make_unique<engine::Session>(world, 51);
    const QString password = user == QLatin1String("clerk") ? QStringLiteral("till") : QString();
    session->login({.user = user,
                    .password = password,
                    .database = QStringLiteral("shop"),
                    .clientHost = QStringLiteral("desk"),
                    .application = QStringLiteral("test")});
    return session;
}
