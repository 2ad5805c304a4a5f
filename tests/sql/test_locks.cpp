#include "sql/engines/odbc/odbcBounds.h"
#include "sql/engines/odbc/odbcLocks.h"
#include "sql/engines/odbc/odbcRights.h"
#include "sql/engines/odbc/rowLocks.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/writtenStatements.h"

#include <QTemporaryDir>

namespace {

const QString Anna = QStringLiteral("anna (PC-1), processo 1, dal 25/11/2026 18:00:00: importazione: Articoli");

} // namespace

/// Locks of a database, which one connection at a time can have.
class TestLocks : public QObject {
    Q_OBJECT

private slots:
    void OneHolderAtATime_data() {
        Columns<QString>("way");
        Row("embedded", QString());
        Row("client", QString("client"));
        Row("ODBC", QString("ODBC"));
    }
    void OneHolderAtATime() {
        QFETCH(QString, way);
        if (!way.isEmpty()) {
            SKIP_WITHOUT(m_server)
        }
        const auto first = Open(way);
        const auto second = Open(way);
        QVERIFY(first->TakeLock("X01", Anna));
        QVERIFY(!second->TakeLock("X01", "bruno"));
        QCOMPARE(second->LockHolder("X01"), Anna);
        QVERIFY(second->TakeLock("X02", "bruno"));
        QVERIFY(first->TakeLock("X01", Anna)); // what one has it may take again
        first->BeginTrans();
        first->RollbackTrans();
        first->BeginTrans();
        first->CommitTrans();
        QVERIFY(!second->TakeLock("X01", "bruno"));
        first->ReleaseLock("X01");
        QVERIFY(second->TakeLock("X01", "bruno"));
        QCOMPARE(first->LockHolder("X01"), QString("bruno"));
        second->CloseConnection();
        QTRY_VERIFY(first->TakeLock("X01", Anna)); // the server may notice the end a moment later
        QVERIFY(first->TakeLock("X02", Anna));
        first->ReleaseLock("X01");
        first->ReleaseLock("X02");
        QVERIFY(!first->GetTables().contains("QDX_LOCKS"));
        QVERIFY(QDir(m_folder.path()).entryList({"*.lock"}).isEmpty());
    }

    /// A connection that fell has its locks again before anything is written; where somebody else has one by now,
    /// nothing is.
    void ConnectionFalls_data() { MariaDbServer::Ways(); }
    void ConnectionFalls() {
        SKIP_WITHOUT(m_server)
        QFETCH(QString, way);
        const auto first = Open(way);
        const auto second = Open(way);
        const auto fall = [&] {
            const qint64 number = first->ExecuteCommand("SELECT CONNECTION_ID()");
            second->Execute(QString("KILL %1").arg(number));
            QTRY_COMPARE(second->ExecuteCommand(
                             QString("SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE ID = %1").arg(number)),
                         0);
            QTest::qWait(1100); // the driver looks whether the line has ended after a pause only
        };
        second->Execute("DROP TABLE IF EXISTS LOCKED");
        second->Execute("CREATE TABLE LOCKED (N INT)");
        QVERIFY(first->TakeLock("X01", Anna));
        fall();
        first->Execute("INSERT INTO LOCKED VALUES (1)");
        QVERIFY(!second->TakeLock("X01", "bruno"));
        QCOMPARE(second->LockHolder("X01"), Anna);
        fall();
        QVERIFY(second->TakeLock("X01", "bruno"));
        const auto error = ErrorOf<SqlError>([&] { first->Execute("INSERT INTO LOCKED VALUES (2)"); });
        QVERIFY(error && error->Message().contains("'X01' (bruno)"));
        QVERIFY(ErrorOf<SqlError>([&] { first->Execute("INSERT INTO LOCKED VALUES (3)"); }));
        second->ReleaseLock("X01");
        first->Execute("INSERT INTO LOCKED VALUES (4)");
        QCOMPARE(second->ExecuteCommand("SELECT SUM(N) FROM LOCKED"), 1 + 4);
        first->ReleaseLock("X01");
    }

    /// A row that a transaction keeps is a lock as well, of a database that has no better one.
    void RowsAsLocks() {
        SKIP_WITHOUT(m_server)
        ovConnection settings;
        m_server.Set(settings, "ODBC");
        const auto connect = [&] { return std::make_shared<OdbcConnection>(settings.ConnectionString); };
        const QString make = "CREATE TABLE QDX_LOCKS (NAME VARCHAR(64) PRIMARY KEY, OWNER VARCHAR(40), HOLDER "
                             "VARCHAR(400))";
        const auto reader = m_server.Open();
        RowLocks first(make);
        auto second = std::make_unique<RowLocks>(make);
        QVERIFY(first.Take(connect(), "X01", "'X01'", "anna"));
        QVERIFY(!second->Take(connect(), "X01", "'X01'", "bruno"));
        QVERIFY(second->Take(connect(), "X02", "'X02'", "bruno"));
        const Recordset holder = reader->ExecuteWC("SELECT HOLDER FROM QDX_LOCKS WHERE NAME = 'X01'");
        QCOMPARE(holder.Value("HOLDER").toString(), QString("anna"));
        second.reset(); // as when the program dies: nothing is let go by hand
        bool isTaken = false;
        QTRY_VERIFY(isTaken = isTaken || first.Take(connect(), "X02", "'X02'", "anna"));
        first.Check();
        first.Release("X01");
        first.Release("X02");
        QVERIFY(!reader->GetTables().contains("QDX_LOCKS"));
    }

    /// SQL Server is not there to be asked: its statements are left for the check of their words.
    void WordsForSqlServer() {
        LockWords words = odbc::LocksOf(odbc::Dbms::SqlServer);
        QStringList statements{words.take.arg("'quadrix.X01'", "10"), words.release.arg("'quadrix.X01'"),
                               words.ownNumber, words.makeNotes};
        for (const odbc::RightQuery& each : odbc::RightQueries(odbc::Dbms::SqlServer, "X01_L'Aquila", true)) {
            statements.append(each.query);
        }
        statements.append(odbc::BoundsQuery(odbc::Dbms::SqlServer, "X01_L'Aquila"));
        QCOMPARE(statements.size(), 9);
        const auto check = WrittenStatements();
        for (const QString& statement : statements) {
            QVERIFY2(!statement.contains('%') && statement.count('\'') % 2 == 0, qPrintable(statement));
            if (check && !statement.contains("EXEC ")) { // a call is none of the words that the check knows
                check(statement);
            }
        }
    }

private:
    std::unique_ptr<ovConnection> Open(const QString& way) {
        if (!way.isEmpty()) {
            return m_server.Open(way);
        }
        auto connection = std::make_unique<ovConnection>();
        OpenEmbedded(*connection, m_folder.filePath("quadrix.db"));
        return connection;
    }

    MariaDbServer m_server;
    QTemporaryDir m_folder;
};

QUADRIX_TEST(TestLocks)

#include "test_locks.moc"
