#include "adapters/contract/kinds/documentChecks.h"

#include <algorithm>

namespace contract {

QString ColumnNames(const QStringList& columns) {
    return (columns.size() == 1 ? QStringLiteral("colonna '%1'") : QStringLiteral("colonne '%1'"))
        .arg(columns.join(QStringLiteral("', '")));
}

namespace {

/// The columns without an alias.
QStringList Unqualified(const QStringList& columns) {
    QStringList names;
    for (const QString& column : columns) {
        names.append(column.mid(column.indexOf(u'.') + 1));
    }
    names.removeDuplicates();
    return names;
}

} // namespace

void DocumentChecks::ReadTwins(const QString& singleCode, const LeavesOut& leavesOut) {
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
        if (IsTwin(row, leavesOut)) {
            m_twins.insert(TiesOf(row));
        }
    }
}

/// Of heads that are left out nothing is read.
bool DocumentChecks::IsTwin(const SourceRow& ties, const LeavesOut& leavesOut) const {
    if (!leavesOut) {
        return true;
    }
    ChildTable heads{.table = m_kind.declared.source.table, .order = m_kind.ties.join(QStringLiteral(", "))};
    for (const QString& tie : m_kind.ties) {
        heads.on.push_back({tie, tie, true});
    }
    int count = 0;
    heads.ForEach(m_run.GetSession(), ties, [&](const SourceRow& head) { count += leavesOut(head).isEmpty() ? 1 : 0; });
    return count > 1;
}

QString DocumentChecks::TiesOf(const SourceRow& head) const {
    return GroupText(head, BareColumns(m_kind.ties.join(QStringLiteral(", ")))).toUpper();
}

void DocumentChecks::TellUnjoined() const {
    const ChildTable& rows = m_kind.declared.rows;
    const QString& heads = m_kind.declared.source.table;
    QStringList fromRows;
    QStringList fromHeads;
    QStringList namesOfRow;
    for (const Tie& tie : rows.on) {
        namesOfRow.append(tie.column);
        fromRows.append(tie.Condition(QStringLiteral("L"), QStringLiteral("O")));
        fromHeads.append(tie.Condition(QStringLiteral("O"), QStringLiteral("L")));
    }
    namesOfRow += rows.order.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    // A column that may be blank does not tell that the other row is not there.
    const auto told = std::ranges::find(rows.on, false, &Tie::tiesNulls);
    if (told == rows.on.end()) {
        return;
    }
    const QString both = QStringLiteral(" AND ");
    TellUnmatched(m_run, {rows.table, heads, fromRows.join(both), told->Other(),
                          QString(m_kind.rowCondition).replace("J1.", "L."), Unqualified(namesOfRow)});
    if (m_kind.declared.reading == Reading::Joined) { // else each head is read, whatever rows it has
        TellUnmatched(m_run, {heads, rows.table, fromHeads.join(both), told->column,
                              QString(m_kind.headCondition).replace("T.", "L."), Unqualified(m_kind.ties)});
    }
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

int DocumentChecks::YearOf(const SourceRow& head) const {
    constexpr int century = 100;
    Session& session = m_run.GetSession();
    const DocumentHeadFields& fields = m_kind.declared.head;
    const int ofDay = fields.day.Day(session, head).toDateTime().date().year();
    if (!fields.year.IsSet()) {
        return ofDay;
    }
    const int year = fields.year.WholeNumber(session, head);
    if (year <= 0) {
        throw ImportError(ColumnNames(fields.year.Columns()) +
                          QStringLiteral(": '%1' non è un anno").arg(fields.year.Text(session, head)));
    }
    if (year >= century) {
        return year;
    }
    if (year != ofDay % century) {
        throw ImportError(ColumnNames(fields.year.Columns()) +
                          QStringLiteral(": l'anno '%1' ha due cifre, e non sono le ultime di quello della data, '%2'")
                              .arg(fields.year.Text(session, head), QString::number(ofDay)));
    }
    return ofDay;
}

} // namespace contract
