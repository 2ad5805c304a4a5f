#pragma once

#include "adapters/contract/run/Needs.h"

namespace contract {

/// The columns of the tables of a source, by the names of the source itself, as a module saw them at its last import.
using SeenTables = QMap<QString, QVector<ColumnInfo>>;

/// What a module remembers of its source, in "Tracciati/<module>.colonne" beside the settings; nothing before its first
/// import.
SeenTables SeenAtLastImport(const Session& session, const QString& module);

/// "in più A, B; in meno C; di altro tipo D (TEXT, prima NUMERIC)": how a table has changed. Types count where both are
/// known. Empty when nothing has.
QString ChangeText(const QVector<ColumnInfo>& before, const QVector<ColumnInfo>& now);

/// Compares the tables that a procedure reads with what they were at the last import of the module: a line for each
/// that has changed. Raises `SqlError` when the source cannot be asked.
QStringList ChangesOfSource(Session& session, const QString& module, const Needs& needs);
/// The same, and remembers the tables as they are; a further line when they cannot be remembered.
QStringList RememberSource(Session& session, const QString& module, const Needs& needs);

} // namespace contract
