#include "adapters/registry.h"
#include "tests/support/embedded.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

/// One customer order with a production order of one component and one phase.
const QString TesseraSource = R"(
CREATE TABLE CliFor (IdCliFor INT, CodCliFor VARCHAR(8));
INSERT INTO CliFor VALUES (1, 'C1');
CREATE TABLE Pagam (IdPag INT, CodPag VARCHAR(4));
CREATE TABLE Iva (IdIva INT, CodIva VARCHAR(4));
CREATE TABLE OrdCliT (IdOrdCli INT, AnnOrd INT, NumOrd INT, DatOrd DATETIME TEXT, IdCliFor INT, RifCli VARCHAR(20),
 DatRif DATETIME TEXT, IdPag INT, StatOrd INT, Note TEXT);
INSERT INTO OrdCliT VALUES (1, 2024, 7, '20240110 00:00:00', 1, NULL, NULL, 0, 0, NULL);
CREATE TABLE OrdCliR (IdOrdCliR INT, IdOrdCli INT, NumRig INT, CodArt VARCHAR(50), DesArt VARCHAR(100),
 UniMis VARCHAR(3), Qta REAL, QtaEva REAL, Prezzo REAL, Sconto1 REAL, Sconto2 REAL, IdIva INT, DatCons DATETIME TEXT);
INSERT INTO OrdCliR VALUES (1, 1, 1, 'AB', NULL, NULL, 1, 0, 1, 0, 0, 0, NULL);
CREATE TABLE OrdProT (IdOrdPro INT, IdOrdCliR INT, NumOrdP INT, DatOrdP DATETIME TEXT, DatCons DATETIME TEXT,
 Qta REAL, Stato VARCHAR(5));
INSERT INTO OrdProT VALUES (1, 1, 1, NULL, NULL, 1, 'INI');
CREATE TABLE OrdProR (IdOrdPro INT, NumRig INT, CodArt VARCHAR(50), DesArt VARCHAR(100), Qta REAL, UniMis VARCHAR(3),
 NumFas INT);
INSERT INTO OrdProR VALUES (1, 1, 'AB', NULL, 1, NULL, 10);
CREATE TABLE OrdProF (IdOrdPro INT, NumFas INT, CodLav VARCHAR(10), Qta REAL, QtaFat REAL, Stato VARCHAR(5));
INSERT INTO OrdProF VALUES (1, 10, 'SALD', 1, 0, 'INI');
)";

const QStringList WatchedTables{"ORD_COM", "ORD_FAS", "ORD_PRO", "DOC_VER"};

/// Triggers that note each row that is written and each that is deleted.
void WatchTables(TestTarget& target) {
    target.Execute("CREATE TABLE SEEN (WHAT VARCHAR(20))");
    for (const QString& table : WatchedTables) {
        target.Execute("CREATE TRIGGER TI_" + table + " AFTER INSERT ON X01_" + table +
                       " BEGIN INSERT INTO SEEN VALUES ('+" + table + "'); END");
        target.Execute("CREATE TRIGGER TD_" + table + " AFTER DELETE ON X01_" + table +
                       " BEGIN INSERT INTO SEEN VALUES ('-" + table + "'); END");
    }
}

} // namespace

/// What the triggers of the production orders see of the import of customer orders.
class TestTessera : public QObject {
    Q_OBJECT

private slots:
    void SwitchesTheTriggersOfProductionOrders_data() {
        Columns<bool>("fails");
        Row("to the end", false);
        Row("after an error", true);
    }
    void SwitchesTheTriggersOfProductionOrders() {
        QFETCH(const bool, fails);
        TestTarget target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE) VALUES ('000001', 'C1')");
        target.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('AB')");
        for (const QString table : {"ORD_COM", "ORD_FAS", "ORD_PRO"}) {
            target.Execute("INSERT INTO X01_" + table + " (USINS) VALUES ('SYSTEM_IMPORT')");
        }
        WatchTables(target);
        Session& session = target.Get();
        session.Source = std::make_unique<ovConnection>();
        session.Source->Errors = &session.Errors;
        OpenEmbedded(*session.Source).ExecuteScript(TesseraSource);
        if (fails) {
            session.Source->Execute("UPDATE OrdProF SET Qta = 'uno'");
        }
        const RunResult& result = RunProcedure(session, *registry::Find("Tessera"), "ImportOrdCliTessera", {}, true);
        QCOMPARE(result.outcome, fails ? RunResult::Outcome::Failed : RunResult::Outcome::Done);
        // The reset is not seen by any; of the rows, components and document rows are not.
        QStringList seen{"+ORD_PRO", "+ORD_FAS"};
        if (fails) {
            seen = {}; // taken back with the row
        }
        QCOMPARE(target.Rows("SELECT WHAT FROM SEEN ORDER BY rowid"), seen);
        target.Execute("DELETE FROM SEEN");
        for (const QString& table : WatchedTables) {
            target.Execute("INSERT INTO X01_" + table + " (USINS) VALUES ('ANNA')");
        }
        QCOMPARE(target.Rows("SELECT WHAT FROM SEEN ORDER BY rowid"),
                 QStringList({"+ORD_COM", "+ORD_FAS", "+ORD_PRO", "+DOC_VER"}));
    }

    /// Each order stays the one of its number, with what somebody has hung on it.
    void KnowsProductionOrdersByTheirNumber_data() {
        Columns<QString, QString, QString>("gone", "orders", "told");
        Row("none", "0", "1|INI|A 2|PIA|B", "");
        Row("one that somebody has worked on", "1", "1|INI|A 2|PIA|B", "ORDINI DI PRODUZIONE NON PIÙ NELL'ORIGINE");
        Row("one that is the import's", "3", "1|INI|A 2|PIA|B", "ORDINE DI PRODUZIONE TOLTO: ");
        Row("kept by none", "-", "1|INI|A 2|PIA|B", "");
    }
    void KnowsProductionOrdersByTheirNumber() {
        QFETCH(const QString, gone);
        QFETCH(const QString, told);
        TestTarget target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE) VALUES ('000001', 'C1')");
        target.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('AB')");
        Session& session = target.Get();
        session.Source = std::make_unique<ovConnection>();
        session.Source->Errors = &session.Errors;
        OpenEmbedded(*session.Source).ExecuteScript(TesseraSource);
        session.Source->Execute("INSERT INTO OrdProT VALUES (2, 1, 2, NULL, NULL, 1, 'PIA'), (3, 1, 3, NULL, NULL, 1, "
                                "'LAN')");
        const auto run = [&] { RunProcedure(session, *registry::Find("Tessera"), "ImportOrdCliTessera", {}, false); };
        run();
        target.Execute("INSERT INTO X01_ORD_COM (IDORD, OCART, USINS) VALUES (1, 'A', 'ANNA'), (2, 'B', 'ANNA')");
        if (gone == "-") {
            target.Execute("DELETE FROM SYS_IMP");
        }
        session.Source->Execute("DELETE FROM OrdProT WHERE NumOrdP = " + (gone == "-" ? QString("0") : gone));
        run();
        const QString log = QString::fromLatin1(target.Log());
        QVERIFY2(told.isEmpty() ? !log.contains("PRODUZIONE") : log.contains(told), qPrintable(log));
        run();
        QTEST(target
                  .Rows("SELECT P.RECORD_ID, OPSTA, OCART FROM X01_ORD_PRO P JOIN X01_ORD_COM C ON C.IDORD = "
                        "P.RECORD_ID AND C.USINS = 'ANNA' ORDER BY P.RECORD_ID")
                  .join(' '),
              "orders");
        QCOMPARE(target.Rows("SELECT RECORD_ID FROM X01_ORD_PRO").size(), gone == "3" ? 2 : 3);
    }
};

QUADRIX_TEST(TestTessera)
#include "test_tessera.moc"
