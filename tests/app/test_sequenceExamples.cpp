#include "app/codes/apply.h"
#include "app/connectSource.h"
#include "app/history/again.h"
#include "app/history/rejects.h"
#include "app/sequence.h"
#include "examples/examples.h"
#include "tests/app/sequenceQuestions.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QTest>

namespace {

/// A source of an installation.
struct Source {
    const char* example;
    const char* origin;
    const char* database;
    const char* articles; ///< procedure that imports them; null when it has none
};

/// An installation whose sources are made-up data.
class Installation {
public:
    explicit Installation(const QVector<Source>& sources)
        : m_sources(sources) {
        Session& session = Target.Get();
        session.Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2024");
        session.Errors.Action = ErrorAction::Ignore;
        QByteArray text = "[SEQUENCE]\nAzienda=Prova Uno S.r.l.\nLogFile=mig.log\n";
        for (const Source& source : sources) {
            MakeSource(source);
            text += '[' + QByteArray(source.origin).toUpper() + "]\nDatabasename=" + PathOf(source).toLatin1() + '\n';
        }
        WriteFile(Target.Folder.filePath("Sequence.ini"), text);
    }

    void ImportArticles() {
        for (const Source& source : std::as_const(m_sources)) {
            if (source.articles != nullptr) {
                Target.Get().Config.SetAppConfig("IMPORT", "Databasename", PathOf(source));
                Import(source.origin, source.articles);
            }
        }
    }

    SequenceResult Run(bool empties = false) {
        Target.Person.AnswerTo = {{sequenceQuestions::Empty, empties}, {sequenceQuestions::EmptyCam, false}};
        return Sequence(Target.Get(), ReadSequenceSettings(Target.Get()), {});
    }
    qint64 Count(const QString& table) { return Target.Db().ExecuteCommand("SELECT COUNT(*) FROM X01_" + table); }

    TestTarget Target;

private:
    QString PathOf(const Source& source) const {
        return Target.Folder.filePath(QString(source.example) + '/' + source.database);
    }
    void MakeSource(const Source& source) {
        examples::Options options;
        options.rows = 40;
        options.folder = Target.Folder.filePath(source.example);
        options.company = "X01";
        examples::Make(source.example, options);
        Target.Db().ExecuteScript(QString::fromUtf8(ReadFile(options.folder + "/quadrix.sql")));
    }
    void Import(const QString& origin, const QString& procedure) {
        const contract::Origin* found = registry::Find(origin);
        QCOMPARE(ConnectSource(Target.Get(), *found), SourceOutcome::Opened);
        RunProcedure(Target.Get(), *found, procedure);
        CloseSource(Target.Get());
    }

    QVector<Source> m_sources;
};

const QVector<Source> Workshop{{"arcaevolution", "Arca Evolution", "arca.db", nullptr},
                               {"lantek24", "Lantek 24", "lantek24.db", "ImportArticoliLantek24"},
                               {"automa", "AUTOMA", "automa.db", nullptr},
                               {"ferrobrio", "Ferrobrio", "ferrobrio.db", nullptr}};
const QVector<Source> Factory{{"mexal", "Mexal", "", "ImportArticoliMEX"},
                              {"tessera", "Tessera", "tessera.db", "ImportArticoliTessera"},
                              {"visualspace", "Visual Space", "visualspace.db", "ImportArticoliVSP"}};

} // namespace

/// The sequences over real sources and with the real procedures.
class TestSequenceExamples : public QObject {
    Q_OBJECT

private slots:
    void importsEverySourceOnce() {
        Installation installation(Workshop);
        installation.ImportArticles();
        const QStringList counted{"CON_TRO", "CON_RIF", "NUM_TEL", "DIS_BAS", "DIS_COM", "DIS_FAS",
                                  "DOC_ACQ", "DOC_ACR", "ORD_PRO", "ORD_FAS", "UBI_MAG", "ART_ICO"};
        QVector<qint64> before;
        for (const bool again : {false, true}) {
            installation.Target.Person.Messages.clear();
            const SequenceResult result = installation.Run();
            QCOMPARE(result.outcome, RunResult::Outcome::Done);
            QVector<qint64> givenUp;
            QCOMPARE(installation.Target.Person.Messages.size(), 1); // rows given up are told
            QCOMPARE(installation.Target.Person.Messages.last().icon, Icon::Exclamation);
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

        // Without its articles it is told which steps are to be repeated.
        const SequenceResult result = installation.Run(true);
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        const QString hint = "l'azienda non ha articoli: importarli e ripetere il passo";
        QStringList hinted;
        for (const SequenceEntry& entry : result.entries) {
            hinted += entry.message == hint ? QStringList(entry.step) : QStringList();
        }
        QCOMPARE(hinted,
                 QStringList({"Documenti da Lantek 24 e Distinte Base / Ord. Prod.", "Saldi di Magazzino da AUTOMA",
                              "Saldi di Magazzino da Lantek 24", "Saldi di Magazzino da Ferrobrio"}));
        QCOMPARE(SequenceLines(result).first(), QString("Passi 6: completati 6"));
        QVERIFY(installation.Target.Log("mig.log").contains(hint.toLatin1()));
    }

    /// Each procedure by itself, out of its own source: rows given up, and those that wait for a code.
    void rowsAreImportedAgain() {
        Installation installation(Workshop);
        Session& session = installation.Target.Get();
        installation.ImportArticles();
        installation.Target.Execute("DELETE FROM SYS_IMP WHERE TBNAM = 'CF' AND TBFLD = 'Cd_PG'");
        installation.Run();
        const history::History history(history::FilePath(session.Config.ConfigFile()));
        const qint64 run = history.LastRun("X01");
        QCOMPARE(history.Load(run).origin, QString());
        QStringList pressed;
        for (const history::Again& again : history::RejectsAgain(session, history, run, {}, ErrorAction::Ignore)) {
            pressed.append(again.request.choice.origin->name + ' ' + again.request.procedure);
        }
        QCOMPARE(pressed, QStringList({"Arca Evolution ImportContropartiArcaEvolution",
                                       "Lantek 24 ImportDocumentiLantek24", "AUTOMA ImportInventarioAUTOMA",
                                       "Lantek 24 ImportInventarioLantek24", "Ferrobrio ImportSaldiFerrobrio"}));
        session.Config.SetAppConfig("IMPORT", "Databasename",
                                    installation.Target.Folder.filePath("arcaevolution/arca.db"));
        const QString open = "TBNAM = 'CF' AND TBFLD = 'Cd_PG'";
        const QString code = installation.Target.Value("SELECT MIN(TBOLD) FROM SYS_IMP WHERE " + open);
        QVERIFY(!code.isEmpty());
        installation.Target.Execute("UPDATE SYS_IMP SET TBNEW = 'PAG' WHERE " + open + " AND TBOLD = '" + code + "'");
        codes::Worklist worklist(session, nullptr);
        const auto waiting = codes::FindRowsToRepeat(worklist);
        QCOMPARE(waiting.size(), size_t(1));
        QCOMPARE(waiting.front().origin + ' ' + waiting.front().press, pressed.front());
        QCOMPARE(codes::Repeat(session, waiting.front()), FlowOutcome::Done);
        QCOMPARE(session.Results.last().updated, waiting.front().Count());
        QCOMPARE(session.Results.last().inserted, 0);

        session.Results.clear();
        const auto all = history::RejectsAgain(session, history, run, {}, ErrorAction::Ignore);
        QCOMPARE(RunImport(session, all.front().request), FlowOutcome::Done);
        QCOMPARE(session.Results.last().sourceRows, 2);
        QCOMPARE(session.Results.last().givenUpCount, 2); // they are as wrong as before

        // A file may hold rows that are imported by now, while those of others are open.
        const QString path = installation.Target.Folder.filePath("scarti.csv");
        const QStringList files = history::WriteRejects(history, run, path);
        history.File().Execute(
            "INSERT INTO imported_rejects (reject, run) SELECT R.id, 1 FROM rejects R JOIN procedures P ON P.id = "
            "R.procedure WHERE P.name = 'ImportSaldiFerrobrio'");
        QCOMPARE(history::RejectsAgain(session, history, run, {files.last()}, ErrorAction::Ignore).size(), size_t(1));
    }

    /// What the operator has filled in between two presses counts in the second, and what is still open is told again.
    void secondPressReadsTheTranslationsAnew() {
        Installation installation({{"mexal", "Mexal", "", nullptr}});
        TestTarget& target = installation.Target;
        QFile settings(target.Folder.filePath("Sequence.ini"));
        QVERIFY(settings.open(QIODevice::ReadWrite));
        const QByteArray text = settings.readAll().replace("[SEQUENCE]\n", "[SEQUENCE]\nScript=2\n");
        settings.close();
        WriteFile(settings.fileName(), text);
        target.Execute("DELETE FROM SYS_IMP WHERE TBFLD = '_PCPAG'");
        target.Person.Otherwise = true;
        SequenceWindow window;
        window.LanciaSequenza = [] {
            SequenceSteps steps;
            steps.DeleteBefore = true;
            steps.ContropartiMEX = true;
            return std::optional(steps);
        };
        const auto press = [&] {
            target.Person.Inputs = {QString("Tr1v0la8")};
            const auto result = PressSequence(
                target.Get(), {"Prova Uno S.r.l.", {}, registry::Find("Mexal"), ErrorAction::Ignore}, window);
            return result && result->entries.size() == 2 ? result->entries[1].results.value(0) : RunResult();
        };
        const auto open = press().untranslated.filter("_PCPAG");
        QVERIFY(open.size() > 1);
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_CON_TRO WHERE COMOP IS NOT NULL"), QString("0"));
        const QString code = open.first().section(" = ", 1);
        target.Execute("UPDATE SYS_IMP SET TBNEW = 'PAG' WHERE TBFLD = '_PCPAG' AND TBOLD = '" + code + "'");
        QCOMPARE(press().untranslated.filter("_PCPAG"), open.mid(1));
        QVERIFY(target.Value("SELECT COUNT(*) FROM X01_CON_TRO WHERE COMOP = 'PAG'").toInt() > 0);
    }

    void importsAndPutsRight() {
        Installation installation(Factory);
        installation.ImportArticles();
        SequenceSteps steps;
        for (const SequenceChoice& choice : SequenceChoices()) {
            steps.*choice.step = choice.step != &SequenceSteps::DeleteBefore;
        }
        SequenceWindow window;
        window.LanciaSequenza = [steps] { return std::optional(steps); };
        const SequenceResult result =
            Sequence2(installation.Target.Get(), ReadSequenceSettings(installation.Target.Get()), window);
        QCOMPARE(result.entries.size(), 12);
        for (const SequenceEntry& entry : result.entries) {
            QVERIFY2(entry.outcome == SequenceEntry::Outcome::Done, qPrintable(entry.step + ' ' + entry.message));
            for (const RunResult& procedure : entry.results) {
                QVERIFY2(procedure.AddsUp() && procedure.inserted > 0, qPrintable(entry.step));
            }
        }
        // Each source has brought orders of its own; heads of bills that are no component are finished products.
        QCOMPARE(
            installation.Target.Rows("SELECT DISTINCT DTCAU FROM X01_DOC_VEN WHERE DTCAU LIKE 'ORD%' ORDER BY DTCAU"),
            QStringList({"ORDCL", "ORDCM", "ORDCV"}));
        QCOMPARE(
            installation.Target.Value("SELECT COUNT(*) FROM X01_ART_ICO WHERE ARCLA = 'PF' AND CDART IN (SELECT DBART "
                                      "FROM X01_DIS_BAS) AND ARDBA = CDART"),
            installation.Target.Value("SELECT COUNT(DISTINCT DBART) FROM X01_DIS_BAS WHERE DBART NOT IN (SELECT DCART "
                                      "FROM X01_DIS_COM)"));
    }
};

QUADRIX_TEST(TestSequenceExamples)
#include "test_sequenceExamples.moc"
