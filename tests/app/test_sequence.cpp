#include "adapters/contract/write/Document.h"
#include "adapters/registry.h"
#include "adapters/sourceSettings.h"
#include "app/history/History.h"
#include "core/modImport.h"
#include "tests/app/FakeInstallation.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

namespace {

using Outcome = SequenceEntry::Outcome;

} // namespace

/// The first sequence, and what both share.
class TestSequence : public QObject {
    Q_OBJECT

private slots:
    void runsOneSourceAfterTheOther() {
        FakeInstallation fake;
        QStringList selected;
        SequenceWindow window;
        window.SelectCompany = [&](const modMain::Company& company) { selected.append(company.name); };
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
        const QString CamFile = fake.Target.Folder.filePath("cam.db");
        ovConnection products;
        OpenEmbedded(products, CamFile)
            .ExecuteScript("CREATE TABLE PRODUCTS (N INTEGER); INSERT INTO PRODUCTS VALUES (1), (2)");
        fake.Target.Get().Config.SetAppConfig("IMPORT", "CAM_Database", CamFile);
        fake.OriginOf("Lantek Expert 30").procedures.front().needs.reads = {{"PRODUCTS", {}}};
        fake.Target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        fake.Target.Execute("INSERT INTO SYS_LNG (LNTBL, LNKEY) VALUES ('X01_ART_ICO', 'A'), ('X02_ART_ICO', 'A')");
        fake.Target.Person.AnswerTo = {{sequenceQuestions::Empty, company}, {sequenceQuestions::EmptyCam, cam}};
        const SequenceResult result = fake.Run();
        QTEST(fake.Target.Value("SELECT COUNT(*) FROM X01_CON_TRO"), "left");
        QTEST(static_cast<int>(fake.Target.Person.Questions.size()), "questions");
        for (const ScriptedOperator::Asked& asked : std::as_const(fake.Target.Person.Questions)) {
            QCOMPARE(asked.style, Question::ExclamationNo);
        }
        QCOMPARE(fake.Target.Person.Questions.first().details,
                 "Azienda: X01 Prova Uno S.r.l.\nDatabase: " + fake.Target.Db().DatabaseName +
                     "\nRighe che verranno eliminate: 2\n  SYS_LNG: 1\n  X01_CON_TRO: 1");
        QVERIFY2(!company || fake.Target.Person.Questions.last().details ==
                                 "Database: " + CamFile + "\nRighe che verranno eliminate: 2\n  PRODUCTS: 2",
                 qPrintable(fake.Target.Person.Questions.last().details));
        QVERIFY(!company || result.entries[0].message == "tabelle svuotate: 60, righe eliminate: 2");
        QCOMPARE(fake.Log().value(0),
                 QString(company ? "Inizio Svuotamento delle tabelle dell'azienda" : "Inizio Import Controparti Arca"));
        QCOMPARE(fake.Log().contains("Tabella X01_CON_TRO: svuotata (1 riga eliminata)"), company);
        QCOMPARE(fake.Calls.contains("SvuotaTabelleCam -"), company && cam);
        QCOMPARE(result.entries.size(), 5 + (company ? 1 : 0) + (company && cam ? 1 : 0));
        QCOMPARE(result.entries.first().outcome, Outcome::Done);
        const auto runs = history::History(history::FilePath(fake.Target.Get().Config.ConfigFile())).Runs();
        QCOMPARE(runs.size(), 1U); // the emptying is a part of it
        QCOMPARE(runs.front().procedures.size(), company ? 1U : 0U);
        QVERIFY(!company || runs.front().procedures.front().result.emptied.size() == 60);
        QCOMPARE(fake.Observed, fake.Calls.size());
    }

    void asksBeforeItWritesIntoAMergedCompany() {
        FakeInstallation fake;
        fake.Target.Execute("INSERT INTO SYS_FUS (FUPAR, FUDES, FUINI, FUFIN) VALUES ('X01', 'X09', '20240305', "
                            "'20240305')");
        fake.Target.Person.Answers = {true, false};
        fake.Target.Person.Inputs = {QString("Tr1v0la8")};
        const Choice choice{"Prova Uno S.r.l.", {}, registry::Find("Mexal"), ErrorAction::Ignore};
        QVERIFY(!PressSequence(fake.Target.Get(), choice, {}));
        const ScriptedOperator::Asked& asked = fake.Target.Person.Questions.last();
        QVERIFY2(asked.question.contains("le righe di X01 hanno i codici delle controparti di X09"),
                 qPrintable(asked.question));
        QCOMPARE(asked.style, Question::ExclamationNo);
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

    /// Of a step whose keys cannot be written no other source is opened, and the keys stay as they were.
    void keysThatCannotBeWritten_data() {
        Columns<QString, QString, QString>("database", "step", "procedure");
        Row("the source", "arca.db", "Import Controparti Arca", "ImportContropartiArcaEvolution");
        Row("the second source", "automa.db", "Saldi di Magazzino da AUTOMA", "ImportInventarioAUTOMA");
        Row("of the second sequence", "mexal.db", "Saldi di Magazzino Mexal", "ImportSaldiMEX");
    }
    void keysThatCannotBeWritten() {
        QFETCH(QString, database);
        QFETCH(QString, step);
        QFETCH(QString, procedure);
        FakeInstallation fake;
        const QString ini = fake.Target.Folder.filePath("Sequence.ini");
        QString text = QString::fromLatin1(ReadFile(ini)); // the settings are ANSI
        WriteFile(ini, "\xef\xbb\xbf" +
                           text.replace("Databasename=" + database, "Servername=S\nDatabasename=\u03a9.db").toUtf8());
        fake.Target.Get().Config.SetAppConfig("IMPORT", "Servername", "PRIMA");
        SequenceSteps steps;
        steps.SaldiMEX = true;
        const bool second = database == "mexal.db";
        const SequenceResult result = second ? fake.Run2(steps) : fake.Run();
        const auto entry = std::find_if(result.entries.cbegin(), result.entries.cend(),
                                        [&step](const SequenceEntry& each) { return each.step == step; });
        QVERIFY(entry != result.entries.cend());
        QCOMPARE(entry->outcome, Outcome::NotConnected);
        QVERIFY2(entry->message.contains("Quadrix.ini"), qPrintable(entry->message));
        QCOMPARE(fake.Calls.filter(procedure), QStringList());
        QCOMPARE(fake.Calls.size(), second ? 0 : 4);
        QVERIFY(!second || fake.Setting("Servername") == "PRIMA");
    }

    /// A step that has written nothing for want of the articles is no good end.
    void stepsToBeRepeatedAreTold() {
        FakeInstallation fake;
        fake.LackArticles = {"ImportInventarioAUTOMA"};
        const SequenceResult result = fake.Run();
        QCOMPARE(result.HowItEnded(), Ending::Incomplete);
        QCOMPARE(
            fake.Target.Person.Messages.last().text,
            QString("Importazione terminata, ma non tutto è riuscito:\nSaldi di Magazzino da AUTOMA: l'azienda non "
                    "ha articoli: importarli e ripetere il passo"));
    }

    void goesOnAfterAFailure() {
        FakeInstallation fake;
        fake.Work = [&](const QString& procedure) {
            if (procedure == "ImportDocumentiLantek24") {
                const ovErrors::Row row(fake.Target.Get().Errors, "riga 7");
                Guarded(fake.Target.Get().Errors, "modImport", procedure, false,
                        []() -> bool { throw ImportError("tabella rotta"); });
            }
        };
        fake.Ends["ImportDocumentiLantek24"] = RunResult::Outcome::Failed;
        const SequenceResult result = fake.Run();
        QCOMPARE(fake.Calls.size(), 5);
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(result.entries[1].outcome, Outcome::Failed);
        QCOMPARE(result.entries[1].message, QString("riga 7: tabella rotta"));
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

    /// The source beside that of Lantek 24 is read by its own layout file, and only it.
    void readsTheSecondSourceByItsLayout() {
        FakeInstallation fake;
        ovConnection stock;
        OpenEmbedded(stock, fake.Target.Folder.filePath("ferrobrio.db"))
            .ExecuteScript("CREATE TABLE GIAC_REALI (QTA INTEGER); INSERT INTO GIAC_REALI VALUES (10), (60), (70)");
        QVERIFY(QDir(fake.Target.Folder.path()).mkdir("Tracciati"));
        WriteFile(fake.Target.Folder.filePath("Tracciati/Ferrobrio.ini"),
                  "[TABELLE]\nGIACENZE=GIAC_REALI\n[FILTRI]\nGIACENZE=QTA >= 50\n");
        contract::Procedure& procedure = fake.OriginOf("Ferrobrio").procedures.front();
        procedure.needs.reads = {{"GIACENZE", {"QTA"}}};
        qint64 rows = 0;
        QStringList laidOut;
        fake.Work = [&](const QString& name) {
            if (fake.Target.Get().Layout) {
                laidOut.append(name);
                rows = fake.Target.Get().SourceConnection().ExecuteCommand("SELECT COUNT(QTA) FROM GIACENZE");
            }
        };
        QCOMPARE(fake.Run().outcome, RunResult::Outcome::Done);
        QCOMPARE(laidOut, QStringList("ImportSaldiFerrobrio"));
        QCOMPARE(rows, 2);
    }

    /// What is wrong with a source is to be corrected where the sequence has it from: it writes the settings each time.
    void namesItsOwnSettings_data() {
        Columns<QString>("origin");
        Row("a source", "Arca Evolution");
        Row("the one beside it", "Ferrobrio");
    }
    void namesItsOwnSettings() {
        QFETCH(const QString, origin);
        FakeInstallation fake;
        fake.OriginOf("Arca Evolution").source.prepare = sourceSettings::Server("ARCA");
        const bool isArca = origin == "Arca Evolution";
        QFile::remove(fake.Target.Folder.filePath(isArca ? "arca.db" : "ferrobrio.db"));
        fake.Run();
        const QString file = QDir::toNativeSeparators(fake.Target.Folder.filePath("Sequence.ini"));
        const QString told = QString("chiave Databasename, sezione [%1] di '%2'").arg(origin.toUpper(), file);
        QStringList messages;
        for (const ErrorEntry& error : fake.Target.Get().Errors.Entries()) {
            messages.append(error.message);
        }
        QVERIFY2(messages.join('\n').contains(told), qPrintable(messages.join('\n')));
        QVERIFY(!fake.Target.Get().Written);
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

    /// What it lacks is told before anything is asked or deleted.
    void stopsBeforeItsQuestion_data() {
        Columns<QString, QString, QString>("company", "log", "told");
        Row("no such company", "Altra", "mig.log", "'Altra'");
        Row("two of one name", "Prova Uno S.r.l.", "mig.log", "con i codici X01, X02");
        Row("a log that cannot be written", "X02", "manca/mig.log", "manca/mig.log");
    }
    void stopsBeforeItsQuestion() {
        QFETCH(QString, company);
        QFETCH(QString, log);
        QFETCH(QString, told);
        FakeInstallation fake;
        fake.Target.AddCompany("X02", "Prova Due");
        fake.Target.Execute("UPDATE SYS_AZI SET AZRAS = 'Prova Uno S.r.l.' WHERE CDAZI = 'X02'");
        fake.WriteIni("[SEQUENCE]\nAzienda=" + company + "\nLogFile=" + log + "\n");
        const SequenceResult result = fake.Run();
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY(fake.Calls.isEmpty());
        QVERIFY(fake.Target.Person.Questions.isEmpty());
        const ErrorEntry& reported = fake.Target.Person.Reported.last();
        QVERIFY2(reported.message.contains(told), qPrintable(reported.message));
        QCOMPARE(reported.procedure, QString("Sequence"));
    }

    void takesItsCompanyByCode() {
        FakeInstallation fake;
        fake.Target.AddCompany("X02", "Prova Due");
        fake.WriteIni("[SEQUENCE]\nAzienda=x02\n");
        fake.Run();
        QCOMPARE(fake.Target.Get().UserManager.Azienda(), QString("X02"));
        QCOMPARE(fake.Target.Person.Questions.size(), 1);
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
