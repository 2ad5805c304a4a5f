#include "adapters/contract/write/Document.h"
#include "core/modImport.h"
#include "tests/app/FakeInstallation.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

namespace {

using Outcome = SequenceEntry::Outcome;

QVector<Outcome> OutcomesOf(const SequenceResult& result) {
    QVector<Outcome> outcomes;
    for (const SequenceEntry& entry : result.entries) {
        outcomes.append(entry.outcome);
    }
    return outcomes;
}

} // namespace

class TestSequence : public QObject {
    Q_OBJECT

private slots:
    void runsOneSourceAfterTheOther() {
        FakeInstallation fake;
        QStringList selected;
        SequenceWindow window;
        window.SelectCompany = [&](const QString& name) { selected.append(name); };
        window.SelectOrigin = [&](const QString& name) { selected.append(name); };
        fake.Work = [&](const QString& procedure) {
            modImport::WriteImportLog(fake.Target.Get(), "Riga di " + procedure, true);
        };
        const SequenceResult result = Sequence(fake.Target.Get(), fake.Settings(), window);
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        QCOMPARE(fake.Calls, QStringList({"ImportContropartiArcaEvolution arca.db", "ImportDocumentiLantek24 lantek.db",
                                          "ImportInventarioAUTOMA automa.db", "ImportInventarioLantek24 lantek.db",
                                          "ImportSaldiFerrobrio ferrobrio.db"}));
        QCOMPARE(selected, QStringList({"Prova Uno S.r.l.", "ARCA EVOLUTION", "LANTEK 24", "LANTEK 24"}));
        // Of each step the log tells where it begins, what its procedure has logged, and how it ended.
        QCOMPARE(fake.Log().size(), 15);
        QCOMPARE(
            fake.Log().mid(0, 3),
            QStringList(
                {"Inizio Import Controparti Arca", "Riga di ImportContropartiArcaEvolution",
                 "Import Controparti Arca: completato. Righe dell'origine 10: inserite 10, aggiornate 0, saltate 0, "
                 "abbandonate 0, non raggiunte 0"}));
        QCOMPARE(
            fake.Log().filter(QRegularExpression("^Inizio")),
            QStringList({"Inizio Import Controparti Arca", "Inizio Documenti da Lantek 24 e Distinte Base / Ord. Prod.",
                         "Inizio Saldi di Magazzino da AUTOMA", "Inizio Saldi di Magazzino da Lantek 24",
                         "Inizio Saldi di Magazzino da Ferrobrio"}));
        QVERIFY(fake.Target.Log().contains("Riga di ImportSaldiFerrobrio"));
        modImport::WriteImportLog(fake.Target.Get(), "Riga di dopo", false);
        QVERIFY(!fake.Log().contains("Riga di dopo"));
        QCOMPARE(fake.Target.Person.Events.first(), QString("progress"));
        QCOMPARE(fake.Target.Person.Progresses.front().captions.first(),
                 QString("Importazione in corso inizializzazione in corso..."));
        QCOMPARE(fake.Target.Person.Events.mid(fake.Target.Person.Events.size() - 2),
                 QStringList({"progress closed", "[i] Importazione terminata correttamente!"}));
        // The settings keep what the last source wrote.
        QCOMPARE(fake.Setting("Servername"), QString("LANTEKSRV"));
        QCOMPARE(fake.Setting("Username"), QString("u2"));
        QCOMPARE(fake.Setting("Password"), QString());
        QCOMPARE(fake.Setting("AUTOMA_Databasename"), QString("automa.db"));
        QVERIFY(!fake.Target.Get().Source);
    }

    void empties_data() {
        Columns<bool, bool, int, QString>("company", "cam", "questions", "left");
        Row("nothing", false, true, 1, "1");
        Row("the company", true, false, 2, "0");
        Row("both", true, true, 2, "0");
    }
    void empties() {
        QFETCH(bool, company);
        QFETCH(bool, cam);
        FakeInstallation fake;
        fake.Target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        fake.Target.Person.AnswerTo = {{sequenceQuestions::Empty, company}, {sequenceQuestions::EmptyCam, cam}};
        const SequenceResult result = fake.Run();
        QTEST(fake.Target.Value("SELECT COUNT(*) FROM X01_CON_TRO"), "left");
        QTEST(static_cast<int>(fake.Target.Person.Questions.size()), "questions");
        for (const ScriptedOperator::Asked& asked : std::as_const(fake.Target.Person.Questions)) {
            QCOMPARE(asked.style, Question::ExclamationNo);
        }
        QVERIFY(!company || result.entries[0].message == "tabelle svuotate: 60, righe eliminate: 1");
        QCOMPARE(fake.Log().contains("Tabella X01_CON_TRO: svuotata (1 riga eliminata)"), company);
        QCOMPARE(fake.Calls.contains("SvuotaTabelleCam -"), company && cam);
        QCOMPARE(result.entries.size(), 5 + (company ? 1 : 0) + (company && cam ? 1 : 0));
        QCOMPARE(result.entries.first().outcome, Outcome::Done);
    }

    /// Giving a question up is no No: nothing goes on behind it.
    void questionsGivenUp_data() {
        Columns<QString, QString, QStringList>("question", "left", "told");
        Row("before anything is emptied", sequenceQuestions::Empty, QString("1"), QStringList{});
        Row("behind the emptying of the company", sequenceQuestions::EmptyCam, QString("0"),
            QStringList{"Sequenza interrotta: passi eseguiti 1 su 6; quanto è stato scritto rimane."});
    }
    void questionsGivenUp() {
        QFETCH(QString, question);
        QFETCH(QStringList, told);
        FakeInstallation fake;
        fake.Target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        fake.Target.Person.AnswerTo[sequenceQuestions::Empty] = true;
        fake.Target.Person.GiveUpAt = {question};
        QCOMPARE(fake.Run().outcome, RunResult::Outcome::Cancelled);
        QVERIFY(fake.Calls.isEmpty());
        QTEST(fake.Target.Value("SELECT COUNT(*) FROM X01_CON_TRO"), "left");
        QStringList messages;
        for (const ScriptedOperator::Shown& shown : std::as_const(fake.Target.Person.Messages)) {
            messages.append(shown.text);
        }
        QCOMPARE(messages, told);
    }

    void goesOnWithoutASource() {
        FakeInstallation fake;
        fake.Unreachable = {"arca.db"};
        const SequenceResult result = fake.Run();
        QCOMPARE(OutcomesOf(result),
                 QVector<Outcome>({Outcome::NotConnected, Outcome::Done, Outcome::Done, Outcome::Done, Outcome::Done}));
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        const QString attention = "[!] Importazione terminata, ma non tutto è riuscito:\n";
        QCOMPARE(
            fake.Target.Person.Events.mid(fake.Target.Person.Events.indexOf("progress closed")),
            QStringList({"progress closed", attention + "Impossibile connettersi ad Arca Evolution! server spento"}));
        QCOMPARE(result.entries[0].message, QString("Impossibile connettersi ad Arca Evolution! server spento"));
        QCOMPARE(fake.Log().mid(0, 3), QStringList({"Inizio Import Controparti Arca", "server spento",
                                                    "Impossibile connettersi ad Arca Evolution!"}));

        // Without Lantek 24 nothing of it and of AUTOMA is left to import; the message comes once for all its steps.
        fake.Unreachable = {"lantek.db"};
        fake.Target.Person.Events.clear();
        fake.Calls.clear();
        fake.Run();
        QCOMPARE(fake.Calls, QStringList("ImportContropartiArcaEvolution arca.db"));
        QCOMPARE(fake.Target.Person.Events.last(), attention + "Impossibile connettersi a Lantek 24! server spento\n"
                                                               "Impossibile connettersi a Lantek 24 / AUTOMA!");
    }

    void goesOnAfterAFailure() {
        FakeInstallation fake;
        fake.Ends["ImportDocumentiLantek24"] = RunResult::Outcome::Failed;
        const SequenceResult result = fake.Run();
        QCOMPARE(fake.Calls.size(), 5);
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(result.entries[1].outcome, Outcome::Failed);
        QCOMPARE(result.entries[1].message, QString("tabella rotta"));
        QCOMPARE(fake.Target.Person.Messages.last().icon, Icon::Exclamation);
        QVERIFY(fake.Target.Person.Messages.last().text.contains("tabella rotta"));
    }

    void goesOnWithoutAProcedure() {
        FakeInstallation fake;
        fake.OriginOf("Mexal").procedures.clear();
        SequenceSteps steps;
        steps.SaldiMEX = true;
        steps.SaldiVSP = true;
        const SequenceResult result = fake.Run2(steps);
        QCOMPARE(OutcomesOf(result), QVector<Outcome>({Outcome::Unavailable, Outcome::Done}));
        QCOMPARE(result.entries[0].message,
                 QString("modImport_Mexal: la procedura \"ImportSaldiMEX\" non è disponibile in questa versione!"));
        QVERIFY(
            fake.Target.Person.Messages.last().text.endsWith("Saldi di Magazzino Mexal: " + result.entries[0].message));
    }

    /// Nobody sits there: what a procedure tells is kept for the log and the result, and one box stands at the end.
    void waitsForNobody() {
        FakeInstallation fake;
        fake.Work = [&](const QString& procedure) {
            fake.Target.Person.Message(procedure + ": fatto!");
            fake.Target.Person.ReportError({});
        };
        fake.GivenUp = {{"ImportDocumentiLantek24", 3}};
        const SequenceResult result = fake.Run();
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        QCOMPARE(result.GivenUp(), 3);
        QCOMPARE(result.HowItEnded(), Ending::Incomplete);
        QCOMPARE(result.entries[0].told, QStringList("ImportContropartiArcaEvolution: fatto!"));
        QVERIFY(SequenceLines(result).contains("  ImportSaldiFerrobrio: fatto!"));
        QVERIFY(fake.Log().contains("ImportContropartiArcaEvolution: fatto!"));
        QVERIFY(fake.Target.Person.Reported.isEmpty());
        QCOMPARE(fake.Target.Person.Messages.size(), 1);
        QCOMPARE(fake.Target.Person.Messages[0].icon, Icon::Exclamation);
        QCOMPARE(fake.Target.Person.Messages[0].text,
                 QString("Importazione terminata, ma non tutto è riuscito:\nDocumenti da Lantek 24 e Distinte Base / "
                         "Ord. Prod.: Righe abbandonate: 3"));
    }

    /// The date of the sequence counts in both scripts, for its own time, and is nowhere written down.
    void dateOfTheSequence_data() {
        Columns<int>("script");
        Row("first", 1);
        Row("second", 2);
    }
    void dateOfTheSequence() {
        QFETCH(int, script);
        FakeInstallation fake;
        fake.Target.Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "05/05/2018");
        const auto from = [&] { return contract::ReadDocumentSettings(fake.Target.Get()).from; };
        QVector<QDate> within;
        fake.Work = [&](const QString&) {
            within.append(from());
            QCOMPARE(fake.Setting("DOC_DateStart"), QString("05/05/2018"));
        };
        SequenceSteps steps;
        steps.SaldiMEX = true;
        script == 1 ? fake.Run() : fake.Run2(steps);
        QCOMPARE(within, QVector<QDate>(script == 1 ? 5 : 1, QDate(2020, 2, 1)));
        QCOMPARE(from(), QDate(2018, 5, 5));
    }

    void stopsWhenCancelled() {
        FakeInstallation fake;
        fake.Ends["ImportDocumentiLantek24"] = RunResult::Outcome::Cancelled;
        const SequenceResult result = fake.Run();
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(OutcomesOf(result), QVector<Outcome>({Outcome::Done, Outcome::Cancelled, Outcome::NotReached,
                                                       Outcome::NotReached, Outcome::NotReached}));
        const QString told =
            "Sequenza interrotta: passi eseguiti 1 su 5, a metà di \"Documenti da Lantek 24 e Distinte Base / "
            "Ord. Prod.\" (righe lette 4 su 10); quanto è stato scritto rimane.";
        QCOMPARE(fake.Target.Person.Messages.last().text, told);
        QCOMPARE(fake.Log().last(), told);
        QVERIFY(!fake.Target.Get().Source);
    }

    void stopsWithoutItsCompany() {
        FakeInstallation fake;
        fake.WriteIni("[SEQUENCE]\nAzienda=Altra\n");
        const SequenceResult result = fake.Run();
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY(fake.Calls.isEmpty());
        QVERIFY(fake.Target.Person.Questions.isEmpty());
        QVERIFY(fake.Target.Person.Reported.last().message.contains("'Altra'"));
        QCOMPARE(fake.Target.Person.Reported.last().procedure, QString("Sequence"));
    }

    void runsTheChosenSteps() {
        FakeInstallation fake;
        SequenceSteps steps;
        for (const SequenceChoice& choice : SequenceChoices()) {
            steps.*choice.step = choice.step != &SequenceSteps::DeleteBefore;
        }
        const SequenceResult result = fake.Run2(steps);
        QCOMPARE(result.outcome, RunResult::Outcome::Done);
        QCOMPARE(fake.Calls, QStringList({"ImportContropartiMEX mexal.db", "ImportDistinteTessera tessera.db",
                                          "ImportOrdCliTessera tessera.db", "ImportDistinteVSP vs.db",
                                          "ImportDocumentiMEX mexal.db", "ImportDocVenVSP vs.db",
                                          "ImportDocAcqVSP vs.db", "ImportSaldiMEX mexal.db", "ImportSaldiVSP vs.db",
                                          "ImportUbicazioniMEX mexal.db", "ImportUbicazioniVSP vs.db"}));
        QStringList labels{"[Calcolo records]"};
        for (const SequenceEntry& entry : result.entries) {
            labels.append('[' + entry.step + ']');
        }
        labels.append("[Fine Importazione]");
        QCOMPARE(fake.Log().filter(QRegularExpression("^\\[")), labels);
        QCOMPARE(fake.Target.Person.Progresses.front().captions.first(),
                 QString("Importazione in corso Lancio Sequenza di Importazione..."));
    }

    void skipsTheStepsOfALostSource() {
        FakeInstallation fake;
        fake.Unreachable = {"vs.db"};
        SequenceSteps steps;
        steps.DistinteVSP = true;
        steps.SaldiMEX = true;
        const SequenceResult result = fake.Run2(steps);
        QCOMPARE(OutcomesOf(result), QVector<Outcome>({Outcome::NotConnected, Outcome::Done}));
        QCOMPARE(fake.Target.Person.Messages.size(), 1);
        QVERIFY(fake.Target.Person.Messages[0].text.contains("Impossibile connettersi a Visual Sapce! server spento"));
        QVERIFY(fake.Target.Person.Reported.isEmpty());
    }

    /// One that empties what all companies share keeps everybody away, any other one those of its company.
    void refusesACompanyUnderWork_data() {
        Columns<QString, bool, bool>("locked", "empties", "runs");
        Row("its own", QString("X01"), false, false);
        Row("another one", QString("X02"), false, true);
        Row("another one, and what all share goes", QString("X02"), true, false);
    }
    void refusesACompanyUnderWork() {
        QFETCH(QString, locked);
        QFETCH(bool, empties);
        QFETCH(bool, runs);
        FakeInstallation fake;
        fake.Target.AddCompany("X02", "Prova Due S.p.A.");
        ovConnection other;
        OpenEmbedded(other, fake.Target.Db().DatabaseName);
        QVERIFY(other.TakeLock(locked, "anna (PC-1)"));
        SequenceSteps steps;
        steps.DeleteBefore = empties;
        steps.SaldiMEX = true;
        QCOMPARE(fake.Run2(steps).outcome, runs ? RunResult::Outcome::Done : RunResult::Outcome::Failed);
        QCOMPARE(fake.Calls.size(), runs ? 1 : 0);
        QCOMPARE(fake.Target.Person.Reported.size(), runs ? 0 : 1);
    }

    void emptiesAndSwitchesTriggersOnAgain_data() {
        Columns<RunResult::Outcome>("end");
        Row("to the end", RunResult::Outcome::Done);
        Row("cancelled", RunResult::Outcome::Cancelled);
        Row("failed", RunResult::Outcome::Failed);
    }
    void emptiesAndSwitchesTriggersOnAgain() {
        QFETCH(RunResult::Outcome, end);
        FakeInstallation fake;
        TestTarget& target = fake.Target;
        target.Execute("CREATE TABLE FIRED (N INTEGER)");
        target.Execute("CREATE TRIGGER TR_COM AFTER INSERT ON X01_ORD_COM BEGIN INSERT INTO FIRED VALUES (1); END");
        target.Execute("INSERT INTO X01_CON_SED (CDCON) VALUES ('1')");
        target.Execute("INSERT INTO X01_DIS_FAS (DLSEQ) VALUES (10)");
        target.Execute("INSERT INTO GEN_DIS_FAS DEFAULT VALUES");
        fake.Ends["ImportSaldiMEX"] = end;
        QString firedWithin;
        fake.Work = [&](const QString&) {
            target.Execute("INSERT INTO X01_ORD_COM (OCQTA) VALUES (1)");
            firedWithin = target.Value("SELECT COUNT(*) FROM FIRED");
        };
        SequenceSteps steps;
        steps.DeleteBefore = true;
        steps.SaldiMEX = true;
        const SequenceResult result = fake.Run2(steps);
        QCOMPARE(result.outcome, end);
        QCOMPARE(firedWithin, QString("0"));
        target.Execute("INSERT INTO X01_ORD_COM (OCQTA) VALUES (2)");
        QCOMPARE(target.Value("SELECT COUNT(*) FROM FIRED"), QString("1"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DIS_FAS"), QString("0"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM GEN_DIS_FAS"), QString("0"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_CON_SED"), QString("1")); // not of the list
        QVERIFY(fake.Log().contains("[Reset Tabelle]"));
        QVERIFY(fake.Log().contains("[Reset Tabella GEN_DIS_FAS]"));
    }

    void switchesTheOtherTriggersOnAgain_data() {
        Columns<RunResult::Outcome>("end");
        Row("to the end", RunResult::Outcome::Done);
        Row("failed", RunResult::Outcome::Failed);
    }
    void switchesTheOtherTriggersOnAgain() {
        QFETCH(RunResult::Outcome, end);
        FakeInstallation fake;
        TestTarget& target = fake.Target;
        target.Execute("CREATE TABLE FIRED (N INTEGER)");
        for (const QString table : {"ORD_COM", "ORD_FAS", "ORD_PRO"}) {
            target.Execute("CREATE TRIGGER TR_" + table + " AFTER INSERT ON X01_" + table +
                           " BEGIN INSERT INTO FIRED VALUES (1); END");
        }
        fake.Ends["ImportSaldiMEX"] = end;
        fake.Work = [&](const QString&) {
            target.Execute("DROP TABLE X01_ORD_COM");
            target.Execute("DROP TABLE X01_ORD_FAS");
        };
        SequenceSteps steps;
        steps.DeleteBefore = true;
        steps.SaldiMEX = true;
        const SequenceResult result = fake.Run2(steps);
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        for (const QString table : {"X01_ORD_COM", "X01_ORD_FAS"}) {
            const QString told = "I trigger di " + table + " sono rimasti disattivati";
            QVERIFY2(!target.Person.Events.filter(told).isEmpty(), qPrintable(target.Person.Events.join('\n')));
        }
        target.Execute("INSERT INTO X01_ORD_PRO DEFAULT VALUES");
        QCOMPARE(target.Value("SELECT COUNT(*) FROM FIRED"), QString("1"));
    }

    void putsRightWhatWasImported() {
        FakeInstallation fake;
        TestTarget& target = fake.Target;
        for (const QString statement :
             {"INSERT INTO X01_DOC_VEN (DTNUM) VALUES (1)", "INSERT INTO X01_DOC_VEN (DTNUM) VALUES (2)",
              "INSERT INTO X01_DOC_VER (IDTES, DRNUM) VALUES (1, 1)",
              "INSERT INTO X01_DOC_VER (IDTES, DRNUM) VALUES (9, 2)", "INSERT INTO X01_DOC_ACQ (DTNUM) VALUES (3)",
              "INSERT INTO X01_DOC_CTR (IDTES) VALUES (7)"}) {
            target.Execute(statement);
        }
        // A top, its part with a bill of its own, two raw parts, one of a class that stays, and one of no bill.
        for (const QString article : {"TOP", "SEMI", "RAW", "KEEP", "ALONE"}) {
            target.Execute("INSERT INTO X01_ART_ICO (CDART, ARCLA) VALUES ('" + article + "', 'XX')");
        }
        target.Execute("UPDATE X01_ART_ICO SET ARCLA = 'CL' WHERE CDART = 'KEEP'");
        target.Execute("UPDATE X01_ART_ICO SET ARCLA = NULL WHERE CDART = 'RAW'");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBREI, DBMAN) VALUES ('TOP', 0, 5, 0)");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBREI, DBMAN) VALUES ('TOP', 2, 3, 0)");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBMAN) VALUES ('SEMI', 1, 0)");
        for (const QString part : {"SEMI", "RAW", "KEEP"}) {
            target.Execute("INSERT INTO X01_DIS_COM (DCART) VALUES ('" + part + "')");
        }
        target.Execute("INSERT INTO X01_DIS_COM (DCART) VALUES (NULL)");
        SequenceSteps steps;
        steps.Query = true;
        QCOMPARE(fake.Run2(steps).outcome, RunResult::Outcome::Done);
        QCOMPARE(target.Rows("SELECT DTNUM FROM X01_DOC_VEN"), QStringList("1"));
        QCOMPARE(target.Rows("SELECT DRNUM FROM X01_DOC_VER"), QStringList("1"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DOC_ACQ"), QString("0"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DOC_CTR"), QString("0"));
        QCOMPARE(target.Rows("SELECT CDART, ARCLA, ARDBA, ARDRV, ARDRI FROM X01_ART_ICO ORDER BY CDART"),
                 QStringList({"ALONE|XX|NULL|NULL|NULL", "KEEP|CL|NULL|NULL|NULL", "RAW|CM|NULL|NULL|NULL",
                              "SEMI|SL|SEMI|1|NULL", "TOP|PF|TOP|2|3"}));
        QCOMPARE(target.Rows("SELECT DBART, DBMAN FROM X01_DIS_BAS ORDER BY RECORD_ID"),
                 QStringList({"TOP|true", "TOP|true", "SEMI|false"}));
    }

    /// Before the tables are emptied it is told which company's, and how much goes.
    void asksBeforeEmptying_data() {
        Columns<bool>("agrees");
        Row("agreed", true);
        Row("declined", false);
    }
    void asksBeforeEmptying() {
        QFETCH(bool, agrees);
        FakeInstallation fake;
        fake.Target.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('A'), ('B')");
        fake.Target.Execute("INSERT INTO GEN_DIS_FAS DEFAULT VALUES");
        QString asked;
        SequenceWindow window;
        window.LanciaSequenza = [] {
            SequenceSteps steps;
            steps.DeleteBefore = true;
            return std::optional(steps);
        };
        window.AgreesToEmpty = [&](const QString& question) {
            asked = question;
            return agrees;
        };
        const SequenceResult result = Sequence2(fake.Target.Get(), fake.Settings(), window);
        QVERIFY2(asked.contains("26 tabelle dell'azienda X01 Prova Uno S.r.l. e 4 comuni") &&
                     asked.contains("in tutto 3 righe"),
                 qPrintable(asked));
        QCOMPARE(result.outcome, agrees ? RunResult::Outcome::Done : RunResult::Outcome::Cancelled);
        QCOMPARE(fake.Target.Value("SELECT COUNT(*) FROM X01_ART_ICO"), QString(agrees ? "0" : "2"));
        QVERIFY(!agrees || result.entries[0].message == "tabelle svuotate: 30, righe eliminate: 3");
    }

    void declines() {
        FakeInstallation fake;
        SequenceWindow window;
        window.LanciaSequenza = [] { return std::optional<SequenceSteps>(); };
        const SequenceResult result = Sequence2(fake.Target.Get(), fake.Settings(), window);
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QVERIFY(result.entries.isEmpty());
        QVERIFY(fake.Target.Person.Messages.isEmpty());
    }

    void readsItsSettings_data() {
        Columns<QString, QString>("text", "named");
        Row("no company", "[SEQUENCE]\nScript=1\n", "Azienda");
        Row("no such script", "[SEQUENCE]\nAzienda=A\nScript=3\n", "Script");
        Row("no date", "[SEQUENCE]\nAzienda=A\nDateStart=31/02/2020\n", "DateStart");
    }
    void readsItsSettings() {
        QFETCH(QString, text);
        QFETCH(QString, named);
        FakeInstallation fake;
        fake.WriteIni(text);
        const auto error = ErrorOf<ImportError>([&] { ReadSequenceSettings(fake.Target.Get()); });
        QVERIFY2(error && error->Message().contains(named), qPrintable(error ? error->Message() : "read"));
        QVERIFY(error->Message().contains("Sequence.ini"));
    }
};

QUADRIX_TEST(TestSequence)
#include "test_sequence.moc"
