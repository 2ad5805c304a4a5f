#include "sql/engines/odbc/odbcPortions.h"

#include "sql/engines/mysql/mySqlSession.h"

namespace {

constexpr int RowsAtOnce = 2000;

QString NewTable() {
    static std::atomic_int count = 0;
    return QStringLiteral("QDX_ROWS_%1").arg(++count);
}

} // namespace

/// A session that only reads may make a table of its own no more than any other: it writes for that long.
class OdbcPortions::Writing {
public:
    explicit Writing(OdbcPortions& portions)
        : m_portions(portions) {
        Set(MySqlReadWrite);
    }
    ~Writing() {
        try {
            Set(MySqlReadOnly);
        } catch (const SqlError&) {
            // The connection has fallen, and with it the session.
            return;
        }
    }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

private:
    void Set(const char* mode) {
        if (m_portions.m_connection->IsReadOnly()) {
            m_portions.m_portion.Close();
            m_portions.m_portion.Run(QLatin1String(mode), m_portions.m_statement);
        }
    }

    OdbcPortions& m_portions;
};

OdbcPortions::OdbcPortions(std::shared_ptr<OdbcConnection> connection, const QString& text, QString statement)
    : m_connection(std::move(connection)),
      m_statement(std::move(statement)),
      m_table(NewTable()),
      m_portion(m_connection) {
    {
        const Writing writing(*this);
        m_portion.Run(QStringLiteral("CREATE TEMPORARY TABLE %1 (QDX_N BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY) "
                                     "ENGINE=Aria TRANSACTIONAL=0 AS ")
                              .arg(m_table) +
                          text,
                      m_statement);
    }
    ReadPortion();
    m_columns = m_portion.Columns().mid(1);
}

OdbcPortions::~OdbcPortions() {
    try {
        m_portion.Close();
        const Writing writing(*this);
        m_portion.Run(QStringLiteral("DROP TEMPORARY TABLE IF EXISTS ") + m_table, m_statement);
    } catch (const SqlError&) {
        // It goes with the connection.
        return;
    }
}

void OdbcPortions::ReadPortion() {
    m_portion.Close();
    m_portion.Run(QStringLiteral("SELECT * FROM %1 WHERE QDX_N > %2 ORDER BY QDX_N LIMIT %3")
                      .arg(m_table)
                      .arg(m_last)
                      .arg(RowsAtOnce),
                  m_statement);
}

bool OdbcPortions::Next() {
    if (m_connection->TakeInterruption()) {
        throw SqlError(m_statement, QStringLiteral("interrotto"));
    }
    m_hasRow = m_portion.Fetch();
    if (!m_hasRow) {
        ReadPortion();
        m_hasRow = m_portion.Fetch();
    }
    if (m_hasRow) {
        m_last = m_portion.Value(0).toLongLong();
    }
    return m_hasRow;
}

QVariant OdbcPortions::Value(int column) const {
    return m_hasRow && column >= 0 ? m_portion.Value(column + 1) : QVariant();
}
