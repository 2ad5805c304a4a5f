#pragma once

#include <QString>
#include <QVector>

#include <optional>

/// Connection strings cut into their parts, as ODBC and OLE DB write them.
namespace odbc {

/// One "key=value" of a connection string, the value without its braces or quotes.
struct Part {
    QString key;
    QString value;
};
using Parts = QVector<Part>;

/// Whether a key is that word, in any case.
bool Same(const QString& text, QLatin1String word);
/// The parts of a connection string. A piece without "=" belongs to the value before it.
Parts ReadParts(const QString& text);
/// Value of the first part of that key (any case).
std::optional<QString> Find(const Parts& parts, QLatin1String key);
/// The connection string of parts, values between braces where they must be.
QString WriteParts(const Parts& parts);
/// A value as it stands in a connection string: between braces when it holds what would end it.
QString Quoted(const QString& value);
/// A connection string or a driver's message with every password covered.
QString WithoutPassword(const QString& text);

} // namespace odbc
