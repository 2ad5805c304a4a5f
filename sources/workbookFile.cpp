#include "sources/workbookFile.h"

#include "sources/fileTables.h"
#include "sources/findFile.h"
#include "sources/UntoldPage.h"
#include "sources/workbook/SheetLoader.h"
#include "sql/errors.h"

namespace sources {

namespace {

/// Place of a sheet that is named, or told by "#" and its place; -1 when there is none.
int FindOne(const QStringList& names, const QString& wanted) {
    bool isPlace = wanted.startsWith(u'#');
    const int place = isPlace ? wanted.mid(1).toInt(&isPlace) : 0;
    if (isPlace) {
        return place >= 1 && place <= names.size() ? place - 1 : -1;
    }
    for (int sheet = 0; sheet < names.size(); ++sheet) {
        if (names.at(sheet).trimmed().compare(wanted.trimmed(), Qt::CaseInsensitive) == 0) {
            return sheet;
        }
    }
    return -1;
}

/// The same of the first that is there, of several with "/" between.
int FindSheet(const QStringList& names, const QString& wanted) {
    for (const QString& one : wanted.split(u'/')) {
        if (const int sheet = FindOne(names, one); sheet >= 0) {
            return sheet;
        }
    }
    return -1;
}

void LoadSheet(PrivateDatabase& database, const QString& path, const SheetTable& table, Workbook& workbook,
               const ConnectionSettings& settings) {
    const QStringList names = workbook.Sheets();
    const int sheet = FindSheet(names, table.sheet);
    if (sheet < 0) {
        throw ImportError(QStringLiteral("File '%1': non ha il foglio '%2'; ha: %3")
                              .arg(path, table.sheet, u'\'' + names.join(QStringLiteral("', '")) + u'\''));
    }
    const QString place = QStringLiteral("File '%1', foglio '%2'").arg(path, names.at(sheet));
    try {
        const auto reader = workbook.Read(sheet);
        const QVector<ColumnInfo> columns = SheetLoader(table, place, workbook, settings).Load(database, *reader);
        AddLookupIndexes(database, table.table, columns, settings.lookupColumns);
    } catch (ImportError& error) {
        error.AddContext(place);
        throw;
    }
}

/// The tables of a workbook: those that are told how to be read, then each sheet as it stands.
std::vector<SheetTable> TablesOf(const QStringList& names, std::vector<SheetTable> tables) {
    const auto add = [&tables](const QString& name, int sheet) {
        const bool isTaken = std::any_of(tables.begin(), tables.end(), [&name](const SheetTable& table) {
            return table.table.compare(name, Qt::CaseInsensitive) == 0;
        });
        if (!isTaken) {
            tables.push_back({name, QStringLiteral("#%1").arg(sheet + 1)});
        }
    };
    for (int sheet = 0; sheet < names.size(); ++sheet) {
        add(names.at(sheet), sheet);
    }
    for (int sheet = 0; sheet < names.size(); ++sheet) {
        add(QStringLiteral("#%1").arg(sheet + 1), sheet);
    }
    return tables;
}

/// Whether a table is a second name of a sheet, "#1".
bool IsPlaceOf(const QStringList& names, const QString& table) {
    return table.startsWith(u'#') && !names.contains(table, Qt::CaseInsensitive) && FindSheet(names, table) >= 0;
}

} // namespace

std::unique_ptr<Engine> OpenWorkbookFile(const QString& path, const ConnectionSettings& settings,
                                         const std::vector<SheetTable>& sheets) {
    const QString found = FindFile(path);
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("il file '%1' non esiste o non si può leggere").arg(path));
    }
    const auto opened = std::make_shared<std::unique_ptr<Workbook>>(OpenWorkbook(found, PlainPage(settings)));
    const QStringList names = (*opened)->Sheets();
    std::vector<FileTable> tables;
    for (const SheetTable& sheet : TablesOf(names, sheets)) {
        const auto load = [found, sheet, settings, opened](PrivateDatabase& database) {
            // Most imports read one sheet: what its sheets share is read once for it, and not kept for the others.
            auto workbook = std::exchange(*opened, nullptr);
            if (workbook == nullptr) {
                workbook = OpenWorkbook(found, PlainPage(settings));
            }
            LoadSheet(database, found, sheet, *workbook, settings);
        };
        tables.push_back({sheet.table, load, !IsPlaceOf(names, sheet.table)});
    }
    return OpenFileTables(QStringLiteral("il file '%1'").arg(found), std::move(tables), settings);
}

} // namespace sources
