#include "app/history/Referring.h"

#include "app/history/keptChanges.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
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
void Referring::AddRows(const Column& column, const brokenReferences::Reference& reference, const Codes& gone,
                        std::vector<LeftRows>& all) const {
    const QString owned =
        reference.owner.isEmpty() ? QString() : QStringLiteral(" AND %1 = '%2'").arg(reference.owner, column.table);
    const QString target = PhysicalName(column.table);
    for (const QString& table : brokenReferences::ReferringTables(m_quadrix, reference, column.table, m_company)) {
        if (!IsThere(table, reference.column)) {
            continue;
        }
        LeftRows left{reference, table, target == column.table};
        left.isOfMerged = !left.isOfAll && table != PhysicalName(reference.table);
        const bool isNamed = IsThere(table, QStringLiteral("USMDF"));
        Recordset rows = m_quadrix.ExecuteWC(
            QStringLiteral(
                "SELECT RECORD_ID, %1, %6 FROM %2 WHERE %1 NOT IN (SELECT %3 FROM %4 WHERE %3 IS NOT NULL)%5")
                .arg(reference.column, table, column.name, target, owned,
                     isNamed ? QStringLiteral("USMDF") : QStringLiteral("NULL")));
        for (; !rows.Eof(); rows.MoveNext()) {
            const QString code = AsCompared(rows.Fields(1).Value());
            if (!gone.contains(code)) {
                continue;
            }
            const qint64 id = rows.Fields(0).Value().toLongLong();
            left.codes.insert(id, code);
            if (const QString who = AsCompared(rows.Fields(2).Value());
                !who.isEmpty() && who != schema::defaults::ImportUser) {
                left.ofHands.insert(id);
            }
        }
        if (!left.codes.isEmpty()) {
            all.push_back(std::move(left));
        }
    }
}

std::vector<Referring::LeftRows> Referring::AllRows() const {
    std::vector<LeftRows> all;
    for (const Column& column : m_columns) {
        const Codes gone = Codes(column.before).subtract(CodesOf(column));
        if (gone.isEmpty()) {
            continue;
        }
        for (const brokenReferences::Reference& reference : brokenReferences::ReferencesTo(column.table)) {
            if (reference.of == column.name) {
                AddRows(column, reference, gone, all);
            }
        }
    }
    return all;
}

Referring::Left Referring::WhatIsLeft() const {
    std::vector<LeftRows> all = AllRows();
    FindWriters(all);
    Left left;
    for (const LeftRows& each : all) {
        const QSet<qint64> before = QSet<qint64>(each.ofEarlier).subtract(each.ofHands);
        if (!before.isEmpty()) {
            left.before.push_back({each.table, each.reference.column, before.size(), each.isOfMerged});
        }
        if (before.size() < each.codes.size()) {
            left.byRun.push_back(
                {each.table, each.reference.column, each.codes.size() - before.size(), each.isOfMerged});
        }
    }
    return left;
}

/// What a later run has written goes with that one; what stood in a table that was emptied since is no more its own.
void Referring::FindWriters(std::vector<LeftRows>& left) const {
    QStringList places;
    QVariantList values{m_run};
    for (const LeftRows& each : left) {
        places.append(QStringLiteral("?"));
        values.append(each.table);
    }
    if (left.empty()) {
        return;
    }
    values << static_cast<int>(TargetChange::Kind::Inserted) << static_cast<int>(TargetChange::Kind::Updated);
    std::map<qint64, qint64> runs; // with how many of those rows
    QStringList tables;
    Recordset rows = m_history.File().ExecuteWC(Statement(
        QString("SELECT C.target_table, C.target_id, C.inserted, P.run, R.company, C.before FROM changes C JOIN "
                "procedures P ON P.id = C.procedure JOIN runs R ON R.id = P.run WHERE P.run <> ? AND P.undone IS NULL "
                "AND C.target_table IN (" +
                places.join(u',') +
                ") AND C.kind IN (?, ?) AND NOT EXISTS (SELECT 1 FROM touched_tables T JOIN procedures Q ON Q.id = "
                "T.procedure WHERE T.target_table = C.target_table AND T.emptied = 1 AND T.emptied_rows IS NULL AND "
                "Q.run > P.run) AND " +
                WroteTo(m_target, "R") + " ORDER BY C.id"),
        values));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString inserted = rows.Fields(2).Value().toString();
        for (LeftRows& each : left) {
            const auto take = [&](qint64 id) {
                if (TakeWriter(each, id, rows)) {
                    ++runs[rows.Fields(3).Value().toLongLong()];
                    tables += tables.contains(each.table) ? QStringList() : QStringList(each.table);
                }
            };
            if (each.table != rows.Fields(0).Value().toString()) {
                continue;
            }
            inserted.isEmpty() ? take(rows.Fields(1).Value().toLongLong())
                               : ForEachInserted(inserted, [&](qint64 id, qint64) { take(id); });
        }
    }
    if (!runs.empty()) {
        throw ImportError(
            QStringLiteral("l'esecuzione %1 non si annulla prima di altre, che hanno scritto righe che si "
                           "riferiscono a ciò che questa ha inserito (%2). %3")
                .arg(QString::number(m_run), tables.join(QStringLiteral(", ")), FirstToUndo(runs)));
    }
}

/// Takes that another run has written a row. Returns whether that is one which must go first: a later one that gave it
/// the code, or wrote it again behind such a one. Writing the code again that was there already makes no reference.
bool Referring::TakeWriter(LeftRows& rows, qint64 id, const Recordset& change) const {
    const auto code = rows.codes.constFind(id);
    if (code == rows.codes.cend() || rows.isOfMerged) {
        return false;
    }
    if (change.Fields(3).Value().toLongLong() < m_run) {
        rows.ofEarlier.insert(id);
        return false;
    }
    if (!rows.isOfAll && change.Fields(4).Value().toString() != m_company) {
        return false;
    }
    const bool isNew = !change.Fields(2).Value().toString().isEmpty();
    if (!isNew && !rows.ofLater.contains(id)) {
        const QVector<NamedValue> before = ValuesOf(change.Fields(5).Value().toString());
        const auto own = std::find_if(before.begin(), before.end(), [&rows](const NamedValue& value) {
            return value.name.compare(rows.reference.column, Qt::CaseInsensitive) == 0;
        });
        if (own == before.end() || AsCompared(own->value) == *code) {
            return false;
        }
    }
    rows.ofLater.insert(id);
    return true;
}

} // namespace history
