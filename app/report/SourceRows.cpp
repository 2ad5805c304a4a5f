#include "app/report/SourceRows.h"

namespace proof {

namespace {

const QString Updates = QStringLiteral("UPDATE ");
const QString ById = QStringLiteral("RECORD_ID = ");

} // namespace

SourceRows::SourceRows(Session& session)
    : m_session(session),
      m_other(std::exchange(session.Quadrix.Written, [this](const QString& statement) { See(statement); })) {}

SourceRows::~SourceRows() { m_session.Quadrix.Written = m_other; }

/// Rows are rewritten by their RECORD_ID, which ends the statement; those that are not have no row of the source.
void SourceRows::See(const QString& statement) {
    if (m_other) {
        m_other(statement);
    }
    const qsizetype condition = statement.startsWith(Updates) ? statement.lastIndexOf(ById) : -1;
    if (condition < 0 || m_session.Errors.RowKey().isEmpty()) {
        return;
    }
    bool isNumber = false;
    const qint64 id = QStringView(statement).mid(condition + ById.size()).trimmed().toLongLong(&isNumber);
    if (isNumber) {
        constexpr qsizetype longestName = 60;
        const QString table = statement.mid(Updates.size(), longestName).simplified().section(u' ', 0, 0);
        m_rows[table].insert(id, m_session.Errors.RowKey());
    }
}

} // namespace proof
