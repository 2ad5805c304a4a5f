#include "examples/examples.h"
#include "sources/fileSource.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

namespace {

const QString ArcaModule = QStringLiteral("modImport_Arca2000");
const QString Line = QStringLiteral("ImportContropartiArca2000 answers=no");

/// What tells a counterparty, with the numbers that hang on it.
QStringList CounterpartyCodes(TestTarget& target) {
    return target.Rows(
        "SELECT C.CORAS, C.COCGE, C.COFGE, COUNT(N.RECORD_ID) FROM X01_CON_TRO C LEFT JOIN X01_NUM_TEL N "
        "ON N.TBNAM = 'CON_TRO' AND N.TBKEY = C.CDCON GROUP BY C.CDCON, C.CORAS, C.COCGE, C.COFGE "
        "ORDER BY C.CORAS, C.CDCON");
}

/// Every source code that has its counterparty.
QStringList Codes(TestTarget& target) {
    return target.Rows("SELECT COCGE FROM X01_CON_TRO WHERE COCGE IS NOT NULL UNION "
                       "SELECT COFGE FROM X01_CON_TRO WHERE COFGE IS NOT NULL ORDER BY 1");
}

/// Runs the counterparties of a folder of FoxPro tables.
const RunResult& Import(TestTarget& target, const QString& source) {
    Session& session = target.Get();
    SettingsFile(target.Folder.filePath("Quadrix.ini")).Write("IMPORT", "Databasename", source);
    session.Config.SetConfigFile(target.Folder.filePath("Quadrix.ini"));
    session.Source = std::make_unique<ovConnection>();
    session.Source->Errors = &session.Errors;
    session.Source->OpenFiles = sources::OpenFileSource;
    const contract::Origin& origin = *FixtureOrigins().value(ArcaModule);
    origin.source.prepare(session, *session.Source);
    session.Source->OpenConnection();
    target.Person.Otherwise = false;
    origin.procedures.front().run(session, {}, false);
    session.Source.reset();
    return session.Results.last();
}

} // namespace

/// The database itself gives out while counterparties are imported.
class TestOutages : public QObject {
    Q_OBJECT

private slots:
    void DiskIsFull_data() {
        QTest::addColumn<int>("pages");
        QTest::addColumn<ErrorAction>("action");
        for (const int pages : {0, 1, 5, 20, 60}) {
            QTest::addRow("%d pages, ignore", pages) << pages << ErrorAction::Ignore;
            QTest::addRow("%d pages, abort", pages) << pages << ErrorAction::Abort;
        }
    }

    /// The embedded database may grow by so many pages only. Rows that found no room are told, nothing is damaged, and
    /// once there is room a second run brings them.
    void DiskIsFull() {
        QFETCH(const int, pages);
        QFETCH(const ErrorAction, action);
        TestTarget target;
        const QString source = target.Folder.filePath("source");
        examples::Options options;
        options.rows = 400;
        options.folder = source;
        examples::Make("arca2000", options);
        target.Get().Errors.Action = action;
        const qint64 size = target.Db().ExecuteCommand("PRAGMA page_count");
        target.Db().ExecuteWC(QString("PRAGMA max_page_count = %1").arg(size + pages));
        const RunResult first = Import(target, source);
        QVERIFY(first.AddsUp());
        QVERIFY(first.inserted + first.updated < first.sourceRows);
        QCOMPARE(first.outcome == RunResult::Outcome::Failed, action == ErrorAction::Abort);
        const QString told = action == ErrorAction::Abort ? first.errors.value(0) : first.givenUp.last().reason;
        QVERIFY2(told.contains("database or disk is full"), qPrintable(told));
        const RunResult::TableCount count = first.tables.value("CON_TRO");
        QCOMPARE(target.Db().ExecuteCommand("SELECT COUNT(*) FROM X01_CON_TRO"), count.inserted);
        target.Db().ExecuteWC("PRAGMA max_page_count = 1000000");
        target.Get().Errors.Action = ErrorAction::Ignore;
        const RunResult second = Import(target, source);
        QCOMPARE(second.givenUpCount, 0);
        QCOMPARE(target.Value("PRAGMA integrity_check"), "ok");
        TestTarget whole;
        whole.Get().Errors.Action = ErrorAction::Ignore;
        Import(whole, source);
        QCOMPARE(Codes(target), Codes(whole));
    }

    void ConnectionBreaks_data() {
        QTest::addColumn<TestTarget::On>("engine");
        QTest::addColumn<int>("statement");
        for (int statement = 2; statement <= 62; statement += 6) {
            QTest::addRow("client, statement %d", statement) << TestTarget::On::MariaDbAgain << statement;
            QTest::addRow("ODBC, statement %d", statement) << TestTarget::On::OdbcAgain << statement;
        }
    }

    /// MariaDB ends the connection just before a statement. The connection is opened again, by itself when its end is
    /// noticed before the statement is sent, else when the operator chooses Riprova, and everything is as if nothing
    /// had happened.
    void ConnectionBreaks() {
        QFETCH(const TestTarget::On, engine);
        QFETCH(const int, statement);
        if (!TestTarget::HasMariaDb()) {
            QSKIP("QUADRIX_TEST_MARIADB names no server (scripts/test starts one)");
        }
        const contract::Origin& origin = *FixtureOrigins().value(ArcaModule);
        if (m_whole.isEmpty()) {
            Fixture whole(FixtureFolder(ArcaModule), origin, TestTarget::On::MariaDbAgain);
            whole.RunLine(Line);
            m_whole = CounterpartyCodes(whole.Target());
        }
        Fixture fixture(FixtureFolder(ArcaModule), origin, engine);
        TestTarget& target = fixture.Target();
        const QString connection = target.Value("SELECT CONNECTION_ID()");
        int seen = 0;
        target.Db().Trace = [&](const QString&) {
            if (++seen == statement) {
                MariaDbServer().Open()->Execute("KILL CONNECTION " + connection);
            }
        };
        int broken = 0;
        target.Person.AnswerToError = [&broken](const ErrorEntry& error) {
            const bool isLost = error.message.contains("la connessione con il server è caduta");
            return isLost && ++broken == 1 ? ErrorAnswer::Retry : ErrorAnswer::Ignore;
        };
        fixture.Answer(Line);
        fixture.OpenSource();
        target.Get().Errors.Action = ErrorAction::Ask;
        fixture.Call(Line);
        target.Db().Trace = {};
        QVERIFY(broken <= 1);
        QVERIFY(target.Value("SELECT CONNECTION_ID()") != connection);
        QVERIFY(fixture.Results().last().AddsUp());
        QCOMPARE(CounterpartyCodes(target), m_whole);
    }

private:
    QStringList m_whole; ///< what a run without an outage leaves
};

QUADRIX_TEST(TestOutages)
#include "test_outages.moc"
