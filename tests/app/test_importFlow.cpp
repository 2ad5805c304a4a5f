#include "adapters/contract/run/Origin.h"
#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/importFlow.h"
#include "core/modImport.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using contract::Button;

namespace {

/// An origin over an embedded source whose procedures note how they were called.
class FakeOrigin {
public:
    FakeOrigin() {
        Origin.name = "Prova";
        Origin.source.prepare = [this](Session&, ovConnection& source) {
            ++Prepared;
            source.Embedded = true;
            source.DatabaseName = Database;
            return !GiveUp;
        };
    }

    contract::Procedure& Add(std::optional<Button> button, const QString& name) {
        Origin.procedures.push_back({button,
                                     name,
                                     [this, name](Session& session, const QString& code, bool reset) {
                                         const bool open = session.Source && session.Source->State();
                                         Calls.append(name + (code.isEmpty() ? QString() : QString(" " + code)) +
                                                      (reset ? " reset" : "") + (open ? "" : " closed"));
                                         Work(session, name);
                                     },
                                     {}});
        return Origin.procedures.back();
    }

    contract::Origin Origin;
    std::function<void(Session&, const QString& name)> Work = [](Session&, const QString&) {};
    QStringList Calls;
    QString Database = ":memory:";
    bool GiveUp = false;
    int Prepared = 0;
};

ImportRequest Request(const FakeOrigin& fake, Button button = Button::Cli) {
    ImportRequest request;
    request.choice = {"Prova Uno S.r.l.", {}, &fake.Origin, ErrorAction::Abort};
    request.button = button;
    return request;
}

/// Ends a procedure with that outcome, as the procedures of the origins do.
void End(Session& session, RunResult::Outcome outcome) {
    RunResult result;
    result.outcome = outcome;
    session.Results.append(result);
}

const QString Reset = "Resettare prima di importare?";

} // namespace

class TestImportFlow : public QObject {
    Q_OBJECT

private slots:
    void asksInOrder() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        target.Person.Answers = {true, true};
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Done);
        QCOMPARE(target.Person.Events, QStringList({"? Importare le controparti? = si", "? " + Reset + " = si"}));
        QCOMPARE(target.Person.Questions[1].style, Question::PlainNo);
        QCOMPARE(fake.Calls, QStringList{"ImportUno reset"});
        QVERIFY(!target.Get().Source);
        QCOMPARE(fake.Prepared, 1);
    }

    /// Whoever else imports into the company is named, and nothing is opened.
    void refusesACompanyUnderWork() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        target.Person.Answers = {true, true, true};
        ovConnection other;
        OpenEmbedded(other, target.Db().DatabaseName);
        QVERIFY(other.TakeLock("X01", "anna (PC-1)"));
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Failed);
        QVERIFY(target.Person.Reported.value(0).message.contains("'X01': ci sta già lavorando anna (PC-1)"));
        QVERIFY(fake.Calls.isEmpty());
        QCOMPARE(fake.Prepared, 0);
        other.ReleaseLock("X01");
        fake.Work = [&](Session&, const QString&) {
            QVERIFY(!other.TakeLock("X01", "anna (PC-1)"));
            QVERIFY(other.LockHolder("X01").endsWith(": importazione: Importa Controparti (Prova)"));
        };
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Done);
        QVERIFY(other.TakeLock("X01", "anna (PC-1)"));
    }

    void stopsAtEachNo_data() {
        Columns<bool, QString, int>("confirmed", "givesUpAt", "prepared");
        Row("confirmation", false, "", 0);
        Row("confirmation given up", true, "Importare le controparti?", 0);
        Row("opening of the source", true, "source", 1);
        Row("reset given up", true, Reset, 1);
    }
    void stopsAtEachNo() {
        QFETCH(bool, confirmed);
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        QFETCH(QString, givesUpAt);
        fake.GiveUp = givesUpAt == "source";
        target.Person.GiveUpAt = {givesUpAt};
        target.Person.Answers = {confirmed};
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Declined);
        QCOMPARE(target.Person.Events.size(), givesUpAt == Reset ? 2 : 1);
        QTEST(fake.Prepared, "prepared");
        QVERIFY(fake.Calls.isEmpty());
        QVERIFY(!target.Get().Source);
    }

    void tellsCompaniesOfOneNameApart() {
        TestTarget target;
        target.AddCompany("A01", "Altra");
        target.Execute("UPDATE SYS_AZI SET AZRAS = 'Prova Uno S.r.l.' WHERE CDAZI = 'A01'");
        FakeOrigin fake;
        Choice choice = Request(fake).choice;
        for (const char* code : {"X01", "a01"}) {
            choice.companyCode = code;
            QVERIFY(CheckData(target.Get(), choice));
            QCOMPARE(target.Get().UserManager.Azienda(), QString(code).toUpper());
        }
        choice.companyCode = "Z99";
        QVERIFY(!CheckData(target.Get(), choice));
        QCOMPARE(CheckData(target.Get(), {"Altra l'Una", {}, &fake.Origin, ErrorAction::Abort}), false);
        choice.companyCode.clear();
        QVERIFY(!CheckData(target.Get(), choice));
        QVERIFY(target.Person.Messages.last().text.contains("con i codici A01, X01"));
        QVERIFY(target.Person.Reported.isEmpty());
    }

    void takesTheCompany() {
        TestTarget target;
        target.Choose("ZZZ");
        FakeOrigin fake;
        Choice choice = Request(fake).choice;
        choice.errors = ErrorAction::Ignore;
        QVERIFY(CheckData(target.Get(), choice));
        QCOMPARE(target.Db().GetFullTableName("CON_TRO"), QString("X01_CON_TRO"));
        QCOMPARE(target.Get().UserManager.DataElaborazione, QDate(2024, 3, 5));
        QCOMPARE(target.Get().Errors.Action, ErrorAction::Ignore);
    }

    void asksBeforeDeletingAllCounterparties() {
        TestTarget target;
        FakeOrigin fake;
        fake.Origin.deletesAllCounterparties = true;
        fake.Add(Button::Cli, "ImportUno");
        fake.Add(Button::Art, "ImportDue");
        target.Person.Otherwise = true;
        RunImport(target.Get(), Request(fake));
        RunImport(target.Get(), Request(fake, Button::Art));
        QCOMPARE(target.Person.Questions[1].question, QString("Cancellare tutte le controparti prima di importarle?"));
        QCOMPARE(target.Person.Questions[1].style, Question::ExclamationNo);
        QCOMPARE(target.Person.Questions[3].question, Reset);
    }

    void runsWithoutQuestionsWhenAnswered() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        ImportRequest request = Request(fake);
        request.confirmed = true;
        request.reset = false;
        request.singleCode = "C1";
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Done);
        QVERIFY(target.Person.Events.isEmpty());
        QCOMPARE(fake.Calls, QStringList{"ImportUno C1"});
    }

    void runsProceduresInOrder() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        fake.Add(Button::Art, "ImportAltro");
        fake.Add(Button::Cli, "ImportDue").asksReset = false;
        target.Person.Otherwise = true;
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Done);
        QCOMPARE(fake.Calls, QStringList({"ImportUno reset", "ImportDue"}));
        fake.Calls.clear();
        ImportRequest named = Request(fake);
        named.procedure = "importaltro";
        QCOMPARE(RunImport(target.Get(), named), FlowOutcome::Done);
        QCOMPARE(fake.Calls, QStringList{"ImportAltro reset"});
        QCOMPARE(fake.Prepared, 2);
    }

    void stopsAfterAFailureOrCancel_data() {
        Columns<RunResult::Outcome, FlowOutcome, int>("outcome", "flow", "calls");
        Row("done", RunResult::Outcome::Done, FlowOutcome::Done, 2);
        Row("failed", RunResult::Outcome::Failed, FlowOutcome::Failed, 1);
        Row("cancelled", RunResult::Outcome::Cancelled, FlowOutcome::Cancelled, 1);
    }
    void stopsAfterAFailureOrCancel() {
        QFETCH(RunResult::Outcome, outcome);
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        fake.Add(Button::Cli, "ImportDue");
        fake.Work = [outcome](Session& session, const QString&) { End(session, outcome); };
        target.Person.Answers = {true, false};
        End(target.Get(), RunResult::Outcome::Failed); // of an earlier press
        QTEST(RunImport(target.Get(), Request(fake)), "flow");
        QTEST(static_cast<int>(fake.Calls.size()), "calls");
        const QStringList told = target.Get().Results.last().details; // nobody takes what has not run for done
        QVERIFY2(told.filter("Non eseguite: ").size() == 2 - fake.Calls.size(), qPrintable(told.join('\n')));
        QVERIFY(!target.Get().Source);
    }

    void closesTheSourceAfterAnException() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        fake.Work = [](Session&, const QString&) { throw ImportError("di troppo"); };
        target.Person.Otherwise = true;
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Failed);
        QVERIFY(!target.Get().Source);
        QCOMPARE(target.Person.Reported.size(), 1);
        QCOMPARE(target.Person.Reported[0].module + '.' + target.Person.Reported[0].procedure,
                 QString("frmImport.cmdImportCli_Click"));
    }

    /// A button whose procedures read two sources: each is run over its own, and what the second lacks is told.
    void opensTheSourceThatEachProcedureReads() {
        TestTarget target;
        FakeOrigin fake;
        FakeOrigin second;
        second.Origin.name = "Seconda";
        fake.Add(Button::Cli, "ImportUno");
        contract::Procedure& other = fake.Add(Button::Cli, "ImportDue");
        other = contract::OverSourceOf(second.Origin, other);
        fake.Work = [&](Session&, const QString& name) { QCOMPARE(second.Prepared, name == "ImportDue" ? 1 : 0); };
        target.Person.Answers = {true, false};
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Done);
        QCOMPARE(fake.Calls, QStringList({"ImportUno", "ImportDue"}));
        QCOMPARE(fake.Prepared, 1);
        QVERIFY(!target.Get().Source);
        second.Database = target.Folder.filePath("no/such/folder.db");
        target.Person.Answers = {true, false};
        fake.Work = [](Session&, const QString&) {};
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Failed);
        QCOMPARE(fake.Calls.mid(2), QStringList{"ImportUno"});
        QVERIFY(target.Person.Messages.last().text.startsWith("Impossibile connettersi a Seconda!"));
    }

    void tellsThatASourceCannotBeOpened() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        fake.Database = target.Folder.filePath("no/such/folder.db");
        target.Person.Answers = {true};
        QCOMPARE(RunImport(target.Get(), Request(fake)), FlowOutcome::Failed);
        QCOMPARE(target.Person.Reported.size(), 0); // one box for one error
        const ErrorEntry& error = target.Get().Errors.Entries().last();
        QCOMPARE(error.procedure, QString("ConnectSource"));
        QCOMPARE(target.Person.Messages.size(), 1);
        QCOMPARE(target.Person.Messages.last().text, QString("Impossibile connettersi a Prova!\n\n") + error.message);
        QCOMPARE(target.Person.Messages.last().icon, Icon::Exclamation);
        QVERIFY(!target.Get().Source);
        QVERIFY(!target.Person.IsBusy());
    }

    void namesAButtonWithoutProcedure() {
        TestTarget target;
        FakeOrigin fake;
        fake.Origin.buttons[static_cast<size_t>(Button::Saldi)].caption = "Importa Promozioni";
        QCOMPARE(RunImport(target.Get(), Request(fake, Button::Saldi)), FlowOutcome::Unavailable);
        QVERIFY(target.Person.Messages.last().text.contains("Prova"));
        QVERIFY(target.Person.Messages.last().text.contains("\"Importa Promozioni\""));
    }

    void runsAProcedureByItsName() {
        TestTarget target;
        FakeOrigin fake;
        fake.Origin.deletesAllCounterparties = true; // asked of its button alone
        fake.Add(Button::Cli, "ImportUno");
        fake.Add(std::nullopt, "ImportListini");
        target.Person.Answers = {true, false};
        ImportRequest request = Request(fake);
        request.procedure = "importlistini";
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Done);
        QCOMPARE(fake.Calls, QStringList{"ImportListini"});
        QCOMPARE(target.Person.Events, QStringList({"? Eseguire \"Listini da Prova\"? = si", "? " + Reset + " = no"}));
        request.procedure = "ImportAltro";
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Unavailable);
        QCOMPARE(target.Person.Messages.last().text,
                 QString("Prova: la procedura \"ImportAltro\" non è disponibile in questa versione!"));
        QVERIFY(ProceduresOf(fake.Origin, Button::Disegni).empty());
    }

    void asksTheQuestionOfTheProcedureItself() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(std::nullopt, "SistemaDisegni").confirmation = "Sistemare i disegni?";
        target.Person.Otherwise = false;
        ImportRequest request = Request(fake);
        request.procedure = "SistemaDisegni";
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Declined);
        QCOMPARE(target.Person.Questions[0].question, QString("Sistemare i disegni?"));
    }

    void namesWhatIsAboutToHappen() {
        TestTarget target;
        FakeOrigin fake;
        fake.Database = target.Folder.filePath("origine.db");
        WriteFile(fake.Database, {});
        fake.Add(Button::Cli, "ImportControparti").empties = contract::Truncated({"CON_TRO", "NUM_TEL"});
        target.Get().Config.SetAppConfig("IMPORT", "Password", "segreta");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000002')");
        target.Execute("INSERT INTO X01_NUM_TEL (TBNAM) VALUES ('CON_TRO')");
        target.Person.Otherwise = true;
        RunImport(target.Get(), Request(fake));
        const QString before = target.Person.Questions[0].details;
        const QString details = target.Person.Questions[1].details;
        const QString about = "Azienda: X01 Prova Uno S.r.l.\nOrigine: Prova\nOperazione: Controparti da Prova";
        QVERIFY2(before.startsWith(about), qPrintable(before));
        QCOMPARE(details, QString(about + "\nSorgente: " + fake.Database +
                                  "\nRighe che verranno eliminate: 3\n  X01_CON_TRO: 2\n  X01_NUM_TEL: 1"));
        QVERIFY(!before.contains("segreta"));
    }

    void forgetsTranslationsOfTheLastPress() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        QStringList found;
        fake.Work = [&found](Session& session, const QString&) {
            found.append(modImport::GetNewCode(session, "anagrafe", "pag", "RB30", false));
        };
        target.Person.Otherwise = false;
        target.Person.AnswerTo["Importare le controparti?"] = true;
        target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('anagrafe', 'pag', 'RB30', 'R1')");
        RunImport(target.Get(), Request(fake));
        target.Execute("UPDATE SYS_IMP SET TBNEW = 'R2'");
        RunImport(target.Get(), Request(fake));
        QCOMPARE(found, QStringList({"R1", "R2"}));
    }

    void takesATrialBack() {
        TestTarget target;
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        QStringList seen;
        fake.Work = [&](Session& session, const QString&) {
            session.Quadrix.Execute("TRUNCATE TABLE X01_CON_TRO");
            session.Quadrix.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000002')");
            seen = target.Rows("SELECT CDCON FROM X01_CON_TRO");
        };
        ImportRequest request = Request(fake);
        request.dryRun = true;
        target.Person.Otherwise = true;
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Done);
        QCOMPARE(seen, QStringList{"000002"});
        QCOMPARE(target.Rows("SELECT CDCON FROM X01_CON_TRO"), QStringList{"000001"});
        fake.Work = [](Session& session, const QString&) {
            session.Quadrix.Execute("DELETE X01_CON_TRO");
            throw ImportError("di troppo");
        };
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Failed);
        QCOMPARE(target.Rows("SELECT CDCON FROM X01_CON_TRO"), QStringList{"000001"});
        target.Execute("DELETE X01_CON_TRO"); // no transaction is left open
        QCOMPARE(target.Rows("SELECT CDCON FROM X01_CON_TRO"), QStringList());
    }

    /// No trial where what it writes would stay.
    void refusesATrialOnTablesWithoutTransactions() {
        if (!TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        TestTarget target(TestTarget::On::MariaDb);
        target.Execute("ALTER TABLE X01_CON_TRO ENGINE = MyISAM");
        FakeOrigin fake;
        fake.Add(Button::Cli, "ImportUno");
        ImportRequest request = Request(fake);
        request.dryRun = true;
        target.Person.Otherwise = true;
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Failed);
        QCOMPARE(fake.Calls, QStringList());
        QVERIFY(target.Person.Reported.first().message.contains("X01_CON_TRO (MyISAM)"));
    }

    void wordsConfirmations_data() {
        Columns<QString, QString>("caption", "confirmation");
        Row("usual", "", "Importare i saldi di magazzino?");
        Row("own caption", "Importa Tabelle Generali", "Importare Tabelle Generali?");
        Row("no import", "Correggi Date Consegna", "Eseguire \"Correggi Date Consegna\"?");
    }
    void wordsConfirmations() {
        QFETCH(QString, caption);
        contract::Origin origin;
        origin.buttons[static_cast<size_t>(Button::Saldi)].caption = caption;
        QTEST(ConfirmationOf(origin, Button::Saldi), "confirmation");
    }
};

QUADRIX_TEST(TestImportFlow)
#include "test_importFlow.moc"
