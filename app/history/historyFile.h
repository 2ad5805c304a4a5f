#pragma once

#include "core/Session.h"
#include "sql/SqlText.h"

/// The file that keeps every run: an SQLite database "Cronologia.sqlite" beside the settings.
namespace history {

/// Its path beside a settings file.
QString FilePath(const QString& settingsFile);

/// Opens a history, and makes it when it is missing. Raises `SqlError` or `ImportError` naming the file.
std::unique_ptr<ovConnection> Open(const QString& path);

/// A statement for its file: words with "?" in the places of values. Texts are written as they are, "Null" too.
SqlText Statement(QAnyStringView words, const QVariantList& values);

/// A point in time as the file keeps it, "yyyy-MM-dd hh:mm:ss"; invalid for none.
QString TimeText(const QDateTime& time);
QDateTime TimeOf(const QVariant& value);

/// The lock that the run of that number holds while its program lives.
QString LockPath(const QString& path, qint64 run);
/// The file that says, in place of a history that could not be written, that it does not keep all of a run.
QString PartialPath(const QString& path, qint64 run);

/// FROM and WHERE of a query for the tables (W.target_table) that a run (P.run) has written to and a procedure (E) of a
/// later one (L.run) has emptied since: whole, or of the rows whose numbers stand in E.emptied_rows.
QString EmptiedBehind();

/// Values with their names as one text, in their order, and back: each comes back as the kind of value that it was.
QString ValuesText(const QStringList& names, const QVector<QVariant>& values);
struct NamedValue {
    QString name;
    QVariant value;
};
QVector<NamedValue> ValuesOf(const QString& text);

} // namespace history
