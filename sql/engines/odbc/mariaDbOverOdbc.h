#pragma once

#include "sql/engines/odbc/odbcEngine.h"
#include "sql/engines/odbc/odbcPrepared.h"

/// A MySQL or MariaDB server over ODBC: a session that reads literals as SQL Server does, statements that the server
/// keeps prepared, identity values that come with the INSERT, and long results that the driver must not hold whole.
class MariaDbOverOdbc final : public OdbcEngine {
public:
    /// @param dialect of the statements that it is given; in another than MySQL's they are run as they are
    MariaDbOverOdbc(std::shared_ptr<OdbcConnection> connection, Dialect dialect);

    qint64 Run(const QString& statement) override { return Run(StatementShape::Of(statement.toUtf8())); }
    qint64 RunApart(const SqlText& statement) override { return Run(statement.Shape()); }
    std::unique_ptr<Cursor> Query(const QString& statement) override {
        return Query(StatementShape::Of(statement.toUtf8()));
    }
    std::unique_ptr<Cursor> QueryApart(const SqlText& statement) override { return Query(statement.Shape()); }
    QString LineWarning() override;
    qint64 LastInsertId() override;
    qsizetype LongestInsert() override;
    bool KeepsItsView() override;
    QVector<ColumnInfo> Columns(const QString& table) override;
    QVector<ColumnBounds> Bounds(const QString& table) override;
    void SetTriggersEnabled(const QString& table, bool enabled) override;
    QStringList TriggerObstacles(const QString& table) override;
    bool SeesTriggers(const QString& table) override;
    QStringList LackingRights(const QString& table, const QString& column, bool writes) override;

protected:
    void Reopened() override;

private:
    void SetSession();
    bool IsEncrypted();
    qint64 Run(const StatementShape& statement);
    std::unique_ptr<Cursor> Query(const StatementShape& statement);
    bool KeepsPrepared(const StatementShape& statement);
    std::shared_ptr<OdbcStatement> RunUnprepared(const QString& statement);
    std::unique_ptr<Cursor> InPortions(const QString& statement);

    OdbcPrepared m_prepared;
};
