#include "adapters/contract/run/Needs.h"

#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/targetBounds.h"
#include "core/nearNames.h"
#include "core/Schema.h"
#include "sql/names.h"

#include <algorithm>

namespace contract {

namespace {

const QString Translations = QStringLiteral("SYS_IMP");
const QString LanguageTexts = QStringLiteral("SYS_LNG");

QStringList NamesOf(const QVector<ColumnInfo>& columns) {
    QStringList names;
    for (const ColumnInfo& column : columns) {
        names.append(column.name);
    }
    return names;
}

/// Looks for the tables of one database. Names that are near are told of the source, whose names are not ours.
class Search {
public:
    Search(ovConnection& connection, bool isSource, Lacks& lacks)
        : m_connection(connection),
          m_isSource(isSource),
          m_where(isSource ? QStringLiteral("origine") : QStringLiteral("Quadrix")),
          m_lacks(lacks) {}

    void Look(const NeededTables::Table& table, const SourceLayout* layout) {
        const QString name = m_connection.GetFullTableName(table.name);
        const QStringList present = NamesOf(m_connection.GetColumns(name));
        if (layout != nullptr) {
            layout->Check(m_connection, table.name, present);
        }
        if (present.isEmpty() && !table.isNecessary) {
            return;
        }
        if (present.isEmpty()) {
            const QStringList tables = m_isSource ? m_connection.GetTables() : QStringList();
            const QStringList own = layout == nullptr ? tables : layout->WithoutOthers(tables);
            m_lacks.necessary.append(QStringLiteral("%1: tabella '%2'%3%4")
                                         .arg(m_where, name, CalledOtherwise(name), GroundedSuggestions(name, own)));
            return;
        }
        QStringList others = m_isSource ? present : QStringList(); // a column that is read already is nobody else's
        others.removeIf([&table](const QString& each) { return names::Has(table.necessary + table.optional, each); });
        const auto line = [&](const QString& column) {
            const bool isMarked = layout != nullptr && layout->IsMarkedMissing(table.name, column);
            return QStringLiteral("%1: colonna '%2.%3'%4")
                .arg(m_where, name, column,
                     isMarked ? QStringLiteral(" (segnata come mancante nel tracciato)")
                              : GroundedSuggestions(column, others));
        };
        for (const QString& column : table.necessary) {
            if (!names::Has(present, column)) {
                m_lacks.necessary.append(line(column) + InsteadOf(layout, table.name, column));
            }
        }
        for (const QString& column : table.optional) {
            if (!names::Has(present, column)) {
                m_lacks.optional.append(line(column));
                m_lacks.leftOut.append({table.name, column});
            }
        }
        for (const QString& column : m_connection.Embedded ? table.days : QStringList()) {
            if (names::Has(present, column)) {
                LookForDays(table.name, column);
            }
        }
    }

private:
    /// What is to be done about a necessary column of which the layout says that the source has none; empty for others.
    static QString InsteadOf(const SourceLayout* layout, const QString& table, const QString& column) {
        return layout == nullptr || !layout->IsMarkedMissing(table, column)
                   ? QString()
                   : QStringLiteral(
                         ": è necessaria. Indicare in [COLONNE] la colonna che la sostituisce; se l'origine "
                         "non ne ha una, indicare in [TABELLE] una vista o una copia della tabella che abbia "
                         "in più una colonna vuota con questo nome");
    }
    /// A day that is written otherwise is neither before nor after another.
    void LookForDays(const QString& table, const QString& column) {
        const Recordset others =
            m_connection.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 WHERE TRIM(%1) > '' AND %3 IS NULL")
                                       .arg(column, table, DayColumn(m_connection, column)));
        if (!others.Eof()) {
            m_lacks.necessary.append(QStringLiteral("%1: colonna '%2.%3': '%4' non è un giorno scritto aaaa-mm-gg o "
                                                    "aaaammgg, e le righe si scelgono per giorno")
                                         .arg(m_where, table, column, SourceRow(others).Text(column)));
        }
    }
    /// How the source calls a table, where that is another name.
    QString CalledOtherwise(const QString& table) const {
        const sources::LayoutTable* known = m_isSource ? LayoutOf(m_connection).Find(table) : nullptr;
        const QString called = known == nullptr ? table : known->inSource.last();
        return called.compare(table, Qt::CaseInsensitive) == 0 ? QString()
                                                               : QStringLiteral(", nell'origine '%1'").arg(called);
    }

    ovConnection& m_connection;
    bool m_isSource;
    QString m_where;
    Lacks& m_lacks;
};

/// Tables whose triggers are switched off together while rows of one of them are written.
const QVector<QStringList>& SwitchedTogether() {
    static const QVector<QStringList> groups{{"DOC_VER", "DOC_ACR", "DOC_CTR"}, {"ORD_COM", "ORD_FAS", "ORD_PRO"}};
    return groups;
}

/// Rights that the user of the target lacks; a table that is not there has been told.
QStringList LackingRights(ovConnection& target, const std::vector<NeededTables::Table>& tables,
                          const QSet<QString>& written) {
    QStringList lines;
    for (const NeededTables::Table& need : tables) {
        lines += target.LackingRights(target.GetFullTableName(need.name), need.necessary.value(0),
                                      written.contains(need.name));
    }
    for (const QStringList& group : SwitchedTogether()) {
        if (std::any_of(group.begin(), group.end(), [&](const QString& table) { return written.contains(table); })) {
            for (const QString& table : group) {
                lines += target.TriggerObstacles(target.GetFullTableName(table));
            }
        }
    }
    for (QString& line : lines) {
        line.prepend(QStringLiteral("Quadrix: "));
    }
    return lines;
}

} // namespace

// --- What is needed

NeededTables::Table& NeededTables::Named(const QString& table) {
    const auto found = std::find_if(m_tables.begin(), m_tables.end(), [&table](const Table& each) {
        return each.name.compare(table, Qt::CaseInsensitive) == 0;
    });
    return found != m_tables.end() ? *found : m_tables.emplace_back(Table{table, {}, {}});
}

void NeededTables::Add(const QString& table, const QStringList& necessary, const QStringList& optional) {
    Take(table, necessary, optional).isNecessary = true;
}

NeededTables::Table& NeededTables::Take(const QString& table, const QStringList& necessary,
                                        const QStringList& optional) {
    Table& named = Named(table);
    for (const QString& column : necessary) {
        names::AddOnce(named.necessary, column);
        named.optional.removeIf([&column](const QString& each) { return names::Has({column}, each); });
    }
    for (const QString& column : optional) {
        if (!names::Has(named.necessary, column)) {
            names::AddOnce(named.optional, column);
        }
    }
    return named;
}

void NeededTables::AddMapping(const Mapping& mapping) {
    const schema::Table* target = schema::FindTable(mapping.targetTable);
    Add(mapping.sourceTable, {});
    for (const MapLine& line : mapping.lines) {
        const schema::Column* column = target == nullptr ? nullptr : target->FindColumn(line.target);
        const bool isNecessary = column == nullptr || target->Needs(*column);
        Add(mapping.sourceTable, isNecessary ? line.sources : QStringList(),
            isNecessary ? QStringList() : line.sources);
        for (const QString& source : line.sources) {
            names::AddOnce(Named(mapping.sourceTable).feeds[source], mapping.targetTable + u'.' + line.target);
        }
    }
}

NeededTables NeededTables::Read(const Needs& needs) {
    NeededTables tables;
    for (const Mapping* mapping : needs.mappings) {
        tables.AddMapping(*mapping);
    }
    QStringList mayLack; // whatever else is read of them, such as by a mapping
    for (const TableNeed& need : needs.reads) {
        Table& table = tables.Take(need.table, need.columns, need.optional);
        table.isNecessary = true;
        for (const QString& day : need.days) {
            names::AddOnce(table.days, day);
        }
        mayLack += need.mayLack ? QStringList(need.table) : QStringList();
    }
    for (const QString& table : std::as_const(mayLack)) {
        tables.Named(table).isNecessary = false;
    }
    return tables;
}

NeededTables NeededTables::Written(const Session& session, const Needs& needs) {
    NeededTables tables;
    for (const Mapping* mapping : needs.mappings) {
        tables.Add(mapping->targetTable, mapping->TargetColumns());
        for (const MapLine& line : AddedLines(session, *mapping)) {
            tables.Add(mapping->targetTable, {line.target});
        }
    }
    for (const TableNeed& need : needs.writes) {
        tables.Add(need.table, need.columns);
    }
    const QSet<QString> written = WrittenTables(needs);
    if (written.contains(LanguageTexts)) {
        tables.Add(LanguageTexts, {"LNTBL", "LNFLD", "LNKEY", "LNLNG", "LNTXT"});
    }
    // Whatever is imported asks for translations, and a look-up that fails does not end it.
    tables.Add(Translations, {"TBNAM", "TBFLD", "TBOLD", "TBNEW"});
    return tables;
}

QSet<QString> WrittenTables(const Needs& needs) {
    QSet<QString> written{Translations}; // codes without a translation
    for (const Mapping* mapping : needs.mappings) {
        written.insert(mapping->targetTable);
    }
    for (const TableNeed& need : needs.writes) {
        if (!need.isLookedUp) {
            written.insert(need.table);
        }
    }
    const bool hasTexts = std::any_of(written.begin(), written.end(), [](const QString& name) {
        const schema::Table* table = schema::FindTable(name);
        return table != nullptr && table->HasLanguageTexts();
    });
    if (hasTexts) {
        written.insert(LanguageTexts);
    }
    return written;
}

// --- What is missing

QString Lacks::Text() const {
    QStringList lines = necessary;
    if (!optional.isEmpty()) {
        lines.append(QStringLiteral("Mancano, facoltative:"));
        lines += optional;
    }
    return lines.join(u'\n');
}

Lacks LacksOf(Session& session, const Needs& needs) {
    Lacks lacks;
    const std::vector<NeededTables::Table> read = NeededTables::Read(needs).Tables();
    const QString company =
        session.Layout == nullptr || read.empty() ? QString() : session.Layout->TakeCompany(session.SourceConnection());
    if (!company.isEmpty()) { // then every table of it would be missing
        lacks.necessary.append(company);
    }
    for (const NeededTables::Table& table : company.isEmpty() ? read : std::vector<NeededTables::Table>()) {
        Search(session.SourceConnection(), true, lacks).Look(table, session.Layout.get());
    }
    const NeededTables target = NeededTables::Written(session, needs);
    const QSet<QString> written = WrittenTables(needs);
    for (const NeededTables::Table& table : target.Tables()) {
        Search(session.Quadrix, false, lacks).Look(table, nullptr);
        if (written.contains(table.name)) {
            LookAtBounds(session.Quadrix, table, lacks);
        }
    }
    lacks.necessary += LackingRights(session.Quadrix, target.Tables(), written);
    return lacks;
}

namespace {

/// What becomes of the target columns that lacking columns feed.
QStringList Consequences(const Needs& needs, const Lacks& lacks) {
    QStringList empty;
    QStringList usual;
    QStringList others;
    const auto isMissing = [&](const QString& table, const QString& column) {
        return std::any_of(lacks.leftOut.begin(), lacks.leftOut.end(), [&](const Lacks::Column& one) {
            return names::Has({one.table}, table) && names::Has({one.column}, column);
        });
    };
    for (const Mapping* mapping : needs.mappings) {
        const QString& own = mapping->sourceTable;
        for (const MapLine& line : mapping->lines) {
            if (line.IsTouched(own, isMissing)) {
                QStringList& told = !line.IsLacking(own, isMissing) ? others : line.rule.hasDefault ? usual : empty;
                names::AddOnce(told, mapping->targetTable + u'.' + line.target);
            }
        }
    }
    QStringList texts;
    for (const auto& [words, columns] : {std::pair{QStringLiteral("non valorizzate: "), empty},
                                         std::pair{QStringLiteral("nelle righe nuove con il valore consueto: "), usual},
                                         std::pair{QStringLiteral("con le altre colonne: "), others}}) {
        texts += columns.isEmpty() ? QStringList() : QStringList(words + columns.join(QStringLiteral(", ")));
    }
    return texts;
}

} // namespace

QString LeaveOut(Session& session, const Needs& needs, const Lacks& lacks) {
    if (lacks.leftOut.isEmpty()) {
        return {};
    }
    sources::Layout& layout = LayoutOf(session.SourceConnection());
    for (const NeededTables::Table& table : NeededTables::Read(needs).Tables()) {
        layout.Know(table.name, table.necessary + table.optional);
    }
    QStringList columns;
    for (const Lacks::Column& column : lacks.leftOut) {
        layout.CallColumn(column.table, column.column, {});
        columns.append(column.table + u'.' + column.column);
    }
    const QStringList told{columns.join(QStringLiteral(", "))};
    return QStringLiteral("COLONNE CHE MANCANO NELL'ORIGINE: ") +
           (told + Consequences(needs, lacks)).join(QStringLiteral("; "));
}

} // namespace contract
