#include "sql/engines/mysql/mySqlCursor.h"

#include "sql/engines/mysql/mySqlValue.h"

#include <mysql.h>

MySqlCursor::MySqlCursor(std::shared_ptr<MySqlConnection> connection, st_mysql_res* result, QString statement)
    : m_connection(std::move(connection)),
      m_result(result),
      m_statement(std::move(statement)) {
    const unsigned count = m_result == nullptr ? 0 : mysql_num_fields(m_result);
    for (unsigned column = 0; column < count; ++column) {
        m_columns.append(QString::fromUtf8(mysql_fetch_field_direct(m_result, column)->name));
    }
}

MySqlCursor::~MySqlCursor() {
    if (m_result != nullptr) {
        m_connection->SkipRest([this] { return mysql_fetch_row(m_result) == nullptr; });
        Release();
    }
}

void MySqlCursor::Release() noexcept {
    mysql_free_result(m_result);
    m_result = nullptr;
    m_row = nullptr;
    m_connection->DropFurtherResults();
}

bool MySqlCursor::Next() {
    if (m_result == nullptr) {
        return false;
    }
    m_row = mysql_fetch_row(m_result);
    if (m_row != nullptr) {
        m_lengths = mysql_fetch_lengths(m_result);
        return true;
    }
    const bool failed = m_connection->ErrorCode() != 0;
    const SqlError error = m_connection->MakeError(m_statement);
    Release();
    if (failed) {
        throw error;
    }
    return false;
}

QVariant MySqlCursor::Value(int column) const {
    if (m_row == nullptr || column < 0 || column >= m_columns.size() || m_row[column] == nullptr) {
        return {};
    }
    const QByteArray bytes = QByteArray::fromRawData(m_row[column], static_cast<qsizetype>(m_lengths[column]));
    return mySqlValue::OfText(bytes, *mysql_fetch_field_direct(m_result, static_cast<unsigned>(column)));
}
