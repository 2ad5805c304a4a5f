#include "app/connectSource.h"
#include "app/sequence.h"
#include "examples/examples.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QTest>

namespace {

const QString Empty = "Attenzione: svuotare tutte le tabelle del database dell'azienda prima di effettuare "
                      "l'importazione?";
const QString EmptyCam = "Attenzione: desideri svuotare anche il database del software CAM collegato?";

/// An installation whose sources are made-up data, with the articles of the CAM in its company.
class Installation {
public:
    Installation() {
        Session& session = Target.Get();
        session.Config.SetConfigFile(Target.Folder.filePath("Quadrix.ini"));
        session.Errors.Action = ErrorAction::Ignore;
        for (const char* name : {"arcaevolution", "lantek24", "automa", "ferrobrio"}) {
            MakeSource(name);
        }
        QFile file(Target.Folder.filePath("Sequence.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[SEQUENCE]\nAzienda=Prova Uno S.r.l.\nLogFile=mig.log\n"
                   "[ARCA EVOLUTION]\nDatabasename=arca.db\n[LANTEK 24]\nDatabasename=lantek24.db\n"
                   "[AUTOMA]\nDatabasename=automa.db\n[FERROBRIO]\nDatabasename=ferrobrio.db\n");
        file.close();
        session.Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2024");
        session.Config.SetAppConfig("IMPORT", "Databasename", "lantek24.db");
        Import("Lantek 24", "ImportArticoliLantek24");
    }

    SequenceResult Run(bool empties = false) {
        Target.Person.AnswerTo = {{Empty, empties}, {EmptyCam, false}};
        return Sequence(Target.Get(), ReadSequenceSettings(Target.Get()), {});
    }
    qint64 Count(const QString& table) { return Target.Db().ExecuteCommand("SELECT COUNT(*) FROM X01_" + table); }

    TestTarget Target;

private:
    void MakeSource(const QString& name) {
        examples::Options options;
        options.rows = 40;
        options.folder = Target.Folder.path();
        options.company = "X01";
        examples::Make(name, options);
        QFile script(Target.Folder.filePath("quadrix.sql"));
        QVERIFY(script.open(QIODevice::ReadOnly));
        Target.Db().ExecuteScript(QString::fromUtf8(script.readAll()));
    }
    void Import(const QString& origin, const QString& procedure) {
        const contract::Origin* found = registry::Find(origin);
        QCOMPARE(ConnectSource(Target.Get(), *found), SourceOutcome::Opened);
        for (const contract::Procedure& each : found->procedures) {
            if (each.name == procedure) {
                each.run(Target.Get(), {}, false);
            }
        }
        CloseSource(Target.Get());
    }
};

} // namespace

/// The first sequence over real sources and with the real procedures.
class TestSequenceExamples : public QObject {
    Q_OBJECT

private slots:
    void importsEverySourceOnce();
    void tellsThatArticlesAreMissing();
};

void TestSequenceExamples::importsEverySourceOnce() {
    Installation installation;
    const QStringList counted{"CON_TRO", "CON_RIF", "NUM_TEL", "DIS_BAS", "DIS_COM", "DIS_FAS",
                              "DOC_ACQ", "DOC_ACR", "ORD_PRO", "ORD_FAS", "UBI_MAG", "ART_ICO"};
    QVector<qint64> before;
    for (const bool again : {false, true}) {
        const SequenceResult result = installation.Run();
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        QVector<qint64> givenUp;
        for (const SequenceEntry& entry : result.entries) {
            QCOMPARE(entry.message, QString());
            QVERIFY2(entry.results.size() == 1 && entry.results[0].AddsUp(), qPrintable(entry.step));
            givenUp.append(entry.results[0].givenUpCount);
        }
        QCOMPARE(givenUp, QVector<qint64>({2, 2, 2, 1, 1})); // the rows that are planted as wrong
        QVector<qint64> rows;
        for (const QString& table : counted) {
            rows.append(installation.Count(table));
            QVERIFY2(rows.last() > 0, qPrintable(table));
        }
        QCOMPARE(again ? before : rows, rows);
        before = rows;
    }
    // What is ordered is worth what the source says: no total differs.
    QVERIFY(!installation.Target.Log("mig.log").contains("TOTALE DIVERSO"));
    QCOMPARE(installation.Target.Value("SELECT COUNT(*) FROM X01_DOC_ACQ WHERE DTTOT > 0"),
             QString::number(installation.Count("DOC_ACQ")));
}

void TestSequenceExamples::tellsThatArticlesAreMissing() {
    Installation installation;
    const SequenceResult result = installation.Run(true);
    QCOMPARE(result.outcome, RunResult::Outcome::Done);
    const QString hint = "l'azienda non ha articoli: importarli e ripetere il passo";
    QStringList hinted;
    for (const SequenceEntry& entry : result.entries) {
        hinted += entry.message == hint ? QStringList(entry.step) : QStringList();
    }
    QCOMPARE(hinted, QStringList({"Documenti da Lantek 24 e Distinte Base / Ord. Prod.", "Saldi di Magazzino da AUTOMA",
                                  "Saldi di Magazzino da Lantek 24", "Saldi di Magazzino da Ferrobrio"}));
    QCOMPARE(SequenceLines(result).first(), QString("Passi 6: completati 6"));
    QVERIFY(installation.Target.Log("mig.log").contains(hint.toLatin1()));
}

QUADRIX_TEST(TestSequenceExamples)
#include "test_sequenceExamples.moc"
