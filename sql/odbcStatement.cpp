#include "sql/odbcStatement.h"

namespace {

constexpr qsizetype LongestInteger = 18; ///< digits that fit 64 bits whatever they are

} // namespace

OdbcStatement::OdbcStatement(std::shared_ptr<OdbcConnection> connection)
    : m_connection(std::move(connection)),
      m_handle(m_connection->Handle()),
      m_inAnyOrder((m_connection->InfoBits(SQL_GETDATA_EXTENSIONS) & SQL_GD_ANY_ORDER) != 0) {}

void OdbcStatement::Run(const QString& text, const QString& statement) {
    Run(statement, [&text](SQLHSTMT handle) { return SQLExecDirectW(handle, odbc::Wide(text), SQL_NTS); });
}

bool OdbcStatement::Prepare(const QString& text, qsizetype values, const QString& statement) {
    if (!SQL_SUCCEEDED(SQLPrepareW(m_handle.Get(), odbc::Wide(text), SQL_NTS))) {
        const SqlError error = m_connection->MakeError(SQL_HANDLE_STMT, m_handle.Get(), statement);
        if (m_connection->Lost()) {
            throw error;
        }
        return false;
    }
    SQLSMALLINT places = 0;
    if (!SQL_SUCCEEDED(SQLNumParams(m_handle.Get(), &places)) || places != values) {
        return false;
    }
    m_parameters.resize(static_cast<size_t>(values));
    return true;
}

void OdbcStatement::Run(const QVector<StatementShape::Value>& values, const QString& statement) {
    SQLUSMALLINT place = 0;
    for (const StatementShape::Value& value : values) {
        Bind(place + 1U, m_parameters[place], value);
        ++place;
    }
    Run(statement, [](SQLHSTMT handle) { return SQLExecute(handle); });
}

void OdbcStatement::Bind(SQLUSMALLINT place, Parameter& parameter, const StatementShape::Value& value) {
    if (value.isText) {
        BindText(place, parameter, value.bytes, SQL_WVARCHAR);
        return;
    }
    bool isInteger = value.bytes.size() <= LongestInteger;
    const qint64 number = isInteger ? value.bytes.toLongLong(&isInteger) : 0;
    isInteger ? BindNumber(place, parameter, number) : BindText(place, parameter, value.bytes, SQL_DECIMAL);
}

/// The driver is told a place only when it is a new one: that costs more than writing there.
void OdbcStatement::BindNumber(SQLUSMALLINT place, Parameter& parameter, qint64 number) {
    parameter.number = number;
    parameter.length = sizeof(parameter.number);
    if (parameter.bound != &parameter.number) {
        SQLBindParameter(m_handle.Get(), place, SQL_PARAM_INPUT, SQL_C_SBIGINT, SQL_BIGINT, 0, 0, &parameter.number,
                         sizeof(parameter.number), &parameter.length);
        parameter.bound = &parameter.number;
    }
}

void OdbcStatement::BindText(SQLUSMALLINT place, Parameter& parameter, const QByteArray& text, SQLSMALLINT type) {
    parameter.text = QString::fromUtf8(text);
    parameter.length = static_cast<SQLLEN>(parameter.text.size() * qsizetype(sizeof(char16_t)));
    SQLBindParameter(m_handle.Get(), place, SQL_PARAM_INPUT, SQL_C_WCHAR, type,
                     static_cast<SQLULEN>(std::max<qsizetype>(1, parameter.text.size())), 0, odbc::Wide(parameter.text),
                     parameter.length, &parameter.length);
    parameter.bound = parameter.text.constData();
}

void OdbcStatement::Ran(SQLRETURN result) {
    m_row.clear();
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
        throw m_connection->MakeError(SQL_HANDLE_STMT, m_handle.Get(), m_statement);
    }
    SQLSMALLINT count = 0;
    SQLNumResultCols(m_handle.Get(), &count);
    if (count != m_columnCount) {
        m_columns.clear();
        m_columnCount = count;
    }
}

qint64 OdbcStatement::RowsChanged() const {
    SQLLEN rows = 0;
    return HasRows() || !SQL_SUCCEEDED(SQLRowCount(m_handle.Get(), &rows)) ? 0 : std::max<qint64>(0, rows);
}

bool OdbcStatement::Fetch() {
    m_row.assign(m_row.size(), std::nullopt);
    if (!HasRows()) {
        return false;
    }
    const SQLRETURN result = m_connection->Running(m_handle.Get(), [this] { return SQLFetch(m_handle.Get()); });
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
        throw m_connection->MakeError(SQL_HANDLE_STMT, m_handle.Get(), m_statement);
    }
    return result != SQL_NO_DATA;
}

void OdbcStatement::Describe() const {
    m_kinds.clear();
    m_positions.Clear();
    for (SQLSMALLINT place = 1; place <= m_columnCount; ++place) {
        const odbc::Column column = odbc::Describe(m_handle.Get(), static_cast<SQLUSMALLINT>(place));
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
        odbc::ReadValue(m_handle.Get(), static_cast<SQLUSMALLINT>(column + 1), m_kinds.at(column), value);
    if (!SQL_SUCCEEDED(result)) {
        throw m_connection->MakeError(SQL_HANDLE_STMT, m_handle.Get(), m_statement);
    }
    return value;
}

void OdbcStatement::Close() noexcept { SQLFreeStmt(m_handle.Get(), SQL_CLOSE); }
