#include "app/resultText.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

class TestResultText : public QObject {
    Q_OBJECT

private slots:
    void TellsWhatBecameOfTheRows() {
        RunResult result;
        result.procedure = "ImportContropartiArca2000";
        result.outcome = RunResult::Outcome::Cancelled;
        result.sourceRows = 12345;
        result.inserted = 10000;
        result.updated = 12;
        result.skipped = 3;
        result.givenUpCount = 3;
        result.notReached = 2327;
        result.givenUp = {{"codice 'C1'", "data impossibile"}, {"codice 'C2'", "nome mancante"}};
        result.tables["CON_TRO"] = {10003, 12, 3};
        result.tables["NUM_TEL"] = {20000, 0, 0};
        result.notes.Add("ARTICOLO NON TROVATO: codice 'C3': 'AB'");
        result.notes.Add("CONTROPARTE DOPPIA: 000001");
        result.notes.Add("ARTICOLO NON TROVATO: codice 'C4': 'AC'");
        result.untranslated = {"anagrafe.pag = ZZ"};
        result.seconds = 12.34;
        const QString account =
            "Righe lette 12.345: inserite 10.000, aggiornate 12, saltate 3, abbandonate 3, non raggiunte 2.327";
        QCOMPARE(
            ResultLines(result, 1),
            QStringList({"ImportContropartiArca2000: interrotta dall'operatore in 12,3 s", account,
                         "Tabella CON_TRO: scritte 10.003, aggiornate 12, riprese 3",
                         "Tabella NUM_TEL: scritte 20.000, aggiornate 0",
                         "Righe abbandonate (3):", "  codice 'C1': data impossibile", "  ... e altre 2",
                         "Annotazioni nel log, per tipo (2):", "  ARTICOLO NON TROVATO (2): codice 'C3': 'AB', ...",
                         "  ... e altre 1", "Codici senza traduzione (1):", "  anagrafe.pag = ZZ"}));
    }
};

QUADRIX_TEST(TestResultText)
#include "test_resultText.moc"
