#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"

/// Values, columns and refused statements, through the server's own client and through ODBC.
class TestMariaDb : public QObject {
    Q_OBJECT

private slots:
    void init() { SKIP_WITHOUT(m_server) }
    void ValuesComeBack_data() { MariaDbServer::Ways(); }
    void ValuesComeBack();
    void ServerValues_data();
    void ServerValues();
    void HostileTexts_data();
    void HostileTexts();
    void ColumnsAndTables_data() { MariaDbServer::Ways(); }
    void ColumnsAndTables();
    void BoundsOfColumns_data() { MariaDbServer::Ways(); }
    void BoundsOfColumns();
    void RowsOfATruncation_data() { MariaDbServer::Ways(); }
    void RowsOfATruncation();
    void FailingStatements_data();
    void FailingStatements();
    void StatementThatTheServerDoesNotTake();

private:
    MariaDbServer m_server;
};

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
        {"CBIT", DataType::Bit, true, true},
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
        const auto openedconnection = m_server.Open(way);
        ovConnection& connection = *openedconnection;
        const QVariant read = connection.ExecuteWC("SELECT " + expression + " AS V").Value("V");
        QVERIFY2(read == value && read.typeId() == value.typeId(),
                 qPrintable(QString(way + u": " + QDebug::toString(read))));
    }
}

void TestMariaDb::HostileTexts_data() {
    QTest::addColumn<QString>("way");
    QTest::addColumn<QString>("text");
    const std::vector<std::pair<QString, QString>> texts{
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
    for (const QString way : {"client", "ODBC"}) {
        for (const auto& [name, text] : texts) {
            QTest::newRow(qPrintable(QString("%1 by %2").arg(name, way))) << way << text;
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
    QTest::newRow("no table to write into") << "INSERT INTO NO_SUCH_TABLE (N) VALUES (1)"
                                            << "1146"
                                            << "NO_SUCH_TABLE";
    QTest::newRow("no column") << "SELECT NOCOL FROM NUMBERS"
                               << "1054"
                               << "NOCOL";
    QTest::newRow("text too long") << "UPDATE NUMBERS SET T = REPEAT('y', 201) WHERE N = 1"
                                   << "1406"
                                   << "il valore per la colonna 'T' della tabella 'NUMBERS' è troppo lungo";
    QTest::newRow("no number") << "UPDATE NUMBERS SET HITS = 'abc' WHERE N = 1"
                               << "1366"
                               << "il valore 'abc' non va nella colonna 'HITS' della tabella 'NUMBERS'";
    QTest::newRow("no date") << "INSERT INTO DAYS (D) VALUES ('20240230')"
                             << "1292"
                             << "20240230";
    QTest::newRow("twice the key") << "INSERT INTO NUMBERS (N) VALUES (1)"
                                   << "1062"
                                   << "il valore '1' è già presente nella chiave 'PRIMARY' della tabella 'NUMBERS', "
                                      "che non ammette doppioni (";
    QTest::newRow("no value") << "INSERT INTO NUMBERS (N) VALUES (Null)"
                              << "1048"
                              << "la colonna 'N' della tabella 'NUMBERS' deve avere un valore";
    QTest::newRow("reference to nothing") << "INSERT INTO CHILDREN (N) VALUES (999)"
                                          << "1452"
                                          << "la colonna 'N' della tabella 'CHILDREN' rimanda a una riga che nella "
                                             "tabella 'PARENTS' non c'è";
    QTest::newRow("referred to") << "DELETE PARENTS"
                                 << "1451"
                                 << "altre righe (tabella 'CHILDREN', colonna 'N') rimandano a quella della tabella "
                                    "'PARENTS'";
    QTest::newRow("no sense") << "SELEKT 1"
                              << "1064"
                              << "SELEKT";
}

/// What the server itself takes: by its types, and by what no row goes without.
void TestMariaDb::BoundsOfColumns() {
    OPEN(connection);
    connection.Execute("CREATE OR REPLACE TABLE BOUNDS (ID INT NOT NULL AUTO_INCREMENT PRIMARY KEY, P DECIMAL(12,2), "
                       "D DOUBLE, F FLOAT, S SMALLINT UNSIGNED, T VARCHAR(20), L LONGTEXT, NEEDED INT NOT NULL, "
                       "GIVEN INT NOT NULL DEFAULT 0, FIRST ENUM('a', 'b') NOT NULL, MADE INT AS (S + 1) STORED)");
    const auto texts = [&] {
        QStringList found;
        for (const ColumnBounds& each : connection.GetBounds("BOUNDS")) {
            const QString text = (each.isRounding ? " rounds" : "") +
                                 (each.length > 0 ? QString(" %1").arg(each.length) : QString()) +
                                 (each.isDemanded ? " demanded" : "");
            found += text.isEmpty() ? QStringList() : QStringList(each.name + text);
        }
        return found;
    };
    const QStringList bound{"ID rounds",    "P rounds",   "F rounds", "S rounds", "T 20", "NEEDED rounds demanded",
                            "GIVEN rounds", "MADE rounds"};
    QCOMPARE(texts(), bound);
    QVERIFY(connection.GetBounds("NOT_THERE").isEmpty());
    connection.Execute("CREATE TRIGGER FILLS BEFORE INSERT ON BOUNDS FOR EACH ROW SET NEW.NEEDED = 1");
    QCOMPARE(texts().filter("demanded"), QStringList()); // the trigger gives the value
    connection.Execute("DROP TABLE BOUNDS");
}

void TestMariaDb::RowsOfATruncation() {
    OPEN(connection);
    MariaDbServer::Fill(connection, 7);
    QCOMPARE(connection.Execute("TRUNCATE TABLE NUMBERS"), 7);
    QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 0);
}

void TestMariaDb::FailingStatements() {
    QFETCH(QString, statement);
    QFETCH(QString, code);
    QFETCH(QString, words);
    for (const QString way : {"client", "ODBC"}) {
        const auto openedconnection = m_server.Open(way);
        ovConnection& connection = *openedconnection;
        MariaDbServer::Fill(connection, 10);
        connection.Execute("CREATE TABLE IF NOT EXISTS DAYS (D DATETIME)");
        connection.Execute("CREATE OR REPLACE TABLE CHILDREN (N INT)");
        connection.Execute("CREATE OR REPLACE TABLE PARENTS (N INT PRIMARY KEY)");
        connection.Execute("CREATE OR REPLACE TABLE CHILDREN (N INT, FOREIGN KEY (N) REFERENCES PARENTS (N))");
        connection.Execute("INSERT INTO PARENTS (N) VALUES (1)");
        connection.Execute("INSERT INTO CHILDREN (N) VALUES (1)");
        const auto error = ErrorOf<SqlError>([&] { connection.Execute(statement); });
        QVERIFY(error);
        QCOMPARE(error->Statement(), statement);
        QVERIFY2(error->EngineCode().contains(code), qPrintable(error->EngineCode()));
        QVERIFY2(error->Message().contains(words), qPrintable(error->Message()));
    }
}

/// The server would answer by closing the connection; values go the same way, in a text and apart.
void TestMariaDb::StatementThatTheServerDoesNotTake() {
    const auto opened = m_server.Open("client");
    ovConnection& connection = *opened;
    MariaDbServer::Fill(connection, 1);
    const auto longest = connection.ExecuteCommand("SELECT @@max_allowed_packet");
    const QString value(static_cast<qsizetype>(longest), u'x');
    SqlText apart(Provider::MySql);
    apart += u"UPDATE NUMBERS SET T = ";
    apart.Add(value, DataType::NVarChar);
    for (const auto& run : {std::function<void()>([&] { connection.Execute(apart); }), std::function<void()>([&] {
                                connection.Execute("UPDATE NUMBERS SET T = '" + value + "'");
                            })}) {
        const auto error = ErrorOf<SqlError>(run);
        QVERIFY(error && error->EngineCode() == "1153" && !error->MayPass());
        QVERIFY(error->Message().contains("max_allowed_packet"));
        QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM NUMBERS"), 1);
    }
}

QUADRIX_TEST(TestMariaDb)

#include "test_mariadb.moc"
