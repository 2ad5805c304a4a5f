#include "adapters/contract/run/Account.h"

#include "sql/visibleText.h"

namespace contract {

namespace {

constexpr qsizetype KeptReasons = 1000; ///< rows given up that the result lists; the log names them all

} // namespace

bool IsWanting(const QString& rule) {
    const QStringList wanting{ArticleMissing, BillMissing,   CamProductMissing, CustomerMissing, FileMissing,
                              PartyMissing,   RecordMissing, SheetMissing,      SupplierMissing};
    return wanting.contains(rule);
}

void Account::Count(RowOutcome outcome, const QString& rule) {
    switch (outcome) {
    case RowOutcome::Inserted:
        ++m_row.inserted;
        break;
    case RowOutcome::Updated:
        ++m_row.updated;
        break;
    case RowOutcome::Skipped:
        ++m_row.skipped;
        ++m_row.skippedBy[rule];
        break;
    }
}

template<class Into>
void Account::Add(const Tally& tally, Into& into) {
    into.inserted += tally.inserted;
    into.updated += tally.updated;
    into.skipped += tally.skipped;
    for (const auto& [rule, rows] : tally.skippedBy.asKeyValueRange()) {
        into.skippedBy[rule] += rows;
    }
    for (const auto& [table, count] : tally.tables.asKeyValueRange()) {
        into.tables[table].inserted += count.inserted;
        into.tables[table].updated += count.updated;
    }
}

void Account::EndRow() {
    Add(m_row, m_done);
    m_row = {};
}

void Account::DropClasses() { m_row = {.tables = m_row.tables}; }

void Account::Commit() {
    Add(m_done, Result);
    m_done = {};
}

QString Account::GiveUp(const QString& key, const QString& reason) {
    ++Result.givenUpCount;
    if (Result.givenUp.size() < KeptReasons) {
        Result.givenUp.append({VisibleLine(key), VisibleLine(reason)});
    }
    return VisibleLine(QStringLiteral("Riga abbandonata: %1: %2").arg(key, reason));
}

QString Account::RowText(const std::function<QString(const QString& table)>& fullName) const {
    QStringList parts;
    for (const auto& [table, count] : m_row.tables.asKeyValueRange()) {
        parts.append(QStringLiteral("%1 (%2)").arg(fullName(table)).arg(count.inserted + count.updated));
    }
    return parts.join(QStringLiteral(", "));
}

qint64 Account::Written(const QString& table) const {
    qint64 rows = 0;
    for (const auto* tables : {&Result.tables, &m_done.tables, &m_row.tables}) {
        const RunResult::TableCount count = tables->value(table);
        rows += count.inserted + count.updated;
    }
    return rows;
}

} // namespace contract
