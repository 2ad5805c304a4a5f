#include "app/history/rowDetails.h"

#include "adapters/contract/run/SourceRow.h"
#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/importFlow.h"
#include "app/inspect.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>
#include <QScopeGuard>

namespace history {

namespace {

using contract::Mapping;
using contract::Origin;

/// A name of a row, "tabella 'anagrafe', riga 214, codice 'C00012'", taken apart.
struct RowName {
    QString table;
    QString numberColumn; ///< that files number their rows by; empty: it has none
    QString number;
    QVector<QPair<QString, QString>> codes; ///< columns and their texts
};

/// The name of the row that was read: of a note about one that belongs to it, such as a component, the part in front.
QString ReadRow(const QString& name) { return name.left(name.indexOf(QLatin1String(", tabella '"))); }

RowName Parsed(const QString& name) {
    static const QRegularExpression table(QStringLiteral("^tabella '([^']*)'"));
    static const QRegularExpression number(QStringLiteral("^, riga (\\d+)"));
    static const QRegularExpression code(QStringLiteral("^, ([^',]+) '(.*?)'(?=, [^',]+ '|$)"));
    RowName parsed;
    const auto begin = table.match(name);
    parsed.table = begin.captured(1);
    QString rest = name.mid(begin.capturedLength());
    for (auto match = number.match(rest); match.hasMatch(); match = number.match(rest)) {
        parsed.number = match.captured(1);
        rest.remove(0, match.capturedLength());
    }
    for (auto match = code.match(rest); match.hasMatch(); match = code.match(rest)) {
        parsed.codes.append({match.captured(1), match.captured(2)});
        rest.remove(0, match.capturedLength());
    }
    return parsed;
}

QString KeyColumns(const RowName& name) {
    QStringList columns;
    for (const auto& [column, text] : name.codes) {
        columns.append(column);
    }
    return columns.join(QStringLiteral(", "));
}

/// The conditions under which a row of that name may be found, the quickest first.
QStringList Conditions(Session& session, const RowName& name) {
    QStringList conditions;
    if (!name.number.isEmpty()) {
        for (const QString& column : contract::RowNumberColumns()) {
            conditions.append(QStringLiteral(" WHERE [%1] = %2").arg(column, name.number));
        }
    }
    QStringList codes;
    for (const auto& [column, text] : name.codes) {
        codes.append(QStringLiteral("[%1] = %2").arg(column, contract::LiteralOf(session.SourceConnection(), text)));
    }
    if (!codes.isEmpty()) {
        conditions.append(QStringLiteral(" WHERE ") + codes.join(QStringLiteral(" AND ")));
    }
    return conditions;
}

QVector<NamedValue> ValuesOfRow(const Recordset& row) {
    QVector<NamedValue> values;
    for (const QString& column : row.Columns()) {
        try {
            values.append({column, row.Value(column)});
        } catch (const ImportError& error) {
            values.append({column, error.Message()});
        }
    }
    return values;
}

/// The values of the row of that name; none when the source has no such row.
QVector<NamedValue> Find(Session& session, const QString& text, const RowName& name) {
    for (const QString& condition : Conditions(session, name)) {
        try {
            Recordset rows =
                session.SourceConnection().ExecuteWC(QStringLiteral("SELECT * FROM [%1]").arg(name.table) + condition);
            for (; !rows.Eof(); rows.MoveNext()) {
                if (contract::NameOf(contract::SourceRow(rows), name.table, KeyColumns(name)) == text) {
                    return ValuesOfRow(rows);
                }
            }
        } catch (const SqlError&) { // it does not have that column, or not of that kind
        }
    }
    return {};
}

void ReadAgain(Session& session, const Origin& origin, const QString& text, RowDetails& details) {
    const RowName name = Parsed(text);
    if (name.table.isEmpty()) {
        details.sourceTrouble = QStringLiteral("L'annotazione non riguarda una riga della sorgente.");
        return;
    }
    if (session.Source != nullptr) {
        details.sourceTrouble = QStringLiteral("Una sorgente è già aperta: riprovare quando non è più in uso.");
        return;
    }
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort);
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    try {
        const Operator::Busy busy(session.Person);
        if (!inspection::OpenToLook(session, origin)) {
            details.sourceTrouble = QStringLiteral("La sorgente non è stata aperta.");
            return;
        }
        details.source = Find(session, text, name);
        if (details.source.isEmpty()) {
            details.sourceTrouble = QStringLiteral("La sorgente non ha (più) questa riga.");
        }
    } catch (const Error& error) {
        details.sourceTrouble = QStringLiteral("La sorgente non si può leggere: ") + error.Message();
    }
}

QString TextOf(const QVector<NamedValue>& row, const QString& column) {
    for (const NamedValue& each : row) {
        if (each.name.compare(column, Qt::CaseInsensitive) == 0) {
            return mod_ovTools::ToText(each.value).trimmed();
        }
    }
    return {};
}

/// Looks for the rows of Quadrix that a source row feeds.
class Targets {
public:
    Targets(Session& session, const Run& run, const RowName& name, const RowDetails& details)
        : m_session(session),
          m_run(run),
          m_name(name),
          m_details(details) {}

    std::vector<RowDetails::Target> Of(const contract::Procedure& procedure) {
        QStringList tables;
        for (const Mapping* mapping : procedure.needs.mappings) {
            if (IsOfRow(*mapping) && !tables.contains(mapping->targetTable)) {
                tables.append(mapping->targetTable);
            }
        }
        std::vector<RowDetails::Target> targets;
        for (const QString& table : std::as_const(tables)) {
            std::vector<const contract::MapLine*> lines;
            for (const Mapping* mapping : procedure.needs.mappings) {
                for (const contract::MapLine& line : mapping->lines) {
                    if (IsOfRow(*mapping) && mapping->targetTable == table && !Has(lines, line.target)) {
                        lines.push_back(&line);
                    }
                }
            }
            targets.push_back(TargetOf(table, lines));
        }
        return targets;
    }

private:
    using Lines = std::vector<const contract::MapLine*>;

    bool IsOfRow(const Mapping& mapping) const {
        return mapping.sourceTable.compare(m_name.table, Qt::CaseInsensitive) == 0;
    }
    static bool Has(const Lines& lines, const QString& target) {
        return std::any_of(lines.begin(), lines.end(), [&](const auto* line) { return line->target == target; });
    }

    RowDetails::Target TargetOf(const QString& table, const Lines& lines) {
        RowDetails::Target target;
        const schema::Table* known = schema::FindTable(table);
        const bool isShared = known == nullptr || known->shared;
        target.table = isShared ? table : QString(m_run.company + u'_' + table);
        const QVector<NamedValue> row = FindRow(target, known, lines);
        for (const contract::MapLine* line : lines) {
            QStringList values;
            for (const QString& column : line->sources) {
                values.append(TextOf(m_details.source, column));
            }
            values.removeAll(QString());
            target.fields.push_back({line->target, TextOf(row, line->target), line->sources.join(QStringLiteral(", ")),
                                     values.join(QStringLiteral(" | ")), line->rule.text});
        }
        return target;
    }

    /// The only row that has the row's code in one of the columns that are fed with it.
    QVector<NamedValue> FindRow(RowDetails::Target& target, const schema::Table* known, const Lines& lines) {
        target.trouble = QStringLiteral("Nessuna riga trovata con il codice di quella della sorgente.");
        for (const contract::MapLine* line : lines) {
            const schema::Column* column = known == nullptr ? nullptr : known->FindColumn(line->target);
            const QString code = line->sources.size() == 1 ? CodeIn(line->sources.front()) : QString();
            if (code.isEmpty() || column == nullptr || column->size == 0) {
                continue;
            }
            const auto row = OnlyRow(target.table, line->target, code);
            if (!row.isEmpty()) {
                target.trouble.clear();
                return row;
            }
        }
        return {};
    }

    QString CodeIn(const QString& column) const {
        for (const auto& [name, text] : m_name.codes) {
            if (name.compare(column, Qt::CaseInsensitive) == 0) {
                return text;
            }
        }
        return {};
    }

    QVector<NamedValue> OnlyRow(const QString& table, const QString& column, const QString& code) {
        SqlText query;
        query += QStringLiteral("SELECT * FROM %1 WHERE %2 = ").arg(table, column);
        query.Add(code, DataType::NVarChar);
        try {
            const ovErrors::Acting acting(m_session.Errors, ErrorAction::Abort);
            Recordset rows = m_session.Quadrix.ExecuteWC(query);
            if (rows.Eof()) {
                return {};
            }
            const QVector<NamedValue> first = ValuesOfRow(rows);
            rows.MoveNext();
            return rows.Eof() ? first : QVector<NamedValue>();
        } catch (const SqlError&) { // a database that lacks the table has no such row
            return {};
        }
    }

    Session& m_session;
    const Run& m_run;
    const RowName& m_name;
    const RowDetails& m_details;
};

} // namespace

RowDetails LookUp(Session& session, const History& history, const Run& run, const Note& note) {
    RowDetails details;
    const QString row = ReadRow(note.row);
    RowName name = Parsed(row);
    const Origin* origin = registry::Find(run.origin);
    const contract::Procedure* procedure = origin == nullptr ? nullptr : ProcedureOf(*origin, note.procedure);
    if (const auto reject = note.kind == GivenUpKind ? history.FindReject(note.id) : std::nullopt) {
        for (qsizetype i = 0; i < reject->row.columns.size(); ++i) {
            details.source.append({reject->row.columns.at(i), reject->row.values.at(i)});
        }
        name.table = reject->row.table.isEmpty() ? name.table : reject->row.table;
    }
    if (procedure == nullptr) {
        details.sourceTrouble = QStringLiteral("La procedura %1 non c'è più.").arg(note.procedure);
        return details;
    }
    const Origin* source = contract::SourceOf(*origin, *procedure);
    if (details.source.isEmpty() && source != nullptr) {
        ReadAgain(session, *source, row, details);
    } else if (details.source.isEmpty()) {
        details.sourceTrouble = QStringLiteral("La procedura non legge una sorgente che si possa riaprire.");
    }
    details.targets = Targets(session, run, name, details).Of(*procedure);
    return details;
}

} // namespace history
