#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Counterparty.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QStringList TablesOfNumbers{"NUM_TEL", "IND_WEB"};

} // namespace

EarlierImports::EarlierImports(ImportRun& run)
    : m_run(run) {
    for (const QString& table : QStringList{ContactTable, BranchTable} + TablesOfNumbers) {
        const Recordset last =
            run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT MAX(RECORD_ID) FROM ") + run.FullName(table));
        m_last.insert(table, last.Fields(0).Value().toLongLong());
    }
}

void EarlierImports::Drop(const QString& party) const {
    Session& session = m_run.GetSession();
    const QString byImport = QStringLiteral(" AND ") + OfImports(session);
    DropNumbers(QStringLiteral("CON_TRO"), party, byImport);
    for (const QString& table : {ContactTable, BranchTable}) {
        const QString earlier = Earlier(table, Equals(session, QStringLiteral("CDCON"), party) + byImport);
        Recordset rows = session.Quadrix.ExecuteWC(
            QStringLiteral("SELECT RECORD_ID FROM %1 WHERE ").arg(m_run.FullName(table)) + earlier);
        for (; !rows.Eof(); rows.MoveNext()) {
            DropNumbers(table, mod_ovTools::ToText(rows.Fields(0).Value()), {});
        }
        m_run.DeleteRows(table, earlier);
    }
}

/// @param further a condition on them, with its AND; empty for none
void EarlierImports::DropNumbers(const QString& owner, const QString& key, const QString& further) const {
    Session& session = m_run.GetSession();
    for (const QString& table : TablesOfNumbers) {
        m_run.DeleteRows(table,
                         Earlier(table, Equals(session, QStringLiteral("TBNAM"), owner) + QStringLiteral(" AND ") +
                                            Equals(session, QStringLiteral("TBKEY"), key) + further));
    }
}

/// Of the rows of a condition those that were there before the import, which may go on behind an interruption.
QString EarlierImports::Earlier(const QString& table, const QString& rows) const {
    QString earlier = rows + QStringLiteral(" AND RECORD_ID <= ") + QString::number(m_last.value(table));
    QStringList written;
    if (m_run.GoesOn()) {
        Recordset found = m_run.GetSession().Quadrix.ExecuteWC(
            QStringLiteral("SELECT RECORD_ID FROM %1 WHERE ").arg(m_run.FullName(table)) + earlier);
        for (; !found.Eof(); found.MoveNext()) {
            if (const qint64 id = found.Fields(0).Value().toLongLong(); m_run.HasWrittenBefore(table, id)) {
                written.append(QString::number(id));
            }
        }
    }
    if (!written.isEmpty()) {
        earlier += QStringLiteral(" AND RECORD_ID NOT IN (%1)").arg(written.join(QStringLiteral(", ")));
    }
    return earlier;
}

} // namespace contract
