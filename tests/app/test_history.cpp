#include "app/history/again.h"
#include "app/history/compare.h"
#include "app/history/mayUndo.h"
#include "app/history/rejects.h"
#include "app/history/runTexts.h"
#include "app/history/undo.h"
#include "core/runEnding.h"
#include "sources/tableFile.h"
#include "sql/Transaction.h"
#include "tests/app/KeptRuns.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace history;

namespace {

QString Of(const Run& run) {
    const RunResult& result = run.procedures.front().result;
    return QStringLiteral("%1 %2 %3 %4: %5+%6, %7")
        .arg(run.company, run.origin, run.data, EndingText(run))
        .arg(result.inserted)
        .arg(result.updated)
        .arg(run.procedures.front().rejects);
}

} // namespace

/// What is kept of the runs, and what is made of it.
class TestHistory : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatARunTold() {
        Kept kept;
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        QCOMPARE(kept.Account(), "4 = 2 + 0 + 0 + 2");
        History history(kept.Path());
        const auto runs = history.Runs("X01");
        QCOMPARE(runs.size(), 1U);
        QCOMPARE(Of(runs.front()), "X01 Prova art completata ma non per intero: 2+0, 2");
        const auto notes = history.Notes(1, {}, "xx", 0, 10);
        QCOMPARE(notes.size(), 1U); // that of the row given up went with it
        QCOMPARE(notes[0].kind + "|" + notes[0].row + "|" + notes[0].text,
                 "UNITÀ NON TROVATA|tabella 'ART', CODICE 'C'|XX");
        history.SetDone(notes[0], true);
        QCOMPARE(history.NoteKinds(1).front().done, 1);
        const auto codes = history.WaitingCodes("X01", 10);
        QCOMPARE(codes.size(), 1U);
        QCOMPARE(codes[0].code.list + codes[0].code.field + codes[0].code.code + codes[0].first.join(','),
                 "PROVAUMXX"
                 "tabella 'ART', CODICE 'C'");
        QVERIFY(history.Log(1).contains("Riga abbandonata: tabella 'ART', CODICE 'B'"));
    }

    /// A code that reads like no value is one.
    void keepsCodesAsTheyAre() {
        Kept kept;
        kept.Source("UPDATE ART SET UM = 'Null' WHERE CODICE = 'C'");
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        QCOMPARE(kept.Waiting(), QStringList("PROVA.UM=Null tabella 'ART', CODICE 'C'"));
        QVERIFY(History(kept.Path()).Load(1).procedures.front().result.inserted == 2);
    }

    /// The list and field of a code stood in the row of each that waited for it.
    void opensFilesOfEarlierReleases() {
        Kept kept;
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        const QStringList before = kept.Waiting();
        QCOMPARE(before, QStringList("PROVA.UM=XX tabella 'ART', CODICE 'C'"));
        {
            const auto file = Open(kept.Path());
            file->ExecuteScript("CREATE TABLE codes (id INTEGER PRIMARY KEY, procedure INTEGER, list TEXT, field TEXT, "
                                "code TEXT, source_row TEXT);\n"
                                "INSERT INTO codes SELECT W.id, procedure, list, field, O.code, source_row FROM "
                                "waiting_rows W JOIN open_codes O ON O.id = W.code;\n"
                                "DROP TABLE waiting_rows;\nDROP TABLE open_codes;\n"
                                "ALTER TABLE changes DROP COLUMN inserted;\n"
                                "ALTER TABLE changes DROP COLUMN places;\nALTER TABLE runs DROP COLUMN partial;\n"
                                "ALTER TABLE runs DROP COLUMN target;\n"
                                "ALTER TABLE touched_tables DROP COLUMN emptied_rows;\n"
                                "DROP TABLE imported_rejects;\nDROP TABLE written_databases;\n"
                                "CREATE TABLE imported_rejects (reject INTEGER PRIMARY KEY, run INTEGER);\n"
                                "INSERT INTO imported_rejects VALUES (1, 1)");
        }
        QCOMPARE(Open(kept.Path())->GetColumns("imported_rejects").size(), 3);
        QCOMPARE(kept.Waiting(), before);
        QCOMPARE(kept.Waiting(), before);
        QCOMPARE(RejectsIn(History(kept.Target.Get()).Load(1)), 1);
        QVERIFY(!History(kept.Target.Get()).Load(1).isElsewhere); // it does not tell
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        QCOMPARE(kept.Waiting(), before);
    }

    /// The rows given up come back mended in the file, or at the source, and are imported alone.
    void importsRejectsAgain() {
        Kept kept;
        kept.Run();
        History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        QCOMPARE(WriteRejects(history, 1, path), QStringList{path});
        QVERIFY(ReadFile(path).contains("_SCARTO;_RIGA_ORIGINE;_MOTIVO;CODICE;NOME;COSTO;UM\r\n"));
        WriteFile(path, ReadFile(path).replace("due", "2"));
        kept.Source("UPDATE ART SET NOME = 'Vite lunga' WHERE CODICE = 'A'"); // not among them
        QCOMPARE(kept.Run(MendedRejects(history, 1, {path}, {})), FlowOutcome::Done);
        QCOMPARE(kept.Account(), "2 = 1 + 0 + 0 + 1");
        QCOMPARE(kept.Articles(), QStringList({"A|Vite|1.5", "B|Dado|2", "C|Rondella|3"}));
        QCOMPARE(history.WaitingCodes("X01", 10).front().first.size(),
                 2); // that of the first run, which was left alone, too
        kept.Source("UPDATE ART SET COSTO = '4' WHERE CODICE = 'D'");
        kept.Run(RejectsOf(history, 2, {}));
        QCOMPARE(kept.Account(), "1 = 1 + 0 + 0 + 0");
        QVERIFY(Differences(history, 2, 3).last().startsWith("Ora importata: "));
        const QStringList whole = Differences(history, 1, 3); // the row of the second run is that of the first
        QCOMPARE(whole.filter("Ora importata: ").size(), 1);
        QCOMPARE(whole.filter("Non ripresa: ").size(), 1);
        QCOMPARE(RejectsIn(history.Load(1)), 0);
    }

    /// A file given again has those rows imported alone that it did not have so before; notes beside them are none of
    /// the source.
    void importsAFileAgain() {
        Kept kept;
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        const auto mend = [&](const QByteArray& before, const QByteArray& after) {
            WriteFile(path, ReadFile(path).replace(before, after));
        };
        const auto take = [&] { return MendedRejects(history, 1, {path}, {}); };
        mend("due", "2");
        kept.Run(take());
        QCOMPARE(kept.Account(), "2 = 1 + 0 + 0 + 1");
        mend(";UM\r\n", ";UM;NOTA\r\n");
        const auto both = take();
        QCOMPARE(both->Count(), 1);
        QCOMPARE(both->Remarks(), QStringList({"Colonne del file '" + path + "' che la fonte non ha, non lette: NOTA",
                                               "Righe del file già importate così come sono, lasciate fuori: 1"}));
        mend(ReadFile(path).split('\n').at(2) + '\n', ""); // the one that is open
        const auto refused = ErrorOf<ImportError>(take);
        QVERIFY(refused && refused->Message().contains("le righe sono già state importate così"));
        mend(";2;", ";5;");
        kept.Run(take());
        QCOMPARE(kept.Articles()[1].section('|', 2), "5");
    }

    /// A sheet gives days back in a form of its own, where the source has them as texts.
    void writesDaysAsTheSourceDoes_data() {
        Columns<QString, QString, QString>("was", "typed", "read");
        Row("with marks", "31/02/2024", "2024-02-28", "28/02/2024");
        Row("two digits of a year", "31.02.24", "2024-02-28", "28.02.24");
        Row("without marks", "20240231", "2024-02-28", "20240228");
        Row("no day before", "da definire", "2024-02-28", "2024-02-28");
        Row("no day now", "31/02/2024", "febbraio", "febbraio");
    }
    void writesDaysAsTheSourceDoes() {
        QFETCH(QString, was);
        QFETCH(QString, typed);
        Kept kept;
        kept.Source("UPDATE ART SET NOME = '" + was + "' WHERE CODICE = 'B'");
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        WriteFile(path, ReadFile(path).replace(was.toUtf8(), typed.toUtf8()).replace(";due;", ";2;"));
        kept.Run(MendedRejects(history, 1, {path}, {}));
        QTEST(kept.Target.Value("SELECT ARDES FROM X01_ART_ICO WHERE CDART = 'B'"), "read");
    }

    void refusesWrongMending_data() {
        Columns<QByteArray, QByteArray, QString>("before", "after", "mistake");
        QTest::newRow("another file") << QByteArray("_SCARTO") << QByteArray("SCARTO") << "non è un file degli scarti";
        QTest::newRow("a row of another run")
            << QByteArray("\r\n1;") << QByteArray("\r\n77;")
            << "riga 2, colonna '_SCARTO': '77' non è uno scarto di questa esecuzione";
        QTest::newRow("a column that the source lacks")
            << QByteArray(";NOME;") << QByteArray(";NOMI;") << "riga 2, colonna 'NOMI': la fonte non ha questa colonna";
    }
    void refusesWrongMending() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, mistake);
        Kept kept;
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        WriteFile(path, ReadFile(path).replace(before, after));
        try {
            MendedRejects(history, 1, {path}, {});
            QFAIL("nothing was refused");
        } catch (const ImportError& error) {
            QVERIFY2(error.Message().contains(mistake), qPrintable(error.Message()));
        }
    }

    /// What the source has changed since is not written over unseen, and what it has no more is told.
    void tellsWhatTheSourceHasChanged() {
        Kept kept;
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.xlsx");
        WriteRejects(history, 1, path);
        auto table = sources::ReadTable(path);
        const QString own = kept.Target.Folder.filePath("mine.xlsx");
        const auto mended = sources::TableWriter::Create(own, "x", table.columns);
        for (const auto& row : table.rows) {
            QVector<QVariant> values(row.values.begin(), row.values.end());
            values[5] = "2";
            mended->AddRow(values);
        }
        mended->Close();
        kept.Source("UPDATE ART SET COSTO = 'tre' WHERE CODICE = 'B'");
        kept.Source("DELETE FROM ART WHERE CODICE = 'D'");
        kept.Run(MendedRejects(history, 1, {own}, {}));
        QCOMPARE(kept.Account(), "1 = 0 + 0 + 0 + 1");
        const RunResult& result = kept.Target.Get().Results.last();
        QVERIFY(result.givenUp.front().reason.contains("la fonte ha ora 'tre', quando è stata scartata aveva 'due'"));
        QCOMPARE(result.notes.kinds.front().name, "RIGA CHE LA FONTE NON HA PIÙ");
        QVERIFY(result.notes.kinds.front().first.startsWith("tabella 'ART', CODICE 'D', o non più con i valori"));
        QCOMPARE(result.notFound, 1);
        kept.Source("DELETE FROM ART WHERE CODICE = 'B'");
        kept.Run(MendedRejects(history, 1, {own}, {}));
        QCOMPARE(kept.Account(), "0 = 0 + 0 + 0 + 0");
        QCOMPARE(history.Load(3).ending, Ending::Incomplete); // as the command's exit code tells
    }

    /// An interrupted run goes on behind the last row that stands; where the source is another, from the beginning.
    void goesOnWhereItStopped() {
        Kept kept;
        kept.Target.Person.CancelAt = 2;
        kept.Run();
        QCOMPARE(kept.Account(), "4 = 1 + 0 + 0 + 1");
        kept.Target.Person.CancelAt.reset();
        History history(kept.Path());
        kept.Run(RestOf(history, history.Load(1)));
        QCOMPARE(kept.Account(), "4 = 1 + 0 + 1 + 2");
        QCOMPARE(kept.Target.Get().Results.last().skippedBy.firstKey(), "già vista prima dell'interruzione");
        kept.Source("INSERT INTO ART VALUES ('0', 'Nuovo', '1', 'PZ')");
        kept.Run(RestOf(history, history.Load(1)));
        QVERIFY(kept.Target.Get().Results.last().errors.first().contains("al posto di tabella 'ART', CODICE 'A' c'è"));
    }

    /// What was taken back is no ground to go on from: neither for the rest of a run, nor for its codes.
    void knowsWhatWasTakenBack() {
        Kept kept;
        kept.Target.Person.CancelAt = 3;
        kept.Run();
        kept.Target.Person.CancelAt.reset();
        const History history(kept.Path());
        QVERIFY(CanGoOn(history.Load(1)));
        Undo(kept.Target.Get(), history, 1);
        QVERIFY(!CanGoOn(history.Load(1)));
        QVERIFY_EXCEPTION_THROWN(RestOf(history, history.Load(1)), ImportError);
        QVERIFY(RunCells(history.Load(1)).contains("interrotta dall'operatore; annullata"));
        kept.Run();
        const auto refusal = [&history](qint64 run) {
            const auto error = ErrorOf<ImportError>([&] { RestOf(history, history.Load(run)); });
            return error ? error->Message() : QString();
        };
        QCOMPARE(refusal(2), "l'esecuzione 2 non si è interrotta: non c'è nulla da riprendere");
        Open(kept.Path())
            ->Execute(QString("UPDATE runs SET origin = '', ending = %1 WHERE id = 2")
                          .arg(static_cast<int>(Ending::Interrupted)));
        QCOMPARE(refusal(2),
                 "l'esecuzione 2 non è l'importazione di una sola origine: una sequenza non si riprende, si "
                 "ripete dall'inizio");
        Open(kept.Path())
            ->Execute(QString("UPDATE runs SET origin = 'Prova', ending = %1 WHERE id = 2")
                          .arg(static_cast<int>(Ending::Incomplete)));
        const QStringList waiting = kept.Waiting();
        QCOMPARE(waiting.size(), 1);
        kept.Source("UPDATE ART SET UM = 'PZ'");
        kept.Run();
        QCOMPARE(kept.Waiting(), QStringList());
        Undo(kept.Target.Get(), history, 3);
        QCOMPARE(kept.Waiting(), waiting);
        Undo(kept.Target.Get(), history, 2);
        QCOMPARE(kept.Waiting(), QStringList());
    }

    /// Rows wait for a code until a run that is limited to them has written them.
    void waitsUntilItIsDone() {
        Kept kept;
        kept.Run();
        const QStringList waiting = kept.Waiting();
        QCOMPARE(waiting.size(), 1);
        kept.Target.Execute("UPDATE SYS_IMP SET TBNEW = 'NR' WHERE TBOLD = 'XX'");
        const auto again = [&kept] {
            const auto only = std::make_shared<contract::RowSelection>();
            only->FillCodes();
            only->Add(
                {.procedure = "ImportArticoliProva", .name = "tabella 'ART', CODICE 'C'", .table = "ART", .key = "C"});
            kept.Run(only);
        };
        kept.Target.Person.CancelAt = 0;
        again();
        QCOMPARE(kept.Waiting(), waiting);
        kept.Target.Person.CancelAt.reset();
        kept.Source("UPDATE ART SET COSTO = 'tre' WHERE CODICE = 'C'");
        again();
        QCOMPARE(kept.Target.Get().Results.last().givenUpCount, 1);
        QCOMPARE(kept.Waiting(), waiting);
        kept.Source("UPDATE ART SET COSTO = '3' WHERE CODICE = 'C'");
        again();
        QCOMPARE(kept.Waiting(), QStringList());
    }

    /// A second mending that is taken back leaves the first.
    void keepsEveryMending() {
        Kept kept;
        kept.Run();
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        const QByteArray rejects = ReadFile(path);
        for (const char* cost : {"2", "5"}) {
            WriteFile(path, QByteArray(rejects).replace("due", cost));
            kept.Run(MendedRejects(history, 1, {path}, {}));
        }
        QCOMPARE(RejectsIn(history.Load(1)), 1);
        Undo(kept.Target.Get(), history, 3);
        QCOMPARE(kept.Articles()[1], "B|Dado|2");
        QCOMPARE(RejectsIn(history.Load(1)), 1);
        Undo(kept.Target.Get(), history, 2);
        QCOMPARE(RejectsIn(history.Load(1)), 2);
    }

    /// Of a run into another database nothing stands here; nor does it of one whose last row is not there.
    void knowsTheDatabase() {
        Kept kept;
        kept.Target.Person.CancelAt = 3;
        kept.Run();
        kept.Target.Person.CancelAt.reset();
        Session& session = kept.Target.Get();
        const auto refusal = [&](const auto& work) {
            const auto error = ErrorOf<ImportError>(work);
            return error ? error->Message() : QString();
        };
        const History history(session);
        QVERIFY(!history.Load(1).isElsewhere && CanGoOn(history.Load(1)) && CanUndo(history.Load(1)));
        QVERIFY(!refusal([&] { RestRequest(session, history, 1); }).contains("importare da capo"));
        kept.Target.Execute("DELETE FROM X01_ART_ICO WHERE CDART = 'C'");
        QVERIFY(refusal([&] { RestRequest(session, history, 1); }).contains("importare da capo"));
        const auto elsewhere = [&] {
            const Run run = history.Load(1);
            return run.isElsewhere && !CanGoOn(run) && !CanUndo(run) && history.WaitingCodes("X01", 10).empty() &&
                   RunCells(run)[2].contains("in un altro database: " + run.database) &&
                   refusal([&] { Undo(session, history, 1); }).contains("in un altro database") &&
                   refusal([&] { RestRequest(session, history, 1); }).contains("in un altro database") &&
                   refusal([&] { RejectRequests(session, history, 1, {}); }).contains("in un altro database");
        };
        const auto file = Open(kept.Path());
        file->Execute("UPDATE written_databases SET identity = 0, place = '/altro/quadrix.db'");
        QVERIFY(elsewhere() && !history.Load(1).wasReplaced);
        kept.Run(); // what was given up there is given up here
        QCOMPARE(history.LastRun("X01"), 2);
        QVERIFY(!history.Load(2).isElsewhere && history.Load(1).isElsewhere);
        QVERIFY(!history.WaitingCodes("X01", 10).empty());
        kept.Target.Execute("PRAGMA application_id = 77"); // another one at its place
        QVERIFY(ElsewhereText(History(session).Load(2)).contains("che stava allo stesso posto"));
    }

    /// Rows that an older release read where heads are read now: the file has not what is wrong, and nobody knows them.
    void tellsRejectsOfRowsThatAreReadOtherwise() {
        Kept kept;
        kept.Run();
        Open(kept.Path())
            ->Execute("UPDATE rejects SET source_key = source_key || char(31) || '10', source_row = source_row || ', "
                      "NRRIG ''10''', reason = 'tabella ''RIGHE'': colonna ''QTA'': ''x'' non è un numero'");
        const History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        WriteRejects(history, 1, path);
        QCOMPARE(QString::fromUtf8(ReadFile(path)).count("si corregge nella sorgente)"), 2);
        kept.Run(RejectsOf(history, 1, {}));
        const auto& kinds = kept.Target.Get().Results.last().notes.kinds;
        QCOMPARE(kinds.size(), 1);
        QCOMPARE(kinds.front().name, "RIGA CHE NON SI RITROVA");
        QCOMPARE(kinds.front().count, 2);
    }

    /// What a procedure that is not run again has left open keeps the whole from being whole.
    void tellsWhatIsLeftOut() {
        Kept kept;
        kept.Run();
        const auto file = Open(kept.Path());
        file->ExecuteScript("UPDATE runs SET ending = 2; INSERT INTO procedures (run, module, name) VALUES (1, "
                            "'modImport_Prova', 'ImportAltro')");
        const History history(kept.Path());
        kept.Run(RestOf(history, history.Load(1)), false, 1);
        const auto& results = kept.Target.Get().Results;
        QCOMPARE(results.size(), 1);
        QCOMPARE(results.last().givenUpBefore, 2);
        QCOMPARE(EndingText(history.Load(2)), "completata ma non per intero");
    }

    /// A run that breaks off has not come to all who wait; one that leaves codes as they are has given nobody his.
    void keepsWhoWaits() {
        Kept kept;
        kept.Run();
        const QStringList waiting = kept.Waiting();
        QCOMPARE(waiting.size(), 1);
        kept.Source("UPDATE ART SET UM = 'PZ'");
        kept.Target.Person.CancelAt = 0;
        kept.Run();
        kept.Target.Person.CancelAt.reset();
        QCOMPARE(kept.Waiting(), waiting);
        kept.Target.Db().Trace = [&kept](const QString&) {
            if (RunObserver* observer = kept.Target.Get().Observer) {
                observer->CodesAreLeft();
            }
        };
        kept.Run();
        QCOMPARE(kept.Waiting(), waiting);
        kept.Target.Db().Trace = nullptr;
        kept.Run();
        QCOMPARE(kept.Waiting(), QStringList());
    }

    /// Where the history breaks off under a run, it says so, and so does the taking back of what it has.
    void tellsThatItBreaksOff_data() {
        Columns<QString, QString, QString>("trouble", "mend", "ending");
        Row("until the end", "DROP TABLE changes", "",
            "completata ma non per intero; la cronologia non la tiene per intero");
        Row("behind the end", "DROP TABLE changes;ALTER TABLE runs RENAME COLUMN ended TO past",
            "ALTER TABLE runs RENAME COLUMN past TO ended",
            "finita non si sa come; la cronologia non la tiene per intero");
    }
    void tellsThatItBreaksOff() {
        QFETCH(QString, trouble);
        QFETCH(QString, mend);
        Kept kept;
        kept.Meanwhile = [&] {
            const auto other = Open(kept.Path());
            for (const QString& statement : trouble.split(u';')) {
                other->Execute(statement);
            }
            kept.Source("UPDATE ART SET COSTO = '2'");
        };
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        kept.Meanwhile = {};
        QCOMPARE(kept.Articles().size(), 4);
        QVERIFY(kept.Target.Get().Results.last().details.last().contains("non tiene il resto di questa esecuzione"));
        if (!mend.isEmpty()) {
            ovConnection file;
            file.Embedded = true;
            file.DatabaseName = kept.Path();
            file.OpenConnection();
            file.Execute(mend);
        }
        QTEST(EndingText(History(kept.Path()).Load(1)), "ending");
        QVERIFY(Undo(kept.Target.Get(), History(kept.Path()), 1).isPartial);
        kept.Run();
        QVERIFY(History(kept.Path()).Load(1).isPartial);
        QCOMPARE(QDir(kept.Target.Folder.path()).entryList({"*.parziale"}), QStringList());
        QCOMPARE(EndingText(History(kept.Path()).Load(2)), "completata");
    }

    /// A history that cannot be written does not stop an import.
    void importsWithoutIt() {
        Kept kept;
        QDir(kept.Target.Folder.path()).mkdir("Cronologia.sqlite");
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        QCOMPARE(kept.Articles().size(), 2);
        QVERIFY(kept.Target.Log().contains("La cronologia non tiene questa esecuzione"));
    }
};

QUADRIX_TEST(TestHistory)
#include "test_history.moc"
