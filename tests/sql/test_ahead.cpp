#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

/// A transaction that goes ahead of the server: what it sends, when, and what it raises where it was wrong.
class TestAhead : public QObject {
    Q_OBJECT

    MariaDbServer m_server;
    QStringList m_sent;

    /// Into a database of its own: triggers of other tests would be in the way.
    std::unique_ptr<ovConnection> Open(const QString& way) const {
        m_server.Open()->Execute("CREATE DATABASE IF NOT EXISTS quadrix_ahead");
        auto connection = std::make_unique<ovConnection>();
        m_server.Set(*connection, way, "quadrix_ahead");
        connection->OpenConnection();
        return connection;
    }
    static ovQueryConstructor NewRow(const QString& table, const QVector<std::pair<QString, QVariant>>& values) {
        ovQueryConstructor row;
        row.ProviderType = Provider::MySql;
        row.SetTable(table);
        for (const auto& [column, value] : values) {
            row.AddUpdateField(column, value, DataType::NVarChar);
        }
        return row;
    }
    static PendingRows::Id Insert(ovConnection& connection, const QString& code, const PendingRows::Links& links = {}) {
        return connection.Insert(NewRow("AHEAD_A", {{"CODE", code}, {"OWNER", "0"}}), "RECORD_ID", links);
    }
    static QStringList RowsOf(ovConnection& connection, const QString& query) {
        QStringList found;
        for (Recordset rows = connection.ExecuteWC(query); !rows.Eof(); rows.MoveNext()) {
            QStringList values;
            for (int column = 0; column < rows.Columns().size(); ++column) {
                values.append(rows.Fields(column).Value().toString());
            }
            found.append(values.join(u'|'));
        }
        return found;
    }
    /// Asks as often as makes it worth knowing.
    static bool IsAbsent(ovConnection& connection, const QString& value) {
        bool isAbsent = false;
        for (int time = 0; time < 200; ++time) {
            isAbsent = connection.IsAbsent("AHEAD_A", "CODE", value);
        }
        return isAbsent;
    }
    void MakeTables(ovConnection& connection) {
        for (const char* table : {"AHEAD_A", "AHEAD_B"}) {
            connection.Execute("DROP TABLE IF EXISTS " + QString(table));
            connection.Execute("CREATE TABLE " + QString(table) +
                               " (RECORD_ID INT AUTO_INCREMENT PRIMARY KEY, CODE VARCHAR(20) UNIQUE, OWNER VARCHAR(20),"
                               " KIND VARCHAR(200) DEFAULT 'usual') DEFAULT CHARSET utf8mb4");
        }
        connection.Execute("INSERT INTO AHEAD_A (CODE) VALUES ('000007')");
    }

private slots:
    void init() { SKIP_WITHOUT(m_server) }

    void RowsWaitForEachOther_data() { MariaDbServer::Ways(); }
    /// Rows of a table go as one statement, in their order, whatever columns each has; what hangs on a row behind it.
    void RowsWaitForEachOther() {
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        MakeTables(connection);
        QStringList sent;
        connection.BeginTrans(true);
        QVERIFY(connection.IsAhead());
        connection.Trace = [&sent](const QString& text) { sent.append(text); };
        const PendingRows::Id first = Insert(connection, "O'Brien \\ città");
        const PendingRows::Id other =
            connection.Insert(NewRow("AHEAD_B", {{"OWNER", "0"}, {"CODE", "b"}}), "RECORD_ID", {{"OWNER", first}});
        const PendingRows::Id third =
            connection.Insert(NewRow("AHEAD_A", {{"KIND", "own"}, {"CODE", "c"}}), "RECORD_ID");
        const PendingRows::Id onItself = Insert(connection, "d", {{"OWNER", third}});
        const PendingRows::Id onOther = Insert(connection, "e", {{"OWNER", other}});
        QCOMPARE(sent, QStringList());
        QCOMPARE(*third, 0);
        QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM AHEAD_A"), 6 - 1);
        QCOMPARE(sent.size(), 4); // those that wait for none, what hangs on one, what hangs on both, the question
        connection.CommitTrans();
        QCOMPARE(RowsOf(connection, "SELECT RECORD_ID, CODE, OWNER, KIND FROM AHEAD_A ORDER BY RECORD_ID"),
                 (QStringList{"1|000007||usual", "2|O'Brien \\ città|0|usual", "3|c||own",
                              QStringLiteral("4|d|%1|usual").arg(*third), QStringLiteral("5|e|%1|usual").arg(*other)}));
        QCOMPARE(RowsOf(connection, "SELECT OWNER FROM AHEAD_B"), QStringList{QString::number(*first)});
        QCOMPARE((QVector<qint64>{*first, *third, *onItself, *onOther}), (QVector<qint64>{2, 3, 4, 5}));
    }

    /// What is to be taken back goes, whether it was sent or waits; what came before stays.
    void AMarkIsSetWhenItIsNeeded_data() {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("statement");
        QTest::addColumn<bool>("isSent");
        for (const char* way : {"client", "ODBC"}) {
            QTest::addRow("%s, all waits", way) << way << "" << false;
            QTest::addRow("%s, asked for", way) << way << "SELECT COUNT(*) FROM AHEAD_A" << true;
            QTest::addRow("%s, another table asked for", way) << way << "SELECT COUNT(*) FROM AHEAD_B" << false;
            QTest::addRow("%s, written", way) << way << "UPDATE AHEAD_A SET KIND = 'new' WHERE CODE = 'b'" << true;
        }
    }
    void AMarkIsSetWhenItIsNeeded() {
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        QFETCH(const QString, statement);
        QFETCH(const bool, isSent);
        MakeTables(connection);
        bool isMarked = false;
        connection.Trace = [&isMarked](const QString& text) { isMarked = isMarked || text.startsWith("SAVEPOINT"); };
        connection.BeginTrans(true);
        Insert(connection, "a");
        connection.SetMark();
        Insert(connection, "b");
        if (!statement.isEmpty()) {
            connection.ExecuteWC(statement);
        }
        connection.RollbackToMark();
        connection.SetMark();
        Insert(connection, "c");
        connection.CommitTrans();
        QCOMPARE(isMarked, isSent);
        QCOMPARE(RowsOf(connection, "SELECT CODE FROM AHEAD_A ORDER BY CODE"), (QStringList{"000007", "a", "c"}));
        connection.BeginTrans(true);
        Insert(connection, "d");
        connection.RollbackTrans();
        QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM AHEAD_A"), 3);
    }

    void AQuestionIsAskedOnce_data() {
        using Work = std::function<void(ovConnection & connection)>;
        QTest::addColumn<QString>("way");
        QTest::addColumn<Work>("between");
        QTest::addColumn<int>("asked");
        const auto row = [](const char* name, int asked, const Work& between) {
            for (const char* way : {"client", "ODBC"}) {
                QTest::addRow("%s, %s", way, name) << way << between << asked;
            }
        };
        row("nothing between", 1, [](ovConnection&) {});
        row("a row of the table", 2, [](ovConnection& connection) { Insert(connection, "a"); });
        row("a row of another table", 1, [](ovConnection& connection) {
            connection.Insert(NewRow("AHEAD_B", {{"CODE", "b"}}), "RECORD_ID");
        });
        row("a statement", 2, [](ovConnection& connection) { connection.Execute("DELETE FROM AHEAD_B"); });
        row("an update of the table", 2, [](ovConnection& connection) {
            connection.Execute("UPDATE `AHEAD_A` SET OWNER = 'x' WHERE CODE = 'none'");
        });
        row("an update of another table", 1,
            [](ovConnection& connection) { connection.Execute("UPDATE AHEAD_B SET KIND = 'x'"); });
        row("an update of several tables", 2, [](ovConnection& connection) {
            connection.Execute("UPDATE AHEAD_B B JOIN AHEAD_A A ON A.CODE = B.CODE SET A.KIND = 'x'");
        });
        row("a row taken back", 2, [](ovConnection& connection) {
            connection.SetMark();
            Insert(connection, "a");
            connection.RollbackToMark();
        });
        row("another transaction", 2, [](ovConnection& connection) {
            connection.CommitTrans();
            connection.BeginTrans(true);
        });
    }
    /// The answers are those of the database, however many rows they have.
    void AQuestionIsAskedOnce() {
        using Work = std::function<void(ovConnection & connection)>;
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        QFETCH(const Work, between);
        QFETCH(const int, asked);
        MakeTables(connection);
        connection.Execute("INSERT INTO AHEAD_A (CODE, OWNER) SELECT CONCAT('n', seq), 'many' FROM seq_1_to_9");
        connection.BeginTrans(true);
        int count = 0;
        connection.Trace = [&count](const QString& text) {
            count += text.startsWith("SELECT RECORD_ID, KIND") ? 1 : 0;
        };
        for (const bool again : {false, true}) {
            if (again) {
                between(connection);
            }
            QCOMPARE(RowsOf(connection, "SELECT RECORD_ID, KIND FROM AHEAD_A WHERE CODE = '000007'"),
                     QStringList{"1|usual"});
            QCOMPARE(RowsOf(connection, "SELECT CODE FROM AHEAD_A WHERE OWNER = 'many'").size(), 9);
            QCOMPARE(RowsOf(connection, "SELECT CODE FROM AHEAD_A WHERE OWNER = 'none'"), QStringList());
        }
        connection.CommitTrans();
        QCOMPARE(count, asked);
    }

    void ATriggerMayChangeWhatAQuestionSees_data() { MariaDbServer::Ways(); }
    void ATriggerMayChangeWhatAQuestionSees() {
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        MakeTables(connection);
        connection.Execute(
            "CREATE TRIGGER AHEAD_T AFTER INSERT ON AHEAD_B FOR EACH ROW UPDATE AHEAD_A SET KIND = 'new'");
        connection.BeginTrans(true);
        const QString question = "SELECT KIND FROM AHEAD_A WHERE CODE = '000007'";
        QCOMPARE(RowsOf(connection, question), QStringList{"usual"});
        connection.Insert(NewRow("AHEAD_B", {{"CODE", "b"}}), "RECORD_ID");
        connection.SendPending();
        QCOMPARE(RowsOf(connection, question), QStringList{"new"});
        connection.CommitTrans();
    }

    void WhatDoesNotHold_data() {
        using Work = std::function<void(ovConnection & connection, ovConnection & other)>;
        QTest::addColumn<QString>("way");
        QTest::addColumn<Work>("work");
        QTest::addColumn<bool>("holds");
        const auto row = [](const char* name, bool holds, const Work& work) {
            for (const char* way : {"client", "ODBC"}) {
                QTest::addRow("%s, %s", way, name) << way << work << holds;
            }
        };
        row("nothing is in the way", true, [](ovConnection& connection, ovConnection&) {
            QVERIFY(IsAbsent(connection, "a"));
            Insert(connection, "a");
            QVERIFY(!IsAbsent(connection, "A"));
            QVERIFY(IsAbsent(connection, "b"));
        });
        row("another program writes it behind the transaction's first question", true,
            [](ovConnection& connection, ovConnection& other) { // which the server answers so as well
                QVERIFY(IsAbsent(connection, "a"));
                other.Execute("INSERT INTO AHEAD_A (CODE) VALUES ('A')");
                QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM AHEAD_A WHERE CODE = 'a'"), 0);
            });
        row("another program has written it", false, [](ovConnection& connection, ovConnection& other) {
            QVERIFY(IsAbsent(connection, "a"));
            connection.CommitTrans();
            other.Execute("INSERT INTO AHEAD_A (CODE) VALUES ('a')");
            connection.BeginTrans(true);
            QVERIFY(IsAbsent(connection, "a"));
        });
        row("a text that the database takes for the same", false, [](ovConnection& connection, ovConnection&) {
            QVERIFY(IsAbsent(connection, "e1"));
            Insert(connection, "é1");
            QVERIFY(IsAbsent(connection, "e1"));
        });
        row("a text that is no plain one is asked for", true, [](ovConnection& connection, ovConnection&) {
            QVERIFY(!IsAbsent(connection, "é1"));
            QVERIFY(!IsAbsent(connection, "a "));
        });
        row("a row that the database refuses", false, [](ovConnection& connection, ovConnection&) {
            Insert(connection, "a");
            Insert(connection, "000007");
        });
        row("a row that the database refuses, which somebody makes light of", false,
            [](ovConnection& connection, ovConnection&) {
                Insert(connection, "000007");
                try {
                    connection.ExecuteCommand("SELECT COUNT(*) FROM AHEAD_A");
                } catch (const AheadError&) {
                    Insert(connection, "b");
                }
            });
        row("what was written is deleted, and another program writes it", false,
            [](ovConnection& connection, ovConnection& other) {
                QVERIFY(IsAbsent(connection, "a"));
                Insert(connection, "a");
                connection.Execute("DELETE FROM AHEAD_A WHERE CODE = 'a'");
                connection.CommitTrans();
                connection.BeginTrans(true);
                other.Execute("INSERT INTO AHEAD_A (CODE) VALUES ('z')");
                QVERIFY(IsAbsent(connection, "z"));
            });
        row("the highest is one's own", true, [](ovConnection& connection, ovConnection&) {
            QCOMPARE(connection.GetMaxValue("AHEAD_A", "CODE").toString(), QString("000007"));
            Insert(connection, "000009");
            Insert(connection, "000008");
            QCOMPARE(connection.GetMaxValue("AHEAD_A", "CODE").toString(), QString("000009"));
        });
        row("another program has written a higher one", true, [](ovConnection& connection, ovConnection& other) {
            connection.GetMaxValue("AHEAD_A", "CODE");
            connection.CommitTrans();
            other.Execute("INSERT INTO AHEAD_A (CODE) VALUES ('000020')");
            connection.BeginTrans(true);
            QCOMPARE(connection.GetMaxValue("AHEAD_A", "CODE").toString(), QString("000020"));
        });
        row("a code that is no number", true, [](ovConnection& connection, ovConnection&) {
            connection.GetMaxValue("AHEAD_A", "CODE");
            Insert(connection, "X");
            QCOMPARE(connection.GetMaxValue("AHEAD_A", "CODE").toString(), QString("X"));
        });
    }
    /// The work is done again then with the database asked about each step, which finds what is there.
    void WhatDoesNotHold() {
        using Work = std::function<void(ovConnection & connection, ovConnection & other)>;
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        QFETCH(const Work, work);
        QFETCH(const bool, holds);
        MakeTables(connection);
        const auto other = Open("client");
        connection.BeginTrans(true);
        bool held = true;
        try {
            work(connection, *other);
            connection.CommitTrans();
        } catch (const AheadError&) {
            held = false;
            connection.RollbackTrans();
        }
        QCOMPARE(held, holds);
        if (!held) {
            QVERIFY(!connection.InTransaction());
            connection.BeginTrans();
            QVERIFY(!connection.IsAhead());
            QVERIFY(!IsAbsent(connection, "a"));
            connection.CommitTrans();
        }
    }

    void ManyRows_data() { MariaDbServer::Ways(); }
    /// As many as go together, in transactions one after the other.
    void ManyRows() {
        QFETCH(const QString, way);
        const auto opened = Open(way);
        ovConnection& connection = *opened;
        MakeTables(connection);
        constexpr int rows = 2500;
        for (int round = 0; round < 3; ++round) {
            connection.BeginTrans(true);
            for (int row = 0; row < rows; ++row) {
                const QString code = QStringLiteral("%1-%2").arg(round).arg(row);
                QCOMPARE(round == 0 || IsAbsent(connection, code), true);
                connection.Insert(NewRow("AHEAD_B", {{"OWNER", "0"}, {"KIND", QString(150, u'x')}}), "RECORD_ID",
                                  {{"OWNER", Insert(connection, code)}});
            }
            connection.CommitTrans();
        }
        QCOMPARE(connection.ExecuteCommand("SELECT COUNT(*) FROM AHEAD_B B JOIN AHEAD_A A ON A.RECORD_ID = B.OWNER"),
                 rows * 3);
    }

    /// An embedded database is near: nothing is gained by going ahead of it.
    void NotOfAnEmbeddedDatabase() {
        ovConnection connection;
        connection.Embedded = true;
        connection.DatabaseName = ":memory:";
        connection.OpenConnection();
        connection.Execute("CREATE TABLE AHEAD_A (RECORD_ID INTEGER PRIMARY KEY, CODE TEXT, OWNER TEXT)");
        connection.BeginTrans(true);
        QVERIFY(!connection.IsAhead());
        QCOMPARE(*Insert(connection, "a"), 1);
        connection.CommitTrans();
    }
};

QUADRIX_TEST(TestAhead)
#include "test_ahead.moc"
