#include "sql/ovConnection.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <future>

/// The same cases through the server's own client and through ODBC, on a server that the test script starts.
class TestMariaDb : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void ValuesComeBack_data() { Ways(); }
    void ValuesComeBack();
    void ServerValues_data();
    void ServerValues();
    void HostileTexts_data();
    void HostileTexts();
    void OtherStatementsWhileReading_data() { Ways(); }
    void OtherStatementsWhileReading();
    void MemoryStaysFlat();
    void ReadingIsGivenUp();
    void ReaderOutlivesConnection_data() { Ways(); }
    void ReaderOutlivesConnection();
    void Identity_data() { Ways(); }
    void Identity();
    void Transactions_data() { Ways(); }
    void Transactions();
    void TriggersOffAndOn_data() { Ways(); }
    void TriggersOffAndOn();
    void ColumnsAndTables_data() { Ways(); }
    void ColumnsAndTables();
    void FailingStatements_data();
    void FailingStatements();
    void RefusedConnections_data();
    void RefusedConnections();
    void ServerGoesAway_data() { Ways(); }
    void ServerGoesAway();
    void ServerGoesAwayInATransaction();
    void Interruption();

private:
    static void Ways();
    void Settings(ovConnection& connection, const QString& way) const;
    void Fill(ovConnection& connection, int rows) const;
    QStringList m_server; ///< host, port, user, password, database
};

void TestMariaDb::initTestCase() { m_server = qEnvironmentVariable("QUADRIX_TEST_MARIADB").split(u'|'); }

// Skipping the whole class in initTestCase would silence the classes after it.
void TestMariaDb::init() {
    if (m_server.size() != 5) {
        QSKIP("QUADRIX_TEST_MARIADB names no server (scripts/test starts one)");
    }
}

void TestMariaDb::Ways() {
    QTest::addColumn<QString>("way");
    QTest::newRow("client") << "client";
    QTest::newRow("ODBC") << "ODBC";
}

void TestMariaDb::Settings(ovConnection& connection, const QString& way) const {
    connection.ProviderType = Provider::MySql;
    if (way == "client") {
        connection.Server = m_server[0] + u':' + m_server[1];
        connection.User = m_server[2];
        connection.Password = m_server[3];
        connection.DatabaseName = m_server[4];
        return;
    }
    QString password = m_server[3];
    connection.ConnectionString =
        QStringLiteral("Driver={MariaDB Unicode};Server=%1;Port=%2;Uid=%3;Database=%5;Pwd={%4}")
            .arg(m_server[0], m_server[1], m_server[2], password.replace(u'}', QStringLiteral("}}")), m_server[4]);
}

namespace {

/// An open connection.
struct Opened : ovConnection {
    template<class Prepare>
    explicit Opened(const Prepare& prepare) {
        prepare(*this);
        OpenConnection();
    }
};

} // namespace

#define OPEN(name)                                                                                                     \
    QFETCH(QString, way);                                                                                              \
    Opened name([&](ovConnection& settings) { Settings(settings, way); })

/// Rows 1, 2, 3 ... with a text of 100 characters each.
void TestMariaDb::Fill(ovConnection& connection, int rows) const {
    connection.Execute("DROP TABLE IF EXISTS NUMBERS");
    connection.Execute("CREATE TABLE NUMBERS (N BIGINT PRIMARY KEY, T VARCHAR(200), HITS BIGINT NOT NULL DEFAULT 0)");
    connection.Execute(
        QStringLiteral("INSERT INTO NUMBERS (N, T) SELECT seq, REPEAT('x', 100) FROM seq_1_to_%1").arg(rows));
}

void TestMariaDb::ValuesComeBack() {
    OPEN(connection);
    struct Column {
        const char* name;
        DataType type; ///< of the column, and of the value unless `valueType` tells another
        QVariant value;
        QVariant read;
        DataType valueType = type;
    };
    const QDateTime moment(QDate(2024, 3, 31), QTime(2, 30, 15), Qt::UTC); // an hour that clocks of Italy skip
    const QVector<Column> columns{
        {"CCHAR", DataType::Char, "abc", "abc"},
        {"CVAR", DataType::VarChar, "O'Brien \\ \"x\"", "O'Brien \\ \"x\""},
        {"CNVAR", DataType::NVarChar, "città", "città"},
        {"CMEMO", DataType::Memo, QString(70000, u'm'), QString(70000, u'm')},
        {"CNTEXT", DataType::NText, "riga 1\r\nriga 2", "riga 1\r\nriga 2"},
        {"CINT", DataType::Integer, -2147483647, -2147483647LL},
        {"CLONG", DataType::Long, 9007199254740993LL, 9007199254740993LL},
        {"CDBL", DataType::Double, 1234567.125, 1234567.125},
        {"CDAT", DataType::DateTime, QDate(2024, 2, 29), QDateTime(QDate(2024, 2, 29), QTime(0, 0), Qt::UTC),
         DataType::Date},
        {"CTIM", DataType::VarChar, QTime(12, 34, 56), "12:34:56", DataType::Time},
        {"CDTM", DataType::DateTime, moment, moment},
        {"CBIT", DataType::Bit, true, 1LL},
        {"CNULL", DataType::VarChar, QVariant(), QVariant()},
        {"CEMPTY", DataType::VarChar, "", ""},
        {"CGUID", DataType::Char, "6F9619FF-8B86-D011-B42D-00CF4FC964FF", "6F9619FF-8B86-D011-B42D-00CF4FC964FF"},
    };
    ovQueryConstructor table;
    table.ProviderType = Provider::MySql;
    table.SetTable("VALUE_TYPES");
    table.AddCreateField("RECORD_ID", DataType::AutoIncrement, 0, {}, true);
    ovQueryConstructor insert;
    insert.ProviderType = Provider::MySql;
    insert.SetTable("VALUE_TYPES");
    for (const Column& column : columns) {
        const int index = table.AddCreateField(column.name, column.type, 40);
        table.SetFieldAllowNull(index, true);
        insert.AddUpdateField(column.name, column.value, column.valueType);
    }
    connection.Execute("DROP TABLE IF EXISTS VALUE_TYPES");
    connection.Execute(table.MakeQuery(StatementKind::CreateTable));
    connection.Execute(insert.MakeQuery(StatementKind::Insert));
    const Recordset row = connection.ExecuteWC("SELECT * FROM VALUE_TYPES");
    QCOMPARE(row.Value("RECORD_ID"), QVariant(1LL));
    for (const Column& column : columns) {
        const QVariant read = row.Value(column.name);
        QVERIFY2(read == column.read && read.isNull() == column.read.isNull(),
                 qPrintable(QString(QLatin1String(column.name) + u": " + QDebug::toString(read).left(200))));
    }
}

void TestMariaDb::ServerValues_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QVariant>("value");
    const QDateTime moment(QDate(2024, 3, 31), QTime(2, 30), Qt::UTC);
    QTest::newRow("decimal with a fraction") << "CAST(1234.50 AS DECIMAL(15,4))" << QVariant(1234.5);
    QTest::newRow("decimal without one") << "CAST(123456789012345678 AS DECIMAL(18,0))"
                                         << QVariant(123456789012345678LL);
    QTest::newRow("decimal beyond a double")
        << "CAST(12345678901234567890.1234 AS DECIMAL(30,4))" << QVariant("12345678901234567890.1234");
    QTest::newRow("negative decimal") << "CAST(-0.01 AS DECIMAL(15,2))" << QVariant(-0.01);
    QTest::newRow("large unsigned") << "CAST(18446744073709551615 AS UNSIGNED)" << QVariant(18446744073709551615ULL);
    QTest::newRow("double") << "CAST(0.1 AS DOUBLE)" << QVariant(0.1);
    QTest::newRow("date") << "CAST('2024-02-29' AS DATE)" << QVariant(QDate(2024, 2, 29));
    QTest::newRow("date-time of a skipped hour") << "CAST('2024-03-31 02:30:00' AS DATETIME)" << QVariant(moment);
    QTest::newRow("time") << "CAST('12:34:56' AS TIME)" << QVariant(QTime(12, 34, 56));
    QTest::newRow("bytes") << "CAST(X'00FF27' AS BINARY(3))" << QVariant(QByteArray("\0\xff'", 3));
    QTest::newRow("count") << "COUNT(*)" << QVariant(1LL);
    QTest::newRow("Null") << "NULL" << QVariant();
}

void TestMariaDb::ServerValues() {
    QFETCH(QString, expression);
    QFETCH(QVariant, value);
    for (const QString way : {"client", "ODBC"}) {
        Opened connection([&](ovConnection& settings) { Settings(settings, way); });
        const QVariant read = connection.ExecuteWC("SELECT " + expression + " AS V").Value("V");
        QVERIFY2(read == value && read.typeId() == value.typeId(),
                 qPrintable(QString(way + u": " + QDebug::toString(read))));
    }
}

void TestMariaDb::HostileTexts_data() {
    QTest::addColumn<QString>("way");
    QTest::addColumn<QString>("text");
    const std::vector<std::pair<const char*, QString>> texts{
        {"quote", "L'Aquila"},
        {"quotes at the ends", "''"},
        {"double quotes", "3\" tubo"},
        {"backslash at the end", "C:\\dati\\"},
        {"backslash and quote", "\\'; DROP TABLE HOSTILE; --"},
        {"comment", "a -- b /* c */ # d"},
        {"percent", "100% _ [a]"},
        {"question marks", "? :nome @nome ?"},
        {"line breaks", "a\r\nb\nc\rd\te"},
        {"NUL", QString("a" + QString(QChar()) + "b")},
        {"control Z", QString("a" + QString(QChar(0x1a)) + "b")},
        {"four bytes", QString::fromUtf8("\xf0\x9f\x94\xa9 \xf0\xa0\x80\x80")},
        {"right to left", QString::fromUtf8("\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d 12 \xd8\xb3\xd9\x84\xd8\xa7\xd9\x85")},
        {"10,000 characters", QStringLiteral("àè'ù").repeated(2500)},
        {"blanks around", "  a  "},
        {"brace and semicolon", "{a};b"},
        {"the word Null in capitals", "NULL"},
    };
    for (const char* way : {"client", "ODBC"}) {
        for (const auto& [name, text] : texts) {
            QTest::addRow("%s by %s", name, way) << way << text;
        }
    }
}

void TestMariaDb::HostileTexts() {
    OPEN(connection);
    QFETCH(QString, text);
    connection.Execute("CREATE TABLE IF NOT EXISTS HOSTILE (T LONGTEXT)");
    connection.Execute("DELETE HOSTILE");
    ovQueryConstructor insert;
    insert.ProviderType = Provider::MySql;
    insert.SetTable("HOSTILE");
    insert.AddUpdateField("T", text, DataType::NText);
    const auto error = ErrorOf<SqlError>([&] { connection.Execute(insert.MakeQuery(StatementKind::Insert)); });
    if (error) {
        QVERIFY2(way == "ODBC" && error->Message().contains("carattere NUL"), qPrintable(error->Message()));
        return;
    }
    QCOMPARE(connection.ExecuteWC("SELECT T FROM HOSTILE").Value("T").toString(), text);
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM HOSTILE"), 1);
}

void TestMariaDb::OtherStatementsWhileReading() {
    OPEN(connection);
    constexpr int Rows = 5000; // more than wait in memory
    Fill(connection, Rows);
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

void TestMariaDb::MemoryStaysFlat() {
    Opened connection([&](ovConnection& settings) { Settings(settings, "client"); });
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer keeps freed memory");
#endif
    constexpr int Rows = 300000; // some 40 MB as they come
    Fill(connection, Rows);
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

void TestMariaDb::ReadingIsGivenUp() {
    Opened connection([&](ovConnection& settings) { Settings(settings, "client"); });
    Fill(connection, 50000);
    {
        const Recordset rows = connection.ExecuteWC("SELECT * FROM NUMBERS a, NUMBERS b"); // 2,500,000,000 rows
        QVERIFY(!rows.Eof());
    }
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 50000);
    QVERIFY(timer.elapsed() < 20000);
}

void TestMariaDb::ReaderOutlivesConnection() {
    Recordset rows;
    {
        OPEN(connection);
        Fill(connection, 3000);
        rows = connection.ExecuteWC("SELECT N FROM NUMBERS");
    }
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        ++count;
    }
    QCOMPARE(count, 3000);
}

void TestMariaDb::Identity() {
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

void TestMariaDb::Transactions() {
    OPEN(connection);
    Fill(connection, 2000);
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

void TestMariaDb::TriggersOffAndOn() {
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

void TestMariaDb::ColumnsAndTables() {
    OPEN(connection);
    connection.Execute("DROP TABLE IF EXISTS X01_CON_TRO");
    connection.Execute("CREATE TABLE X01_CON_TRO (CDCON CHAR(8), CORAS VARCHAR(35), COINV DATETIME, COFID DOUBLE, "
                       "CONUM BIGINT, CONOT LONGTEXT)");
    connection.SetCompany("X01");
    QVERIFY(connection.GetTables().contains("X01_CON_TRO", Qt::CaseInsensitive));
    QCOMPARE(connection.GetTableInfo("CON_TRO").keyColumn, "CDCON");
    QCOMPARE(connection.GetTableInfo("CON_TRO").columns.size(), 6);
    QCOMPARE(connection.GetFieldTypeText("CON_TRO", "coras"), "char");
    QCOMPARE(connection.GetFieldTypeText("CON_TRO", "COINV"), "datetime");
    QCOMPARE(connection.GetFieldTypeText("CON_TRO", "COFID"), "double");
    QCOMPARE(connection.GetFieldTypeText("CON_TRO", "CONUM"), "long");
    QCOMPARE(connection.GetFieldTypeText("CON_TRO", "COZZZ", "memo"), "memo");
    QVERIFY(connection.GetColumns("NO_SUCH_TABLE").isEmpty());
}

void TestMariaDb::FailingStatements_data() {
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("words");
    QTest::newRow("no table") << "SELECT * FROM NO_SUCH_TABLE"
                              << "1146"
                              << "NO_SUCH_TABLE";
    QTest::newRow("no column") << "SELECT NOCOL FROM NUMBERS"
                               << "1054"
                               << "NOCOL";
    QTest::newRow("text too long") << "UPDATE NUMBERS SET T = REPEAT('y', 201) WHERE N = 1"
                                   << "1406"
                                   << "'T'";
    QTest::newRow("no number") << "UPDATE NUMBERS SET HITS = 'abc' WHERE N = 1"
                               << "1366"
                               << "HITS";
    QTest::newRow("no date") << "INSERT INTO DAYS (D) VALUES ('20240230')"
                             << "1292"
                             << "20240230";
    QTest::newRow("twice the key") << "INSERT INTO NUMBERS (N) VALUES (1)"
                                   << "1062"
                                   << "Duplicate";
    QTest::newRow("no sense") << "SELEKT 1"
                              << "1064"
                              << "SELEKT";
}

void TestMariaDb::FailingStatements() {
    QFETCH(QString, statement);
    QFETCH(QString, code);
    QFETCH(QString, words);
    for (const QString way : {"client", "ODBC"}) {
        Opened connection([&](ovConnection& settings) { Settings(settings, way); });
        Fill(connection, 10);
        connection.Execute("CREATE TABLE IF NOT EXISTS DAYS (D DATETIME)");
        const auto error = ErrorOf<SqlError>([&] { connection.Execute(statement); });
        QVERIFY(error);
        QCOMPARE(error->Statement(), statement);
        QVERIFY2(error->EngineCode().contains(code), qPrintable(error->EngineCode()));
        QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    }
}

void TestMariaDb::RefusedConnections_data() {
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

void TestMariaDb::RefusedConnections() {
    QFETCH(QString, way);
    QFETCH(int, wrong);
    QFETCH(QString, value);
    QFETCH(QString, words);
    const QStringList server = m_server;
    m_server[wrong] = value;
    ovConnection connection;
    Settings(connection, way);
    m_server = server;
    const auto error = ErrorOf<SqlError>([&] { connection.OpenConnection(); });
    QVERIFY(error);
    QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    QVERIFY2(!error->Message().contains("segreto") && !error->Message().contains("word}"),
             qPrintable(error->Message()));
    QVERIFY(!connection.State());
}

void TestMariaDb::ServerGoesAway() {
    OPEN(connection);
    Fill(connection, 200000);
    Opened other([&](ovConnection& settings) { Settings(settings, "client"); });
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
    if (way == "ODBC") {
        connection.CloseConnection();
        connection.OpenConnection();
    }
    QVERIFY(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS") >= 199999);
}

void TestMariaDb::ServerGoesAwayInATransaction() {
    Opened connection([&](ovConnection& settings) { Settings(settings, "client"); });
    Opened other([&](ovConnection& settings) { Settings(settings, "client"); });
    Fill(connection, 10);
    connection.BeginTrans();
    connection.Execute("DELETE FROM NUMBERS WHERE N = 1");
    other.Execute(QStringLiteral("KILL %1").arg(connection.ExecuteCommand("SELECT CONNECTION_ID()")));
    const auto half = [&] { connection.Execute("DELETE FROM NUMBERS WHERE N = 2"); };
    QVERIFY(ErrorOf<SqlError>(half));
    const auto error = ErrorOf<SqlError>(half); // what was begun is lost: the rest must not be written alone
    QVERIFY(error && error->Message().contains("la connessione con il server è caduta"));
    connection.RollbackTrans();
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 10);
}

void TestMariaDb::Interruption() {
    Opened connection([&](ovConnection& settings) { Settings(settings, "client"); });
    Fill(connection, 5000);
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

QUADRIX_TEST(TestMariaDb)

#include "test_mariadb.moc"
