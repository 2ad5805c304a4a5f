#pragma once

#include "sources/fileSource.h"
#include "sql/errors.h"

#include <QTest>

/// What the tests of file sources share.
namespace sourcesTest {

inline std::unique_ptr<Engine> OpenFolder(const QString& folder, const ConnectionSettings& more = {}) {
    ConnectionSettings settings = more;
    settings.connectionString = "Driver={Microsoft Visual FoxPro Driver};Data Source=" + folder;
    return sources::OpenFileSource(settings);
}

/// The first value of a query.
inline QVariant Value(Engine& engine, const QString& query) {
    const auto cursor = engine.Query(query);
    return cursor->Next() ? cursor->Value(0) : QVariant();
}

/// The values of the first column, joined with ",".
inline QString Values(Engine& engine, const QString& query) {
    QStringList values;
    const auto cursor = engine.Query(query);
    while (cursor->Next()) {
        values.append(cursor->Value(0).toString());
    }
    return values.join(u',');
}

/// The message of the `ImportError` that an operation raises; a text that says so when it raises none.
template<class Work>
QString ErrorTextOf(const Work& work) {
    try {
        work();
    } catch (const ImportError& error) {
        return error.Message();
    }
    return "no error";
}

/// Fails, showing the message, unless it holds every one of the parts.
inline bool Holds(const QString& message, const QStringList& parts) {
    for (const QString& part : parts) {
        if (!message.contains(part)) {
            qWarning("'%s' is missing in: %s", qPrintable(part), qPrintable(message));
            return false;
        }
    }
    return true;
}

} // namespace sourcesTest
