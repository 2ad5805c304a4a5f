#pragma once

#include "sql/engine.h"

/// What a column takes by its type in the words of its database, such as "decimal(12,2)", "varchar(35)" or
/// "int(10) unsigned"; a word that is not known binds nothing. Whether it is demanded is left open.
ColumnBounds BoundsOf(const QString& name, const QString& type);
