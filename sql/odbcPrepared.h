#pragma once

#include "sql/keptStatements.h"
#include "sql/odbcStatement.h"

#include <functional>

/// The statements that a MySQL or MariaDB server behind ODBC keeps prepared. Its driver prepares and drops each query
/// anew when it is given as a text, and describes it anew, which takes longer than running it.
class OdbcPrepared {
public:
    /// Name of the identity column of a table; empty when it has none.
    using IdentityColumn = std::function<QString(const QString& table)>;

    OdbcPrepared(std::shared_ptr<OdbcConnection> connection, IdentityColumn identityColumn);

    /// Runs a query; its rows are still to be read. Raises `SqlError`.
    std::shared_ptr<OdbcStatement> Query(const QString& statement);
    /// Runs a statement and returns the number of rows changed; nothing when it is none to be prepared, and has not
    /// run. Raises `SqlError`.
    std::optional<qint64> Run(const QString& statement);

    /// Identity value given last; nothing when the server has to be asked.
    std::optional<qint64> LastInsertId() const { return m_lastInsertId; }
    /// Forgets it: rows were inserted another way.
    void ForgetLastInsertId() { m_lastInsertId.reset(); }
    /// Forgets what is prepared: the connection goes, or tables change.
    void Clear() { m_kept.Clear(); }

private:
    /// What becomes of the identity value of an INSERT.
    enum class Identity { None, Returned, MustBeAsked };
    struct Kept {
        explicit Kept(std::shared_ptr<OdbcConnection> connection)
            : statement(std::move(connection)) {}
        OdbcStatement statement;
        Identity identity = Identity::None;
    };

    std::shared_ptr<Kept> Take(const StatementShape& source);
    std::shared_ptr<Kept> Prepare(const StatementShape& source);
    std::shared_ptr<Kept> Prepared(const StatementShape& source, const QString& text, Identity identity);
    qint64 ReadIdentity(OdbcStatement& statement);

    std::shared_ptr<OdbcConnection> m_connection;
    IdentityColumn m_identityColumn;
    KeptStatements<Kept> m_kept;
    bool m_canReturn;
    std::optional<qint64> m_lastInsertId;
};
