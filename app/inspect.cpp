#include "app/inspect.h"

#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/SourceMemory.h"
#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/inspect_suggest.h"
#include "sources/layout/LayoutFile.h"
#include "sources/privateDatabase.h"
#include "sql/mod_ovTools.h"
#include "sql/names.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>

namespace inspection {

namespace {

constexpr int RowsToLookAt = 200;
constexpr qsizetype MostValues = 20; ///< kept of a column; more are not shown

const QString ProbedTable = QStringLiteral("TABELLA_ESAMINATA");

QString LayoutFolder(const Session& session) {
    return QFileInfo(session.Config.ConfigFile()).path() + QStringLiteral("/Tracciati");
}

// --- What the origin reads

Table& Named(std::vector<Table>& tables, const QString& name) {
    const auto found = std::find_if(tables.begin(), tables.end(), [&name](const Table& table) {
        return table.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found != tables.end() ? *found : tables.emplace_back(Table{.name = name});
}

Column& ColumnOf(Table& table, const QString& name) {
    const auto found = std::find_if(table.columns.begin(), table.columns.end(), [&name](const Column& column) {
        return column.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found != table.columns.end() ? *found : table.columns.emplace_back(Column{.name = name});
}

/// The tables of every procedure that opens the origin's own source, with the procedures that read them.
std::vector<Table> ReadTables(const contract::Origin& origin) {
    std::vector<Table> tables;
    for (const contract::Procedure& procedure : origin.procedures) {
        const contract::NeededTables needed = contract::NeededTables::Read(procedure.needs);
        for (const contract::NeededTables::Table& need : needed.Tables()) {
            if (contract::SourceOf(origin, procedure) != &origin) {
                continue;
            }
            Table& table = Named(tables, need.name);
            names::AddOnce(table.procedures, procedure.name);
            for (const QString& name : need.necessary + need.optional) {
                Column& column = ColumnOf(table, name);
                column.isNecessary = column.isNecessary || need.necessary.contains(name, Qt::CaseInsensitive);
                names::AddOnce(column.procedures, procedure.name);
                for (const QString& target : need.feeds.value(name)) {
                    names::AddOnce(column.feeds, target);
                }
            }
        }
    }
    return tables;
}

// --- What the source has

/// The open source in its own names: no logical name counts for the lifetime of the object, and a failure is raised.
class Probe {
public:
    explicit Probe(ovConnection& source)
        : m_source(source),
          m_layout(std::exchange(source.Layout, std::make_shared<sources::Layout>())),
          m_errors(std::exchange(source.Errors, nullptr)) {}
    ~Probe() {
        m_source.Layout = m_layout;
        m_source.Errors = m_errors;
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    QStringList Tables() { return m_source.GetTables(); }
    QVector<ColumnInfo> Columns(const QString& table) {
        Turn(table);
        return m_source.GetColumns(ProbedTable);
    }
    qint64 Count(const QString& table) {
        Turn(table);
        return m_source.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM ") + ProbedTable);
    }
    Recordset Rows(const QString& table) {
        Turn(table);
        return m_source.ExecuteWC(QStringLiteral("SELECT * FROM ") + ProbedTable);
    }

private:
    /// Has the probed table be another one.
    void Turn(const QString& table) {
        auto layout = std::make_shared<sources::Layout>();
        layout->CallTable(ProbedTable, table);
        m_source.Layout = layout;
    }

    ovConnection& m_source;
    std::shared_ptr<NameLayout> m_layout;
    ovErrors* m_errors;
};

/// A name in brackets where its parts would not be read as they are.
QString Bracketed(const QString& table) {
    return sources::NameParts(table) == QStringList(table) ? table : QString(u'[' + table + u']');
}

/// A value as it is shown; one that its file does not give is told as such, the others of the table can be seen.
QString ValueOf(const Recordset& rows, const QString& column) {
    try {
        return mod_ovTools::ToText(rows.Value(column)).trimmed();
    } catch (const ImportError&) {
        return QStringLiteral("(non si legge)");
    }
}

void TakeValues(Table& table, Probe& probe) {
    Recordset rows = probe.Rows(table.inSource);
    for (; !rows.Eof() && table.looked < RowsToLookAt; rows.MoveNext()) {
        ++table.looked;
        for (OwnColumn& column : table.own) {
            const QString value = ValueOf(rows, column.name);
            column.filled += value.isEmpty() ? 0 : 1;
            if (!value.isEmpty() && column.values.size() < MostValues && !column.values.contains(value)) {
                column.values.append(value);
            }
        }
    }
}

/// Takes in what the source has in a table, under `inSource`; what cannot be read is told in it.
void TakeContents(Table& table, Probe& probe) {
    try {
        for (const ColumnInfo& column : probe.Columns(table.inSource)) {
            table.own.push_back({.name = column.name, .type = column.type, .values = {}});
        }
        table.isFound = !table.own.empty();
        if (table.isFound) {
            table.rows = probe.Count(table.inSource);
            TakeValues(table, probe);
        }
    } catch (const Error& error) {
        table.trouble = error.Message();
    }
}

void FindColumns(Table& table, const sources::LayoutTable* layout) {
    for (Column& column : table.columns) {
        const QString name = layout == nullptr ? column.name : layout->InSource(column.name);
        column.isMarkedMissing = name.isEmpty();
        column.called = name;
        const OwnColumn* own = name.isEmpty() ? nullptr : table.Own(name);
        column.inSource = own == nullptr ? QString() : own->name;
    }
}

/// Marks the columns of the source that procedures read beyond those that they ask for.
void MarkFurther(Table& table, const contract::Origin& origin) {
    for (const contract::Procedure& procedure : origin.procedures) {
        for (OwnColumn& column : table.own) {
            column.isFurther = column.isFurther || (procedure.readsAlso && table.procedures.contains(procedure.name) &&
                                                    procedure.readsAlso(column.name));
        }
    }
}

/// Leaves out the tables of a workbook for which the sheet of another one is taken, having none of their own: all is
/// there of the other one, and nothing that is necessary of theirs.
void LeaveOutStandIns(std::vector<Table>& tables) {
    const auto isLacking = [](const Column& column) { return column.isNecessary && column.IsMissing(); };
    const auto isThere = [](const Column& column) {
        return column.isNecessary && !column.IsMissing() && column.name != sources::RowNumberColumn;
    };
    const std::vector<Table> all = tables;
    std::erase_if(tables, [&](const Table& table) {
        return std::ranges::any_of(table.columns, isLacking) && std::ranges::none_of(table.columns, isThere) &&
               std::ranges::any_of(all, [&](const Table& other) {
                   return other.isFound && other.inSource != table.inSource &&
                          std::ranges::none_of(other.columns, isLacking) &&
                          std::ranges::equal(other.own, table.own, {}, &OwnColumn::name, &OwnColumn::name);
               });
    });
}

/// How well a table is the one that stands in what is read for it: the share of its necessary columns that are there,
/// and of the columns there that it reads. A name that is proposed counts as one that is there.
double FitOf(const Table& table) {
    qsizetype necessary = 0;
    qsizetype there = 0;
    QSet<QString> read;
    for (const Column& column : table.columns) {
        if (column.name == sources::RowNumberColumn) {
            continue; // every file has it
        }
        const Suggestion* proposed = column.isMarkedMissing ? nullptr : Proposed(column.suggestions);
        const QString name = column.IsMissing() && proposed != nullptr ? proposed->name : column.inSource;
        necessary += column.isNecessary ? 1 : 0;
        there += column.isNecessary && !name.isEmpty() ? 1 : 0;
        if (!name.isEmpty()) {
            read.insert(name);
        }
    }
    return static_cast<double>(there) / static_cast<double>(std::max<qsizetype>(necessary, 1)) +
           static_cast<double>(read.size()) / static_cast<double>(std::max<size_t>(table.own.size(), 1));
}

/// Tells of tables that are one and the same in a chosen file which of them it is.
void TellWhatTheFileIs(std::vector<Table>& tables) {
    for (Table& table : tables) {
        double best = FitOf(table);
        for (const Table& other : tables) {
            const bool isSame = table.isFound && other.isFound &&
                                std::ranges::equal(other.own, table.own, {}, &OwnColumn::name, &OwnColumn::name);
            const double fit = isSame ? FitOf(other) : 0;
            if (fit > best) {
                table.isRather.clear();
            }
            if (fit > best || (fit == best && !table.isRather.isEmpty())) {
                table.isRather.append(other.name);
                best = fit;
            }
        }
    }
}

/// The columns of every table of the source that is not read already.
QMap<QString, QStringList> ColumnsByTable(Probe& probe, const QStringList& tables) {
    QMap<QString, QStringList> columns;
    for (const QString& table : tables) {
        try {
            QStringList& names = columns[table];
            for (const ColumnInfo& column : probe.Columns(Bracketed(table))) {
                names.append(column.name);
            }
        } catch (const Error&) {
            columns.remove(table); // a damaged file of the folder is none of those that are looked for
        }
    }
    return columns;
}

/// Looks for the tables that are missing among those that nothing reads, and shows the one that is suggested first.
/// @param candidates names of the source
void SuggestTables(Inspection& inspection, Probe& probe, const NamesBefore& before, const QStringList& candidates) {
    const bool isAllThere = std::all_of(inspection.tables.begin(), inspection.tables.end(),
                                        [](const Table& table) { return table.isFound || !table.trouble.isEmpty(); });
    if (isAllThere) {
        return;
    }
    const QMap<QString, QStringList> columns = ColumnsByTable(probe, candidates);
    const auto isLookedFor = [](const Table& table) { return !table.isFound && table.trouble.isEmpty(); };
    for (Table& table : inspection.tables) {
        if (isLookedFor(table)) {
            table.suggestions = TablesFor(table, columns, before);
        }
    }
    TellTablesApart(inspection.tables);
    for (Table& table : inspection.tables) {
        if (!isLookedFor(table)) {
            continue;
        }
        table.inSource = table.suggestions.empty() ? QString() : Bracketed(table.suggestions.front().name);
        if (!table.inSource.isEmpty()) {
            TakeContents(table, probe);
            table.isFound = false;
        }
    }
}

/// What is proposed in one table tells of the columns of that name in the others.
void SuggestAll(std::vector<Table>& tables, const NamesBefore& before) {
    for (Table& table : tables) {
        SuggestColumns(table, before, {});
    }
    for (Table& table : tables) {
        SuggestColumns(table, before, NamesNow(tables, table));
    }
}

/// Reads the layout file into the source; what is wrong with it is told, and then counts for nothing.
QString TakeLayout(Session& session, const contract::Origin& origin, ovConnection& source) {
    source.Layout = nullptr;
    try {
        contract::SourceLayout::Take(session, origin, source);
        return {};
    } catch (const ImportError& error) {
        source.Layout = nullptr;
        session.Layout.reset();
        return error.Message();
    }
}

} // namespace

const OwnColumn* Table::Own(const QString& column) const {
    const auto found = std::find_if(own.begin(), own.end(), [&column](const OwnColumn& each) {
        return each.name.compare(column, Qt::CaseInsensitive) == 0;
    });
    return found == own.end() ? nullptr : &*found;
}

QString LayoutPath(const Session& session, const contract::Origin& origin) {
    return sources::LayoutFile::PathOf(LayoutFolder(session), origin.name);
}

bool OpenToLook(Session& session, const contract::Origin& origin) {
    CloseSource(session);
    const sourceSettings::OfOrigin own(session, origin.name);
    session.Source = NewSource(session, origin.name);
    if (!origin.source.prepare(session, *session.Source)) {
        CloseSource(session);
        return false;
    }
    TakeLayout(session, origin, *session.Source); // tells how sheets are read
    session.Source->SourceTables.clear();
    session.Source->Note = [&session](const QString& note) { session.Person.Note(note); }; // there is no run to log
    OpenPrepared(session, *session.Source);
    return true;
}

Inspection Inspect(Session& session, const contract::Origin& origin) {
    Inspection inspection;
    inspection.layoutFile = LayoutPath(session, origin);
    inspection.layoutTrouble = TakeLayout(session, origin, session.SourceConnection());
    inspection.tables = ReadTables(origin);
    ovConnection& source = session.SourceConnection();
    const auto* layout = dynamic_cast<const sources::Layout*>(source.Layout.get());
    const auto kept = source.Layout; // the probe puts its own in its place
    Probe probe(source);
    inspection.others = probe.Tables();
    QStringList candidates =
        session.Layout == nullptr ? inspection.others : session.Layout->WithoutOthers(inspection.others);
    const contract::SeenTables seen = contract::SeenAtLastImport(session, origin.module);
    for (Table& table : inspection.tables) {
        const sources::LayoutTable* called = layout == nullptr ? nullptr : layout->Find(table.name);
        const QStringList parts = called == nullptr ? QStringList(table.name) : called->inSource;
        table.inSource = parts.size() == 1 ? Bracketed(parts.front()) : parts.join(u'.');
        table.lastTime = seen.value(parts.join(u'.'));
        TakeContents(table, probe);
        FindColumns(table, called);
        MarkFurther(table, origin);
        if (table.isFound) {
            inspection.others.removeIf(
                [&parts](const QString& each) { return each.compare(parts.last(), Qt::CaseInsensitive) == 0; });
        }
    }
    if (origin.source.kind == QLatin1String("Excel")) {
        LeaveOutStandIns(inspection.tables);
    }
    const NamesBefore before = ReadNamesBefore(LayoutFolder(session));
    candidates.removeIf([&](const QString& name) { return !inspection.others.contains(name); }); // those that are read
    SuggestTables(inspection, probe, before, candidates);
    SuggestAll(inspection.tables, before);
    if (origin.source.prepare.place == contract::Place::Chosen) {
        TellWhatTheFileIs(inspection.tables);
    }
    return inspection;
}

QStringList TablesOfOtherFiles(Session& session, const contract::Origin& origin) {
    QStringList others;
    if (origin.source.prepare.place != contract::Place::Chosen) {
        return others;
    }
    for (const Table& table : ReadTables(origin)) {
        others.append(table.name);
    }
    for (const Table& table : Inspect(session, origin).tables) {
        if (table.isFound && table.isRather.isEmpty()) {
            others.removeOne(table.name);
        }
    }
    return others;
}

QString LayoutTrouble(Session& session, const contract::Origin& origin, const QStringList& leftOut) {
    if (const QString trouble = TakeLayout(session, origin, session.SourceConnection());
        !trouble.isEmpty() || session.Layout == nullptr) {
        return trouble;
    }
    ovConnection& source = session.SourceConnection();
    try {
        for (const Table& table : ReadTables(origin)) {
            if (leftOut.contains(table.name)) {
                continue;
            }
            QStringList columns;
            for (const ColumnInfo& column : source.GetColumns(table.name)) {
                columns.append(column.name);
            }
            session.Layout->Check(source, table.name, columns);
        }
    } catch (const Error& error) {
        return error.Message();
    }
    return {};
}

bool IsComplete(const Inspection& inspection) {
    return inspection.layoutTrouble.isEmpty() &&
           std::all_of(inspection.tables.begin(), inspection.tables.end(), [](const Table& table) {
               return table.isFound &&
                      std::none_of(table.columns.begin(), table.columns.end(),
                                   [](const Column& column) { return column.isNecessary && column.IsMissing(); });
           });
}

QString GroundText(const Suggestion& suggestion) {
    switch (suggestion.ground) {
    case Ground::UsedBefore:
        return QStringLiteral("usato prima");
    case Ground::Equal:
        return QStringLiteral("uguale");
    case Ground::WrittenOut:
        return QStringLiteral("abbreviato");
    case Ground::Renamed:
        return QStringLiteral("nuova, al posto di ") + suggestion.reason;
    case Ground::Alias:
        return QStringLiteral("alias: ") + suggestion.reason;
    case Ground::Values:
        return QStringLiteral("valori: ") + suggestion.reason;
    case Ground::Columns:
        return suggestion.reason;
    case Ground::Similar:
        break;
    }
    return QStringLiteral("simile");
}

const Suggestion* Proposed(const std::vector<Suggestion>& suggestions) {
    return suggestions.empty() || suggestions.front().ground == Ground::Similar ? nullptr : &suggestions.front();
}

} // namespace inspection
