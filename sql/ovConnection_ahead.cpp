#include "sql/mod_ovTools.h"
#include "sql/ovConnection.h"
#include "sql/text/dialect.h"
#include "sql/text/writtenParts.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

// How a connection goes ahead of a database that is far away: a round to a server takes as long as the server's work on
// many rows.

namespace {

/// Values that are asked for at once.
constexpr qsizetype MostAsked = 500;

} // namespace

/// Whether the database is far away, and gives what going ahead takes.
bool ovConnection::CanGoAhead() {
    if (!m_longest) {
        m_longest = m_engine->LongestInsert();
        m_keepsAnswers = *m_longest > 0 && m_engine->KeepsItsView();
    }
    return *m_longest > 0;
}

PendingRows::Id ovConnection::Insert(const ovQueryConstructor& row, const QString& identity,
                                     const PendingRows::Links& links) {
    const SqlText statement = row.MakeStatement(StatementKind::Insert);
    if (!m_isAhead || m_lost) {
        ExecuteApart(statement, &row);
        return std::make_shared<qint64>(LastInsertId());
    }
    Show(Written, Written ? statement.Text() : QString());
    m_absent.Inserts(row, statement.Shape());
    m_answers.Forget(row.FullTableName());
    for (const PendingRows::Link& link : links) {
        m_absent.Forget(row.FullTableName(), link.column);
    }
    const PendingRows::Id id = m_pending.Add(row, identity, links);
    if (m_pending.IsFull(*m_longest)) {
        SendPending();
    }
    return id;
}

/// What a statement could see or depend on goes before it.
void ovConnection::SendBefore(const QByteArray& statement, bool onlyReads) {
    if (!onlyReads || m_pending.AreNamedIn(statement)) {
        SendPending();
    }
    if (!onlyReads) {
        SendMark();
        const QString table = writtenParts::TableName(QString::fromUtf8(statement));
        table.isEmpty() ? m_answers.Clear() : m_answers.Forget(table);
        ForgetNewTexts();
    }
}

void ovConnection::SendBefore(const QString& statement) {
    if (m_isAhead) {
        SendBefore(statement.toUtf8(), dialect::OnlyReads(statement));
    }
}

void ovConnection::SendPending() {
    if (m_pending.IsEmpty()) {
        return;
    }
    if (m_pendingMark) {
        Send(*m_pendingMark);
        SendMark();
    }
    Send(m_pending.Count());
}

/// Whoever catches the error on its way ends in nothing but a commit that raises it again.
void ovConnection::Send(size_t rows) {
    CheckAhead();
    try {
        m_pending.Send(rows, *m_longest, [this](const QString& statement, const std::vector<PendingRows::Id>& ids) {
            SendTogether(statement, ids);
        });
    } catch (const AheadError& error) {
        m_aheadFailure = error.Message();
        throw;
    }
}

/// Whose row it was that failed is not known: nothing is asked about it, and all are done again one by one.
void ovConnection::SendTogether(const QString& statement, const std::vector<PendingRows::Id>& ids) {
    if (statement.toUtf8().size() > *m_longest) { // one row alone
        throw AheadError(QStringLiteral("una riga nuova è troppo lunga per andare con altre"));
    }
    size_t given = 0;
    try {
        const auto numbers = m_engine->Query(TextFor(*m_engine, statement));
        for (; numbers->Next(); ++given) {
            if (given < ids.size()) {
                *ids[given] = numbers->Value(0).toLongLong();
            }
        }
    } catch (SqlError& error) {
        NoticeLoss(error);
        throw AheadError(error.Message());
    }
    if (given != ids.size()) {
        throw AheadError(QStringLiteral("il database ha dato i numeri di %1 righe su %2")
                             .arg(QString::number(given), QString::number(ids.size())));
    }
}

void ovConnection::CheckAhead() const {
    if (!m_aheadFailure.isEmpty()) {
        throw AheadError(m_aheadFailure);
    }
}

/// What was taken for true must be true for the database in the end.
void ovConnection::MakeSure() {
    CheckAhead();
    for (const AbsentValues::Assumption& assumption : m_absent.Assumed()) {
        MakeSure(assumption);
    }
}

void ovConnection::MakeSure(const AbsentValues::Assumption& assumption) {
    QStringList found;
    for (qsizetype from = 0; from < assumption.absent.size(); from += MostAsked) {
        QString query = QStringLiteral("SELECT %1 FROM %2 WHERE %1 IN (").arg(assumption.column, assumption.table);
        QStringView lead;
        for (const QString& value : assumption.absent.mid(from, MostAsked)) {
            query += lead + TextLiteral(*this, value);
            lead = u", ";
        }
        for (Recordset rows = Ask(query + u')'); !rows.Eof(); rows.MoveNext()) {
            found.append(rows.Fields(0).Value().toString());
        }
    }
    if (!m_absent.Holds(assumption, found)) {
        ++m_overtaken;
        throw AheadError(
            QStringLiteral("un altro programma ha scritto in %1.%2").arg(assumption.table, assumption.column));
    }
}

/// A question of its own, which nobody is to decide about.
Recordset ovConnection::Ask(const QString& query) {
    return Recordset(m_engine->Query(TextFor(*m_engine, query)), query);
}
