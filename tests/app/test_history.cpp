#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/ImportRun.h"
#include "app/history/again.h"
#include "app/history/compare.h"
#include "app/history/keptChanges.h"
#include "app/history/Recorder.h"
#include "app/history/rejects.h"
#include "app/history/undo.h"
#include "sources/tableFile.h"
#include "sql/Transaction.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;
using namespace history;

namespace {

/// Articles of a small source into a target whose runs are kept.
class Kept {
public:
    explicit Kept(TestTarget::On engine = TestTarget::On::Embedded)
        : Target(engine) {
        m_origin.name = "Prova";
        m_origin.source.prepare = [this](Session&, ovConnection& source) {
            source.Embedded = true;
            source.DatabaseName = Target.Folder.filePath("source.db");
            return true;
        };
        m_origin.procedures.push_back({Button::Art,
                                       "ImportArticoliProva",
                                       [this](Session& session, const QString&, bool) {
                                           Import(session);
                                           if (Meanwhile) {
                                               Meanwhile();
                                               Import(session);
                                           }
                                       },
                                       {}});
        ovConnection source;
        source.Embedded = true;
        source.DatabaseName = Target.Folder.filePath("source.db");
        source.OpenConnection();
        source.Execute("CREATE TABLE ART (CODICE TEXT, NOME TEXT, COSTO TEXT, UM TEXT)");
        for (const char* row : {"'A', 'Vite', '1.5', 'PZ'", "'B', 'Dado', 'due', 'XX'", "'C', 'Rondella', '3', 'XX'",
                                "'D', 'Perno', 'quattro', 'PZ'"}) {
            source.Execute(QStringLiteral("INSERT INTO ART VALUES (%1)").arg(QLatin1String(row)));
        }
        Target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('PROVA', 'UM', 'PZ', 'NR')");
    }

    FlowOutcome Run(const std::shared_ptr<RowSelection>& only = {}, bool dryRun = false) {
        ImportRequest request;
        request.choice = {"Prova Uno S.r.l.", {}, &m_origin, ErrorAction::Ignore};
        request.button = Button::Art;
        request.confirmed = true;
        request.reset = false;
        request.dryRun = dryRun;
        request.only = only;
        Target.Get().Results.clear();
        return RunImport(Target.Get(), request);
    }
    void Source(const QString& statement) const {
        ovConnection source;
        source.Embedded = true;
        source.DatabaseName = Target.Folder.filePath("source.db");
        source.OpenConnection();
        source.Execute(statement);
    }
    QStringList Articles() { return Target.Rows("SELECT CDART, ARDES, ARCOS FROM X01_ART_ICO ORDER BY CDART"); }
    QString Account() {
        const RunResult& result = Target.Get().Results.last();
        return QStringLiteral("%1 = %2 + %3 + %4 + %5")
            .arg(result.sourceRows)
            .arg(result.inserted)
            .arg(result.updated)
            .arg(result.skipped)
            .arg(result.givenUpCount);
    }
    /// The codes that rows wait for, each with them.
    QStringList Waiting() const {
        QStringList codes;
        for (const WaitingCode& one : History(Path()).WaitingCodes("X01")) {
            codes += one.code.list + '.' + one.code.field + '=' + one.code.code + ' ' + one.first.join(", ");
        }
        return codes;
    }
    QString Path() const { return FilePath(Target.Get().Config.ConfigFile()); }

    mutable TestTarget Target;
    std::function<void()> Meanwhile; ///< happens under way, before the rows are imported once more

private:
    static void Import(Session& session) {
        ImportRun run(session, "modImport_Prova", "ImportProva", {});
        run.Guard([&] {
            run.Announce("Inizio importazione articoli");
            run.Rows({"Articoli", "ART", "CODICE", "SELECT COUNT(*) FROM ART", "SELECT * FROM ART ORDER BY CODICE"},
                     [&](const SourceRow& row) { return ImportRow(run, row); });
            run.Complete("Articoli importati correttamente!");
        });
    }

    static RowOutcome ImportRow(ImportRun& run, const SourceRow& row) {
        Session& session = run.GetSession();
        const QString isIt = Equals(session, "CDART", row.Text("CODICE"));
        if (row.Text("NOME") == "-") {
            run.DeleteRows("ART_ICO", isIt);
            return RowOutcome::Updated;
        }
        const qint64 known = IdWhere(session, "ART_ICO", isIt);
        TargetRow article(run, "ART_ICO");
        article.Set("CDART", row.Value("CODICE")).Set("ARDES", row.Value("NOME")).Set("ARCOS", row.Value("COSTO"));
        if (modImport::GetNewCode(session, "PROVA", "UM", row.Text("UM"), true).isEmpty()) {
            run.Log("UNITÀ NON TROVATA: " + row.Text("UM"));
        }
        if (known != 0) {
            article.Update("WHERE " + Equals("RECORD_ID", known));
            return RowOutcome::Updated;
        }
        article.Insert();
        return RowOutcome::Inserted;
    }

    Origin m_origin;
};

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
        const auto codes = history.WaitingCodes("X01");
        QCOMPARE(codes.size(), 1U);
        QCOMPARE(codes[0].code.list + codes[0].code.field + codes[0].code.code + codes[0].first.join(','),
                 "PROVAUMXX"
                 "tabella 'ART', CODICE 'C'");
        QVERIFY(history.Log(1).contains("Riga abbandonata: tabella 'ART', CODICE 'B'"));
    }

    /// The rows given up come back mended in the file, or at the source, and are imported alone.
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
                                "ALTER TABLE changes DROP COLUMN places;\nALTER TABLE runs DROP COLUMN partial");
        }
        QCOMPARE(kept.Waiting(), before);
        QCOMPARE(kept.Waiting(), before);
        QCOMPARE(kept.Run(), FlowOutcome::Done);
        QCOMPARE(kept.Waiting(), before);
    }

    void importsRejectsAgain() {
        Kept kept;
        kept.Run();
        History history(kept.Path());
        const QString path = kept.Target.Folder.filePath("scarti.csv");
        QCOMPARE(WriteRejects(history, 1, path), QStringList{path});
        QVERIFY(ReadFile(path).contains("_SCARTO;_RIGA_ORIGINE;_MOTIVO;CODICE;NOME;COSTO;UM\r\n"));
        WriteFile(path, ReadFile(path).replace("due", "2"));
        kept.Source("UPDATE ART SET NOME = 'Vite lunga' WHERE CODICE = 'A'"); // not among them
        QCOMPARE(kept.Run(MendedRejects(history, 1, {path})), FlowOutcome::Done);
        QCOMPARE(kept.Account(), "2 = 1 + 0 + 0 + 1");
        QCOMPARE(kept.Articles(), QStringList({"A|Vite|1.5", "B|Dado|2", "C|Rondella|3"}));
        QCOMPARE(history.WaitingCodes("X01").front().first.size(),
                 2); // that of the first run, which was left alone, too
        kept.Source("UPDATE ART SET COSTO = '4' WHERE CODICE = 'D'");
        kept.Run(RejectsOf(history, 2));
        QCOMPARE(kept.Account(), "1 = 1 + 0 + 0 + 0");
        QVERIFY(Differences(history, 2, 3).last().startsWith("Ora importata: "));
        const QStringList whole = Differences(history, 1, 3); // the row of the second run is that of the first
        QCOMPARE(whole.filter("Ora importata: ").size(), 1);
        QCOMPARE(whole.filter("Non ripresa: ").size(), 1);
        QCOMPARE(RejectsIn(history.Load(1)), 0);
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
            MendedRejects(history, 1, {path});
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
        kept.Run(MendedRejects(history, 1, {own}));
        QCOMPARE(kept.Account(), "1 = 0 + 0 + 0 + 1");
        const RunResult& result = kept.Target.Get().Results.last();
        QVERIFY(result.givenUp.front().reason.contains("la fonte ha ora 'tre', quando è stata scartata aveva 'due'"));
        QCOMPARE(result.notes.kinds.front().name, "RIGA CHE LA FONTE NON HA PIÙ");
        QVERIFY(result.notes.kinds.front().first.startsWith("tabella 'ART', CODICE 'D', o non più con i valori"));
    }

    /// An interrupted run goes on behind the last row that stands; where the source is another, from the beginning.
    void goesOnWhereItStopped() {
        Kept kept;
        kept.Target.Person.CancelAt = 2;
        kept.Run();
        QCOMPARE(kept.Account(), "4 = 1 + 0 + 0 + 1");
        kept.Target.Person.CancelAt.reset();
        History history(kept.Path());
        kept.Run(RestOf(history.Load(1)));
        QCOMPARE(kept.Account(), "4 = 1 + 0 + 1 + 2");
        QCOMPARE(kept.Target.Get().Results.last().skippedBy.firstKey(), "già importata prima dell'interruzione");
        kept.Source("INSERT INTO ART VALUES ('0', 'Nuovo', '1', 'PZ')");
        kept.Run(RestOf(history.Load(1)));
        QVERIFY(kept.Target.Get().Results.last().errors.first().contains("al posto di tabella 'ART', CODICE 'A' c'è"));
    }

    /// What a run wrote is taken back, but for what somebody has changed since.
    void takesARunBack() {
        Kept kept;
        kept.Run();
        const QStringList first = kept.Articles();
        kept.Source("UPDATE ART SET NOME = 'Altro', COSTO = '9'");
        kept.Run();
        QCOMPARE(kept.Account(), "4 = 2 + 2 + 0 + 0");
        kept.Target.Execute("UPDATE X01_ART_ICO SET ARDES = 'Mio' WHERE CDART = 'D'");
        History history(kept.Path());
        const UndoResult result = Undo(kept.Target.Get(), history, 2);
        QCOMPARE(result.removed, 1);
        QCOMPARE(result.restored, 2);
        QCOMPARE(result.keptCount, 1);
        QCOMPARE(result.kept.front().why, "è stata modificata dopo");
        QCOMPARE(kept.Articles(), first + QStringList{"D|Mio|9"});
        QVERIFY_EXCEPTION_THROWN(Undo(kept.Target.Get(), history, 2), ImportError);
    }

    /// Rows that one run writes several times go back to what they were before the first.
    void takesBackWhatWasWrittenTwice() {
        Kept kept;
        kept.Run();
        const QStringList first = kept.Articles();
        kept.Source("DELETE FROM ART");
        kept.Source("INSERT INTO ART VALUES ('A', '-', '1', 'PZ'), ('A', 'Vite nuova', '2', 'PZ'), "
                    "('C', 'Una', '1', 'PZ'), ('C', 'Altra', '2', 'PZ'), ('E', 'Nuovo', '1', 'PZ'), "
                    "('E', 'Altro', '2', 'PZ'), ('F', 'Nuovo', '1', 'PZ'), ('F', '-', '1', 'PZ'), "
                    "('F', 'Di nuovo', '2', 'PZ')");
        kept.Run();
        QCOMPARE(kept.Articles(), (QStringList{"A|Vite nuova|2", "C|Altra|2", "E|Altro|2", "F|Di nuovo|2"}));
        const UndoResult result = Undo(kept.Target.Get(), History(kept.Path()), 2);
        QCOMPARE(result.keptCount, 0);
        QCOMPARE(kept.Articles(), first);
    }

    /// What others did behind a run, and what its taking back leaves and names.
    void leavesWhatIsOfOthers_data() {
        Columns<QString, QString, QStringList, QStringList>("source", "later", "articles", "kept");
        const QString replaced = "UPDATE ART SET NOME = '-' WHERE CODICE = 'A'; "
                                 "INSERT INTO ART VALUES ('A', 'Vite nuova', '2', 'PZ')";
        const QString added = "INSERT INTO ART VALUES ('E', 'Nuovo', '1', 'PZ')";
        Row("edited in a column of its own", added,
            "UPDATE X01_ART_ICO SET ARNOT = 'x', USMDF = 'maria' WHERE CDART = 'E'",
            QStringList{"A|Vite|1.5", "C|Rondella|3", "E|Nuovo|1"}, QStringList{"è stata modificata dopo"});
        Row("edited in a column that the run wrote first of it",
            "INSERT INTO ART VALUES ('E', 'Nuovo', '1', 'PZ'), ('E', 'Altro', '2', 'PZ')",
            "UPDATE X01_ART_ICO SET DTINS = '20000101' WHERE CDART = 'E'",
            QStringList{"A|Vite|1.5", "C|Rondella|3", "E|Altro|2"}, QStringList{"è stata modificata dopo"});
        Row("edited in the place of a deleted one", replaced, "UPDATE X01_ART_ICO SET ARDES = 'Mia' WHERE CDART = 'A'",
            QStringList{"A|Mia|2", "C|Rondella|3"},
            QStringList{"è stata modificata dopo", "il suo codice è della riga 3"});
        Row("in the place of a deleted one", replaced, "", QStringList{"A|Vite|1.5", "C|Rondella|3"}, QStringList{});
        Row("removed from there", replaced, "DELETE FROM X01_ART_ICO WHERE CDART = 'A'",
            QStringList{"A|Vite|1.5", "C|Rondella|3"}, QStringList{"non c'è più"});
    }
    void leavesWhatIsOfOthers() {
        QFETCH(QString, source);
        QFETCH(QString, later);
        Kept kept;
        kept.Run();
        for (const QString& statement : source.split(';')) {
            kept.Source(statement);
        }
        kept.Run();
        if (!later.isEmpty()) {
            kept.Target.Execute(later);
        }
        const UndoResult result = Undo(kept.Target.Get(), History(kept.Path()), 2);
        QStringList why;
        for (const KeptRow& row : result.kept) {
            why += row.why;
        }
        QTEST(kept.Articles(), "articles");
        QTEST(why, "kept");
    }

    /// A table that is emptied gives its numbers again: the rows of the later run bear them.
    void leavesRowsThatCameAfterAReset() {
        Kept kept;
        kept.Run();
        kept.Target.Execute("TRUNCATE TABLE X01_ART_ICO");
        kept.Run();
        const QStringList after = kept.Articles();
        QCOMPARE(kept.Target.Value("SELECT MIN(RECORD_ID) FROM X01_ART_ICO"), "1");
        const UndoResult result = Undo(kept.Target.Get(), History(kept.Path()), 1);
        QCOMPARE(result.removed, 0);
        QCOMPARE(result.kept.front().why, "non c'è più");
        QCOMPARE(kept.Articles(), after);
        QCOMPARE(Undo(kept.Target.Get(), History(kept.Path()), 2).removed, 2);
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

    /// Either both the tables and the history tell of a taking back, or neither does.
    void undoesNothingThatTheHistoryCannotTell() {
        Kept kept;
        kept.Run();
        const QStringList articles = kept.Articles();
        const History history(kept.Path());
        {
            const auto other = Open(kept.Path());
            const Transaction writing(*other);
            other->Execute("UPDATE runs SET worker = 'x'");
            QVERIFY_EXCEPTION_THROWN(Undo(kept.Target.Get(), history, 1), SqlError);
        }
        QCOMPARE(kept.Articles(), articles);
        QCOMPARE(Undo(kept.Target.Get(), history, 1).removed, 2);
    }

    /// Nor is anything taken back, even for a trial, where what is written cannot be.
    void refusesTablesWithoutTransactions() {
        if (!TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        Kept kept(TestTarget::On::MariaDb);
        kept.Run();
        const QStringList articles = kept.Articles();
        kept.Target.Execute("ALTER TABLE X01_ART_ICO ENGINE = MyISAM");
        kept.Target.Get().UserManager.SetAzienda({}); // the taking back of a run needs none
        const History history(kept.Path());
        for (const bool isTrial : {true, false}) {
            QVERIFY_EXCEPTION_THROWN(UndoAlone(kept.Target.Get(), history, 1, isTrial), ImportError);
            QCOMPARE(kept.Articles(), articles);
        }
    }

    /// Rows of several tables that were inserted by turns go in the reverse order, as foreign keys may demand.
    void removesRowsFromTheLast() {
        Kept kept;
        kept.Run();
        History history(kept.Path());
        const auto file = Open(kept.Path());
        file->ExecuteScript("DELETE FROM changes;\nDELETE FROM runs;\nDELETE FROM procedures");
        const auto tell = [](Recorder& recorder, const char* table, qint64 id) {
            static const QStringList columns{"USINS"};
            TargetChange change{TargetChange::Kind::Inserted, table, id};
            change.columns = columns;
            recorder.TargetChanges(change);
        };
        {
            Recorder recorder(kept.Target.Get(), {});
            recorder.ProcedureBegins("modImport_Prova", "ImportProva");
            for (qint64 id = 1; id <= 900; ++id) { // more than a record holds
                tell(recorder, "X01_DIS_TES", id);
                tell(recorder, "X01_DIS_RIG", id);
            }
            recorder.TargetChanges({TargetChange::Kind::Deleted, "X01_DIS_FAS", 7});
            tell(recorder, "X01_DIS_RIG", 901);
            tell(recorder, "X01_DIS_RIG", 902);
            recorder.ProcedureEnds({});
        }
        QStringList order;
        ForEachChangeBackwards(history, history.LastRun(), [&](const Change& change) {
            order += change.table.mid(4) + ' ' + QString::number(change.id);
        });
        QStringList expected{"DIS_RIG 902", "DIS_RIG 901", "DIS_FAS 7"};
        for (qint64 id = 900; id >= 1; --id) {
            expected += QStringLiteral("DIS_RIG %1").arg(id);
            expected += QStringLiteral("DIS_TES %1").arg(id);
        }
        QCOMPARE(order, expected);
    }

    /// A trial leaves nothing to take back.
    void keepsTrials() {
        Kept kept;
        kept.Run({}, true);
        History history(kept.Path());
        QVERIFY(history.Load(1).isTrial);
        QVERIFY_EXCEPTION_THROWN(Undo(kept.Target.Get(), history, 1), ImportError);
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
