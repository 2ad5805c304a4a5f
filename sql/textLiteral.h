#pragma once

#include "sql/ovDatabase.h"

/// A text as a literal of a statement for that database. The text "Null" is one like any other.
QString TextLiteral(const ovDatabase& database, const QString& text);
