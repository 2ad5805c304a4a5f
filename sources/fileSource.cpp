#include "sources/fileSource.h"

#include "sources/foxProFolder.h"
#include "sources/textFolder.h"

#include <QFileInfo>
#include <QMap>

namespace sources {

namespace {

/// A value without surrounding blanks and without one pair of braces or quotes.
QString Unwrapped(const QString& text) {
    QString value = text.trimmed();
    static const QStringList pairs{QStringLiteral("{}"), QStringLiteral("\"\""), QStringLiteral("''")};
    for (const QString& pair : pairs) {
        if (value.size() >= 2 && value.front() == pair[0] && value.back() == pair[1]) {
            return value.mid(1, value.size() - 2).trimmed();
        }
    }
    return value;
}

/// The keys, in lower case, and values of "key=value;key={value}".
QMap<QString, QString> ParseConnectionString(const QString& text) {
    QMap<QString, QString> values;
    qsizetype start = 0;
    int depth = 0;
    for (qsizetype at = 0; at <= text.size(); ++at) {
        const QChar character = at < text.size() ? text[at] : QChar(u';');
        depth += character == u'{' ? 1 : 0;
        depth -= character == u'}' ? 1 : 0;
        if (character != u';' || (depth > 0 && at < text.size())) {
            continue;
        }
        const QString part = text.mid(start, at - start);
        const qsizetype equals = part.indexOf(u'=');
        if (equals > 0) {
            values.insert(part.left(equals).trimmed().toLower(), Unwrapped(part.mid(equals + 1)));
        }
        start = at + 1;
    }
    return values;
}

bool NamesFoxPro(const QMap<QString, QString>& values) {
    const QString driver = values.value(QStringLiteral("driver"));
    return driver.contains(u"FoxPro", Qt::CaseInsensitive) || driver.contains(u"dBase", Qt::CaseInsensitive) ||
           values.value(QStringLiteral("provider")).startsWith(u"VFPOLEDB", Qt::CaseInsensitive);
}

bool NamesText(const QMap<QString, QString>& values) {
    return values.value(QStringLiteral("driver")).contains(u"Text Driver", Qt::CaseInsensitive);
}

/// The folder that the tables stand in.
QString FolderOf(const QMap<QString, QString>& values) {
    QString folder;
    for (const auto* key : {"data source", "sourcedb", "dbq", "defaultdir"}) {
        folder = folder.isEmpty() ? values.value(QLatin1String(key)) : folder;
    }
    return folder.replace(u'\\', u'/');
}

/// The same of FoxPro tables; a database container (.dbc) stands in it.
QString FoxProFolder(const QMap<QString, QString>& values) {
    const QString folder = FolderOf(values);
    return folder.endsWith(u".dbc", Qt::CaseInsensitive) ? QFileInfo(folder).path() : folder;
}

} // namespace

std::unique_ptr<Engine> OpenFileSource(const ConnectionSettings& settings) {
    const auto values = ParseConnectionString(settings.connectionString);
    if (NamesText(values)) {
        return OpenTextFolder(FolderOf(values), settings);
    }
    if (!NamesFoxPro(values)) {
        return nullptr;
    }
    return OpenFoxProFolder(FoxProFolder(values), settings);
}

} // namespace sources
