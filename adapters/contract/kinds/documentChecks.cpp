#include "adapters/contract/kinds/documentChecks.h"

namespace contract {

QString ColumnNames(const QStringList& columns) {
    return (columns.size() == 1 ? QStringLiteral("colonna '%1'") : QStringLiteral("colonne '%1'"))
        .arg(columns.join(QStringLiteral("', '")));
}

void DocumentChecks::ReadTwins(const QString& singleCode) {
    if (m_kind.ties.isEmpty()) {
        return;
    }
    const SourceTable& heads = m_kind.declared.source;
    const QString columns = m_kind.ties.join(QStringLiteral(", "));
    Recordset rows = m_run.GetSession().SourceConnection().ExecuteWC(
        QStringLiteral("SELECT %1 FROM %2").arg(columns, heads.table) +
        m_run.OnlyCode(QStringLiteral("\rWHERE"), heads.key, singleCode) +
        QStringLiteral("\rGROUP BY %1\rHAVING COUNT(*) > 1").arg(columns));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        m_twins.insert(TiesOf(row));
    }
}

QString DocumentChecks::TiesOf(const SourceRow& head) const {
    return GroupText(head, BareColumns(m_kind.ties.join(QStringLiteral(", ")))).toUpper();
}

void DocumentChecks::TellUnjoined() const {
    const ChildTable& rows = m_kind.declared.rows;
    const QString& heads = m_kind.declared.source.table;
    QStringList fromRows;
    QStringList fromHeads;
    for (const Tie& tie : rows.on) {
        fromRows.append(QStringLiteral("O.%2 = L.%1").arg(tie.column, tie.Other()));
        fromHeads.append(QStringLiteral("O.%1 = L.%2").arg(tie.column, tie.Other()));
    }
    const QString both = QStringLiteral(" AND ");
    TellUnmatched(m_run, {rows.table, heads, fromRows.join(both), rows.on.front().Other(),
                          QString(rows.where).replace("J1.", "L.")});
    TellUnmatched(m_run, {heads, rows.table, fromHeads.join(both), rows.on.front().column,
                          QString(m_kind.headCondition).replace("T.", "L.")});
}

void DocumentChecks::Require(const SourceRow& head, const QVariant& day) const {
    if (day.isNull()) {
        throw ImportError(ColumnNames(m_kind.declared.head.day.Columns()) +
                          QStringLiteral(": il documento non ha una data"));
    }
    if (!m_twins.isEmpty() && m_twins.contains(TiesOf(head))) {
        const QStringList columns = BareColumns(m_kind.ties.join(QStringLiteral(", ")));
        throw ImportError(ColumnNames(columns) +
                          QStringLiteral(": più testate hanno '%1', le righe non si possono distinguere")
                              .arg(GroupText(head, columns).replace(QChar(u'\x1f'), QLatin1String("', '"))));
    }
}

} // namespace contract
