#include "sql/engines/mysql/mySqlShape.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"

/// Statements that a MariaDB server keeps prepared: each must do what its text would do.
class TestPreparedText : public QObject {
    Q_OBJECT

private slots:
    void init() { SKIP_WITHOUT(m_server) }
    void ValuesAsWritten_data();
    void ValuesAsWritten();
    void TextsThatCannotBePrepared_data();
    void TextsThatCannotBePrepared();
    void ChangedTables_data() { MariaDbServer::Ways(); }
    void ChangedTables();
    void ValuesChangeKind_data() { MariaDbServer::Ways(); }
    void ValuesChangeKind();
    void Identities_data() { MariaDbServer::Ways(); }
    void Identities();
    void ManyShapes_data() { MariaDbServer::Ways(); }
    void ManyShapes();

private:
    MariaDbServer m_server;
};

void TestPreparedText::ValuesAsWritten_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("literal");
    const auto add = [](const char* type, const char* literal) {
        QTest::addRow("%s %s", type, literal) << type << literal;
    };
    for (const char* number : {"0", "-7", "2.5", "-2.5", "1.50", "1E3", "1.5E-2", "123456789012345678",
                               "1234567890123456789", "0.1", "1234567.125", "007"}) {
        for (const char* type : {"BIGINT", "INT", "DOUBLE", "DECIMAL(30,6)", "VARCHAR(40)", "CHAR(40)", "LONGTEXT"}) {
            add(type, number);
        }
    }
    for (const char* text : {"'20240305 10:20:30'", "'20240305'", "'2024-03-05'"}) {
        for (const char* type : {"DATETIME", "DATE", "VARCHAR(40)"}) {
            add(type, text);
        }
    }
    add("VARCHAR(40)", "'L''Aquila, perch\xc3\xa9 \xf0\x9f\x94\xa9'");
    add("VARCHAR(40)", "'C:\\dati\\'");
    add("VARCHAR(40)", "''");
    add("LONGBLOB", "X'00FF27'");
    add("BIT(1)", "1");
    add("TIME", "'12:34:56'");
    add("DOUBLE", "'1.5'");
}

/// What is prepared and what cannot be gives the same: "#" keeps a text from being prepared.
void TestPreparedText::ValuesAsWritten() {
    QFETCH(QString, type);
    QFETCH(QString, literal);
    for (const QString way : {"client", "ODBC"}) {
        const auto openedconnection = m_server.Open(way);
        ovConnection& connection = *openedconnection;
        connection.Execute("DROP TABLE IF EXISTS AS_WRITTEN");
        connection.Execute("CREATE TABLE AS_WRITTEN (N INT, V " + type + ")");
        const auto refused = [&](const QString& statement) {
            const auto error = ErrorOf<SqlError>([&] { connection.Execute(statement); });
            return error ? error->EngineCode() : QString();
        };
        const QString insert = "INSERT INTO AS_WRITTEN (N, V) VALUES (%1, " + literal + ")";
        QCOMPARE(refused(insert.arg(1)), refused(insert.arg(2) + " # as a text"));
        QCOMPARE(connection.ExecuteCommand("SELECT COUNT(DISTINCT IFNULL(HEX(V), '')) FROM AS_WRITTEN") <= 1, true);
        const QString select = "SELECT V FROM AS_WRITTEN WHERE N = 1 AND V = " + literal;
        const Recordset prepared = connection.ExecuteWC(select);
        const Recordset text = connection.ExecuteWC(select + " # as a text");
        QCOMPARE(prepared.Eof(), text.Eof());
        if (!text.Eof()) {
            QCOMPARE(prepared.Value("V"), text.Value("V"));
            QCOMPARE(prepared.Value("V").typeId(), text.Value("V").typeId());
        }
    }
}

void TestPreparedText::TextsThatCannotBePrepared_data() {
    QTest::addColumn<QString>("query");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("texts side by side") << "SELECT 'a' 'b' AS V" << QVariant("ab");
    QTest::newRow("literal of a date") << "SELECT DATE '2024-03-05' AS V" << QVariant(QDate(2024, 3, 5));
    QTest::newRow("comment with a quote") << "SELECT 'a' AS V # it's" << QVariant("a");
    QTest::newRow("single precision") << "SELECT CAST('1.1' AS FLOAT) AS V" << QVariant(1.1);
    QTest::newRow("question mark in a name") << "SELECT 'a' AS \"V?\"" << QVariant("a");
}

void TestPreparedText::TextsThatCannotBePrepared() {
    QFETCH(QString, query);
    QFETCH(QVariant, value);
    for (const QString way : {"client", "ODBC"}) {
        if (way == "ODBC" && query.contains("FLOAT")) {
            continue; // its driver gives the single precision as it is
        }
        const auto connection = m_server.Open(way);
        for (int time = 0; time < 2; ++time) {
            QCOMPARE(connection->ExecuteWC(query).Fields(0).Value(), value);
        }
    }
}

/// A table may be another one when its statement comes again, changed by this connection or by another.
void TestPreparedText::ChangedTables() {
    OPEN(connection);
    const auto other = m_server.Open();
    const QString query = "SELECT * FROM CHANGING WHERE N = 1";
    connection.Execute("DROP TABLE IF EXISTS CHANGING");
    connection.Execute("CREATE TABLE CHANGING (N INT, A VARCHAR(10))");
    connection.Execute("INSERT INTO CHANGING (N, A) VALUES (1, 'a')");
    QCOMPARE(connection.ExecuteWC(query).Columns(), (QStringList{"N", "A"}));
    connection.Execute("ALTER TABLE CHANGING ADD B VARCHAR(10) DEFAULT 'b'");
    QCOMPARE(connection.ExecuteWC(query).Value("B"), QVariant("b"));
    other->Execute("ALTER TABLE CHANGING ADD C VARCHAR(10) DEFAULT 'c'");
    QCOMPARE(connection.ExecuteWC(query).Value("C"), QVariant("c"));
    other->Execute("ALTER TABLE CHANGING DROP A, DROP B, DROP C, ADD D INT DEFAULT 4");
    QVERIFY(ErrorOf<SqlError>([&] { connection.ExecuteWC(query).Value("B"); }));
    QCOMPARE(connection.ExecuteWC(query).Value("D"), QVariant(4LL));
    if (way == "client") { // as many columns as before, but others
        other->Execute("ALTER TABLE CHANGING DROP D, ADD E VARCHAR(10) DEFAULT 'e' FIRST");
        QCOMPARE(connection.ExecuteWC(query).Value("E"), QVariant("e"));
        QCOMPARE(connection.ExecuteWC(query).Value("N"), QVariant(1LL));
    }
    other->Execute("DROP TABLE CHANGING");
    QVERIFY(ErrorOf<SqlError>([&] { connection.ExecuteWC(query); }));
}

void TestPreparedText::ValuesChangeKind() {
    OPEN(connection);
    connection.Execute("DROP TABLE IF EXISTS KINDS");
    connection.Execute("CREATE TABLE KINDS (N INT, V VARCHAR(200))");
    const QVector<QPair<QString, QString>> values{{"1", "1"},
                                                  {"'perch\u00e9'", "perch\u00e9"},
                                                  {"'a'", "a"},
                                                  {"2.5", "2.5"},
                                                  {"'" + QString(150, u'\u00e8') + "'", QString(150, u'\u00e8')},
                                                  {"'" + QString(150, u'x') + "'", QString(150, u'x')},
                                                  {"12345678901234567890", "12345678901234567890"},
                                                  {"''", ""},
                                                  {"3", "3"}};
    int row = 0;
    for (const auto& [literal, value] : values) {
        connection.Execute(QString("INSERT INTO KINDS (N, V) VALUES (%1, %2)").arg(++row).arg(literal));
        QCOMPARE(connection.ExecuteWC(QString("SELECT V FROM KINDS WHERE N = %1").arg(row)).Value("V"),
                 QVariant(value));
    }
}

/// Rows, keys and counts of inserts of every sort.
void TestPreparedText::Identities() {
    OPEN(connection);
    connection.Execute("DROP TABLE IF EXISTS NUMBERED");
    connection.Execute("DROP TABLE IF EXISTS PLAIN");
    connection.Execute("CREATE TABLE NUMBERED (ID BIGINT NOT NULL AUTO_INCREMENT PRIMARY KEY, T VARCHAR(10) UNIQUE)");
    connection.Execute("CREATE TABLE PLAIN (T VARCHAR(10))");
    const auto inserted = [&](const QString& statement) {
        const qint64 rows = connection.Execute(statement);
        return QPair<qint64, qint64>(rows, connection.LastInsertId());
    };
    using Pair = QPair<qint64, qint64>;
    QCOMPARE(inserted("INSERT INTO NUMBERED (T) VALUES ('a')"), Pair(1, 1));
    QCOMPARE(inserted("INSERT INTO PLAIN (T) VALUES ('a')"), Pair(1, 1));
    QCOMPARE(inserted("INSERT INTO NUMBERED (T) VALUES ('b'), ('c')"), Pair(2, 2));
    QVERIFY(ErrorOf<SqlError>([&] { connection.Execute("INSERT INTO NUMBERED (T) VALUES ('a')"); }));
    QCOMPARE(connection.LastInsertId(), 2);
    QCOMPARE(inserted("INSERT INTO NUMBERED (T) VALUES ('d') # as a text").first, 1);
    QCOMPARE(connection.ExecuteCommand("SELECT MAX(ID) FROM NUMBERED"), connection.LastInsertId());
    QVERIFY(connection.ExecuteWC("INSERT INTO NUMBERED (T) VALUES ('e')").Eof());
    QCOMPARE(connection.ExecuteCommand("SELECT MAX(ID) FROM NUMBERED"), connection.LastInsertId());
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERED"), 5);
    QCOMPARE(connection.Execute("SELECT COUNT(*) FROM NUMBERED"), 0); // gives rows, and changes none
}

/// The server is not left with more prepared statements than are kept, and each shape still does what it says.
void TestPreparedText::ManyShapes() {
    OPEN(connection);
    const auto count = [&connection](const QString& what) {
        return connection.ExecuteWC("SHOW SESSION STATUS LIKE '" + what + "'").Value("Value").toInt();
    };
    const auto known = [&count] { return count("Com_stmt_prepare") - count("Com_stmt_close"); };
    const int before = known();
    for (int shape = 0; shape < 400; ++shape) {
        QCOMPARE(connection.ExecuteCommand(QString("SELECT %1 AS N FROM DUAL WHERE 1 = 1").arg(shape)), shape);
    }
    QVERIFY(known() - before <= 200);
}

QUADRIX_TEST(TestPreparedText)

#include "test_preparedText.moc"
