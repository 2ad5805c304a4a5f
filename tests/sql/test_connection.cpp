#include "sql/ovConnection.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

#include <deque>
#include <future>

/// Connection and engine on an embedded database file.
class TestConnection : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void ValuesComeBack() {
        const auto connection = Open();
        ovQueryConstructor query;
        query.SetTable("T");
        query.AddCreateField("RECORD_ID", DataType::BigAutoIncrement, 0, {}, true);
        query.AddCreateField("C", DataType::NVarChar, 20);
        query.AddCreateField("D", DataType::DateTime);
        query.AddCreateField("B", DataType::Bit);
        query.AddCreateField("F", DataType::Double);
        query.AddCreateField("L", DataType::Long);
        query.AddCreateField("P", DataType::Date);
        connection->Execute(query.MakeQuery(StatementKind::CreateTable));
        const QDateTime moment(QDate(2024, 3, 31), QTime(2, 30), Qt::UTC); // an hour that clocks of Italy skip
        query.Reset();
        query.SetTable("T");
        query.AddUpdateField("C", "00123", DataType::NVarChar);
        query.AddUpdateField("D", moment, DataType::DateTime);
        query.AddUpdateField("B", true, DataType::Bit);
        query.AddUpdateField("F", 1e15, DataType::Double);
        query.AddUpdateField("L", 9007199254740993LL, DataType::Long);
        query.AddUpdateField("P", QDate(2024, 3, 5), DataType::Date);
        QCOMPARE(connection->Execute(query.MakeQuery(StatementKind::Insert)), 1);
        const Recordset row = connection->ExecuteWC("SELECT * FROM T WHERE LEFT(C, 2) = '00'");
        QCOMPARE(row.Value("C"), QVariant("00123"));
        QCOMPARE(row.Value("D"), QVariant(moment));
        QCOMPARE(row.Value("B"), QVariant(true));
        QCOMPARE(row.Value("F"), QVariant(1e15));
        QCOMPARE(row.Value("L"), QVariant(9007199254740993LL));
        QCOMPARE(row.Value("P"), QVariant("20240305"));
        QCOMPARE(connection->ExecuteCommand("SELECT COUNT(*) FROM T WHERE C = '00123 '"), 0);
        QCOMPARE(connection->ExecuteCommand("SELECT MAX(RECORD_ID) FROM T WHERE 1=0"), 0);
    }

    void HostileTexts_data() {
        Columns<QString>("text");
        Row("quotes", "L'Aquila ''x'' \"y\"");
        Row("backslash", "C:\\dati\\");
        Row("injection", "'); DROP TABLE T; --");
        Row("comment", "a -- b /* c */");
        Row("percent and question mark", "100% ?1 :a @b $c");
        Row("line breaks", "a\r\nb\nc\td");
        Row("four bytes", QString::fromUtf8("\xf0\x9f\x94\xa9"));
        Row("right to left", QString::fromUtf8("\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d 12"));
        Row("10,000 characters", QStringLiteral("àè'ù").repeated(2500));
        Row("words of SQL Server", "dbo.X LEFT(a, 1) GETDATE() [b]");
        Row("NUL", QString("a" + QString(QChar()) + "b"));
    }
    void HostileTexts() {
        QFETCH(QString, text);
        const auto connection = Open();
        connection->Execute("CREATE TABLE T (C NTEXT)");
        ovQueryConstructor query;
        query.SetTable("T");
        query.AddUpdateField("C", text, DataType::NText);
        const auto error = ErrorOf<SqlError>([&] { connection->Execute(query.MakeQuery(StatementKind::Insert)); });
        if (error) {
            QVERIFY2(text.contains(QChar()) && error->Message().contains("NUL"), qPrintable(error->Message()));
            return;
        }
        QCOMPARE(connection->ExecuteWC("SELECT C FROM T").Value("C").toString(), text);
    }

    void WritingWhileReading() {
        const auto connection = Open();
        connection->Execute("CREATE TABLE SRC (N INTEGER)");
        connection->Execute("CREATE TABLE DST (N INTEGER)");
        connection->Execute("WITH RECURSIVE S(N) AS (SELECT 1 UNION ALL SELECT N + 1 FROM S WHERE N < 3000) "
                            "INSERT INTO SRC SELECT N FROM S");
        int rows = 0;
        for (Recordset source = connection->ExecuteWC("SELECT N FROM SRC ORDER BY N"); !source.Eof();
             source.MoveNext()) {
            QCOMPARE(source.Value("N").toInt(), ++rows);
            connection->Execute(QStringLiteral("INSERT INTO DST (N) VALUES (%1)").arg(rows));
            if (rows % 500 == 0) {
                QCOMPARE(connection->ExecuteCommand("SELECT COUNT(*) FROM DST"), rows);
            }
        }
        QCOMPARE(rows, 3000);
    }

    void MissingColumns() {
        const auto connection = Open();
        connection->Execute(QString::fromUtf8("CREATE TABLE T (CDCON TEXT, CORAS TEXT, \"Citt\xc3\xa0\" TEXT)"));
        connection->Execute("INSERT INTO T VALUES ('1', NULL, 'Pisa')");
        const QString query = "SELECT * FROM T";
        Recordset rows = connection->ExecuteWC(query);
        for (int time = 0; time < 2; ++time) { // asked for and remembered, in every encoding
            QCOMPARE(rows.Value("cdcon"), QVariant("1"));
            QCOMPARE(rows.Value(u"cdcon"), QVariant("1"));
            QCOMPARE(rows.Value(QLatin1String("cdcon")), QVariant("1"));
            QCOMPARE(rows.Value("Citt\xc3\xa0"), QVariant("Pisa"));
            QCOMPARE(rows.Value(u"CITT\u00c0"), QVariant("Pisa"));
            QCOMPARE(rows.Value(QLatin1String("citt\xe0")), QVariant("Pisa"));
        }
        QVERIFY(rows.Value("CORAS").isNull());
        QVERIFY(rows.HasColumn("coras") && !rows.HasColumn("COIND"));
        const auto missing = ErrorOf<SqlError>([&] { rows.Value("COIND"); });
        QVERIFY(missing);
        QVERIFY2(missing->Message().contains("'COIND'") && missing->Message().contains("CDCON, CORAS"),
                 qPrintable(missing->Message()));
        QCOMPARE(missing->Statement(), query);
        QVERIFY(ErrorOf<SqlError>([&] { rows.Fields(3); }));
        rows.MoveNext();
        QVERIFY(rows.Eof());
        const auto noRow = ErrorOf<SqlError>([&] { rows.Value("CORAS"); });
        QVERIFY(noRow && noRow->Message().contains("'CORAS'"));
        rows.Close();
        QVERIFY(!rows.State());
    }

    /// What is set aside to be taken back is more than stays in memory.
    void TakingBackManyRows() {
        const auto connection = Open();
        connection->Execute("CREATE TABLE T (N INTEGER PRIMARY KEY, A TEXT)");
        connection->BeginTrans();
        for (int n = 0; n < 2000; ++n) {
            connection->Execute(QStringLiteral("INSERT INTO T VALUES (%1, '%2')").arg(n).arg(QString(500, u'a')));
        }
        connection->CommitTrans();
        const auto changed = [&] { return connection->ExecuteCommand("SELECT COUNT(*) FROM T WHERE A LIKE 'b%'"); };
        connection->BeginTrans();
        connection->SetMark();
        QCOMPARE(connection->Execute("UPDATE T SET A = REPLACE(A, 'a', 'b') WHERE A LIKE '%a%'"), 2000);
        QCOMPARE(changed(), 2000);
        connection->RollbackToMark();
        QCOMPARE(changed(), 0);
        connection->CommitTrans();
        QCOMPARE(connection->Execute("UPDATE T SET A = REPLACE(A, 'a', 'b') WHERE A LIKE '%a%'"), 2000);
        QCOMPARE(changed(), 2000);
    }

    void Transactions() {
        const auto connection = Open();
        connection->Execute("CREATE TABLE T (N INTEGER)");
        connection->CommitTrans(); // none is open
        connection->BeginTrans();
        connection->Execute("INSERT INTO T VALUES (1)");
        connection->RollbackTrans();
        QCOMPARE(connection->ExecuteCommand("SELECT COUNT(*) FROM T"), 0);
        connection->BeginTrans();
        connection->Execute("INSERT INTO T VALUES (1)");
        connection->CommitTrans();
        connection->RollbackTrans();
        QCOMPARE(connection->Execute("UPDATE T SET N = 2"), 1);
        const auto other = Open();
        QCOMPARE(other->ExecuteCommand("SELECT N FROM T"), 2); // every statement is there for others at once
    }

    void Identity() {
        const auto connection = Open();
        connection->Execute(
            "CREATE TABLE dbo.T (RECORD_ID BIGINT IDENTITY(1, 1) NOT NULL, C NVARCHAR(9), PRIMARY KEY (RECORD_ID))");
        connection->Execute("INSERT INTO T (C) VALUES ('a')");
        connection->Execute("INSERT INTO T (C) VALUES ('b')");
        connection->Execute("DELETE T WHERE C = 'b'");
        connection->Execute("INSERT INTO T (C) VALUES ('B')");
        QCOMPARE(connection->LastInsertId(), 3); // a number is never given twice
        QCOMPARE(connection->ExecuteCommand("SELECT COUNT(*) FROM T WHERE C = 'b'"), 1);
        connection->Execute("TRUNCATE TABLE T");
        connection->Execute("INSERT INTO T (C) VALUES ('c')");
        QCOMPARE(connection->LastInsertId(), 1); // but for those of an emptied table, as on the other engines
    }

    void TriggersOffAndOn() {
        {
            const auto connection = Open();
            connection->Execute("CREATE TABLE X01_DOC_VER (N INTEGER)");
            connection->Execute("CREATE TABLE SEEN (N INTEGER)");
            connection->Execute(
                "CREATE TRIGGER TR1 AFTER INSERT ON X01_DOC_VER BEGIN INSERT INTO SEEN VALUES (NEW.N); END");
            connection->Execute("INSERT INTO X01_DOC_VER VALUES (1)");
            connection->AlterTriggersStatus("X01_DOC_VER", false);
            connection->AlterTriggersStatus("X01_DOC_VER", false);
            connection->Execute("INSERT INTO X01_DOC_VER VALUES (2)");
        } // the program ends in between
        const auto connection = Open();
        connection->Execute("INSERT INTO X01_DOC_VER VALUES (3)");
        connection->AlterTriggersStatus("x01_doc_ver", true);
        connection->AlterTriggersStatus("x01_doc_ver", true);
        connection->Execute("INSERT INTO X01_DOC_VER VALUES (4)");
        QCOMPARE(connection->ExecuteCommand("SELECT SUM(N) FROM SEEN"), 1 + 4);
    }

    void Scripts() {
        const auto connection = Open();
        connection->Execute("CREATE TABLE T (N INTEGER)");
        const auto error = ErrorOf<SqlError>([&] {
            connection->ExecuteScript("INSERT INTO T VALUES (1);\r\nGO\r\nINSERT INTO NOWHERE VALUES (2);\r\n"
                                      "INSERT INTO T VALUES (3)");
        });
        QVERIFY(error && error->Statement() == "INSERT INTO NOWHERE VALUES (2)");
        QCOMPARE(connection->ExecuteCommand("SELECT SUM(N) FROM T"), 1);
        QVERIFY(
            ErrorOf<SqlError>([&] { connection->Execute("DELETE T; DELETE T"); })); // two at once are refused, not cut
        QCOMPARE(connection->ExecuteCommand("SELECT SUM(N) FROM T"), 1);
    }

    void CompanyTables_data() {
        Columns<QString, QString, QString>("company", "table", "full");
        Row("bare", "X01", "CON_TRO", "X01_CON_TRO");
        Row("full already", "X01", "X01_CON_TRO", "X01_CON_TRO");
        Row("shared list", "X01", "TAB_IVA", "TAB_IVA");
        Row("shared system", "X01", "SYS_IMP", "SYS_IMP");
        Row("no company", "", "CON_TRO", "CON_TRO");
        Row("company like a table", "CON", "CON_TRO", "CON_CON_TRO");
        Row("company like a table, full", "CON", "CON_CON_TRO", "CON_CON_TRO");
    }
    void CompanyTables() {
        QFETCH(QString, company);
        QFETCH(QString, table);
        ovConnection connection;
        connection.SetCompany(company);
        QTEST(connection.GetFullTableName(table), "full");
    }

    void ClosedConnection() {
        ovConnection connection;
        QVERIFY(!connection.State());
        const auto error = ErrorOf<SqlError>([&] { connection.Execute("DELETE T"); });
        QVERIFY(error && error->Message().contains("non è aperta") && error->Statement() == "DELETE T");
        connection.CloseConnection();
        connection.RollbackTrans();
        connection.Interrupt();
    }

    void FilesThatCannotBeOpened_data() {
        Columns<QString, QString>("file", "words");
        Row("no folder", "nessuna/quadrix.db", "il file non esiste o non si può aprire");
        Row("a folder", ".", "il file non esiste o non si può aprire");
        Row("another kind of file", "lista.txt", "il file non è un database valido");
    }
    void FilesThatCannotBeOpened() {
        QFETCH(QString, file);
        QFETCH(QString, words);
        WriteFile(m_folder->filePath("lista.txt"), QByteArray("non è un database\n").repeated(200));
        ovConnection connection;
        const auto error = ErrorOf<SqlError>([&] { OpenEmbedded(connection, m_folder->filePath(file)); });
        QVERIFY(error);
        QVERIFY2(error->Message().contains(words) && error->Message().contains(connection.DatabaseName),
                 qPrintable(error->Message()));
        QVERIFY(!connection.State());
    }

    /// What an operator reads of a refusal: table, column and value in his language, the engine's own words behind.
    void Refusals_data() {
        Columns<QString, QString>("statement", "message");
        const char* twice = "%1 è già presente nella colonna 'CORAS' della tabella 'A', che non ammette doppioni "
                            "(UNIQUE constraint failed: A.CORAS [SQLITE_CONSTRAINT])";
        Row("twice", "INSERT INTO A (ID, CORAS) VALUES (2, 'L''Aquila')", QString(twice).arg("il valore 'L''Aquila'"));
        Row("twice, without columns", "INSERT INTO A SELECT 2, 'L''Aquila', 1", QString(twice).arg("lo stesso valore"));
        Row("twice, changed", "UPDATE A SET ID = 3, CORAS = 'L''Aquila' WHERE ID = 9",
            QString(twice).arg("il valore 'L''Aquila'"));
        Row("two columns twice", "INSERT INTO B (P, Q) VALUES (1, 1)",
            "c'è già una riga con gli stessi valori in B.P, B.Q, che insieme non ammettono doppioni (UNIQUE constraint "
            "failed: B.P, B.Q [SQLITE_CONSTRAINT])");
        Row("no value", "INSERT INTO A (ID, CORAS) VALUES (4, Null)",
            "la colonna 'CORAS' della tabella 'A' deve avere un valore (NOT NULL constraint failed: A.CORAS "
            "[SQLITE_CONSTRAINT])");
        Row("reference", "INSERT INTO B (P, Q, AID) VALUES (5, 5, 77)",
            "la riga della tabella 'B' rimanda a un'altra che non c'è, oppure altre righe rimandano a essa (FOREIGN "
            "KEY constraint failed [SQLITE_CONSTRAINT])");
        Row("no table", "DELETE NOWHERE", "la tabella 'NOWHERE' non c'è nel database (no such table: NOWHERE [1])");
        Row("not known", "INSERT INTO A (ID) VALUES (", "incomplete input");
    }
    void Refusals() {
        QFETCH(const QString, statement);
        const auto connection = Open();
        connection->Execute("CREATE TABLE A (ID INTEGER PRIMARY KEY, CORAS NVARCHAR(40) NOT NULL UNIQUE, N INT)");
        connection->Execute("CREATE TABLE B (P INT, Q INT, AID INT REFERENCES A(ID), UNIQUE (P, Q))");
        connection->Execute("INSERT INTO A (ID, CORAS) VALUES (1, 'L''Aquila'), (9, 'x')");
        connection->Execute("INSERT INTO B (P, Q) VALUES (1, 1)");
        const auto error = ErrorOf<SqlError>([&] { connection->Execute(statement); });
        QVERIFY(error);
        QTEST(error->Message(), "message");
        QVERIFY(!error->EngineMessage().contains("tabella"));
    }

    void ReadOnlyFile() {
        Open()->Execute("CREATE TABLE T (N INTEGER)");
        const auto engine = OpenSqlite(m_folder->filePath("quadrix.db"), true);
        const auto error = ErrorOf<SqlError>([&] { engine->Run("INSERT INTO T VALUES (1)"); });
        QVERIFY(error);
        QCOMPARE(error->EngineCode(), "SQLITE_READONLY");
        QVERIFY2(error->Message().contains("sola lettura"), qPrintable(error->Message()));
    }

    void LockedFile() {
        const auto holder = Open();
        holder->Execute("CREATE TABLE T (N INTEGER)");
        holder->BeginTrans();
        holder->Execute("INSERT INTO T VALUES (1)");
        const auto other = Open();
        other->Execute("PRAGMA busy_timeout = 100"); // does not wait as long as an operator would
        const auto error = ErrorOf<SqlError>([&] { other->Execute("INSERT INTO T VALUES (2)"); });
        QVERIFY(error);
        QCOMPARE(error->EngineCode(), "SQLITE_BUSY");
        QVERIFY2(error->Message().contains("in uso da un altro programma"), qPrintable(error->Message()));
        QCOMPARE(other->ExecuteCommand("SELECT COUNT(*) FROM T"), 0); // reading goes on meanwhile
        holder->CommitTrans();
        other->Execute("INSERT INTO T VALUES (2)");
        QCOMPARE(holder->ExecuteCommand("SELECT COUNT(*) FROM T"), 2);
    }

    void Interruption() {
        const auto connection = Open();
        const auto stop = std::async(std::launch::async, [&] {
            QTest::qSleep(200);
            connection->Interrupt();
        });
        const auto error = ErrorOf<SqlError>([&] {
            connection->ExecuteCommand(
                "WITH RECURSIVE S(N) AS (SELECT 1 UNION ALL SELECT N + 1 FROM S) SELECT COUNT(*) FROM S");
        });
        QVERIFY(error);
        QCOMPARE(error->EngineCode(), "SQLITE_INTERRUPT");
        QCOMPARE(connection->ExecuteCommand("SELECT 1"), 1);
    }

private:
    std::unique_ptr<ovConnection> Open() const {
        auto connection = std::make_unique<ovConnection>();
        OpenEmbedded(*connection, m_folder->filePath("quadrix.db"));
        return connection;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QUADRIX_TEST(TestConnection)

#include "test_connection.moc"
