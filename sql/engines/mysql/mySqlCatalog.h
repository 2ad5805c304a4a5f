#pragma once

#include "sql/engine.h"

/// A name between backquotes, as MySQL quotes names; "base.table" is quoted part by part.
QString MySqlName(const QString& name);
/// Columns of a table, in their order; empty when the table does not exist. Raises `SqlError`.
QVector<ColumnInfo> MySqlColumns(Engine& engine, const QString& table);
/// What the columns of a table take, as `Engine::Bounds`. Raises `SqlError`.
QVector<ColumnBounds> MySqlBounds(Engine& engine, const QString& table);
/// Name of the column of a table that the server numbers by itself; empty when there is none. Raises `SqlError`.
QString MySqlIdentityColumn(Engine& engine, const QString& table);
/// Whether the server is one of those of MariaDB that know INSERT .. RETURNING. Raises `SqlError`.
bool IsMySqlReturning(Engine& engine);
/// Whether a transaction sees nothing of what others write, and the user sees that there are no triggers. Raises
/// `SqlError`.
bool KeepsMySqlView(Engine& engine);
