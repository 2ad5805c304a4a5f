#include "adapters/registry.h"
#include "app/history/keptChanges.h"
#include "app/history/mayUndo.h"
#include "app/history/Recorder.h"
#include "app/history/undo.h"
#include "core/schemaDefaults.h"
#include "sql/Transaction.h"
#include "tests/app/KeptRuns.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace history;

namespace {

/// A run that writes the contacts of a counterparty anew, in a table without a key.
void WriteContacts(TestTarget& target, const QStringList& names) {
    const Recorder recorder(target.Get(), {.origin = "Prova"});
    contract::ImportRun run(target.Get(), "modImport_Prova", "ImportContatti", {});
    run.Guard([&] {
        run.DeleteRows("CON_RIF", "CDCON = '1'");
        for (const QString& name : names) {
            contract::TargetRow contact(run, "CON_RIF");
            contact.Set("CDCON", "1").Set("RFNOM", name).Set("RFQUA", QString(name + " s.r.l.")).Insert();
        }
    });
}

/// A run that links articles to a supplier.
void LinkArticles(TestTarget& target, const QStringList& articles) {
    const Recorder recorder(target.Get(), {.origin = "Prova"});
    contract::ImportRun run(target.Get(), "modImport_Prova", "ImportFornitori", {});
    run.Guard([&] {
        for (const QString& article : articles) {
            contract::TargetRow(run, "ART_FOR").Set("CDART", article).Set("CDCON", "000001").Insert();
        }
    });
}

QStringList TextsOf(const std::vector<brokenReferences::Broken>& broken) {
    const QString text = brokenReferences::TextOf(broken);
    return text.isEmpty() ? QStringList() : text.split(", ");
}

} // namespace

/// What is taken back of a run, and what is not.
class TestUndo : public QObject {
    Q_OBJECT

private slots:
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
        QVERIFY(
            ErrorOf([&] { Undo(kept.Target.Get(), history, 1); })
                ->Message()
                .startsWith("l'esecuzione 1 non si annulla prima della 2, che ha modificato righe scritte da questa"));
        const UndoResult result = Undo(kept.Target.Get(), history, 2);
        QCOMPARE(result.removed, 1);
        QCOMPARE(result.restored, 2);
        QCOMPARE(result.keptCount, 1);
        QCOMPARE(result.kept.front().why, "è stata modificata dopo");
        QCOMPARE(kept.Articles(), first + QStringList{"D|Mio|9"});
        QVERIFY_EXCEPTION_THROWN(Undo(kept.Target.Get(), history, 2), ImportError);
    }

    /// What stands in the database of the CAM stays there: nobody is told that it was taken back.
    void refusesWhatStandsOutside() {
        QStringList outside;
        for (const contract::Origin* origin : registry::All()) {
            for (const contract::Procedure& procedure : origin->procedures) {
                outside += procedure.needs.writes.empty() && procedure.needs.mappings.empty()
                               ? QStringList(procedure.name)
                               : QStringList();
            }
        }
        QCOMPARE(outside,
                 QStringList({"CopyScrapsFromLantekToLantek", "CopyProductsFromLantekToLantek", "SvuotaTabelleCam"}));
        Kept kept;
        kept.Run();
        Open(kept.Path())
            ->Execute("INSERT INTO procedures (run, module, name) SELECT 1, 'modImport_Lantek30', "
                      "'SvuotaTabelleCam'");
        const History history(kept.Path());
        const UndoResult result = Undo(kept.Target.Get(), history, 1);
        QCOMPARE(result.outside, QStringList{"SvuotaTabelleCam"});
        QVERIFY(LinesOf(result).contains("Nel database del CAM, fuori da Quadrix, resta ciò che ha fatto: "
                                         "SvuotaTabelleCam."));
        kept.Run();
        Open(kept.Path())
            ->Execute("UPDATE procedures SET module = 'modImport_Lantek30', name = "
                      "'CopyProductsFromLantekToLantek' WHERE run = 2");
        QVERIFY(!CanUndo(history.Load(2)));
        const auto error = ErrorOf<ImportError>([&] { Undo(kept.Target.Get(), history, 2); });
        QVERIFY(error && error->Message().startsWith("l'esecuzione 2 ha scritto soltanto nel database del CAM"));
    }

    /// Tables of all companies are written by each: what another one has changed stays, and locks nobody.
    void isLockedByItsCompanyAlone() {
        Kept kept;
        kept.Run();
        kept.Source("UPDATE ART SET NOME = 'Altro'");
        kept.Run();
        Open(kept.Path())->Execute("UPDATE runs SET company = 'X02' WHERE id = 2");
        QCOMPARE(Undo(kept.Target.Get(), History(kept.Path()), 1).keptCount, 2);
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

    /// Runs over the same rows are taken back from the last; what somebody has changed of it is there once.
    void takesRunsBackFromTheLast_data() {
        Columns<QString, QStringList, QStringList>("edit", "afterThird", "afterSecond");
        Row("as they are", "", QStringList{"Anna|Anna s.r.l.", "Bea|Bea s.r.l."}, QStringList{"Anna|Anna s.r.l."});
        Row("one edited", "UPDATE X01_CON_RIF SET RFNOM = 'Annina', USMDF = 'maria' WHERE RFNOM = 'Anna'",
            QStringList{"Annina|Anna s.r.l.", "Bea|Bea s.r.l."}, QStringList{"Annina|Anna s.r.l."});
    }
    void takesRunsBackFromTheLast() {
        QFETCH(QString, edit);
        Kept kept;
        WriteContacts(kept.Target, {"Anna"});
        WriteContacts(kept.Target, {"Anna", "Bea"});
        WriteContacts(kept.Target, {"Anna", "Bea"});
        const auto contacts = [&] { return kept.Target.Rows("SELECT RFNOM, RFQUA FROM X01_CON_RIF ORDER BY RFNOM"); };
        const QStringList before = contacts();
        const History history(kept.Path());
        const auto refusal = ErrorOf<ImportError>([&] { Undo(kept.Target.Get(), history, 2); });
        QVERIFY(refusal && refusal->Message().contains("Annullare prima la 3"));
        QCOMPARE(contacts(), before);
        QVERIFY(!history.Load(2).IsUndone());
        if (!edit.isEmpty()) {
            kept.Target.Execute(edit);
        }
        const UndoResult third = Undo(kept.Target.Get(), history, 3);
        QTEST(contacts(), "afterThird");
        QCOMPARE(third.keptCount, edit.isEmpty() ? 0 : 2);
        Undo(kept.Target.Get(), history, 2);
        QTEST(contacts(), "afterSecond");
        Undo(kept.Target.Get(), history, 1);
        QCOMPARE(contacts().size(), edit.isEmpty() ? 0 : 1);
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
        for (const auto undo : {TryUndo, UndoAlone}) {
            QVERIFY_EXCEPTION_THROWN(undo(kept.Target.Get(), history, 1), ImportError);
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

    /// What a later run wrote and refers to what goes is taken back before; what is of others is told.
    void tellsWhatRefersToWhatGoes_data() {
        Columns<QStringList, QString, QString, QStringList>("linked", "later", "first", "left");
        Row("of a later run", QStringList{"A", "C"}, "", "Annullare prima la 2", QStringList{});
        Row("of a later run, to articles of others", QStringList{"Z"}, "", "", QStringList{});
        Row("of a run of another company", QStringList{"A"}, "UPDATE runs SET company = 'X02' WHERE id = 2", "",
            QStringList{"X01_ART_FOR (CDART): 1"});
        Row("of a hand", QStringList{}, "INSERT INTO X01_ART_FOR (CDART) VALUES ('A'), ('a '), ('Z')", "",
            QStringList{"X01_ART_FOR (CDART): 2"});
        Row("of a hand, by the name of the table", QStringList{},
            "INSERT INTO X01_IMA_GES (TBNAM, TBKEY) VALUES ('ART_ICO', 'C'), ('CON_TRO', 'C')", "",
            QStringList{"X01_IMA_GES (TBKEY): 1"});
        Row("to what stays", QStringList{"A"}, "UPDATE X01_ART_ICO SET ARDES = 'Mia' WHERE CDART = 'A'", "",
            QStringList{});
    }
    void tellsWhatRefersToWhatGoes() {
        QFETCH(QString, later);
        QFETCH(QString, first);
        QFETCH(QStringList, linked);
        Kept kept;
        kept.Run();
        if (!linked.isEmpty()) {
            LinkArticles(kept.Target, linked);
        }
        if (later.startsWith("UPDATE runs")) {
            Open(kept.Path())->Execute(later);
        } else if (!later.isEmpty()) {
            kept.Target.Execute(later);
        }
        const History history(kept.Target.Get());
        const QStringList before = kept.Articles();
        if (!first.isEmpty()) {
            const auto refusal = ErrorOf<ImportError>([&] { Undo(kept.Target.Get(), history, 1); });
            QVERIFY(refusal && refusal->Message().contains("(X01_ART_FOR). " + first));
            QCOMPARE(kept.Articles(), before);
            Undo(kept.Target.Get(), history, 2);
        }
        const UndoResult result = Undo(kept.Target.Get(), history, 1);
        QTEST(TextsOf(result.left), "left");
        QCOMPARE(LinesOf(result).filter("si riferiscono a ciò che si toglie").size(), result.left.empty() ? 0 : 1);
    }

    /// What earlier runs had written with those codes is as it was before; writing them again makes no reference.
    void tellsWhatStoodBefore_data() {
        Columns<QString, QString, QString, QStringList, QStringList>("later", "edit", "first", "left", "before");
        const QStringList one{"X01_ART_FOR (CDART): 1"};
        Row("as it was", "", "", "", QStringList{}, one);
        Row("written again", "A", "", "", QStringList{}, one);
        Row("given the code later", "A", "UPDATE X01_ART_FOR SET CDART = 'Z'", "Annullare prima la 3", QStringList{},
            QStringList{});
        Row("edited", "", "UPDATE X01_ART_FOR SET USMDF = 'maria'", "", one, QStringList{});
    }
    void tellsWhatStoodBefore() {
        QFETCH(QString, later);
        QFETCH(QString, edit);
        QFETCH(QString, first);
        Kept kept;
        LinkArticles(kept.Target, {"A"});
        kept.Run();
        if (!edit.isEmpty()) {
            kept.Target.Execute(edit);
        }
        if (!later.isEmpty()) {
            const Recorder recorder(kept.Target.Get(), {.origin = "Prova"});
            contract::ImportRun run(kept.Target.Get(), "modImport_Prova", "ImportFornitori", {});
            run.Guard(
                [&] { contract::TargetRow(run, "ART_FOR").Set("CDART", later).Update("WHERE CDCON = '000001'"); });
        }
        const History history(kept.Target.Get());
        if (!first.isEmpty()) {
            const auto refusal = ErrorOf<ImportError>([&] { Undo(kept.Target.Get(), history, 2); });
            QVERIFY(refusal && refusal->Message().contains("(X01_ART_FOR). " + first));
            return;
        }
        const UndoResult result = Undo(kept.Target.Get(), history, 2);
        QTEST(TextsOf(result.left), "left");
        QTEST(TextsOf(result.leftAsBefore), "before");
        QCOMPARE(LinesOf(result).filter("come prima che fosse eseguita").size(), result.leftAsBefore.empty() ? 0 : 1);
    }

    /// Every company may refer to tables that all share, in what is taken back and in what a reset deletes.
    void looksThroughAllCompanies() {
        TestTarget target;
        Session& session = target.Get();
        session.UserManager.SetAzienda("X01");
        target.Execute("INSERT INTO SYS_AZI (CDAZI) VALUES ('X02')");
        target.Execute("CREATE TABLE X02_CON_TRO (RECORD_ID INTEGER PRIMARY KEY, COMOP TEXT)");
        const auto write = [&](const QString& company, const QString& table, const QString& column) {
            const Recorder recorder(session, {.origin = "Prova", .company = company});
            session.UserManager.SetAzienda(company);
            contract::ImportRun run(session, "modImport_Prova", "ImportProva", {});
            run.Guard([&] {
                if (table == "CON_TRO") {
                    target.Execute("INSERT INTO X02_CON_TRO (COMOP) VALUES ('BO60')");
                } else {
                    contract::TargetRow(run, table).Set(column, "BO60").Insert();
                }
            });
            session.UserManager.SetAzienda("X01");
        };
        write("X01", "TAB_MOP", "CDMOP");
        write("X02", "CON_TRO", "COMOP");
        QCOMPARE(
            TextsOf(brokenReferences::LeftBy(session, contract::RowsOf(session, contract::DeletedImports("TAB_MOP")))),
            QStringList{"X02_CON_TRO (COMOP): 1"});
        const History history(session);
        Open(FilePath(session.Config.ConfigFile()))
            ->Execute("INSERT INTO changes (procedure, kind, target_table, target_id, inserted) SELECT id, 0, "
                      "'X02_CON_TRO', 0, '1 1' FROM procedures WHERE run = 2");
        const auto refusal = ErrorOf<ImportError>([&] { Undo(session, history, 1); });
        QVERIFY(refusal && refusal->Message().contains("(X02_CON_TRO). Annullare prima la 2"));
        Open(FilePath(session.Config.ConfigFile()))->Execute("DELETE FROM changes WHERE target_table = 'X02_CON_TRO'");
        QCOMPARE(TextsOf(Undo(session, history, 1).left), QStringList{"X02_CON_TRO (COMOP): 1"});
    }

    /// What a merge has led to the counterparties of a company stands in another one.
    void looksThroughCompaniesThatWereMerged() {
        TestTarget target;
        Session& session = target.Get();
        target.AddCompany("X02", "Prova Due");
        session.UserManager.SetAzienda("X02");
        const auto write = [&](const char* table, const char* code, const char* column) {
            const Recorder recorder(session, {.origin = "Prova"});
            contract::ImportRun run(session, "modImport_Prova", "ImportProva", {});
            run.Guard([&] { contract::TargetRow(run, table).Set(column, code).Insert(); });
        };
        write("DOC_VEN", "000005", "DTCON");
        session.UserManager.SetAzienda("X01");
        write("CON_TRO", "000010", "CDCON");
        const auto left = [&] {
            return TextsOf(
                brokenReferences::LeftBy(session, contract::RowsOf(session, contract::DeletedImports("CON_TRO"))));
        };
        target.Execute("UPDATE X02_DOC_VEN SET DTCON = '000010'"); // as a merge does
        QCOMPARE(left(), QStringList());
        target.Execute("INSERT INTO SYS_FUS (FUPAR, FUDES, FUFIN) VALUES ('X02', 'X01', '20240305')");
        const QStringList documents{"X02_DOC_VEN (DTCON): 1; quelle di un'azienda fusa in questa restano giuste se da "
                                    "allora è stata ricaricata"};
        QCOMPARE(left(), documents);
        target.Execute("UPDATE SYS_AZI SET CDAZI = 'X09' WHERE CDAZI = 'X02'");
        QCOMPARE(left(), QStringList()); // nobody works there any more
        target.Execute("UPDATE SYS_AZI SET CDAZI = 'X02' WHERE CDAZI = 'X09'");
        const UndoResult result = Undo(session, History(session), 2);
        QCOMPARE(TextsOf(result.left), documents);
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, USINS) SELECT '000010', USINS FROM X02_DOC_VEN");
        target.Execute("INSERT INTO SYS_FUS (FUPAR, FUDES, FUFIN) VALUES ('X02', 'X03', '20240306')");
        QCOMPARE(left(), QStringList()); // they bear the codes of a third company now
    }

    /// A row that went before its table was emptied, or some rows of it, would have gone with them.
    void bringsNothingBackBehindAReset_data() {
        Columns<QString>("where");
        Row("no row", "RFNOM = 'Z'");
        Row("some rows", "RFNOM = 'Bea'");
    }
    void bringsNothingBackBehindAReset() {
        QFETCH(QString, where);
        Kept kept;
        WriteContacts(kept.Target, {"Anna"});
        WriteContacts(kept.Target, {});
        kept.Target.Execute("INSERT INTO X01_CON_RIF (CDCON, RFNOM) VALUES ('2', 'Bea')");
        {
            const Recorder recorder(kept.Target.Get(), {.origin = "Prova"});
            contract::ImportRun run(kept.Target.Get(), "modImport_Prova", "ImportAltro", {});
            run.Guard([&] {
                contract::Empty(run, true,
                                {{.table = "CON_RIF", .way = contract::Emptied::Way::DeleteFrom, .where = where}});
            });
        }
        const UndoResult result = Undo(kept.Target.Get(), History(kept.Path()), 2);
        QCOMPARE(result.brought, 0);
        QCOMPARE(result.kept.front().why, "l'esecuzione 3 ha svuotato la tabella dopo");
    }

    /// The same of what a reset deletes, in part or whole.
    void tellsWhatAResetLeaves() {
        TestTarget target;
        Session& session = target.Get();
        session.UserManager.SetAzienda("X01");
        const QString import = QString("'%1'").arg(schema::defaults::ImportUser);
        target.Execute("INSERT INTO X01_ART_ICO (CDART, USINS) VALUES ('A', " + import + "), ('B', Null)");
        target.Execute("INSERT INTO X01_ART_FOR (CDART, USINS) VALUES ('A', Null), ('A', " + import + "), ('B', Null)");
        const auto left = [&](const contract::Emptying& emptying) {
            return TextsOf(brokenReferences::LeftBy(session, contract::RowsOf(session, emptying)));
        };
        QCOMPARE(left(contract::Truncated({"ART_ICO"})), QStringList{"X01_ART_FOR (CDART): 3"});
        QCOMPARE(left(contract::DeletedImports("ART_ICO")), QStringList{"X01_ART_FOR (CDART): 2"});
        QCOMPARE(left(contract::DeletedImports("ART_ICO") + contract::DeletedImports("ART_FOR")),
                 QStringList{"X01_ART_FOR (CDART): 1"});
        QCOMPARE(left(contract::Truncated({"ART_ICO", "ART_FOR"})), QStringList());
    }

    /// A trial leaves nothing to take back.
    void keepsTrials() {
        Kept kept;
        kept.Run({}, true);
        History history(kept.Path());
        QVERIFY(history.Load(1).isTrial);
        QVERIFY_EXCEPTION_THROWN(Undo(kept.Target.Get(), history, 1), ImportError);
    }
};

QUADRIX_TEST(TestUndo)
#include "test_undo.moc"
