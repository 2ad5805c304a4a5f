#include "sources/fileSource.h"

#include "sources/accessFile.h"
#include "sources/foxProFolder.h"
#include "sources/textFolder.h"
#include "sources/workbookFile.h"
#include "sql/connectionParts.h"

#include <QFileInfo>

namespace sources {

namespace {

/// What a connection string says of files.
class FileSettings {
public:
    explicit FileSettings(const QString& connectionString)
        : m_parts(odbc::ReadParts(connectionString)) {}

    bool NamesFoxPro() const {
        return NamesDriver(u"FoxPro") || NamesDriver(u"dBase") || NamesProvider(u"VFPOLEDB") ||
               (NamesJet() && HasProperty(u"dBase"));
    }
    bool NamesText() const { return NamesDriver(u"Text Driver") || (NamesJet() && HasProperty(u"text")); }
    bool NamesWorkbook() const {
        return NamesDriver(u"Excel Driver") || (NamesJet() && HasProperty(u"Excel")) || IsWorkbook(Path());
    }
    bool NamesAccess() const {
        const bool isOther = NamesJet() && !Value("extended properties").isEmpty();
        return NamesDriver(u"Access Driver") || (NamesJet() && !isOther) || (!isOther && IsAccessFile(Path()));
    }

    /// The file, or the folder that the tables stand in.
    QString Path() const {
        QString path;
        for (const char* key : {"data source", "sourcedb", "dbq", "defaultdir", "database"}) {
            path = path.isEmpty() ? Value(key) : path;
        }
        return path.replace(u'\\', u'/');
    }

    static bool IsWorkbook(const QString& path) {
        static const QStringList endings{".xls", ".xlsx", ".xlsm", ".ods"};
        return std::any_of(endings.begin(), endings.end(),
                           [&path](const QString& ending) { return path.endsWith(ending, Qt::CaseInsensitive); });
    }
    static bool IsAccessFile(const QString& path) {
        return path.endsWith(u".mdb", Qt::CaseInsensitive) || path.endsWith(u".accdb", Qt::CaseInsensitive);
    }

private:
    QString Value(const char* key) const { return odbc::Find(m_parts, QLatin1String(key)).value_or(QString()); }
    bool NamesDriver(QStringView words) const { return Value("driver").contains(words, Qt::CaseInsensitive); }
    bool NamesProvider(QStringView start) const { return Value("provider").startsWith(start, Qt::CaseInsensitive); }
    bool NamesJet() const { return NamesProvider(u"Microsoft.Jet.OLEDB") || NamesProvider(u"Microsoft.ACE.OLEDB"); }
    bool HasProperty(QStringView word) const {
        return Value("extended properties").startsWith(word, Qt::CaseInsensitive);
    }

    odbc::Parts m_parts;
};

/// A database container (.dbc) stands in the folder of its tables.
QString FoxProFolder(const QString& path) {
    return path.endsWith(u".dbc", Qt::CaseInsensitive) ? QFileInfo(path).path() : path;
}

/// The Access file that stands where a data source or a database is named; empty for another name.
QString AccessFileOf(const ConnectionSettings& settings) {
    QString name = settings.dsn.isEmpty() ? settings.databaseName : settings.dsn;
    return settings.connectionString.isEmpty() && FileSettings::IsAccessFile(name) ? name.replace(u'\\', u'/')
                                                                                   : QString();
}

} // namespace

std::unique_ptr<Engine> OpenFileSource(const ConnectionSettings& settings) {
    const FileSettings files(settings.connectionString);
    if (files.NamesText()) {
        return OpenTextFolder(files.Path(), settings);
    }
    if (files.NamesFoxPro()) {
        return OpenFoxProFolder(FoxProFolder(files.Path()), settings);
    }
    if (files.NamesWorkbook()) {
        return OpenWorkbookFile(files.Path(), settings);
    }
    if (files.NamesAccess()) {
        return OpenAccessFile(files.Path(), settings);
    }
    const QString access = AccessFileOf(settings);
    return access.isEmpty() ? nullptr : OpenAccessFile(access, settings);
}

} // namespace sources
