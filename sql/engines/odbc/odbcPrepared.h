#pragma once

#include "sql/engines/keptStatements.h"
#include "sql/engines/odbc/odbcStatement.h"

#include <functional>

/// The statements that a MySQL or MariaDB server behind ODBC keeps prepared. Its driver prepares and drops each query
/// anew when it is given as a text, and describes it anew, which takes longer than running it.
class OdbcPrepared {
public:
    /// Name of the identity column of a table; empty when it has none.
    using IdentityColumn = std::function<QString(const QString& table)>;

    OdbcPrepared(std::shared_ptr<OdbcConnection> connection, IdentityColumn identityColumn);

    /// A query that has run.
    struct Result {
        std::shared_ptr<OdbcStatement> rows; ///< still to be read; null: none to be prepared, which has not run
        bool isCut = false;                  ///< there are more than the driver is to hold at once
    };
    /// Runs a query. Raises `SqlError`.
    Result Query(const StatementShape& statement);
    /// Runs a statement and returns the number of rows changed; nothing when it is none to be prepared, and has not
    /// run. Raises `SqlError`.
    std::optional<qint64> Run(const StatementShape& statement);

    /// Identity value given last; nothing when the server has to be asked.
    std::optional<qint64> LastInsertId() const { return m_lastInsertId; }
    /// Forgets it: rows were inserted another way.
    void ForgetLastInsertId() { m_lastInsertId.reset(); }
    /// Keeps what the server has told.
    void SetLastInsertId(qint64 id) { m_lastInsertId = id; }
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
        bool isCut = false; ///< gives no more rows than the driver is to hold
    };

    std::optional<QString> FindIdentity(const QString& table, const StatementShape& source);
    std::shared_ptr<Kept> Take(const StatementShape& source);
    std::shared_ptr<Kept> Prepare(const StatementShape& source);
    std::shared_ptr<Kept> Prepared(const StatementShape& source, const QString& text, Identity identity);
    std::shared_ptr<Kept> PreparedQuery(const StatementShape& source, const QString& text);
    qint64 ReadIdentity(OdbcStatement& statement);

    std::shared_ptr<OdbcConnection> m_connection;
    IdentityColumn m_identityColumn;
    KeptStatements<Kept> m_kept;
    bool m_canReturn;
    bool m_holdsResults;
    std::optional<qint64> m_lastInsertId;
};
