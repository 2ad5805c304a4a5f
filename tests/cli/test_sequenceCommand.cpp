#include "examples/examples.h"
#include "tests/cli/CliRun.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

/// The second sequence over made-up sources, one of which is not there.
class TestSequenceCommand : public QObject {
    Q_OBJECT

    CliRun m_run;

    CliRun::Ended Sequence(const QStringList& arguments) const {
        return m_run.Run(QStringList{"sequence", "--errors", "ignore"} + arguments);
    }
    /// "step outcome" of each step.
    static QStringList Steps(const QJsonObject& json) {
        QStringList steps;
        for (const auto& value : json["steps"].toArray()) {
            const QJsonObject step = value.toObject();
            steps.append(step["step"].toString() + ' ' + step["outcome"].toString());
        }
        return steps;
    }

private slots:
    void initTestCase() {
        QCOMPARE(m_run.CreateCompany().exitCode, 0);
        examples::Options options;
        options.rows = 30;
        options.folder = m_run.Folder.path();
        for (const char* source : {"mexal", "tessera"}) {
            examples::Make(source, options);
        }
        m_run.Set("IMPORT", "DOC_DateStart", "01/01/2024");
        WriteFile(m_run.Folder.filePath("Sequence.ini"),
                  "[SEQUENCE]\nAzienda=Prova Uno\nScript=2\n[MEXAL]\nDatabasename=" + m_run.Folder.path().toLatin1() +
                      "\n[TESSERA]\nDatabasename=tessera.db\n[VISUAL SPACE]\nDatabasename=manca.db\n");
    }

    void refusals_data() {
        Columns<QStringList, QString>("arguments", "told");
        Row("without confirmation", QStringList{"--steps", "all"}, "--yes");
        Row("without steps", QStringList{"--yes"}, "--steps");
        Row("no such step", QStringList{"--steps", "saldimex,saldimx", "--yes"}, "'saldimx'");
        Row("no such script", QStringList{"--script", "3", "--yes"}, "3");
        Row("steps of the other one", QStringList{"--script", "1", "--steps", "all", "--yes"}, "sequenza 2");
        Row("nobody to ask", QStringList{"--script", "1", "--yes"}, "svuotare tutte le tabelle");
        Row("half answered", QStringList{"--script", "1", "--yes", "--answer", "yes"}, "database del software CAM");
        Row("an answer behind a no", QStringList{"--script", "1", "--yes", "--answer", "no", "--answer", "yes"},
            "Risposte --answer in più: 2");
        Row("nothing is asked", QStringList{"--steps", "all", "--yes", "--answer", "yes"},
            "Risposte --answer in più: 1");
        Row("texts of a hand go along", QStringList{"--steps", "deletebefore"},
            "Vanno anche testi in lingua scritti a mano, che nessuna importazione riporta: 1 (SYS_LNG: 1): ripetere");
    }
    void refusals() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        m_run.Value("INSERT INTO SYS_LNG (LNTBL, LNKEY, USINS) VALUES ('X01_ART_ICO', 'A', 'MARIO')");
        const auto ended = Sequence(arguments);
        m_run.Value("DELETE FROM SYS_LNG");
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains(told), qPrintable(ended.errors));
        QVERIFY(!QFile::exists(m_run.Folder.filePath("sequence.log")));
    }

    void tellsThatTheCompanyWasMerged() {
        m_run.Value("INSERT INTO SYS_FUS (FUPAR, FUDES, FUINI, FUFIN) VALUES ('X01', 'X09', '20240305', '20240305')");
        const auto ended = Sequence({"--steps", "all"});
        m_run.Value("DELETE FROM SYS_FUS");
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains("le righe di X01 hanno i codici delle controparti di X09"),
                 qPrintable(ended.errors));
    }

    void namesTheCompaniesThatThereAre() {
        const QString settings = m_run.Folder.filePath("Sequence.ini");
        const QByteArray right = ReadFile(settings);
        m_run.Value("INSERT INTO SYS_AZI (CDAZI, AZRAS) VALUES ('X02', 'Prova Uno')");
        WriteFile(settings, QByteArray(right).replace("Prova Uno", "prova uno (X01)")); // as lists show it
        const auto known = Sequence({"--steps", "all"});
        QVERIFY2(known.errors.contains("ripetere il comando con --yes"), qPrintable(known.errors));
        m_run.Value("DELETE FROM SYS_AZI WHERE CDAZI = 'X02'");
        WriteFile(settings, QByteArray(right).replace("Prova Uno", "Prova Due"));
        const auto ended = Sequence({"--steps", "all", "--yes"});
        WriteFile(settings, right);
        QCOMPARE(ended.exitCode, 2);
        QVERIFY2(ended.errors.contains("forse 'Prova Uno'? (aziende presenti: Prova Uno, X01)"),
                 qPrintable(ended.errors));
    }

    /// A skipped step makes the program fail, and the others run; steps may be given several times.
    void skipsWhatCannotBeReached() {
        const auto ended =
            Sequence({"--steps", "distintesic,contropartimex", "--steps", "SaldiVSP", "--yes", "--json"});
        QCOMPARE(ended.exitCode, 1);
        const QJsonObject json = ended.Json();
        QCOMPARE(json["run"].toInt(), 1);
        QCOMPARE(Steps(json), QStringList({"Controparti Mexal done", "Distinte Base Tessera done",
                                           "Saldi di Magazzino Visual Space notConnected"}));
        const QJsonObject imported = json["steps"][0]["procedures"][0].toObject();
        QCOMPARE(imported["procedure"].toString(), QString("ImportContropartiMEX"));
        QVERIFY(imported["inserted"].toInt() > 20);
        QVERIFY(json["steps"][1]["message"].toString().contains("non ha articoli"));
        const QString reason = json["steps"][2]["message"].toString();
        QVERIFY2(reason.startsWith("Impossibile connettersi a Visual Sapce! ") && reason.contains("manca.db"),
                 qPrintable(reason));
        QVERIFY(!QFile::exists(m_run.Folder.filePath("manca.db")));
    }
};

QUADRIX_TEST(TestSequenceCommand)
#include "test_sequenceCommand.moc"
