#include "sql/engines/odbc/odbcStatement.h"

#include <algorithm>

namespace {

bool IsAscii(const QByteArray& bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

} // namespace

OdbcStatement::OdbcStatement(std::shared_ptr<OdbcConnection> connection)
    : m_connection(std::move(connection)),
      m_handle(m_connection->Handle()),
      m_age(m_connection->Age()),
      m_inAnyOrder((m_connection->InfoBits(SQL_GETDATA_EXTENSIONS) & SQL_GD_ANY_ORDER) != 0) {}

OdbcStatement::~OdbcStatement() {
    if (IsGone()) {
        m_handle.Forget();
    }
}

SqlError OdbcStatement::MakeError(const QString& statement) const {
    if (IsGone()) {
        return {statement, QStringLiteral("la connessione con il server è caduta")};
    }
    return m_connection->MakeError(SQL_HANDLE_STMT, Handle(), statement);
}

void OdbcStatement::Run(const QString& text, const QString& statement) {
    Run(statement, [&text](SQLHSTMT handle) { return SQLExecDirectW(handle, odbc::Wide(text), SQL_NTS); });
}

bool OdbcStatement::Prepare(const QString& text, qsizetype values, const QString& statement) {
    if (!SQL_SUCCEEDED(SQLPrepareW(Handle(), odbc::Wide(text), SQL_NTS))) {
        SqlError error = MakeError(statement);
        error.SetAnswerLost(false); // nothing has run yet
        if (m_connection->Lost()) {
            throw error;
        }
        return false;
    }
    SQLSMALLINT places = 0;
    if (!SQL_SUCCEEDED(SQLNumParams(Handle(), &places)) || places != values) {
        return false;
    }
    m_parameters.resize(static_cast<size_t>(values));
    return true;
}

void OdbcStatement::Run(const QVector<StatementShape::Value>& values, const StatementShape& statement) {
    SQLUSMALLINT place = 0;
    for (const StatementShape::Value& value : values) {
        Bind(place + 1U, m_parameters[place], value);
        ++place;
    }
    m_parts = statement;
    Run(QString(), [](SQLHSTMT handle) { return SQLExecute(handle); });
}

void OdbcStatement::Bind(SQLUSMALLINT place, Parameter& parameter, const StatementShape::Value& value) {
    if (value.kind == StatementShape::Value::Kind::Null) {
        parameter.bytes.resize(0);
        parameter.length = SQL_NULL_DATA;
        Bind(place, parameter, SQL_C_CHAR, SQL_VARCHAR, parameter.bytes.data());
    } else if (value.kind == StatementShape::Value::Kind::Integer) {
        parameter.number = value.integer;
        parameter.length = sizeof(parameter.number);
        Bind(place, parameter, SQL_C_SBIGINT, SQL_BIGINT, &parameter.number);
    } else if (!IsAscii(value.bytes)) {
        parameter.text.resize(0);
        parameter.text += QString::fromUtf8(value.bytes);
        parameter.length = static_cast<SQLLEN>(parameter.text.size() * qsizetype(sizeof(char16_t)));
        Bind(place, parameter, SQL_C_WCHAR, SQL_WVARCHAR, odbc::Wide(parameter.text));
    } else {
        // The same in every code page: the driver need not convert it.
        parameter.bytes.resize(0);
        parameter.bytes += value.bytes;
        parameter.length = static_cast<SQLLEN>(parameter.bytes.size());
        Bind(place, parameter, SQL_C_CHAR, value.IsText() ? SQL_VARCHAR : SQL_DECIMAL, parameter.bytes.data());
    }
}

/// The driver is told of a place only when it is a new one: that takes longer than writing there.
void OdbcStatement::Bind(SQLUSMALLINT place, Parameter& parameter, SQLSMALLINT type, SQLSMALLINT sqlType, void* data) {
    if (parameter.bound == data && parameter.sqlType == sqlType) {
        return;
    }
    constexpr SQLULEN LongestText = 1 << 20;
    const bool isFixed = type == SQL_C_SBIGINT;
    SQLBindParameter(Handle(), place, SQL_PARAM_INPUT, type, sqlType, isFixed ? 0 : LongestText, 0, data,
                     isFixed ? SQLLEN(sizeof(parameter.number)) : SQLLEN(LongestText), &parameter.length);
    parameter.bound = data;
    parameter.sqlType = sqlType;
}

void OdbcStatement::Ran(SQLRETURN result) {
    m_row.clear();
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
        throw MakeError(Statement());
    }
    SQLSMALLINT count = 0;
    SQLNumResultCols(Handle(), &count);
    if (count != m_columnCount) {
        m_columns.clear();
        m_columnCount = count;
    }
}

qint64 OdbcStatement::RowCount() const {
    SQLLEN rows = 0;
    return SQL_SUCCEEDED(SQLRowCount(Handle(), &rows)) ? std::max<qint64>(0, rows) : 0;
}

bool OdbcStatement::Fetch() {
    m_row.assign(m_row.size(), std::nullopt);
    if (!HasRows()) {
        return false;
    }
    const SQLRETURN result = m_connection->Running(Handle(), [this] { return SQLFetch(Handle()); });
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
        throw MakeError(Statement());
    }
    return result != SQL_NO_DATA;
}

bool OdbcStatement::NextResult() {
    const SQLRETURN result = m_connection->Running(Handle(), [this] { return SQLMoreResults(Handle()); });
    if (result == SQL_NO_DATA) {
        return false;
    }
    Ran(result);
    return true;
}

void OdbcStatement::Describe() const {
    m_kinds.clear();
    m_positions.Clear();
    for (SQLSMALLINT place = 1; place <= m_columnCount; ++place) {
        const odbc::Column column = odbc::Describe(Handle(), static_cast<SQLUSMALLINT>(place), m_connection->Texts());
        m_columns.append(column.name);
        m_kinds.append(column.kind);
    }
}

const QStringList& OdbcStatement::Columns() const {
    if (m_columns.isEmpty() && HasRows()) {
        Describe();
    }
    return m_columns;
}

QVariant OdbcStatement::Value(int column) const {
    if (column < 0 || column >= m_columnCount) {
        return {};
    }
    m_row.resize(static_cast<size_t>(m_columnCount));
    for (int before = m_inAnyOrder ? column : 0; before <= column; ++before) {
        std::optional<QVariant>& value = m_row[static_cast<size_t>(before)];
        if (!value) {
            value = Read(before);
        }
    }
    return *m_row[static_cast<size_t>(column)];
}

QVariant OdbcStatement::Read(int column) const {
    Columns();
    QVariant value;
    const SQLRETURN result =
        odbc::ReadValue(Handle(), static_cast<SQLUSMALLINT>(column + 1), m_kinds.at(column), value);
    if (!SQL_SUCCEEDED(result)) {
        throw MakeError(Statement());
    }
    return value;
}

void OdbcStatement::Close() noexcept {
    if (HasRows()) {
        SQLFreeStmt(Handle(), SQL_CLOSE);
    }
}
