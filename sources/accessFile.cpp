#include "sources/accessFile.h"

#include "sources/AccessTable.h"
#include "sources/fileTables.h"
#include "sources/findFile.h"
#include "sql/errors.h"

namespace sources {

namespace {

void LoadTable(PrivateDatabase& database, AccessDatabase& access, const AccessDatabase::Entry& entry,
               const ConnectionSettings& settings) {
    try {
        if (entry.isLinked) {
            throw ImportError(QStringLiteral("è collegata da un altro file, che si deve importare al suo posto"));
        }
        AccessTable table(access, entry, settings);
        {
            PrivateTable target(database, entry.name, table.Columns());
            table.CopyRows(target);
        }
        AddLookupIndexes(database, entry.name, table.Columns(), settings.lookupColumns);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1', tabella '%2'").arg(access.FileName(), entry.name));
        throw;
    }
}

} // namespace

std::unique_ptr<Engine> OpenAccessFile(const QString& path, const ConnectionSettings& settings) {
    const QString found = FindFile(path);
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("il file Access '%1' non esiste o non si può leggere; controllare il percorso "
                                         "nelle impostazioni dell'origine")
                              .arg(path));
    }
    const auto access = std::make_shared<AccessDatabase>(found);
    std::vector<FileTable> tables;
    for (const AccessDatabase::Entry& entry : access->Tables()) {
        tables.push_back({entry.name, [access, entry, settings](PrivateDatabase& database) {
                              LoadTable(database, *access, entry, settings);
                          }});
    }
    return OpenFileTables(QStringLiteral("il file '%1'").arg(found), std::move(tables), settings);
}

} // namespace sources
