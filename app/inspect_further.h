#pragma once

#include "app/inspect.h"

namespace inspection {

/// What the layout file of an origin adds to a table: a condition on its rows and further columns of Quadrix.
struct Further {
    QString filter;
    struct Added {
        QString target; ///< "CON_TRO.CONOM"
        QString value;  ///< as the file has it: "ARCLFR.GRUPPO -> First(10)", "costante:1"
    };
    std::vector<Added> added; ///< those that read the table, and the constants
};

/// What the layout file says of a table (logical name). Raises `ImportError` when it cannot be read.
Further ReadFurther(const Session& session, const contract::Origin& origin, const QString& table);

/// The columns of Quadrix that the file may add from a table: of the target tables that are written from it, those that
/// no mapping fills from the source, without keys and the marks of who wrote a row when.
QStringList FreeTargets(const contract::Origin& origin, const QString& table);

/// Writes a condition; an empty one takes it out. What `ChangeLayout` returns and raises.
QString SetFilter(Session& session, const contract::Origin& origin, const QString& table, const QString& condition);
/// Writes a further column. @param value as `AddedValue` gives it
QString SetAdded(Session& session, const contract::Origin& origin, const QString& target, const QString& value);
/// Takes a further column out.
QString RemoveAdded(Session& session, const contract::Origin& origin, const QString& target);
/// "TABELLA.Colonna -> Regola" or "costante:valore", as the file has it.
/// @param typed the name of a column as the source has it, or "costante:" and a value
/// @param rule empty for the usual one; a constant has none
QString AddedValue(const QString& table, const QString& typed, const QString& rule);

} // namespace inspection
