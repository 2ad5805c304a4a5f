#include "sql/text/triggerText.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

namespace {

const QString Waiting = QStringLiteral("QDX_TRIGGERS_OFF");

} // namespace

/// Triggers that are switched off, and what is never done with them.
class TestTriggers : public QObject {
    Q_OBJECT

private slots:
    void TellsATriggerFromOtherTexts_data() {
        Columns<QString, bool>("text", "isTrigger");
        Row("of the server",
            QString(
                "CREATE DEFINER=`anna`@`%` TRIGGER `tr 1` BEFORE INSERT ON `q`.`X01_DOC_VER` FOR EACH ROW SET @a = 1"),
            true);
        Row("definer without quotes",
            QString(
                "create definer = root@localhost trigger `TR 1` after update on x01_doc_ver for each row set @a = 1"),
            true);
        Row("SQLite", QString("CREATE TRIGGER \"tr 1\" AFTER UPDATE OF [ON], b ON X01_DOC_VER BEGIN SELECT 1; END"),
            true);
        Row("IF NOT EXISTS", QString("CREATE TRIGGER IF NOT EXISTS [tr 1] DELETE ON X01_DOC_VER BEGIN SELECT 1; END"),
            true);
        Row("other table", QString("CREATE TRIGGER `tr 1` BEFORE INSERT ON X01_DOC_VEN FOR EACH ROW SET @a = 1"),
            false);
        Row("other name", QString("CREATE TRIGGER tr2 BEFORE INSERT ON X01_DOC_VER FOR EACH ROW SET @a = 1"), false);
        Row("name as a comment", QString("CREATE TRIGGER /* `tr 1` */ x BEFORE INSERT ON X01_DOC_VER FOR EACH ROW"),
            false);
        Row("drop", QString("DROP TABLE precious"), false);
        Row("other thing with a definer",
            QString("CREATE DEFINER=`a`@`b` VIEW v AS SELECT 1 TRIGGER `tr 1` ON X01_DOC_VER"), false);
        Row("to be made again each time", QString("CREATE OR REPLACE TRIGGER `tr 1` BEFORE INSERT ON X01_DOC_VER"),
            false);
        Row("nothing", QString(), false);
    }
    void TellsATriggerFromOtherTexts() {
        QFETCH(QString, text);
        QTEST(IsTriggerText(text, "tr 1", "X01_DOC_VER"), "isTrigger");
    }

    /// What somebody else has written into the table of waiting triggers is not run.
    void RunsNoOtherText_data() {
        Columns<QString>("way");
        Row("embedded", QString());
        Row("client", QString("client"));
        Row("ODBC", QString("ODBC"));
    }
    void RunsNoOtherText() {
        QFETCH(QString, way);
        if (!way.isEmpty()) {
            SKIP_WITHOUT(m_server)
        }
        const auto connection = way.isEmpty() ? std::make_unique<ovConnection>() : m_server.Open(way);
        if (way.isEmpty()) {
            OpenEmbedded(*connection);
        }
        MakeTable(*connection);
        connection->Execute("DROP TABLE IF EXISTS PRECIOUS");
        connection->Execute("CREATE TABLE PRECIOUS (N INT)");
        connection->Execute(way.isEmpty() ? "CREATE TRIGGER TR AFTER INSERT ON T BEGIN UPDATE T SET SEEN = 1; END"
                                          : "CREATE TRIGGER TR BEFORE INSERT ON T FOR EACH ROW SET NEW.SEEN = 1");
        connection->AlterTriggersStatus("T", false);
        connection->Execute("INSERT INTO " + Waiting + " (NAME, TBL, DDL) VALUES ('x', 'T', 'DROP TABLE PRECIOUS')");
        const auto error = ErrorOf<SqlError>([&] { connection->AlterTriggersStatus("T", true); });
        QVERIFY(error && error->Message().contains("NAME 'x'"));
        QVERIFY(connection->GetTables().contains("PRECIOUS", Qt::CaseInsensitive));
        connection->Execute("DELETE FROM " + Waiting + " WHERE NAME = 'x'");
        connection->AlterTriggersStatus("T", true);
        connection->Execute("INSERT INTO T (N) VALUES (1)");
        QCOMPARE(connection->ExecuteCommand("SELECT SEEN FROM T"), 1);
        QVERIFY(!connection->GetTables().contains(Waiting, Qt::CaseInsensitive)); // it goes with its last row
    }

    /// A user who could not make a trigger again does not take it away, and is told what he lacks.
    void KeepsWhatCannotBeMadeAgain_data() {
        Columns<QString, QString, QString, QString>("way", "rights", "definer", "obstacle");
        for (const char* way : {"client", "ODBC"}) {
            const auto row = [way](const char* name, const QString& rights, const QString& definer,
                                   const QString& obstacle) {
                Row(qPrintable(QString("%1, %2").arg(name, way)), QString(way), rights, definer, obstacle);
            };
            const QString rows = "SELECT, INSERT, UPDATE, DELETE";
            row("other definer", rows + ", CREATE, DROP, TRIGGER", "root@localhost",
                "GRANT SET USER ON *.* TO 'poco'@'%'");
            row("own", rows + ", CREATE, DROP, TRIGGER", "poco@`%`", "");
            row("no table for the texts", rows + ", DROP, TRIGGER", "poco@`%`", "GRANT CREATE, TRIGGER, DROP ON");
            row("not read", rows, "root@localhost", "GRANT CREATE, TRIGGER, DROP ON");
            row("not seen", "SELECT", "root@localhost", "");
        }
    }
    void KeepsWhatCannotBeMadeAgain() {
        SKIP_WITHOUT(m_server)
        QFETCH(QString, way);
        QFETCH(QString, rights);
        QFETCH(QString, definer);
        QFETCH(QString, obstacle);
        const auto admin = m_server.Open();
        admin->Execute("DROP TABLE IF EXISTS " + Waiting);
        MakeTable(*admin);
        const auto connection = OpenWith(*admin, way, rights);
        admin->Execute("CREATE DEFINER=" + definer + " TRIGGER TR BEFORE INSERT ON T FOR EACH ROW SET NEW.SEEN = 1");
        const auto triggers = [&] {
            return admin->ExecuteCommand(
                "SELECT COUNT(*) FROM information_schema.TRIGGERS WHERE EVENT_OBJECT_TABLE = 'T'");
        };
        QCOMPARE(connection->SeesTriggers("T"), rights.contains("TRIGGER"));
        const QString obstacles = connection->TriggerObstacles("T").join('\n');
        QVERIFY2(obstacle.isEmpty() ? obstacles.isEmpty() : obstacles.contains(obstacle), qPrintable(obstacles));
        const bool isRefused = ErrorOf<SqlError>([&] { connection->AlterTriggersStatus("T", false); }).has_value();
        QCOMPARE(isRefused, !obstacle.isEmpty());
        QCOMPARE(triggers(), isRefused || !rights.contains("TRIGGER") ? 1 : 0);
        connection->AlterTriggersStatus("T", true);
        QCOMPARE(triggers(), 1);
        QVERIFY(!admin->GetTables().contains(Waiting, Qt::CaseInsensitive));
    }

    /// What is looked at before a trial does not end the transaction that takes everything back.
    void TransactionsGoOn_data() { MariaDbServer::Ways(); }
    void TransactionsGoOn() {
        SKIP_WITHOUT(m_server)
        QFETCH(QString, way);
        const auto connection = m_server.Open(way);
        MakeTable(*connection);
        connection->Execute("CREATE TRIGGER TR BEFORE INSERT ON T FOR EACH ROW SET NEW.SEEN = 1");
        connection->BeginTrans();
        connection->Execute("INSERT INTO T (N) VALUES (1)");
        QCOMPARE(connection->TriggerObstacles("T").size(), 1);
        QVERIFY(ErrorOf<SqlError>([&] { connection->AlterTriggersStatus("T", false); }));
        connection->AlterTriggersStatus("T", true);
        QVERIFY(connection->LackingRights("T", "N", true).isEmpty() && connection->SeesTriggers("T"));
        connection->RollbackTrans();
        QCOMPARE(connection->ExecuteCommand("SELECT COUNT(*) FROM T"), 0);
    }

    void LackingRightsAreNamed_data() { MariaDbServer::Ways(); }
    void LackingRightsAreNamed() {
        SKIP_WITHOUT(m_server)
        QFETCH(QString, way);
        const auto admin = m_server.Open();
        MakeTable(*admin);
        admin->Execute("INSERT INTO T VALUES (1, 0), (2, 0)");
        QVERIFY(admin->LackingRights("T", "N", true).isEmpty());
        const auto reader = OpenWith(*admin, way, "SELECT, UPDATE");
        QVERIFY(reader->LackingRights("T", "N", false).isEmpty());
        QCOMPARE(reader->LackingRights("T", "N", true),
                 QStringList({"diritto INSERT sulla tabella 'T' (GRANT INSERT ON `quadrix_test`.`T` TO 'poco'@'%')",
                              "diritto DELETE sulla tabella 'T' (GRANT DELETE ON `quadrix_test`.`T` TO 'poco'@'%')"}));
        QCOMPARE(admin->ExecuteCommand("SELECT SUM(N) FROM T"), 3);
        const auto error = ErrorOf<SqlError>([&] { reader->Execute("INSERT INTO T VALUES (3, 0)"); });
        QVERIFY(error && error->Message().startsWith("all'utente manca il diritto INSERT sulla tabella 'T'"));
        // The one who has the lock may not write who he is; the server knows him.
        QVERIFY(reader->TakeLock("X01", "anna"));
        const QString holder = admin->LockHolder("X01");
        QVERIFY2(holder.startsWith("connessione ") && holder.contains("dell'utente poco da 127.0.0.1"),
                 qPrintable(holder));
    }

    void EmptiesByDeletingWithoutTheRight_data() { MariaDbServer::Ways(); }
    void EmptiesByDeletingWithoutTheRight() {
        SKIP_WITHOUT(m_server)
        QFETCH(QString, way);
        const auto admin = m_server.Open();
        MakeTable(*admin);
        admin->Execute("INSERT INTO T VALUES (1, 0), (2, 0)");
        const auto connection = OpenWith(*admin, way, "SELECT, DELETE");
        QStringList notes;
        connection->Note = [&notes](const QString& note) { notes.append(note); };
        QCOMPARE(connection->Execute("TRUNCATE TABLE T"), 2);
        QCOMPARE(admin->ExecuteCommand("SELECT COUNT(*) FROM T"), 0);
        QCOMPARE(notes.size(), 1);
        QVERIFY(notes[0].contains("tabella 'T'"));
        QVERIFY(ErrorOf<SqlError>([&] { OpenWith(*admin, way, "SELECT")->Execute("TRUNCATE TABLE T"); }));
    }

private:
    static void MakeTable(ovConnection& connection) {
        connection.Execute("DROP TABLE IF EXISTS T");
        connection.Execute("CREATE TABLE T (N INT, SEEN INT)");
    }

    /// A connection of a user who has these rights on the database, and no others.
    std::unique_ptr<ovConnection> OpenWith(ovConnection& admin, const QString& way, const QString& rights) const {
        admin.Execute("CREATE OR REPLACE USER poco@'%' IDENTIFIED BY 'segreta'");
        admin.Execute("GRANT " + rights + " ON quadrix_test.* TO poco@'%'");
        MariaDbServer server = m_server;
        server.Parts[2] = "poco";
        server.Parts[3] = "segreta";
        return server.Open(way);
    }

    MariaDbServer m_server;
};

QUADRIX_TEST(TestTriggers)

#include "test_triggers.moc"
