#include "app/history/Referring.h"

#include "app/history/keptChanges.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

namespace history {

namespace {

QString AsCompared(const QVariant& code) { return mod_ovTools::ToText(code).trimmed().toUpper(); }

/// "Annullare prima la 9, poi la 7"
QString FirstToUndo(const std::map<qint64, qint64>& runs) {
    QStringList numbers;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        numbers.append(QStringLiteral("la %1").arg(run->first));
    }
    return QStringLiteral("Annullare prima ") + numbers.join(QStringLiteral(", poi "));
}

} // namespace

Referring::Referring(Session& session, const History& history, const Run& run)
    : m_quadrix(session.Quadrix),
      m_history(history),
      m_run(run.id),
      m_target(run.target),
      m_company(run.company) {
    QStringList written;
    {
        Recordset tables = history.File().ExecuteWC(Statement(
            "SELECT DISTINCT T.target_table FROM touched_tables T JOIN procedures P ON P.id = T.procedure WHERE "
            "P.run = ? AND T.emptied = 0",
            {run.id}));
        for (; !tables.Eof(); tables.MoveNext()) {
            written.append(tables.Fields(0).Value().toString());
        }
    }
    for (const schema::Table& table : schema::Tables()) {
        if (!written.contains(PhysicalName(table.name), Qt::CaseInsensitive)) {
            continue;
        }
        QStringList names;
        for (const brokenReferences::Reference& reference : brokenReferences::ReferencesTo(table.name)) {
            names += reference.of;
        }
        names.removeDuplicates();
        for (const QString& name : std::as_const(names)) {
            Column& column = m_columns.emplace_back(Column{table.name, name, {}});
            column.before = CodesOf(column);
        }
    }
}

QString Referring::PhysicalName(const QString& table) const {
    const schema::Table* known = schema::FindTable(table);
    return known == nullptr || known->shared ? table : QString(m_company + u'_' + table);
}

bool Referring::IsThere(const QString& table, const QString& column) const {
    const QVector<ColumnInfo> columns = m_quadrix.GetColumns(table);
    return std::any_of(columns.begin(), columns.end(), [&column](const ColumnInfo& each) {
        return each.name.compare(column, Qt::CaseInsensitive) == 0;
    });
}

Referring::Codes Referring::CodesOf(const Column& column) const {
    Codes codes;
    const QString table = PhysicalName(column.table);
    if (!IsThere(table, column.name)) {
        return codes;
    }
    Recordset rows = m_quadrix.ExecuteWC(QStringLiteral("SELECT %1 FROM %2").arg(column.name, table));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (const QString code = AsCompared(rows.Fields(0).Value()); !code.isEmpty()) {
            codes.insert(code);
        }
    }
    return codes;
}

/// @param gone codes of the column that are there no more
Referring::LeftRows Referring::RowsOf(const Column& column, const brokenReferences::Reference& reference,
                                      const Codes& gone) const {
    LeftRows left{reference, {}};
    const QString table = PhysicalName(reference.table);
    if (!IsThere(table, reference.column)) {
        return left;
    }
    const QString owned =
        reference.owner.isEmpty() ? QString() : QStringLiteral(" AND %1 = '%2'").arg(reference.owner, column.table);
    Recordset rows = m_quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, %1 FROM %2 WHERE %1 NOT IN (SELECT %3 FROM %4 WHERE %3 IS NOT NULL)%5")
            .arg(reference.column, table, column.name, PhysicalName(column.table), owned));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (gone.contains(AsCompared(rows.Fields(1).Value()))) {
            left.ids.insert(rows.Fields(0).Value().toLongLong());
        }
    }
    return left;
}

std::vector<brokenReferences::Broken> Referring::Left() const {
    std::vector<LeftRows> all;
    for (const Column& column : m_columns) {
        const Codes gone = Codes(column.before).subtract(CodesOf(column));
        if (gone.isEmpty()) {
            continue;
        }
        for (const brokenReferences::Reference& reference : brokenReferences::ReferencesTo(column.table)) {
            if (reference.of == column.name) {
                if (LeftRows left = RowsOf(column, reference, gone); !left.ids.isEmpty()) {
                    all.push_back(std::move(left));
                }
            }
        }
    }
    CheckLaterRuns(all);
    std::vector<brokenReferences::Broken> broken;
    for (const LeftRows& left : all) {
        broken.push_back({PhysicalName(left.reference.table), left.reference.column, left.ids.size()});
    }
    return broken;
}

/// What a later run has written goes with that one; what stood in a table that was emptied since is no more its own.
void Referring::CheckLaterRuns(const std::vector<LeftRows>& left) const {
    if (left.empty()) {
        return;
    }
    QHash<QString, QSet<qint64>> wanted;
    for (const LeftRows& each : left) {
        wanted[PhysicalName(each.reference.table)].unite(each.ids);
    }
    std::map<qint64, qint64> runs; // with how many of those rows
    QStringList tables;
    Recordset rows = m_history.File().ExecuteWC(Statement(
        QString("SELECT C.target_table, C.target_id, C.inserted, P.run FROM changes C JOIN procedures P ON "
                "P.id = C.procedure JOIN runs R ON R.id = P.run WHERE P.run > ? AND R.company = ? AND P.undone "
                "IS NULL AND C.kind IN (?, ?) AND NOT EXISTS (SELECT 1 FROM touched_tables T JOIN procedures "
                "Q ON Q.id = T.procedure WHERE T.target_table = C.target_table AND T.emptied = 1 AND "
                "T.emptied_rows IS NULL AND Q.run > P.run) AND " +
                WroteTo(m_target, "R")),
        {m_run, m_company, static_cast<int>(TargetChange::Kind::Inserted),
         static_cast<int>(TargetChange::Kind::Updated)}));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString table = rows.Fields(0).Value().toString();
        const auto ids = wanted.constFind(table);
        const auto take = [&](qint64 id) {
            if (ids->contains(id)) {
                ++runs[rows.Fields(3).Value().toLongLong()];
                tables += table;
            }
        };
        if (ids == wanted.cend()) {
            continue;
        }
        if (const QString inserted = rows.Fields(2).Value().toString(); !inserted.isEmpty()) {
            ForEachInserted(inserted, [&](qint64 id, qint64) { take(id); });
        } else {
            take(rows.Fields(1).Value().toLongLong());
        }
        tables.removeDuplicates();
    }
    if (!runs.empty()) {
        throw ImportError(
            QStringLiteral("l'esecuzione %1 non si annulla prima di altre, che hanno scritto righe che si "
                           "riferiscono a ciò che questa ha inserito (%2). %3")
                .arg(QString::number(m_run), tables.join(QStringLiteral(", ")), FirstToUndo(runs)));
    }
}

} // namespace history
