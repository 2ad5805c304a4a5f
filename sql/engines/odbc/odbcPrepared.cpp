#include "sql/engines/odbc/odbcPrepared.h"

#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/engines/mysql/mySqlShape.h"

#include <QScopeGuard>
#include <QVersionNumber>

#include <algorithm>

namespace {

/// Code of MariaDB's client for a table that another program has changed since.
constexpr QLatin1String OtherColumns("2057");

/// Rows that a driver may hold at once.
constexpr qint64 RowsHeld = 10000;

bool IsMariaDb(const OdbcConnection& connection, const QVersionNumber& version) {
    return connection.Info(SQL_DBMS_NAME) == QLatin1String("MariaDB") &&
           QVersionNumber::fromString(connection.Info(SQL_DBMS_VER)) >= version;
}

/// Whether the server gives back what an INSERT has written.
bool CanReturn(const OdbcConnection& connection) { return IsMariaDb(connection, QVersionNumber(10, 5)); }

/// Whether the driver holds a result whole, whatever it is told, and the server can cut it.
bool HoldsResults(const OdbcConnection& connection) {
    return IsMariaDb(connection, QVersionNumber(10, 1, 2)) &&
           connection.Info(SQL_DRIVER_NAME).contains(QLatin1String("maodbc"), Qt::CaseInsensitive);
}

/// The value that cuts a result just behind the rows that may be held.
StatementShape::Value Limit() { return StatementShape::Value::OfInteger(RowsHeld + 1); }

/// The statement taken apart; drivers end a text at its first NUL, which is then left to the server to refuse.
StatementShape ShapeOf(const StatementShape& statement) {
    StatementShape source = mySqlShape::Of(statement);
    source.isCommon = source.isCommon && !source.shape.contains('\0') &&
                      std::none_of(source.values.begin(), source.values.end(),
                                   [](const auto& value) { return value.bytes.contains('\0'); });
    return source;
}

bool IsQuery(const StatementShape& source) { return source.verb == StatementShape::Verb::Select; }

} // namespace

OdbcPrepared::OdbcPrepared(std::shared_ptr<OdbcConnection> connection, IdentityColumn identityColumn)
    : m_connection(std::move(connection)),
      m_identityColumn(std::move(identityColumn)),
      m_canReturn(CanReturn(*m_connection)),
      m_holdsResults(HoldsResults(*m_connection)) {}

OdbcPrepared::Result OdbcPrepared::Query(const StatementShape& statement) {
    StatementShape source = ShapeOf(statement);
    const auto kept = source.isCommon && IsQuery(source) ? Take(source) : nullptr;
    if (kept == nullptr) {
        return {};
    }
    if (kept->isCut) {
        source.values.prepend(Limit());
    }
    try {
        kept->statement.Run(source.values, statement);
    } catch (const SqlError& error) {
        if (error.EngineCode() != OtherColumns) {
            throw;
        }
        Clear();
        return {};
    }
    const bool isCut = kept->isCut && kept->statement.RowsHeld() > RowsHeld;
    return {std::shared_ptr<OdbcStatement>(kept, &kept->statement), isCut};
}

std::optional<qint64> OdbcPrepared::Run(const StatementShape& statement) {
    const StatementShape source = ShapeOf(statement);
    const auto kept = source.isCommon && !IsQuery(source) ? Take(source) : nullptr;
    if (kept == nullptr) {
        return std::nullopt;
    }
    const auto close = qScopeGuard([&kept] { kept->statement.Close(); });
    kept->statement.Run(source.values, statement);
    if (kept->identity == Identity::MustBeAsked) {
        ForgetLastInsertId();
    }
    return kept->identity == Identity::Returned ? ReadIdentity(kept->statement) : kept->statement.RowsChanged();
}

/// The first row's is the one that the server would tell.
qint64 OdbcPrepared::ReadIdentity(OdbcStatement& statement) {
    qint64 rows = 0;
    for (; statement.Fetch(); ++rows) {
        if (rows == 0) {
            m_lastInsertId = statement.Value(0).toLongLong();
        }
    }
    return rows;
}

std::shared_ptr<OdbcPrepared::Kept> OdbcPrepared::Take(const StatementShape& source) {
    return m_kept.Take(source.shape, [&] { return Prepare(source); });
}

std::shared_ptr<OdbcPrepared::Kept> OdbcPrepared::Prepare(const StatementShape& source) {
    const QString text = mySqlShape::Text(source);
    if (IsQuery(source)) {
        return PreparedQuery(source, text);
    }
    const QString table = mySqlShape::InsertedTable(source);
    const std::optional<QString> column = table.isEmpty() ? QString() : FindIdentity(table, source);
    if (column && column->isEmpty()) {
        return Prepared(source, text, Identity::None);
    }
    if (column && m_canReturn) {
        // Asked for afterwards, the value would take a statement of its own.
        if (auto kept =
                Prepared(source, text + QStringLiteral(" RETURNING ") + MySqlName(*column), Identity::Returned)) {
            return kept;
        }
    }
    return Prepared(source, text, Identity::MustBeAsked);
}

/// What the server does not tell is left to the INSERT itself, whose error is the one to be told.
std::optional<QString> OdbcPrepared::FindIdentity(const QString& table, const StatementShape& source) {
    try {
        return m_identityColumn(table);
    } catch (const SqlError& error) {
        if (m_connection->Lost()) {
            SqlError ofInsert(source.Text(), error.EngineMessage(), error.EngineCode());
            ofInsert.Reword(error.Message());
            ofInsert.SetMayPass(true);
            throw ofInsert;
        }
        return std::nullopt;
    }
}

std::shared_ptr<OdbcPrepared::Kept> OdbcPrepared::PreparedQuery(const StatementShape& source, const QString& text) {
    // The driver prepares only what holds a value: the limit is one.
    const QString cut = QStringLiteral("SET STATEMENT sql_select_limit=CAST(? AS UNSIGNED) FOR ") + text;
    StatementShape withLimit = source;
    withLimit.text = source.Text().toUtf8(); // for errors, without the limit
    withLimit.values.prepend(Limit());
    if (auto kept = m_holdsResults ? Prepared(withLimit, cut, Identity::None) : nullptr) {
        kept->isCut = true;
        return kept;
    }
    return Prepared(source, text, Identity::None);
}

std::shared_ptr<OdbcPrepared::Kept> OdbcPrepared::Prepared(const StatementShape& source, const QString& text,
                                                           Identity identity) {
    auto kept = std::make_shared<Kept>(m_connection);
    kept->identity = identity;
    const bool isPrepared = kept->statement.Prepare(text, source.values.size(), source.Text());
    return isPrepared ? kept : nullptr;
}
