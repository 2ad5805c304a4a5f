#pragma once

#include "sql/engines/fileLocks.h"
#include "sql/engines/odbc/odbcCatalog.h"
#include "sql/engines/odbc/odbcLocks.h"
#include "sql/engines/odbc/odbcRights.h"
#include "sql/engines/odbc/odbcStatement.h"
#include "sql/engines/odbc/rowLocks.h"
#include "sql/engines/spoolingCursor.h"

/// A database over ODBC, in the words that the standard and its drivers share. What one database needs beyond them
/// stands in a class derived from it.
class OdbcEngine : public Engine {
public:
    /// @param connection open @param dbms the database behind it @param dialect of the statements that it is given
    OdbcEngine(std::shared_ptr<OdbcConnection> connection, odbc::Dbms dbms, Dialect dialect);

    Dialect TextDialect() const override { return m_dialect; }
    bool AdaptsText() const override { return true; }
    qint64 Run(const QString& statement) override;
    std::unique_ptr<Cursor> Query(const QString& statement) override;
    void Begin() override;
    void Commit() override;
    void RollBack() override;
    bool TransactionStands(bool afterFailure) override;
    void SetMark() override { Run(odbc::WordsOf(m_dbms).mark); }
    void RollBackToMark() override { Run(odbc::WordsOf(m_dbms).toMark); }
    void Interrupt() noexcept override { m_connection->Interrupt(); }
    QString LineWarning() override;
    qint64 LastInsertId() override;
    QStringList Tables() override;
    QVector<ColumnInfo> Columns(const QString& table) override;
    QVector<ColumnBounds> Bounds(const QString& table) override;
    void SetTriggersEnabled(const QString& table, bool enabled) override;
    QStringList LackingRights(const QString& table, const QString& column, bool writes) override;
    bool TakeLock(const QString& name, const QString& holder) override;
    QString LockHolder(const QString& name) override;
    void ReleaseLock(const QString& name) noexcept override;

protected:
    bool InTransaction() const { return m_inTransaction; }
    const std::shared_ptr<OdbcConnection>& Connection() const { return m_connection; }
    /// The server that the line leads to; empty when its driver does not tell.
    QString ServerName() const;
    /// Frees the line for the next statement. A connection that fell is opened again, unless a transaction went with
    /// it.
    void MakeReady();
    /// The connection has been opened again: statements of before are gone, and the session is a new one.
    virtual void Reopened() {}
    /// Runs a statement as a text, on a line that is ready.
    std::shared_ptr<OdbcStatement> RunText(const QString& statement);
    /// The rows of a statement that has run, read from the line until another statement needs it.
    /// @param statement makes its text, which an error alone needs
    std::unique_ptr<Cursor> RowsOf(std::shared_ptr<OdbcStatement> ran, const std::function<QString()>& statement);
    /// First value of a query that gives a number; 0 when it gives no row or Null.
    qint64 Number(const QString& query);

private:
    bool NoticeInsert(const QString& statement);
    qint64 CurrentOfSequence(const odbc::DbmsWords& words);

    std::shared_ptr<OdbcConnection> m_connection;
    odbc::Dbms m_dbms;
    Dialect m_dialect;
    std::shared_ptr<ResultLine> m_line = std::make_shared<ResultLine>();
    ServerLocks m_locks;
    RowLocks m_rowLocks;      ///< where the user may take no others
    FileLocks m_machineLocks; ///< where the database has none
    bool m_inTransaction = false;
    QString m_inserted;                  ///< table of the last INSERT, where its sequence has to be asked
    QHash<QString, QString> m_sequences; ///< by table
    qint64 m_identity = 0; ///< given by the last INSERT, where it tells it itself; 0: by none that has told it
};
