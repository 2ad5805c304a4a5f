#include "sql/engines/mysql/mySqlStatement.h"

#include "sql/engines/mysql/mySqlValue.h"

#include <mysql.h>

#include <errmsg.h>

#include <algorithm>

MySqlStatement::MySqlStatement(std::shared_ptr<MySqlConnection> connection)
    : m_connection(std::move(connection)),
      m_handle(m_connection->NewStatement()) {}

MySqlStatement::~MySqlStatement() {
    Close();
    if (m_handle != nullptr) {
        mysql_stmt_close(m_handle);
    }
}

SqlError MySqlStatement::MakeError(const QString& statement) {
    return m_connection->MakeError(statement, mysql_stmt_errno(m_handle), mysql_stmt_error(m_handle));
}

bool MySqlStatement::Prepare(const QByteArray& text, qsizetype values, const QString& statement) {
    if (m_handle == nullptr) {
        return false;
    }
    if (mysql_stmt_prepare(m_handle, text.constData(), static_cast<unsigned long>(text.size())) != 0) {
        SqlError error = MakeError(statement);
        error.SetAnswerLost(false); // nothing has run yet
        if (m_connection->Lost()) {
            throw error;
        }
        return false;
    }
    return mysql_stmt_param_count(m_handle) == static_cast<unsigned long>(values) && Describe();
}

bool MySqlStatement::Describe() {
    const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(mysql_stmt_result_metadata(m_handle),
                                                                          &mysql_free_result);
    const unsigned count = result == nullptr ? 0 : mysql_num_fields(result.get());
    for (unsigned column = 0; column < count; ++column) {
        const MYSQL_FIELD& field = *mysql_fetch_field_direct(result.get(), column);
        m_columns.append(QString::fromUtf8(field.name));
        m_names.append(field.name);
        if (!mySqlValue::IsSamePrepared(field)) {
            return false;
        }
    }
    return true;
}

bool MySqlStatement::Run(const QVector<StatementShape::Value>& values, const StatementShape& statement) {
    m_statement = statement;
    std::vector<MYSQL_BIND> places(static_cast<size_t>(values.size()));
    size_t index = 0;
    qsizetype bytes = 0;
    for (const StatementShape::Value& value : values) {
        Bind(places[index], value);
        bytes += value.bytes.size();
        ++index;
    }
    if (!m_connection->Takes(bytes)) {
        throw m_connection->LengthError(statement.Text());
    }
    if ((!places.empty() && mysql_stmt_bind_param(m_handle, places.data()) != 0) || mysql_stmt_execute(m_handle) != 0) {
        if (mysql_stmt_errno(m_handle) == CR_NEW_STMT_METADATA) {
            return false;
        }
        throw MakeError(statement.Text());
    }
    m_isAtEnd = m_columns.isEmpty();
    return GivesSameColumns();
}

/// Another program may have changed the table: the server then names other columns.
bool MySqlStatement::GivesSameColumns() const {
    const MYSQL_FIELD* field = m_handle->mysql->fields;
    return std::all_of(m_names.begin(), m_names.end(),
                       [&field](const QByteArray& name) { return name == (field++)->name; });
}

/// The server reads the digits of a decimal as it would in a text.
void MySqlStatement::Bind(MYSQL_BIND& place, const StatementShape::Value& value) {
    if (value.kind == StatementShape::Value::Kind::Null) {
        place.buffer_type = MYSQL_TYPE_NULL;
        return;
    }
    if (value.kind == StatementShape::Value::Kind::Integer) {
        place.buffer_type = MYSQL_TYPE_LONGLONG;
        place.buffer = const_cast<qint64*>(&value.integer);
        return;
    }
    place.buffer_type = value.IsText() ? MYSQL_TYPE_STRING : MYSQL_TYPE_NEWDECIMAL;
    place.buffer = const_cast<char*>(value.bytes.constData());
    place.buffer_length = static_cast<unsigned long>(value.bytes.size());
    place.length = &place.buffer_length;
}

qint64 MySqlStatement::RowsChanged() const {
    const auto rows = mysql_stmt_affected_rows(m_handle);
    return rows == ~0ULL ? 0 : static_cast<qint64>(rows);
}

qint64 MySqlStatement::InsertId() const { return static_cast<qint64>(mysql_stmt_insert_id(m_handle)); }

bool MySqlStatement::Fetch() {
    if (m_isAtEnd) {
        return false;
    }
    const int result = mysql_stmt_fetch(m_handle);
    m_hasRow = result == 0 || result == MYSQL_DATA_TRUNCATED;
    m_isAtEnd = !m_hasRow;
    if (!m_hasRow && result != MYSQL_NO_DATA) {
        throw MakeError(m_statement.Text());
    }
    return m_hasRow;
}

QVariant MySqlStatement::Value(int column) const {
    if (!m_hasRow || column < 0 || column >= m_columns.size()) {
        return {};
    }
    const auto place = static_cast<unsigned>(column);
    return mySqlValue::OfRow(m_handle, place, m_handle->fields[place]);
}

void MySqlStatement::Close() noexcept {
    m_hasRow = false;
    if (!m_isAtEnd) {
        m_connection->SkipRest([this] { return mysql_stmt_fetch(m_handle) != 0; });
        m_isAtEnd = true;
    }
    if (m_handle != nullptr && !m_columns.isEmpty()) {
        mysql_stmt_free_result(m_handle);
    }
}
