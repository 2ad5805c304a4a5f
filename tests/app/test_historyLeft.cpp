#include "app/history/again.h"
#include "app/history/Recorder.h"
#include "app/history/rejects.h"
#include "app/history/undo.h"
#include "app/reset.h"
#include "core/runEnding.h"
#include "tests/app/KeptRuns.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace history;

/// What is left to be done of a run when its tables have been emptied, or when it is gone on with.
class TestHistoryLeft : public QObject {
    Q_OBJECT

private slots:
    /// Rows that went with their table are not there: those that were mended neither, nor those in front of a rest.
    void knowsWhatWasEmptied() {
        Kept kept;
        kept.Target.Person.CancelAt = 3;
        kept.Run();
        kept.Target.Person.CancelAt.reset();
        const History history(kept.Path());
        kept.Source("UPDATE ART SET COSTO = '2' WHERE CODICE = 'B'");
        kept.Run(RejectsOf(history, 1, {}));
        QCOMPARE(RejectsIn(history.Load(1)), 0);
        QVERIFY(RestOf(history, history.Load(1)) != nullptr);
        ResetOptions options;
        options.AnaArt = true;
        QCOMPARE(ResetDatabase(kept.Target.Get(), options).outcome, RunResult::Outcome::Done);
        QCOMPARE(RejectsIn(history.Load(1)), 1);
        QVERIFY(ErrorOf([&] { RestOf(history, history.Load(1)); })
                    ->Message()
                    .contains("l'esecuzione 3 ha svuotato dopo la tabella X01_ART_ICO, in cui la 1 aveva scritto"));
        const auto file = Open(kept.Path()); // of a release that kept it with the results alone
        file->ExecuteScript("DROP TABLE touched_tables; INSERT INTO imported_rejects (reject, run) VALUES (1, 2); "
                            "PRAGMA user_version = 0");
        const History earlier(kept.Path());
        QCOMPARE(RejectsIn(earlier.Load(1)), 1);
        QVERIFY(ErrorOf([&] { RestOf(earlier, earlier.Load(1)); }).has_value());
    }

    /// What goes by a condition takes away what was done with those rows alone.
    void knowsWhatWasEmptiedInPart_data() {
        Columns<QString, qint64, qint64>("condition", "emptiedBy", "open");
        Row("no row", "CDART = 'Z'", qint64(0), qint64(1));
        Row("rows of others", "CDART = 'M'", qint64(0), qint64(1));
        Row("a row of the run", "CDART = 'A'", qint64(3), qint64(1));
        Row("the row that was mended", "CDART = 'B'", qint64(0), qint64(2));
        Row("both", "CDART IN ('A', 'B', 'M')", qint64(3), qint64(2));
    }
    void knowsWhatWasEmptiedInPart() {
        QFETCH(QString, condition);
        QFETCH(qint64, emptiedBy);
        Kept kept;
        kept.Run();
        const History history(kept.Path());
        kept.Source("UPDATE ART SET COSTO = '2' WHERE CODICE = 'B'");
        kept.Run(RejectsOf(history, 1, {}));
        QCOMPARE(RejectsIn(history.Load(1)), 1);
        kept.Target.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('M')");
        {
            const Recorder recorder(kept.Target.Get(), {.origin = "Prova"});
            contract::ImportRun run(kept.Target.Get(), "modImport_Prova", "ImportAltro", {});
            run.Guard([&] {
                contract::Empty(run, true,
                                {{.table = "ART_ICO", .way = contract::Emptied::Way::DeleteFrom, .where = condition}});
            });
        }
        QCOMPARE(history.EmptiedBehind(1).run, emptiedBy);
        QTEST(RejectsIn(history.Load(1)), "open");
    }

    /// A run that goes on with another stands on what that one wrote, and tells the rows that it had given up.
    void standsOnTheRunsBefore() {
        Kept kept;
        kept.Source("INSERT INTO ART VALUES ('AA', 'Vite corta', 'uno', 'PZ')");
        kept.Target.Person.CancelAt = 3;
        kept.Run(); // A, AA and B, which is the last: the next one begins with it
        QCOMPARE(kept.Account(), "5 = 1 + 0 + 0 + 2");
        const History history(kept.Path());
        const auto resume = [&kept, &history](qint64 run) {
            kept.Run(RestOf(history, history.Load(run)), false, run);
            return kept.Target.Get().Results.last();
        };
        kept.Target.Person.CancelAt = 4;
        QCOMPARE(resume(1).givenUpBefore, 0);
        kept.Target.Person.CancelAt.reset();
        const RunResult rest = resume(2);
        QCOMPARE(kept.Account(), "5 = 0 + 0 + 4 + 1");
        QCOMPARE(rest.givenUpBefore, 2); // AA and B
        QVERIFY(LossesText(rest).contains("abbandonate prima dell'interruzione: 2"));
        Undo(kept.Target.Get(), history, 1);
        QVERIFY(ErrorOf([&] { RestOf(history, history.Load(2)); })
                    ->Message()
                    .contains("l'esecuzione 1, che la 2 riprende, è stata"));
    }

    /// A row that was given up where a run broke off is one that the rest of it begins with.
    void importsTheRowThatItBrokeOffAt_data() {
        Columns<QString, bool, int>("mending", "isTrial", "open");
        Row("mended", "UPDATE ART SET COSTO = '2' WHERE CODICE = 'B'", false, 0);
        Row("in a trial", "UPDATE ART SET COSTO = '2' WHERE CODICE = 'B'", true, 1);
        Row("as it was", "UPDATE ART SET COSTO = 'due' WHERE CODICE = 'B'", false, 1);
        Row("gone", "DELETE FROM ART WHERE CODICE = 'B'", false, 1);
    }
    void importsTheRowThatItBrokeOffAt() {
        QFETCH(const QString, mending);
        QFETCH(const bool, isTrial);
        Kept kept;
        kept.Target.Person.CancelAt = 2;
        kept.Run(); // A and B, which is given up
        kept.Target.Person.CancelAt.reset();
        const History history(kept.Path());
        QCOMPARE(RejectsIn(history.Load(1)), 1);
        kept.Source(mending);
        kept.Run(RestOf(history, history.Load(1)), isTrial, 1);
        QTEST(static_cast<int>(RejectsIn(history.Load(1))), "open");
        if (!isTrial) {
            Undo(kept.Target.Get(), history, 2);
            QCOMPARE(RejectsIn(history.Load(1)), 1);
        }
    }

    /// Both parts of an import are one: the second knows what the first has written, up to where it goes on.
    void knowsWhatIsWritten() {
        Kept kept;
        kept.Target.Person.CancelAt = 1;
        kept.Run(); // A
        const History history(kept.Path());
        const auto writes = [&](const QString& table, qint64 id) {
            const auto rest = RestOf(history, history.Load(1));
            rest->Begin("ImportArticoliProva");
            return rest->HasWritten(table, id);
        };
        QVERIFY(writes("X01_ART_ICO", 1));
        QVERIFY(!writes("X01_ART_ICO", 2));
        QVERIFY(!writes("X01_CON_TRO", 1));
        history.File().Execute("UPDATE procedures SET reached_change = 0"); // it was killed in front of the row
        QVERIFY(!writes("X01_ART_ICO", 1));
    }

    /// A source that has become shorter does not pass for one that was seen whole.
    void doesNotGoOnWithFewerRows() {
        Kept kept;
        kept.Target.Person.CancelAt = 3;
        kept.Run();
        kept.Target.Person.CancelAt.reset();
        const History history(kept.Path());
        kept.Source("DELETE FROM ART WHERE CODICE <> 'D'");
        kept.Run(RestOf(history, history.Load(1)), false, 1);
        const RunResult& result = kept.Target.Get().Results.last();
        QVERIFY(result.outcome == RunResult::Outcome::Failed);
        QVERIFY2(result.errors.join('\n').contains("la fonte ha meno righe di allora"),
                 qPrintable(result.errors.join('\n')));
    }
};

QUADRIX_TEST(TestHistoryLeft)
#include "test_historyLeft.moc"
