#include "app/procedureTitle.h"
#include "app/resultText.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

class TestResultText : public QObject {
    Q_OBJECT

private slots:
    void TellsWhatBecameOfTheRows() {
        RunResult result;
        result.module = "modImport_Arca2000";
        result.procedure = "ImportContropartiArca2000";
        result.outcome = RunResult::Outcome::Cancelled;
        result.sourceRows = 12345;
        result.inserted = 10000;
        result.updated = 12;
        result.skipped = 3;
        result.givenUpCount = 3;
        result.notReached = 2327;
        result.emptied = {{"X01_CON_TRO", 6452}, {"X01_IND_WEB", 1}, {"X01_NUM_TEL", -1}};
        result.skippedBy = {{"documento già importato", 3}};
        result.failedLookUps = 2;
        result.givenUp = {{"codice 'C1'", "data impossibile"}, {"codice 'C2'", "nome mancante"}};
        result.tables["CON_TRO"] = {10003, 12};
        result.tables["NUM_TEL"] = {20000, 0};
        result.notes.Add("ARTICOLO NON TROVATO: codice 'C3': 'AB'");
        result.notes.Add("CONTROPARTE DOPPIA: 000001");
        result.notes.Add("ARTICOLO NON TROVATO: codice 'C4': 'AC'");
        result.untranslated = {"anagrafe.pag = ZZ"};
        result.untranslatedCount = 1;
        result.seconds = 12.34;
        const QString account =
            "Righe dell'origine 12.345: inserite 10.000, aggiornate 12, saltate 3, abbandonate 3, non raggiunte 2.327";
        QCOMPARE(ResultLines(result, 1),
                 QStringList(
                     {"Controparti da Arca 2000: interrotta dall'operatore dopo 12,3 s",
                      "Tabella X01_CON_TRO: 6.452 righe eliminate prima di importare",
                      "Tabella X01_IND_WEB: 1 riga eliminata prima di importare",
                      "Tabella X01_NUM_TEL: svuotata prima di importare", account, "Ricerche non riuscite: 2",
                      "Tabella CON_TRO: scritte 10.003, aggiornate 12", "Tabella NUM_TEL: scritte 20.000, aggiornate 0",
                      "Righe abbandonate (3):", "  codice 'C1': data impossibile", "  ... e altre 2",
                      "Righe saltate, per motivo (1):", "  documento già importato: 3",
                      "Annotazioni nel log, per tipo (2):", "  ARTICOLO NON TROVATO (2): codice 'C3': 'AB', ...",
                      "  ... e altre 1", "Codici senza traduzione (1):", "  anagrafe.pag = ZZ"}));
    }

    /// What the program does to Quadrix alone has no rows of a source.
    void AResetIsNoImport() {
        RunResult result;
        result.module = "frmImport";
        result.procedure = "cmdReset_Click";
        result.emptied = {{"X01_CON_SED", 8}, {"X01_CON_TRO", 0}};
        result.details = {"Restano righe"};
        QCOMPARE(ResultLines(result),
                 QStringList({"Eliminazione dei dati scelti (Reset Database): completata in 0,0 s",
                              "Tabella X01_CON_SED: svuotata (8 righe eliminate)",
                              "Tabella X01_CON_TRO: svuotata (0 righe eliminate)", "Restano righe"}));
    }

    void OneRunEndsAsItEnded_data() {
        Columns<RunResult::Outcome, int, int, Ending, QString>("outcome", "givenUp", "failedLookUps", "ending", "text");
        Row("complete", RunResult::Outcome::Done, 0, 0, Ending::Complete, "completata");
        Row("rows given up", RunResult::Outcome::Done, 1, 0, Ending::Incomplete, "completata ma non per intero");
        Row("look-ups failed", RunResult::Outcome::Done, 0, 1, Ending::Incomplete, "completata ma non per intero");
        Row("cancelled", RunResult::Outcome::Cancelled, 1, 0, Ending::Interrupted, "interrotta dall'operatore");
        Row("failed", RunResult::Outcome::Failed, 1, 0, Ending::Failed, "interrotta da un errore");
    }
    void OneRunEndsAsItEnded() {
        QFETCH(RunResult::Outcome, outcome);
        QFETCH(int, givenUp);
        QFETCH(int, failedLookUps);
        RunResult result;
        result.outcome = outcome;
        result.givenUpCount = givenUp;
        result.failedLookUps = failedLookUps;
        QTEST(EndingOf(result), "ending");
        QTEST(EndingText(EndingOf(result)), "text");
        QCOMPARE(LossesText(result).isEmpty(), givenUp + failedLookUps == 0);
    }

    void NamesProceduresAsTheOperatorDoes_data() {
        Columns<QString, QString, QString>("module", "procedure", "title");
        Row("usual", "modImport_Mexal", "ImportPianoContiMEX", "Piano dei Conti da Mexal");
        Row("without a button", "modImport_Gescom", "ImportListiniGescom", "Listini da Gescom");
        Row("no import", "modImport_WinProgest", "RiallineaDRORIWinProgest", "Riallinea DRORI (WinProgest)");
        Row("of no origin", "modMain", "Altro", "Altro");
    }
    void NamesProceduresAsTheOperatorDoes() {
        QFETCH(QString, module);
        QFETCH(QString, procedure);
        QTEST(ProcedureTitle(module, procedure), "title");
    }
};

QUADRIX_TEST(TestResultText)
#include "test_resultText.moc"
