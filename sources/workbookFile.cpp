#include "sources/workbookFile.h"

#include "sources/fileTables.h"
#include "sources/findFile.h"
#include "sources/UntoldPage.h"
#include "sources/workbook/SheetLoader.h"
#include "sql/errors.h"

namespace sources {

namespace {

/// A sheet that is looked for.
struct FoundSheet {
    int sheet = -1; ///< from 0; -1 when there is none
    bool isByPlace = false;
};

/// One that is named, or told by "#" and its place.
FoundSheet FindOne(const Workbook& workbook, const QString& wanted) {
    bool isPlace = wanted.startsWith(u'#');
    const int place = isPlace ? wanted.mid(1).toInt(&isPlace) : 0;
    if (isPlace) {
        return {PlacedSheets(workbook).value(place - 1, -1), true};
    }
    const QStringList names = workbook.Sheets();
    for (int sheet = 0; sheet < names.size(); ++sheet) {
        if (names.at(sheet).trimmed().compare(wanted.trimmed(), Qt::CaseInsensitive) == 0) {
            return {sheet};
        }
    }
    return {};
}

/// The same of the first that is there, of several with "/" between.
FoundSheet FindSheet(const Workbook& workbook, const QString& wanted) {
    for (const QString& one : wanted.split(u'/')) {
        if (const FoundSheet found = FindOne(workbook, one); found.sheet >= 0) {
            return found;
        }
    }
    return {};
}

/// Whether a sheet has no cell, as those that a program adds by itself.
bool IsEmpty(Workbook& workbook, int sheet) {
    try {
        SheetRow row;
        return !workbook.Read(sheet)->Next(row);
    } catch (const ImportError&) { // what cannot be read is something
        return false;
    }
}

/// Tells which sheet is read where others might be meant.
void NoteChosen(Workbook& workbook, const QString& path, int sheet, const ConnectionSettings& settings) {
    const QStringList names = workbook.Sheets();
    QStringList others;
    for (int other = 0; other < names.size(); ++other) {
        if (other != sheet && !IsEmpty(workbook, other)) {
            others.append(u'\'' + names.at(other) +
                          (workbook.IsHidden(other) ? QStringLiteral("' (nascosto)") : QStringLiteral("'")));
        }
    }
    if (!others.isEmpty() && settings.note) {
        settings.note(QStringLiteral("FOGLIO SCELTO: File '%1': letto il foglio '%2'%3, non gli altri: %4")
                          .arg(path, names.at(sheet),
                               workbook.IsHidden(sheet) ? QStringLiteral(" (nascosto)") : QString(),
                               others.join(QStringLiteral(", "))));
    }
}

void LoadSheet(PrivateDatabase& database, const QString& path, const SheetTable& table, FoundSheet found,
               Workbook& workbook, const ConnectionSettings& settings) {
    const QStringList names = workbook.Sheets();
    if (found.sheet < 0) {
        throw ImportError(QStringLiteral("File '%1': non ha il foglio '%2'; ha: %3")
                              .arg(path, table.sheet, u'\'' + names.join(QStringLiteral("', '")) + u'\''));
    }
    if (found.isByPlace) {
        NoteChosen(workbook, path, found.sheet, settings);
    }
    const QString place = QStringLiteral("File '%1', foglio '%2'").arg(path, names.at(found.sheet));
    try {
        const QVector<ColumnInfo> columns = SheetLoader(table, place, workbook, found.sheet, settings).Load(database);
        AddLookupIndexes(database, table.table, columns, settings.lookupColumns);
    } catch (ImportError& error) {
        error.AddContext(place);
        throw;
    }
}

/// A table of a workbook, with its sheet.
struct PlacedTable {
    SheetTable table;
    FoundSheet found;
    bool isListed = true; ///< not a second name of a sheet, "#1"
};

/// The tables of a workbook: those that are told how to be read, then each sheet as it stands.
std::vector<PlacedTable> TablesOf(const Workbook& workbook, const std::vector<SheetTable>& told) {
    std::vector<PlacedTable> tables;
    const auto add = [&tables](const SheetTable& table, FoundSheet found, bool isListed) {
        const bool isTaken = std::any_of(tables.begin(), tables.end(), [&table](const PlacedTable& each) {
            return each.table.table.compare(table.table, Qt::CaseInsensitive) == 0;
        });
        if (!isTaken) {
            tables.push_back({table, found, isListed});
        }
    };
    for (const SheetTable& table : told) {
        const FoundSheet found = FindSheet(workbook, table.sheet);
        if (found.sheet >= 0 ||
            table.sheet != table.table) { // one that somebody has named is a table where it is there
            add(table, found, true);
        }
    }
    const QStringList names = workbook.Sheets();
    for (int sheet = 0; sheet < names.size(); ++sheet) {
        add({names.at(sheet), names.at(sheet)}, {sheet}, true);
    }
    int place = 0;
    for (const int sheet : PlacedSheets(workbook)) {
        const QString name = QStringLiteral("#%1").arg(++place);
        add({name, name}, {sheet, true}, false);
    }
    return tables;
}

} // namespace

std::unique_ptr<Engine> OpenWorkbookFile(const QString& path, const ConnectionSettings& settings,
                                         const std::vector<SheetTable>& sheets) {
    const QString found = FindFile(path);
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("il file '%1' non esiste o non si può leggere").arg(path));
    }
    const auto opened = std::make_shared<std::unique_ptr<Workbook>>(OpenWorkbook(found, PlainPage(settings)));
    std::vector<FileTable> tables;
    for (const PlacedTable& sheet : TablesOf(**opened, sheets)) {
        const auto load = [found, sheet, settings, opened](PrivateDatabase& database) {
            // Most imports read one sheet: what its sheets share is read once for it, and not kept for the others.
            auto workbook = std::exchange(*opened, nullptr);
            if (workbook == nullptr) {
                workbook = OpenWorkbook(found, PlainPage(settings));
            }
            LoadSheet(database, found, sheet.table, sheet.found, *workbook, settings);
        };
        tables.push_back({sheet.table.table, load, sheet.isListed});
    }
    return OpenFileTables(QStringLiteral("il file '%1'").arg(found), std::move(tables), settings);
}

} // namespace sources
