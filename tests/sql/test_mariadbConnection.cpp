#include "tests/support/CutLine.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"

#include <QElapsedTimer>
#include <QFile>

#include <future>

/// Reading while other statements run, transactions, and connections that fail.
class TestMariaDbConnection : public QObject {
    Q_OBJECT

private slots:
    void init() { SKIP_WITHOUT(m_server) }
    void SessionsAreAlike_data();
    void SessionsAreAlike();
    void OtherStatementsWhileReading_data() { MariaDbServer::Ways(); }
    void OtherStatementsWhileReading();
    void MemoryStaysFlat_data() { MariaDbServer::Ways(); }
    void MemoryStaysFlat();
    void LongResults_data() { MariaDbServer::Ways(); }
    void LongResults();
    void ReadingIsGivenUp();
    void ReaderOutlivesConnection_data() { MariaDbServer::Ways(); }
    void ReaderOutlivesConnection();
    void Identity_data() { MariaDbServer::Ways(); }
    void Identity();
    void Transactions_data() { MariaDbServer::Ways(); }
    void Transactions();
    void TriggersOffAndOn_data() { MariaDbServer::Ways(); }
    void TriggersOffAndOn();
    void RefusedConnections_data();
    void RefusedConnections();
    void ServerGoesAway_data() { MariaDbServer::Ways(); }
    void ServerGoesAway();
    void ServerGoesAwayInATransaction();
    void AnswerIsLost_data();
    void AnswerIsLost();
    void AnswerToCommitIsLost_data() { MariaDbServer::Ways(); }
    void AnswerToCommitIsLost();
    void EndedInBetween_data() { MariaDbServer::Ways(); }
    void EndedInBetween();
    void Interruption_data() { MariaDbServer::Ways(); }
    void Interruption();

private:
    MariaDbServer m_server;
};

void TestMariaDbConnection::SessionsAreAlike_data() {
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("isAgain"); ///< whether the connection has fallen and was opened again
    QTest::newRow("ODBC") << "ODBC" << false;
    QTest::newRow("client, again") << "client" << true;
    QTest::newRow("ODBC, again") << "ODBC" << true;
}

/// The same statement means the same whichever way it comes: all that the server keeps for a session is the same.
void TestMariaDbConnection::SessionsAreAlike() {
    OPEN(connection);
    QFETCH(bool, isAgain);
    const auto first = m_server.Open();
    if (isAgain) {
        first->Execute(QStringLiteral("KILL %1").arg(connection.ExecuteCommand("SELECT CONNECTION_ID()")));
        QTest::qSleep(200);
    }
    const auto variables = [](ovConnection& of) {
        QMap<QString, QString> values;
        for (Recordset rows = of.ExecuteWC("SHOW SESSION VARIABLES"); !rows.Eof(); rows.MoveNext()) {
            values.insert(rows.Value("Variable_name").toString(), rows.Value("Value").toString());
        }
        for (const char* own : {"pseudo_thread_id", "rand_seed1", "rand_seed2", "timestamp",
                                "session_track_system_variables"}) { // what is told to the driver alone
            values.remove(own);
        }
        return values;
    };
    const auto expected = variables(*first);
    const auto actual = variables(connection);
    QCOMPARE(actual.keys(), expected.keys());
    for (auto variable = expected.cbegin(); variable != expected.cend(); ++variable) {
        QVERIFY2(actual.value(variable.key()) == *variable,
                 qPrintable(QString(variable.key() + u": " + actual.value(variable.key()) + u", not " + *variable)));
    }
}

void TestMariaDbConnection::OtherStatementsWhileReading() {
    OPEN(connection);
    constexpr int Rows = 5000; // more than wait in memory
    MariaDbServer::Fill(connection, Rows);
    Recordset outer = connection.ExecuteWC("SELECT N, T FROM NUMBERS ORDER BY N");
    Recordset beside = connection.ExecuteWC("SELECT N FROM NUMBERS ORDER BY N DESC");
    qint64 expected = 1;
    for (; !outer.Eof(); outer.MoveNext(), beside.MoveNext(), ++expected) {
        const qint64 n = outer.Value("N").toLongLong();
        QCOMPARE(n, expected);
        QCOMPARE(beside.Value("N").toLongLong(), Rows + 1 - expected);
        if (n % 10 == 0) {
            QCOMPARE(connection.Execute(QStringLiteral("UPDATE NUMBERS SET HITS = HITS + 1 WHERE N = %1").arg(n)), 1);
            QCOMPARE(connection.ExecuteCommand(QStringLiteral("SELECT HITS FROM NUMBERS WHERE N = %1").arg(n)), 1);
        }
        QCOMPARE(outer.Value("T").toString().size(), 100);
    }
    QCOMPARE(expected, Rows + 1);
    QVERIFY(beside.Eof());
    QCOMPARE(connection.ExecuteCommand("SELECT SUM(HITS) FROM NUMBERS"), Rows / 10);
}

namespace {

/// Largest memory the program has used so far, in kilobytes.
qint64 PeakMemory() {
    QFile file("/proc/self/status");
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                return line.mid(6).simplified().split(' ').first().toLongLong();
            }
        }
    }
    return 0;
}

} // namespace

void TestMariaDbConnection::MemoryStaysFlat() {
    OPEN(connection);
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer keeps freed memory");
#endif
    constexpr int Rows = 300000; // some 40 MB as they come
    MariaDbServer::Fill(connection, Rows);
    const qint64 before = PeakMemory();
    if (before == 0) {
        QSKIP("this system does not tell the memory used");
    }
    int rows = 0;
    for (Recordset rs = connection.ExecuteWC("SELECT * FROM NUMBERS"); !rs.Eof(); rs.MoveNext()) {
        if (++rows == Rows / 2) {
            connection.Execute("UPDATE NUMBERS SET HITS = 1 WHERE N = 1");
        }
    }
    QCOMPARE(rows, Rows);
    QVERIFY2(PeakMemory() - before < 10000, qPrintable(QString::number(PeakMemory() - before)));
}

/// More rows than a driver is to hold: in their order, as they were when the query ran, and none lost when a
/// transaction is taken back meanwhile.
void TestMariaDbConnection::LongResults() {
    OPEN(connection);
    constexpr int Rows = 25000;
    MariaDbServer::Fill(connection, Rows);
    connection.Execute("UPDATE NUMBERS SET T = NULL WHERE N = 7");
    connection.Execute("CREATE OR REPLACE TABLE HEADS (ID BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY, T VARCHAR(10))");
    connection.Execute("INSERT INTO HEADS (T) VALUES ('a')");
    connection.BeginTrans();
    connection.Execute("DELETE FROM NUMBERS WHERE N = 1");
    Recordset rows =
        connection.ExecuteWC("SELECT N, T, HITS AS N2 FROM NUMBERS WHERE T <> 'y' OR N = 7 ORDER BY N DESC");
    Recordset twice = connection.ExecuteWC("SELECT a.N, b.N FROM NUMBERS a JOIN NUMBERS b ON a.N = b.N ORDER BY a.N");
    QCOMPARE(connection.LastInsertId(), 1);
    QCOMPARE(rows.Columns(), (QStringList{"N", "T", "N2"}));
    connection.Execute("DELETE FROM NUMBERS WHERE N > 10");
    connection.RollbackTrans();
    qint64 expected = Rows;
    for (; !rows.Eof(); rows.MoveNext(), --expected) {
        QCOMPARE(rows.Value("N").toLongLong(), expected);
        QCOMPARE(rows.Value("T").isNull(), expected == 7);
        QCOMPARE(rows.Value("N2"), QVariant(0LL));
    }
    QCOMPARE(expected, 1);
    int count = 0;
    for (; !twice.Eof(); twice.MoveNext()) {
        ++count;
    }
    QCOMPARE(count, Rows - 1);
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), Rows);
}

void TestMariaDbConnection::ReadingIsGivenUp() {
    const auto openedconnection = m_server.Open();
    ovConnection& connection = *openedconnection;
    MariaDbServer::Fill(connection, 50000);
    {
        const Recordset rows = connection.ExecuteWC("SELECT * FROM NUMBERS a, NUMBERS b"); // 2,500,000,000 rows
        QVERIFY(!rows.Eof());
    }
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 50000);
    QVERIFY(timer.elapsed() < 20000);
}

void TestMariaDbConnection::ReaderOutlivesConnection() {
    Recordset rows;
    {
        OPEN(connection);
        MariaDbServer::Fill(connection, 3000);
        rows = connection.ExecuteWC("SELECT N FROM NUMBERS");
    }
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        ++count;
    }
    QCOMPARE(count, 3000);
}

void TestMariaDbConnection::Identity() {
    OPEN(connection);
    connection.Execute("DROP TABLE IF EXISTS HEADS");
    connection.Execute("CREATE TABLE HEADS (RECORD_ID BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY, T VARCHAR(10))");
    QCOMPARE(connection.Execute("INSERT INTO HEADS (T) VALUES ('a')"), 1);
    QCOMPARE(connection.LastInsertId(), 1);
    connection.Execute("INSERT INTO HEADS (T) VALUES ('b')");
    connection.Execute("UPDATE HEADS SET T = 'c' WHERE RECORD_ID = 1");
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM HEADS"), 2);
    QCOMPARE(connection.LastInsertId(), 2);
    QCOMPARE(connection.GetMaxValue("HEADS", "RECORD_ID"), QVariant(2LL));
}

void TestMariaDbConnection::Transactions() {
    OPEN(connection);
    MariaDbServer::Fill(connection, 2000);
    connection.BeginTrans();
    Recordset rows = connection.ExecuteWC("SELECT N FROM NUMBERS");
    connection.Execute("UPDATE NUMBERS SET HITS = 5");
    QCOMPARE(connection.ExecuteCommand("SELECT SUM(HITS) FROM NUMBERS"), 10000);
    connection.RollbackTrans();
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        ++count;
    }
    QCOMPARE(count, 2000);
    QCOMPARE(connection.ExecuteCommand("SELECT SUM(HITS) FROM NUMBERS"), 0);
    connection.BeginTrans();
    connection.Execute("UPDATE NUMBERS SET HITS = 1");
    connection.CommitTrans();
    connection.RollbackTrans();
    QCOMPARE(connection.ExecuteCommand("SELECT SUM(HITS) FROM NUMBERS"), 2000);
    QCOMPARE(connection.Execute("UPDATE NUMBERS SET HITS = 2 WHERE N <= 10"), 10);
    if (way == "client") { // the rows found count, though nothing changes in them
        QCOMPARE(connection.Execute("UPDATE NUMBERS SET HITS = 2 WHERE N <= 10"), 10);
    }
}

void TestMariaDbConnection::TriggersOffAndOn() {
    OPEN(connection);
    connection.Execute("DROP TABLE IF EXISTS ROWS_WITH_TRIGGER");
    connection.Execute("DROP TABLE IF EXISTS QDX_TRIGGERS_OFF");
    connection.Execute("CREATE TABLE ROWS_WITH_TRIGGER (N INT, SEEN INT)");
    connection.Execute("CREATE TRIGGER FIRST_TRIGGER BEFORE INSERT ON ROWS_WITH_TRIGGER FOR EACH ROW SET NEW.SEEN = 1");
    connection.Execute("CREATE TRIGGER SECOND_TRIGGER BEFORE INSERT ON ROWS_WITH_TRIGGER FOR EACH ROW "
                       "BEGIN SET NEW.SEEN = NEW.SEEN + 10; END");
    const auto seen = [&](int n) {
        connection.Execute(QStringLiteral("INSERT INTO ROWS_WITH_TRIGGER (N) VALUES (%1)").arg(n));
        return connection.ExecuteCommand(QStringLiteral("SELECT SEEN FROM ROWS_WITH_TRIGGER WHERE N = %1").arg(n));
    };
    QCOMPARE(seen(1), 11);
    connection.AlterTriggersStatus("ROWS_WITH_TRIGGER", false);
    connection.AlterTriggersStatus("ROWS_WITH_TRIGGER", false); // twice loses nothing
    QCOMPARE(seen(2), 0);
    connection.AlterTriggersStatus("ROWS_WITH_TRIGGER", true);
    QCOMPARE(seen(3), 11);
    connection.AlterTriggersStatus("ROWS_WITH_TRIGGER", true);
    QCOMPARE(seen(4), 11);
}

void TestMariaDbConnection::RefusedConnections_data() {
    QTest::addColumn<QString>("way");
    QTest::addColumn<int>("wrong"); ///< place in the server's list
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("words");
    QTest::newRow("password, client") << "client" << 3 << "segreto"
                                      << "utente o password errati";
    QTest::newRow("password, ODBC") << "ODBC" << 3 << "segreto"
                                    << "Access denied";
    QTest::newRow("port, client") << "client" << 1 << "9"
                                  << "il server non risponde";
    QTest::newRow("port, ODBC") << "ODBC" << 1 << "9"
                                << "connect";
    QTest::newRow("host, client") << "client" << 0 << "no-such-host.invalid"
                                  << "no-such-host.invalid";
    QTest::newRow("database, client") << "client" << 4 << "nessuno"
                                      << "il database non esiste";
    QTest::newRow("database, ODBC") << "ODBC" << 4 << "nessuno"
                                    << "Unknown database 'nessuno'";
}

void TestMariaDbConnection::RefusedConnections() {
    QFETCH(QString, way);
    QFETCH(int, wrong);
    QFETCH(QString, value);
    QFETCH(QString, words);
    MariaDbServer server = m_server;
    server.Parts[wrong] = value;
    ovConnection connection;
    server.Set(connection, way);
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    QVERIFY2(!error->Message().contains("segreto") && !error->Message().contains("word}"),
             qPrintable(error->Message()));
    QVERIFY(!connection.State());
}

void TestMariaDbConnection::ServerGoesAway() {
    OPEN(connection);
    MariaDbServer::Fill(connection, 200000);
    const auto openedother = m_server.Open();
    ovConnection& other = *openedother;
    const qint64 id = connection.ExecuteCommand("SELECT CONNECTION_ID()");
    Recordset rows = connection.ExecuteWC("SELECT * FROM NUMBERS");
    other.Execute(QStringLiteral("KILL %1").arg(id));
    int count = 0;
    const auto cut = ErrorOf<SqlError>([&] {
        for (; !rows.Eof(); rows.MoveNext()) {
            ++count;
        }
    });
    QVERIFY2(cut || count == 200000, "rows ended early without a word");
    const auto error = ErrorOf<SqlError>([&] { connection.Execute("DELETE FROM NUMBERS WHERE N = 1"); });
    QVERIFY(cut || error);
    QVERIFY(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS") >= 199999);
}

void TestMariaDbConnection::ServerGoesAwayInATransaction() {
    const auto openedconnection = m_server.Open();
    ovConnection& connection = *openedconnection;
    const auto openedother = m_server.Open();
    ovConnection& other = *openedother;
    MariaDbServer::Fill(connection, 10);
    connection.BeginTrans();
    connection.Execute("DELETE FROM NUMBERS WHERE N = 1");
    other.Execute(QStringLiteral("KILL %1").arg(connection.ExecuteCommand("SELECT CONNECTION_ID()")));
    const auto half = [&] { connection.Execute("DELETE FROM NUMBERS WHERE N = 2"); };
    const auto fell = ErrorOf<SqlError>(half);
    QVERIFY(fell && fell->Message().contains("la connessione con il server è caduta"));
    QVERIFY(connection.TransactionLost());
    const auto error = ErrorOf<SqlError>(half); // what was begun is lost: the rest must not be written alone
    QVERIFY(error && error->Message().contains("ha chiuso da sé la transazione"));
    connection.RollbackTrans();
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 10);
}

namespace {

const QString Doubt = QStringLiteral("può essere stata eseguita lo stesso");

/// An empty table that a row which is written twice is written to twice. Its text is what the line is cut at: a
/// prepared statement is sent without its words.
void MakeOnce(ovConnection& connection) {
    connection.Execute("DROP TABLE IF EXISTS ONCE");
    connection.Execute("CREATE TABLE ONCE (T VARCHAR(20))");
}

/// A connection whose failing statements are decided about.
struct Decided {
    Decided(const MariaDbServer& server, const QString& way, quint16 port, ErrorAction action) {
        MariaDbServer through = server;
        through.Parts[1] = QString::number(port);
        through.Set(connection, way);
        errors.Action = action;
        errors.AskOperator = [this](const ErrorEntry& error) {
            asked.append(error.message);
            return ErrorAnswer::Abort;
        };
        connection.Errors = &errors;
        connection.OpenConnection();
    }
    QStringList asked;
    ovErrors errors;
    ovConnection connection;
};

} // namespace

void TestMariaDbConnection::AnswerIsLost_data() {
    QTest::addColumn<QString>("way");
    QTest::addColumn<ErrorAction>("action");
    for (const char* way : {"client", "ODBC"}) {
        QTest::addRow("%s, retried", way) << way << ErrorAction::Retry;
        QTest::addRow("%s, asked", way) << way << ErrorAction::Ask;
    }
}

/// The server has carried the statement out, and the connection falls before it says so.
void TestMariaDbConnection::AnswerIsLost() {
    QFETCH(QString, way);
    QFETCH(ErrorAction, action);
    const auto own = m_server.Open();
    MakeOnce(*own);
    CutLine line(m_server.Parts[0], m_server.Parts[1].toInt());
    Decided decided(m_server, way, line.Port, action);
    line.CutAt("unica");
    const auto error = ErrorOf<SqlError>([&] { decided.connection.Execute("INSERT INTO ONCE (T) VALUES ('unica')"); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(Doubt), qPrintable(error->Message()));
    const QStringList asked = action == ErrorAction::Ask ? QStringList(error->Message()) : QStringList();
    QCOMPARE(decided.asked, asked);
    QCOMPARE(own->ExecuteCommand("SELECT COUNT(*) FROM ONCE"), 1);
    decided.errors.Action = ErrorAction::Retry; // reading again does no harm
    line.CutAt("SELECT COUNT");
    QCOMPARE(decided.connection.ExecuteCommand("SELECT COUNT(*) FROM ONCE"), 1);
}

/// In a transaction it is known what became of a statement, but for the last one.
void TestMariaDbConnection::AnswerToCommitIsLost() {
    QFETCH(QString, way);
    const auto own = m_server.Open();
    MakeOnce(*own);
    CutLine line(m_server.Parts[0], m_server.Parts[1].toInt());
    Decided decided(m_server, way, line.Port, ErrorAction::Abort);
    const auto cut = [&](const char* words) {
        line.CutAt(words);
        const auto error = ErrorOf<SqlError>([&] {
            decided.connection.BeginTrans();
            decided.connection.Execute("INSERT INTO ONCE (T) VALUES ('unica')");
            decided.connection.CommitTrans();
        });
        decided.connection.RollbackTrans();
        return error ? error->Message() : QString();
    };
    const QString inside = cut("unica");
    QVERIFY2(inside.contains("caduta") && !inside.contains(Doubt), qPrintable(inside));
    QCOMPARE(own->ExecuteCommand("SELECT COUNT(*) FROM ONCE"), 0);
    const QString atEnd = cut("COMMIT");
    QVERIFY2(atEnd.contains(Doubt), qPrintable(atEnd));
    QCOMPARE(own->ExecuteCommand("SELECT COUNT(*) FROM ONCE"), 1);
}

/// A connection that fell while nothing was asked of it is opened again: the statement cannot have been carried out.
void TestMariaDbConnection::EndedInBetween() {
    QFETCH(QString, way);
    const auto own = m_server.Open();
    MakeOnce(*own);
    Decided decided(m_server, way, static_cast<quint16>(m_server.Parts[1].toInt()), ErrorAction::Retry);
    own->Execute(QStringLiteral("KILL %1").arg(decided.connection.ExecuteCommand("SELECT CONNECTION_ID()")));
    QTest::qSleep(200);
    QCOMPARE(decided.connection.Execute("INSERT INTO ONCE (T) VALUES ('unica')"), 1);
    QCOMPARE(own->ExecuteCommand("SELECT COUNT(*) FROM ONCE"), 1);
}

void TestMariaDbConnection::Interruption() {
    OPEN(connection);
    MariaDbServer::Fill(connection, 5000);
    QElapsedTimer timer;
    timer.start();
    const auto stop = std::async(std::launch::async, [&] {
        QTest::qSleep(300);
        connection.Interrupt();
    });
    const auto error = ErrorOf<SqlError>([&] {
        connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS a, NUMBERS b, NUMBERS c WHERE a.N + b.N + c.N = 5");
    });
    QVERIFY(error);
    QVERIFY(timer.elapsed() < 20000);
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 5000);
}

QUADRIX_TEST(TestMariaDbConnection)

#include "test_mariadbConnection.moc"
