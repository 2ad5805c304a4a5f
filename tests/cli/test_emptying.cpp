#include "sql/FileLock.h"
#include "sql/ovConnection.h"
#include "tests/cli/CliRun.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

class TestEmptying : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        OpenEmbedded(m_database, m_run.Database());
    }

    void init() {
        for (const char* table : Tables) {
            m_database.Execute(QString("DELETE ") + table);
            m_database.Execute(QString("INSERT INTO ") + table + " DEFAULT VALUES");
        }
    }

    void Refusals_data() {
        Columns<QStringList, QString>("arguments", "told");
        Row("reset unconfirmed", QStringList{"reset", "--company", "X01", "--kind", "docven"}, "--yes");
        Row("reset tells what goes along", QStringList{"reset", "--company", "X01", "--kind", "docven"},
            "Rilevamenti di produzione, Ordini di produzione, Preventivi di produzione, Documenti di vendita");
        Row("reset tells what all companies share", QStringList{"reset", "--company", "X01", "--kind", "systemtable"},
            "Tabelle di sistema (di tutte le aziende)");
        Row("reset of nothing", QStringList{"reset", "--company", "X01", "--yes"}, "--kind");
        Row("reset of an unknown kind", QStringList{"reset", "--company", "X01", "--kind", "tutto", "--yes"}, "anaart");
        Row("truncate unconfirmed", QStringList{"truncate", "--company", "X01"}, "--yes");
        Row("truncate of an unknown company", QStringList{"truncate", "--company", "X07", "--yes"}, "X07");
    }
    void Refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const auto ended = m_run.Run(arguments);
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
        QCOMPARE(Counts(), QString("1 1 1"));
    }

    /// Another program that works on the company, on whatever settings, is kept apart from this one.
    void CompanyUnderWork() {
        const QString lock = m_run.Database() + "-X01.lock";
        QProcess other;
        other.start("flock", {"--no-fork", lock, "sleep", "60"});
        QTRY_VERIFY(FileLock::IsTaken(lock));
        for (const QStringList& arguments : {QStringList{"reset", "--kind", "docven"}, QStringList{"truncate"}}) {
            const auto ended = m_run.Run(arguments + QStringList{"--company", "X01", "--yes", "--json"});
            QCOMPARE(ended.exitCode, 1);
            const QString told = ended.Json()["errors"].toArray().at(0).toString();
            QVERIFY2(told.startsWith("Azienda 'X01': ci sta già lavorando"), qPrintable(ended.output));
            QCOMPARE(Counts(), QString("1 1 1"));
        }
        other.kill(); // its lock goes with it
        other.waitForFinished();
        QCOMPARE(m_run.Run({"truncate", "--company", "X01", "--yes"}).exitCode, 0);
    }

    void ResetDeletesTheKinds() {
        const auto ended = m_run.Run({"reset", "--company", "x01", "--kind", "DocVen", "--yes", "--json"});
        QCOMPARE(ended.exitCode, 0);
        QCOMPARE(Counts(), QString("0 1 1"));
        QCOMPARE(ended.Json()["outcome"].toString(), QString("done"));
        const QJsonArray emptied = ended.Json()["emptied"].toArray();
        QVERIFY(emptied.contains(QJsonObject{{"table", "X01_DOC_VEN"}, {"rows", 1}}));
        QCOMPARE(emptied.size(), 15);

        const QJsonObject run = m_run.Run({"history", "--json"}).Json()["runs"].toArray().first().toObject();
        QCOMPARE(run["work"].toString(), QString("reset del database"));
        QCOMPARE(run["company"].toString(), QString("X01"));
        QVERIFY(!run["worker"].toString().isEmpty());
        QVERIFY(run["options"].toArray().contains("Documenti di vendita e di acquisto"));
        QCOMPARE(run["procedures"][0]["emptied"].toArray(), emptied);
        const QString number = QString::number(run["run"].toInt());
        const QString log = m_run.Run({"history", "--run", number, "--log"}).output;
        QVERIFY2(log.contains("Tabella X01_DOC_VEN: svuotata (1 riga eliminata)"), qPrintable(log));
        const auto undone = m_run.Run({"undo", "--run", number, "--yes"});
        QCOMPARE(undone.exitCode, 1);
        QVERIFY2(undone.errors.contains("copia del database"), qPrintable(undone.errors));
    }

    /// A procedure that only deletes wants the same confirmation as the commands that do, and tells what went.
    void CamTablesWantConfirmation_data() {
        Columns<QStringList, int, int>("options", "exitCode", "left");
        Row("unconfirmed", QStringList{}, 2, 2);
        Row("a trial", QStringList{"--dry-run"}, 0, 2);
        Row("confirmed", QStringList{"--yes"}, 0, 0);
    }
    void CamTablesWantConfirmation() {
        QFETCH(QStringList, options);
        QFETCH(int, exitCode);
        QTemporaryDir folder;
        ovConnection cam;
        OpenEmbedded(cam, folder.filePath("cam.db"))
            .ExecuteScript("CREATE TABLE PPRR_PPRR_00000100 (PrdRef TEXT); CREATE TABLE MMNN_PPOO_00000200 (N INT);"
                           "CREATE TABLE DIS_SHPR_PPTT_00000200 (N INT);"
                           "INSERT INTO PPRR_PPRR_00000100 VALUES ('A'), ('B')");
        m_run.Set("IMPORT", "CAM_Database", folder.filePath("cam.db"));
        const auto ended = m_run.Run(
            QStringList{"import", "--company", "X01", "--origin", "Lantek Expert 30", "--data", "SvuotaTabelleCam"} +
            options);
        QVERIFY2(ended.exitCode == exitCode, qPrintable(ended.errors));
        QTEST(static_cast<int>(cam.ExecuteCommand("SELECT COUNT(*) FROM PPRR_PPRR_00000100")), "left");
        const QString told = ended.exitCode == 0 ? ended.output : ended.errors;
        QVERIFY2(told.contains(exitCode == 0 ? "PPRR_PPRR_00000100: svuotata, righe 2" : "--yes per confermare"),
                 qPrintable(told));
    }

    void TruncateEmptiesAllButTheBaseTables() {
        const auto ended = m_run.Run({"truncate", "--company", "X01", "--yes", "--json"});
        QCOMPARE(ended.exitCode, 0);
        QCOMPARE(Counts(), QString("0 0 1"));
        QCOMPARE(ended.Json()["emptied"].toArray().size(), 60);
    }

private:
    static constexpr std::array Tables{"X01_DOC_VEN", "X01_CON_TRO", "X01_PIA_CON"};

    /// Rows of the three tables.
    QString Counts() {
        QStringList counts;
        for (const char* table : Tables) {
            counts.append(QString::number(m_database.ExecuteCommand(QString("SELECT COUNT(*) FROM ") + table)));
        }
        return counts.join(' ');
    }

    CliRun m_run;
    ovConnection m_database;
};

QUADRIX_TEST(TestEmptying)
#include "test_emptying.moc"
