#include "sql/odbcPrepared.h"

#include "sql/mySqlCatalog.h"
#include "sql/mySqlShape.h"

#include <QVersionNumber>

namespace {

/// Code of MariaDB's client for a table that another program has changed since.
constexpr QLatin1String OtherColumns("2057");

/// Whether the server gives back what an INSERT has written.
bool CanReturn(const OdbcConnection& connection) {
    const auto version = QVersionNumber::fromString(connection.Info(SQL_DBMS_VER));
    return connection.Info(SQL_DBMS_NAME) == QLatin1String("MariaDB") && version >= QVersionNumber(10, 5);
}

/// The statement taken apart; drivers end a text at its first NUL, which is then left to the server to refuse.
StatementShape ShapeOf(const QString& statement) {
    StatementShape source = mySqlShape::Of(statement);
    source.isCommon = source.isCommon && !statement.contains(QChar());
    return source;
}

} // namespace

OdbcPrepared::OdbcPrepared(std::shared_ptr<OdbcConnection> connection, IdentityColumn identityColumn)
    : m_connection(std::move(connection)),
      m_identityColumn(std::move(identityColumn)),
      m_canReturn(CanReturn(*m_connection)) {}

std::shared_ptr<OdbcStatement> OdbcPrepared::Query(const QString& statement) {
    const StatementShape source = ShapeOf(statement);
    if (!source.isCommon || !mySqlShape::IsQuery(source)) {
        return nullptr;
    }
    const auto kept = Take(source);
    if (kept == nullptr) {
        return nullptr;
    }
    try {
        kept->statement.Run(source.values, statement);
    } catch (const SqlError& error) {
        if (error.EngineCode() != OtherColumns) {
            throw;
        }
        Clear();
        return nullptr;
    }
    return {kept, &kept->statement};
}

std::optional<qint64> OdbcPrepared::Run(const QString& statement) {
    const StatementShape source = ShapeOf(statement);
    const auto kept = source.isCommon ? Take(source) : nullptr;
    if (kept == nullptr) {
        return std::nullopt;
    }
    kept->statement.Run(source.values, statement);
    const qint64 rows =
        kept->identity == Identity::Returned ? ReadIdentity(kept->statement) : kept->statement.RowsChanged();
    if (kept->identity == Identity::MustBeAsked) {
        ForgetLastInsertId();
    }
    kept->statement.Close();
    return rows;
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
    const QString table = mySqlShape::InsertedTable(source);
    const QString identity = table.isEmpty() ? QString() : m_identityColumn(table);
    if (!identity.isEmpty() && m_canReturn) {
        // Asked for afterwards, the value would take a statement of its own.
        if (auto kept =
                Prepared(source, text + QStringLiteral(" RETURNING ") + MySqlName(identity), Identity::Returned)) {
            return kept;
        }
    }
    return Prepared(source, text, identity.isEmpty() ? Identity::None : Identity::MustBeAsked);
}

std::shared_ptr<OdbcPrepared::Kept> OdbcPrepared::Prepared(const StatementShape& source, const QString& text,
                                                           Identity identity) {
    auto kept = std::make_shared<Kept>(m_connection);
    kept->identity = identity;
    const bool isPrepared = kept->statement.Prepare(text, source.values.size(), QString::fromUtf8(source.text));
    return isPrepared ? kept : nullptr;
}
