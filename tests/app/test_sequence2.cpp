#include "app/history/undo.h"
#include "tests/app/FakeInstallation.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

namespace {

using Outcome = SequenceEntry::Outcome;

} // namespace

/// The second sequence: its steps, its emptying, its final queries.
class TestSequence2 : public QObject {
    Q_OBJECT

private slots:
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

    /// Whoever is given a code anew takes over nothing that an import has hung on the one who had it; what a hand has
    /// hung there stays, and is told.
    void emptiesWhatHangsOnCounterparties() {
        FakeInstallation fake;
        TestTarget& target = fake.Target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000069')");
        for (const char* row :
             {"'CON_TRO', '000069', 'a@b.it', 'SYSTEM_IMPORT'",
              "'CON_RIF', '7', 'c@b.it', "
              "'SYSTEM_IMPORT'",
              "'ART_ICO', '000069', 'd@b.it', 'SYSTEM_IMPORT'", "'CON_TRO', '000069', 'e@b.it', 'ANNA'"}) {
            target.Execute(QString("INSERT INTO X01_IND_WEB (TBNAM, TBKEY, WBIND, USINS) VALUES (%1)").arg(row));
        }
        target.Execute("INSERT INTO X01_CON_SED (CDCON, CDSED, USINS) VALUES ('000069', '1', 'SYSTEM_IMPORT'), "
                       "('000069', '2', NULL)");
        SequenceWindow window;
        window.LanciaSequenza = [] {
            SequenceSteps steps;
            steps.DeleteBefore = true;
            return std::optional(steps);
        };
        const QStringList told{"Con le controparti vanno le righe che le importazioni vi hanno appeso: 3 "
                               "(X01_IND_WEB: 2, X01_CON_SED: 1)",
                               "Restano le righe inserite a mano, che passano a chi avrà il codice della loro "
                               "controparte: 2 (X01_IND_WEB: 1, X01_CON_SED: 1)"};
        window.AgreesToEmpty = [&](const QString& question) {
            return question.contains(told.join(".\n") + ".\n\nProcedere?");
        };
        const SequenceResult result = Sequence2(target.Get(), fake.Settings(), window);
        QCOMPARE(result.entries.value(0).message, "tabelle svuotate: 30, righe eliminate: 4; " + told.join("; "));
        QCOMPARE(target.Rows("SELECT WBIND FROM X01_IND_WEB"), QStringList({"d@b.it", "e@b.it"}));
        QCOMPARE(target.Rows("SELECT CDSED FROM X01_CON_SED"), QStringList{"2"});
        QVERIFY(fake.Log().contains(told.first()) && fake.Log().contains(told.last()));
        const history::History history(history::FilePath(target.Get().Config.ConfigFile()));
        const RunResult kept = history.Load(1).procedures.front().result;
        QCOMPARE(kept.emptied.mid(30).size(), 2);
        QCOMPARE(kept.details, told);
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
        for (const QString article : {"TOP", "SEMI", "RAW", "KEEP", "ALONE", "PAIR"}) {
            target.Execute("INSERT INTO X01_ART_ICO (CDART, ARCLA) VALUES ('" + article + "', 'XX')");
        }
        target.Execute("UPDATE X01_ART_ICO SET ARCLA = 'CL' WHERE CDART = 'KEEP'");
        target.Execute("UPDATE X01_ART_ICO SET ARCLA = NULL WHERE CDART = 'RAW'");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBREI, DBMAN) VALUES ('TOP', 0, 5, 0)");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBREI, DBMAN) VALUES ('TOP', 2, 3, 0)");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBMAN) VALUES ('SEMI', 1, 0)");
        target.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBREI) VALUES ('PAIR', NULL, 5), ('PAIR', 1, 2)");
        for (const QString part : {"SEMI", "RAW", "KEEP"}) {
            target.Execute("INSERT INTO X01_DIS_COM (DCART) VALUES ('" + part + "')");
        }
        target.Execute("INSERT INTO X01_DIS_COM (DCART) VALUES (NULL)");
        const QStringList tables{"DOC_VEN", "DOC_VER", "DOC_ACQ", "DOC_CTR", "ART_ICO", "DIS_BAS"};
        const auto all = [&] {
            QStringList rows;
            for (const QString& table : tables) {
                rows += target.Rows("SELECT * FROM X01_" + table + " ORDER BY RECORD_ID");
            }
            return rows;
        };
        const QStringList before = all();
        SequenceSteps steps;
        steps.Query = true;
        QCOMPARE(fake.Run2(steps).outcome, RunResult::Outcome::Done);
        QCOMPARE(target.Rows("SELECT DTNUM FROM X01_DOC_VEN"), QStringList("1"));
        QCOMPARE(target.Rows("SELECT DRNUM FROM X01_DOC_VER"), QStringList("1"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DOC_ACQ"), QString("0"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_DOC_CTR"), QString("0"));
        QCOMPARE(target.Rows("SELECT CDART, ARCLA, ARDBA, ARDRV, ARDRI FROM X01_ART_ICO ORDER BY CDART"),
                 QStringList({"ALONE|XX|NULL|NULL|NULL", "KEEP|CL|NULL|NULL|NULL", "PAIR|PF|PAIR|1|2",
                              "RAW|CM|NULL|NULL|NULL", "SEMI|SL|SEMI|1|NULL", "TOP|PF|TOP|2|3"}));
        QCOMPARE(target.Rows("SELECT DBART, DBMAN FROM X01_DIS_BAS WHERE DBART <> 'PAIR' ORDER BY RECORD_ID"),
                 QStringList({"TOP|true", "TOP|true", "SEMI|false"}));
        const history::History history(history::FilePath(target.Get().Config.ConfigFile()));
        QCOMPARE(history::Undo(target.Get(), history, 1).keptCount, 0);
        QCOMPARE(all(), before);
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
                     asked.contains("in tutto 3 righe") && asked.contains("Database: " + fake.Target.Db().DatabaseName),
                 qPrintable(asked));
        QCOMPARE(result.outcome, agrees ? RunResult::Outcome::Done : RunResult::Outcome::Cancelled);
        QCOMPARE(fake.Target.Value("SELECT COUNT(*) FROM X01_ART_ICO"), QString(agrees ? "0" : "2"));
        QVERIFY(!agrees || result.entries[0].message == "tabelle svuotate: 30, righe eliminate: 3");
        const history::Run kept = history::History(history::FilePath(fake.Target.Get().Config.ConfigFile())).Load(1);
        QCOMPARE(kept.procedures.size(), agrees ? 1U : 0U);
        QVERIFY(!agrees || kept.procedures.front().result.emptied.size() == 30);
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
};

QUADRIX_TEST(TestSequence2)
#include "test_sequence2.moc"
