#pragma once

#include "sql/AbsentValues.h"
#include "sql/KnownAnswers.h"
#include "sql/NameLayout.h"
#include "sql/ovDatabase.h"
#include "sql/ovErrors.h"
#include "sql/PendingRows.h"

/// A connection to a database: runs text, in the words of SQL Server, on whatever engine stands behind it.
class ovConnection : public ovDatabase {
public:
    /// Opens the engine of settings that name files which this program reads itself; null: they name something else.
    using FileOpener = std::function<std::unique_ptr<Engine>(const ConnectionSettings&)>;
    /// Sees a statement just before it runs.
    using StatementObserver = std::function<void(const QString& statement)>;

    ovConnection() = default;
    ~ovConnection() override;
    ovConnection(const ovConnection&) = delete;
    ovConnection& operator=(const ovConnection&) = delete;

    // Connection parameters, set before OpenConnection.
    Provider ProviderType = Provider::SqlServer; ///< the text that is written, and the engine unless Embedded
    QString Server;
    QString DatabaseName; ///< a file path when Embedded
    QString User;
    QString Password;
    QString DSN;
    QString ConnectionString; ///< honoured as written when not empty
    QString Driver;           ///< ODBC driver; empty for the usual one of the provider
    bool NetworkCredential = false;
    Encryption Encrypted = Encryption::DriversOwn; ///< what is asked of the line to a server
    QString EncryptionCA;       ///< file of the authorities whose certificates count; empty for those of the system
    bool ReadOnly = false;      ///< a source: statements that are no queries are refused, and the engine writes nothing
    bool Embedded = false;      ///< the SQLite file DatabaseName, spoken to in the text of SQL Server
    ovErrors* Errors = nullptr; ///< decides about failing statements; without it every failure is raised
    // Of sources that this program reads from files itself:
    QStringList SourceTables;  ///< tables that are read; empty for all
    QStringList LookupColumns; ///< "table.column" of each column that rows are looked up by
    QString CodePage;          ///< code page of files that do not tell theirs; empty for cp1252
    StatementObserver Note;    ///< is told what was taken for granted when a file was read, or done in another way
    FileOpener OpenFiles;
    /// Milliseconds before the first retry of what may pass by itself, such as a lock; three times as long before each
    /// further one. 0: no pause.
    int RetryPause = 100;
    /// Of a database that has other names than those that queries are written in; null: it has the same. What changes
    /// the database is run as it is written.
    std::shared_ptr<NameLayout> Layout;
    /// Runs a call in which a query reaches its first row, on whatever thread, and comes back when it has ended with
    /// what it raises: others have their turn meanwhile, and `Interrupt` stops it. Empty: the call simply runs.
    std::function<void(const std::function<void()>& call)> Await;
    StatementObserver Trace;   ///< sees every statement in the engine's own words
    StatementObserver Written; ///< sees every statement as it was written, before the engine's own words

    /// Opens the database. Raises `SqlError` with the engine's message.
    void OpenConnection();
    /// Closes it; closing a closed connection does nothing.
    void CloseConnection();
    /// What is to be told of the line when others may read along on its way, as `Engine::LineWarning`; empty for a
    /// closed connection.
    QString LineWarning();
    /// True while open.
    bool State() const { return m_engine != nullptr; }

    /// Company whose code stands in front of company tables; empty for none (a source database). Raises as
    /// `CheckCompanyCode`.
    void SetCompany(const QString& code);
    const QString& Company() const { return m_company; }

    /// Runs a statement that returns no rows; returns the number of rows changed. A failure goes through
    /// `Errors->Decide`: it may be retried, and is raised as `SqlError` or `RowGivenUp`. A TRUNCATE that the user has
    /// no right to runs as a DELETE, which `Note` is told. When the connection falls before the answer, the message
    /// says that the statement may have been carried out, and only the operator can have it tried again: an INSERT is
    /// never run twice unseen.
    qint64 Execute(const QString& statement) override;
    /// Runs a query (or a statement) and returns its recordset, standing on the first row. Failures as `Execute`.
    Recordset ExecuteWC(const QString& query) override;
    /// The same for a statement whose values stand apart, which goes to its prepared form as it is; its text is made
    /// only for whoever looks at it.
    qint64 Execute(const SqlText& statement) override;
    Recordset ExecuteWC(const SqlText& query) override;
    /// Runs a query for one number, such as a count; 0 when it gives no row or Null.
    qint64 ExecuteCommand(const QString& query);
    /// Runs the statements of a script one after the other; the first failure ends it.
    void ExecuteScript(const QString& script);
    /// Opens a transaction. Without one every statement commits by itself. Within it a TRUNCATE runs as a DELETE, so
    /// that it can be taken back.
    /// @param mayGoAhead whoever opens it can do its work again. To a server, which is far away, new rows wait then
    /// until they are worth a journey or somebody asks for them, and what is known not to be there is not asked for but
    /// made sure of at the commit. What does not hold raises `AheadError`, at any statement or at the commit.
    void BeginTrans(bool mayGoAhead = false);
    /// True in a transaction that goes ahead of the database.
    bool IsAhead() const { return m_isAhead; }
    /// Inserts a row. @param identity column that the database numbers
    /// @param links columns that take the identity values of rows that wait
    /// @return its identity value; 0 while the row waits, which `SendPending` ends
    PendingRows::Id Insert(const ovQueryConstructor& row, const QString& identity,
                           const PendingRows::Links& links = {});
    /// Sends the rows that wait.
    void SendPending();
    /// Commits the open transaction; does nothing when none is open.
    void CommitTrans();
    /// Takes back the open transaction; does nothing when none is open.
    void RollbackTrans();
    /// Marks the point of the open transaction that `RollbackToMark` goes back to, in place of the last one.
    void SetMark();
    void RollbackToMark();
    /// True between `BeginTrans` and its end.
    bool InTransaction() const { return m_inTransaction; }
    /// True when the database has ended the open transaction by itself (full disk, deadlock, lost connection): what was
    /// written in it is gone, and every statement fails until `RollbackTrans`, or it would stand for itself.
    bool TransactionLost() const { return m_lost; }
    /// Identity value of the row inserted last on this connection.
    qint64 LastInsertId();
    /// See `Engine::Expect`.
    void Expect(const QString& table, const QString& index, const QList<int>& rows);
    /// Waits for a while before what failed is tried again, where it may pass by itself and nobody was asked about it.
    /// @param attempt tries so far
    void WaitToPass(const SqlError& error, int attempt) const;
    /// Stops the statement under way; safe from another thread.
    void Interrupt() noexcept;

    /// "X01_CON_TRO" for "CON_TRO"; the shared TAB_, SYS_ and GEN_ tables and names that already carry the company
    /// come back as they are, as does every name when no company is set.
    QString GetFullTableName(const QString& table) const override;
    QVector<ColumnInfo> GetColumns(const QString& table) override;
    /// What the columns of a table (physical name) take, as its engine tells it (`Engine::Bounds`). Raises `SqlError`.
    QVector<ColumnBounds> GetBounds(const QString& table);
    QStringList GetTables();
    /// As told in the base; known within a transaction, of databases that tell what others change.
    bool IsAbsent(const QString& table, const QString& column, const QString& value) override;
    QVariant GetMaxValue(const QString& table, const QString& column, const QString& where = {},
                         const QVariant& defaultValue = 0) override;
    void InsertRow(const ovQueryConstructor& row) override { Insert(row, QStringLiteral("RECORD_ID")); }
    Provider GetProviderType() const override { return ProviderType; }
    void SetTriggersEnabled(const QString& table, bool enabled) override;
    /// As the engine tells them (`Engine`), of a table by its physical name. Raise `SqlError`.
    QStringList TriggerObstacles(const QString& table);
    bool SeesTriggers(const QString& table);
    QStringList LackingRights(const QString& table, const QString& column, bool writes);

    /// Takes a lock of the database, which no other connection can have at the same time (`Engine::TakeLock`); of a
    /// connection that has it already there is nothing more to take. False when another one has it.
    bool TakeLock(const QString& name, const QString& holder);
    /// Whether this connection has the lock.
    bool HasLock(const QString& name) const { return m_locks.contains(name); }
    /// Who has a lock, in words for the operator; empty when it cannot be known.
    QString LockHolder(const QString& name);
    /// Lets a lock go.
    void ReleaseLock(const QString& name) noexcept;

private:
    Engine& Opened(const QString& statement) const;
    void RefuseWriting(const QString& statement) const;
    void RefuseWriting(const SqlText& statement);
    void NoticeWriting(const QString& statement);
    /// The text that the engine is given; the trace gets it in the engine's own words.
    QString TextFor(const Engine& engine, const QString& statement) const;
    static void Show(const StatementObserver& observer, const QString& statement);
    void RestartNumbers(Engine& engine, const QString& table) const;
    void NoticeLoss(SqlError& error);
    bool KnowsValues();
    bool CanGoAhead();
    void Send(size_t rows);
    void SendTogether(const QString& statement, const std::vector<PendingRows::Id>& ids);
    void CheckAhead() const;
    void SendMark();
    void SendBefore(const QString& statement);
    void SendBefore(const QByteArray& statement, bool onlyReads);
    void MakeSure();
    void MakeSure(const AbsentValues::Assumption& assumption);
    Recordset Ask(const QString& query);
    std::unique_ptr<Cursor> QueryAhead(const SqlText& query);
    void EndTrans();
    qint64 Truncate(Engine& engine, const QString& statement);
    qint64 RowsIn(Engine& engine, const QString& table) const;
    bool TellDoubt(SqlError& error, const QString& statement) const;
    template<class Work>
    void NoticingLoss(const Work& work);
    template<class Work>
    auto WithDecision(const Work& work);
    qint64 ExecuteApart(const SqlText& statement, const ovQueryConstructor* row);
    template<class Run>
    auto Apart(const SqlText& statement, const Run& run, const ovQueryConstructor* row = nullptr);
    void RefuseDriver() const;
    std::unique_ptr<Engine> OpenEngine() const;

    std::unique_ptr<Engine> m_engine;
    QString m_company;
    AbsentValues m_absent;
    QSet<QByteArray> m_reading;            ///< shapes that are known to read only
    std::optional<qint64> m_othersChanges; ///< those that it takes into account; none: the database cannot tell
    QStringList m_locks;                   ///< that it has taken
    AbsentValues::Point m_begin;           ///< of the transaction
    AbsentValues::Point m_mark;            ///< within it
    bool m_inTransaction = false;
    bool m_lost = false;
    bool m_isAhead = false;
    QString m_aheadFailure; ///< why rows that went ahead are not written; empty: they are
    /// Bytes of an INSERT of rows that wait; 0: rows cannot wait; none: the database has not been asked.
    std::optional<qsizetype> m_longest;
    bool m_keepsAnswers = false; ///< of queries, while it is ahead
    KnownAnswers m_answers;
    int m_overtaken = 0;                 ///< times that others had written what was taken to be absent
    PendingRows m_pending;               ///< rows that wait to be sent
    std::optional<size_t> m_pendingMark; ///< how many there were at a mark that waits as well
};
