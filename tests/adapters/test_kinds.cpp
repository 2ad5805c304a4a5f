#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/askedSince.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/run/RowSelection.h"
#include "sql/CodePage.h"
#include "tests/adapters/Trial.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

Q_DECLARE_METATYPE(contract::Reading)

namespace {

const char* const Orders = R"(
CREATE TABLE TESTATE (ID INT, NUMERO INT, GIORNO VARCHAR(10), CLIENTE VARCHAR(8), NOTE VARCHAR(20));
CREATE TABLE RIGHE (ID INT, RIGA INT, ARTICOLO VARCHAR(10), QTA VARCHAR(8), EVASA VARCHAR(8), PREZZO VARCHAR(8));
INSERT INTO TESTATE VALUES (1, 7, '2024-01-10', 'C1', 'prima'), (2, 8, '2024-01-11', 'C1', NULL),
 (3, 9, '2024-01-12', 'C9', NULL), (4, 10, '2016-12-31', 'C1', NULL), (5, 11, '2024-01-13', 'C1', NULL);
INSERT INTO RIGHE VALUES (1, 1, 'AB', '2', '0', '5'), (1, 2, 'AB', '1', '1', '3'), (2, 1, 'XX', '1', '0', '1'),
 (3, 1, 'AB', '1', '0', '1'), (4, 1, 'AB', '1', '0', '1');
)";

Documents OrdersRead(Reading reading) {
    return {
        .frame = FrameNamed("ImportOrdini"),
        .source = {.table = "TESTATE", .key = "NUMERO", .order = "NUMERO", .group = {"NUMERO"}},
        .rows = {.table = "RIGHE", .on = {{"ID"}}, .order = "RIGA"},
        .reading = reading,
        .kinds = {{.cause = "ORDPR", .type = "ORD", .family = Sales}},
        .head = {.number = "NUMERO",
                 .day = "GIORNO",
                 .counterparty = {"CLIENTE", PartyOf()},
                 .lines = {{"DTNOT", "NOTE", Text()}}},
        .row = {.number = "RIGA",
                .article = {"ARTICOLO", ArticleCode("RIGHE", "ARTICOLO")},
                .quantity = "QTA",
                .delivered = "EVASA",
                .price = "PREZZO"},
    };
}

} // namespace

/// What the declarations make of a source, as far as no fixture of a module shows it.
class TestKinds : public QObject {
    Q_OBJECT

private slots:
    void documents_data() {
        Columns<Reading>("reading");
        Row("joined", Reading::Joined);
        Row("a head, then its rows", Reading::HeadThenRows);
    }
    /// Both ways of reading give the same documents; the one of nobody is given up, the old one stays behind.
    void documents() {
        QFETCH(const Reading, reading);
        Trial import(Orders);
        import.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, CORAS) VALUES ('000001', 'C1', 'Rossi')");
        import.Execute("INSERT INTO X01_ART_ICO (CDART, ARDES) VALUES ('AB', 'Staffa')");
        const QString rows = "SELECT T.DTNUM, T.DTNOT, T.DTSTA, T.DTIMP, R.DRNUM, R.DRART, R.DRQTD, R.DRSTA FROM "
                             "X01_DOC_VEN T JOIN X01_DOC_VER R ON R.IDTES = T.RECORD_ID ORDER BY R.DRNUM";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, OrdersRead(reading)), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList({"7|prima|PV|13|1|AB|2|PV", "7|prima|PV|13|2|AB|0|EV"}));
        QVERIFY(import.Again);
        QCOMPARE(result.givenUpCount, 1);
        QVERIFY2(
            result.givenUp.first().reason.contains("colonna 'CLIENTE': nessuna controparte ha il codice cliente 'C9'"),
            qPrintable(result.givenUp.first().reason));
        QVERIFY(result.AddsUp());
        const QString row =
            reading == Reading::Joined ? "NUMERO '8': 'XX'" : "NUMERO '8', tabella 'RIGHE', RIGA '1': 'XX'";
        const QString log = QString::fromLatin1(import.Log());
        QVERIFY2(log.contains("ARTICOLO NON TROVATO: tabella 'TESTATE', " + row), qPrintable(log));
    }

    /// Only what is of the day that is asked for, or later; of a day that is none nothing is emptied or read.
    void articlesSinceADay() {
        Trial import(
            "CREATE TABLE ART (COD VARCHAR(4), NOME VARCHAR(9), DEL DATETIME TEXT); INSERT INTO ART VALUES "
            "('A', 'vecchio', '20240131 00:00:00'), ('B', 'nuovo', '20240201 00:00:00'), ('C', 'senza data', NULL)");
        import.Person.Inputs = {"01/02/2024", "1/2/2024", "ieri"};
        const Articles articles{.frame = FrameNamed("ImportArticoli"),
                                .source = {.table = "ART", .key = "COD"},
                                .code = "COD",
                                .description = "NOME"};
        const Procedure procedure = ProcedureOf(std::nullopt, FrameOf(articles),
                                                {AskedSince(PartOf(articles), "Data inizio importazione:", {"DEL"})});
        QCOMPARE(procedure.asks.size(), size_t{1});
        import.Run(procedure, "SELECT CDART FROM X01_ART_ICO");
        QVERIFY(import.Again);
        QVERIFY2(import.Log().contains("RIGHE SENZA DATA: tabella 'ART', DEL: 1 non importate"), import.Log());
        procedure.run(import.Get(), {}, true);
        QCOMPARE(import.Get().Results.last().outcome, RunResult::Outcome::Failed);
        QCOMPARE(import.Rows("SELECT CDART FROM X01_ART_ICO"), QStringList{"B"});
    }

    /// A mark-up goes with the price that it was of; of a long description the log tells what is cut.
    void articlesWithLess() {
        Trial import("CREATE TABLE ART (COD VARCHAR(4), NOTA TEXT, PREZZO REAL, COSTO REAL, NOME TEXT)");
        const QString name = QString("Guarnizione ").repeated(9);
        import.Get().Source->Execute("INSERT INTO ART VALUES ('A', '" + QString(300, 'x') + "', 10, 8, '" + name +
                                     "')");
        const Articles articles{.frame = FrameNamed("ImportArticoli"),
                                .source = {.table = "ART", .key = "COD"},
                                .code = "COD",
                                .description = "NOME",
                                .lines = {{"ARDEC", "NOTA", First(255)},
                                          {"ARCOS", "COSTO", RoundedTo(6)},
                                          {"ARPRZ", "PREZZO", RoundedTo(6)}},
                                .more = SetMarkUp};
        const QString rows = "SELECT ARPRZ, ARCOS, ARRIC FROM X01_ART_ICO";
        import.Run(ProcedureOf(std::nullopt, articles), rows);
        QCOMPARE(import.Rows(rows), QStringList{"10|8|25"});
        QVERIFY2(import.Log().contains("TESTO RIDOTTO: tabella 'ART', COD 'A', colonna 'NOTA': scritti 255 caratteri "
                                       "di 300"),
                 import.Log());
        QVERIFY2(import.Log().contains("colonna 'NOME': scritti 100 caratteri di 107"), import.Log());
        import.Get().Source->Execute("UPDATE ART SET PREZZO = NULL, COSTO = 9");
        import.Run(ProcedureOf(std::nullopt, articles), rows);
        QCOMPARE(import.Rows(rows), QStringList{"NULL|9|NULL"});
    }

    /// What reads rows of a table that some releases lack runs without it.
    void branchesOfAReleaseThatHasNone() {
        Trial import("CREATE TABLE CLI (COD VARCHAR(4), NOME VARCHAR(9)); INSERT INTO CLI VALUES ('A', 'Rossi')");
        const Counterparties parties{.frame = FrameNamed("ImportControparti"),
                                     .source = {.table = "CLI", .key = "COD"},
                                     .roles = Always({.customer = true}),
                                     .name = "NOME",
                                     .lines = {{"CORAS", "NOME", Text()}},
                                     .branches = {{.rows = {.table = "DEST", .on = {{"COD"}}, .isOptional = true},
                                                   .lines = {{"SEIND", "VIA", Text()}}}}};
        const QString rows = "SELECT CORAS FROM X01_CON_TRO";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, parties), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList{"Rossi"});
    }

    /// A row whose second table has nothing for it is read too.
    void columnsOfASecondTable() {
        Trial import(R"(
CREATE TABLE CLIENTI (CODICE VARCHAR(8), NOME VARCHAR(40));
CREATE TABLE COMMERCIALI (CLI VARCHAR(8), SCONTO VARCHAR(10), CEL VARCHAR(20));
INSERT INTO CLIENTI VALUES ('1', 'Uno'), ('2', 'Due');
INSERT INTO COMMERCIALI VALUES ('1', '10+5', '333');
)");
        const Counterparties customers{
            .frame = FrameNamed("ImportClienti"),
            .source = {.table = "CLIENTI",
                       .key = "CODICE",
                       .order = "CODICE",
                       .joins = {{.table = "COMMERCIALI", .on = {{"CLI", "CODICE"}}, .columns = {"SCONTO", "CEL"}}}},
            .roles = Always({.customer = true}),
            .name = "NOME",
            .lines = {{"CORAS", "NOME", Text()}, DiscountsByRole("SCONTO")},
            .numbers = {.mobile = "CEL"},
        };
        const Procedure procedure = ProcedureOf(std::nullopt, customers);
        const QString rows = "SELECT CDCON, CORAS, COSC1, COSC2, (SELECT NRNUM FROM X01_NUM_TEL WHERE TBKEY = CDCON) "
                             "FROM X01_CON_TRO ORDER BY CDCON";
        const RunResult& result = import.Run(procedure, rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList({"000001|Uno|10|5|333", "000002|Due|NULL|NULL|NULL"}));
        QVERIFY(import.Again);
        // Each table is checked for its own columns.
        import.Get().Source->Execute("ALTER TABLE COMMERCIALI RENAME COLUMN SCONTO TO SC");
        const Lacks lacks = LacksOf(import.Get(), procedure.needs);
        QVERIFY2((lacks.necessary + lacks.optional).join('\n').contains("origine: colonna 'COMMERCIALI.SCONTO'"),
                 qPrintable(lacks.Text()));
    }

    void roles_data() {
        Columns<QString, QString>("code", "roles");
        Row("customer", "201.001", "customer");
        Row("supplier", "401.001", "supplier");
        Row("neither", "501.001", "colonna 'CODICE': '501.001' non è 201. (cliente) né 401. (fornitore)");
    }
    void roles() {
        QFETCH(const QString, code);
        QFETCH(const QString, roles);
        Trial import("CREATE TABLE CONTI (CODICE VARCHAR(10)); INSERT INTO CONTI VALUES ('" + code + "')");
        const Recordset rows = import.Get().Source->ExecuteWC("SELECT * FROM CONTI");
        const RoleTeller teller = ByPrefix("CODICE", {.customer = {"201."}, .supplier = {"401."}});
        Roles found;
        const auto error = ErrorOf<ImportError>([&] { found = teller.of(SourceRow(rows)); });
        QCOMPARE(error ? error->Message() : found.customer ? QString("customer") : QString("supplier"), roles);
    }

    /// Several quantities of one list, and the currency of the list.
    void priceScales() {
        Trial import(R"(
CREATE TABLE LISTINO (LISTINO VARCHAR(4), ARTICOLO VARCHAR(10), FINO1 INT, PREZZO1 REAL, FINO2 INT, PREZZO2 REAL);
INSERT INTO LISTINO VALUES ('L1', 'AB', 10, 5, 100, 4), ('L1', 'CD', 0, 7, 0, 0), ('L1', 'ZZ', 0, 1, 0, 0);
)");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('AB'), ('CD')");
        const PriceLists lists{
            .frame = FrameNamed("ImportListini"),
            .source = {.table = "LISTINO", .key = "LISTINO", .order = "LISTINO, ARTICOLO", .naming = "ARTICOLO"},
            .article = {"ARTICOLO", ArticleCode("LISTINO", "ARTICOLO")},
            .prices = {{.list = "LISTINO",
                        .direction = Fixed("A"),
                        .currency = Fixed("USD"),
                        .scales = {{.quantity = "FINO1", .price = {"PREZZO1", NotZero()}},
                                   {.quantity = "FINO2", .price = {"PREZZO2", NotZero()}}}}},
        };
        const QString rows = "SELECT A.CDART, S.SCPRZ, T.LTTIP, T.LTVAL FROM X01_LIS_ARS S JOIN X01_LIS_ART A ON "
                             "A.RECORD_ID = S.IDLSD JOIN X01_LIS_TES T ON T.CDLIS = A.CDLIS ORDER BY S.RECORD_ID";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, lists), rows);
        QCOMPARE(import.Rows(rows), QStringList({"AB|5|A|USD", "AB|4|A|USD", "CD|7|A|USD"}));
        QVERIFY(import.Again);
        QCOMPARE(result.skippedBy.keys(), QStringList({"articolo non trovato"}));
    }

    /// A row without a price would be the price from its day on, and one of less than nothing never holds.
    void pricesThatAreNone() {
        Trial import(R"(
CREATE TABLE LISTINO (LISTINO VARCHAR(4), ARTICOLO VARCHAR(10), FINO REAL, PREZZO REAL, SCONTO REAL);
INSERT INTO LISTINO VALUES ('L1', 'AB', 10, 5, NULL), ('L1', 'AB', 20, NULL, 0), ('L1', 'AB', 30, NULL, 15), ('L1', 'AB', -5, 4, NULL);
)");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('AB')");
        const PriceLists lists{
            .frame = FrameNamed("ImportListini"),
            .source = {.table = "LISTINO", .key = "LISTINO", .order = "LISTINO, FINO", .naming = "ARTICOLO, FINO"},
            .article = {"ARTICOLO", ArticleCode("LISTINO", "ARTICOLO")},
            .prices = {{.list = "LISTINO",
                        .direction = Fixed("V"),
                        .scales = {{.quantity = "FINO", .price = "PREZZO", .discounts = {"SCONTO"}}}}},
        };
        const QString rows = "SELECT SCQTA, SCPRZ, SCSCO FROM X01_LIS_ARS ORDER BY SCQTA";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, lists), rows);
        QCOMPARE(import.Rows(rows), QStringList({"10|5|NULL", "30|NULL|15"}));
        QVERIFY(import.Again);
        QCOMPARE(result.skippedBy.keys(), QStringList({"riga senza prezzi"}));
        QCOMPARE(result.givenUp.size(), 1);
        QCOMPARE(import.Log().count("PREZZO VUOTO"), 1);
    }

    /// Instalments by their number, and by columns of the term's own row.
    void paymentTerms() {
        Trial import(R"(
CREATE TABLE PAGAMENTI (CODICE VARCHAR(4), NOME VARCHAR(20), RATE INT, PRIMA INT, OGNI INT, GG1 INT, GG2 INT);
INSERT INTO PAGAMENTI VALUES ('R3', 'Tre rate', 3, 30, 30, NULL, NULL), ('DUE', 'Due', 0, 0, 0, 60, 90);
)");
        const PaymentTerms terms{
            .frame = FrameNamed("ImportPagamenti"),
            .source = {.table = "PAGAMENTI", .key = "CODICE", .order = "CODICE"},
            .code = "CODICE",
            .lines = {{"MPDES", "NOME", Text()}},
            .instalments = {{.days = "GG1", .start = {}, .percent = {}}, {.days = "GG2"}},
            .series =
                InstalmentSeries{.count = "RATE", .firstDays = "PRIMA", .everyDays = "OGNI", .start = Fixed("FM")},
        };
        const QString rows = "SELECT CDMOP, NRRAT, MPGGF, MPINI, MPPER FROM TAB_MPR ORDER BY CDMOP, NRRAT";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, terms), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList({"DUE|1|60|DF|50", "DUE|2|90|DF|50", "R3|1|30|FM|33.33",
                                                 "R3|2|60|FM|33.33", "R3|3|90|FM|33.34"}));
        QVERIFY(import.Again);
        import.Execute("UPDATE TAB_MPR SET MPGGS = 10");
        import.Run(ProcedureOf(std::nullopt, terms), "SELECT DISTINCT MPGGS FROM TAB_MPR");
        QCOMPARE(import.Rows("SELECT DISTINCT MPGGS FROM TAB_MPR"), QStringList{"10"}); // the source does not tell it
    }

    /// The path follows from the ledgers; an account above itself is told and has none.
    void accountPaths() {
        Trial import(R"(
CREATE TABLE PIANO (CONTO VARCHAR(10), NOME VARCHAR(20), MASTRO VARCHAR(10));
INSERT INTO PIANO VALUES ('10', 'Cassa', '1'), ('1', 'Attivo', NULL), ('100', 'Contanti', '10'), ('7', 'Giro', '8'),
 ('8', 'Giro', '7'), ('20', 'Senza mastro', '99');
)");
        const Accounts accounts{
            .frame = FrameNamed("ImportPiano"),
            .accounts = {.source = {.table = "PIANO", .key = "CONTO", .order = "CONTO"},
                         .target = "PIA_CON",
                         .code = "CONTO",
                         .lines = {{"PCDES", "NOME", Text()}, {"PCMAS", "MASTRO", NotBlank(Text())}}},
        };
        const QString rows = "SELECT CDCNT, COALESCE(PCPTH, '') FROM X01_PIA_CON ORDER BY CDCNT";
        import.Run(ProcedureOf(std::nullopt, accounts), rows);
        QCOMPARE(import.Rows(rows), QStringList({"1|", "10|1", "100|1\\10", "20|", "7|", "8|"}));
        QVERIFY(import.Again);
        QVERIFY2(QString::fromLatin1(import.Log()).contains("CICLO NEL PIANO DEI CONTI: '7'"),
                 import.Log().constData());
    }

    /// Suppliers, codes and units in rows of other tables; the first supplier that is there is the preferred one.
    void whatHangsOnAnArticle() {
        Trial import(R"(
CREATE TABLE ARTICOLI (CODICE VARCHAR(10), NOME VARCHAR(20), UM VARCHAR(3), ALTRA VARCHAR(3));
CREATE TABLE FORNITORI (CODICE VARCHAR(10), CONTO VARCHAR(8), SUO VARCHAR(10), PREZZO REAL);
CREATE TABLE CLIENTI (CODICE VARCHAR(10), CONTO VARCHAR(8), SUO VARCHAR(10));
CREATE TABLE UNITA (CODICE VARCHAR(10), UM VARCHAR(3), USO INT, SEGNO VARCHAR(1), FATTORE REAL);
INSERT INTO ARTICOLI VALUES ('AB', 'Staffa', 'nr', 'mm');
INSERT INTO FORNITORI VALUES ('AB', 'F9', 'X', 1), ('AB', 'F1', 'S-1', 5), ('AB', 'F2', NULL, 7);
INSERT INTO CLIENTI VALUES ('AB', 'C1', 'K-1'), ('AB', 'C9', 'K-9'), ('AB', ' ', 'K-0');
INSERT INTO UNITA VALUES ('AB', 'kg', 2, '/', 4), ('AB', 'pz', 2, '*', 3), ('AB', 'cf', 8, '*', 1), ('AB', 'zz', 5, '*', 1);
)");
        import.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000001', 'C1', NULL), ('000002', NULL, "
                       "'F1'), ('000003', NULL, 'F2')");
        const auto rowsOf = [](const char* table, const char* order) {
            return ChildTable{.table = table, .on = {{"CODICE"}}, .order = order};
        };
        const Articles articles{
            .frame = FrameNamed("ImportArticoli"),
            .source = {.table = "ARTICOLI", .key = "CODICE"},
            .code = {"CODICE", ArticleCode("ARTICOLI", "CODICE")},
            .description = "NOME",
            .lines = {{"ARUMS", "UM", Unit("ARTICOLI", "UM", "NR")},
                      {"ARCDR", "",
                       OfFirst("ARTICOLI", {.table = "MANCA", .on = {{"CODICE"}}, .isOptional = true}, "NOTA", Text())},
                      {"ARPRZ", "",
                       Or(OfFirst("ARTICOLI", rowsOf("FORNITORI", "PREZZO"), "PREZZO", Text()), QVariant())}},
            .suppliers = {{.rows = rowsOf("FORNITORI", "PREZZO"),
                           .supplier = {"CONTO", KnownSupplier()},
                           .ownCode = "SUO",
                           .price = "PREZZO"}},
            .aliases = {{.rows = rowsOf("CLIENTI", "SUO"), .code = "SUO", .counterparty = {"CONTO", KnownCustomer()}}},
            .units = {{.rows = rowsOf("UNITA", "USO, UM"),
                       .unit = {"UM", Unit("ARTICOLI", "UM", "")},
                       .factor = {"SEGNO, FATTORE", UnitFactor()},
                       .places = {"USO", Choice({{"2", "ARUM2"}, {"8", "ARUMP ARUMV"}}, "")}},
                      {.rows = {}, .unit = {"ALTRA", Unit("ARTICOLI", "UM", "")}}},
        };
        const QString rows =
            "SELECT CDCON, ARPRZ, AFABI FROM X01_ART_FOR UNION ALL SELECT COCON, CDCOD, COTIP FROM X01_ART_COD UNION "
            "ALL SELECT ARUM2, ARCOE, ARUMV FROM X01_ART_ICO UNION ALL SELECT ARUMP, ARCOE, ARUMV FROM X01_ART_ICO";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, articles), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList({"000002|5|true", "000003|7|false", "000002|S-1|C", "000001|K-1|C",
                                                 "KG|0.25|CF", "CF|0.25|CF"}));
        QVERIFY(import.Again);
        const QString log = DecodeText(import.Log(), CodePage());
        for (const char* line :
             {"FORNITORE NON TROVATO: tabella 'ARTICOLI', CODICE 'AB', tabella 'FORNITORI', PREZZO '1': 'F9'",
              "CLIENTE NON TROVATO: tabella 'ARTICOLI', CODICE 'AB', tabella 'CLIENTI', SUO 'K-9': 'C9'",
              "CODICE SENZA CONTROPARTE: tabella 'ARTICOLI', CODICE 'AB', tabella 'CLIENTI', SUO 'K-0': 'K-0'",
              "tabella 'UNITA', USO '2', UM 'pz': 'pz' (fattore 3)",
              "UNITÀ DI MISURA ULTERIORE: tabella 'ARTICOLI', CODICE 'AB': 'mm'"}) {
            QVERIFY2(log.contains(line), qPrintable(log));
        }
        // Prices and the preferred supplier follow the source, what somebody has entered stays.
        import.Execute("INSERT INTO X01_CON_TRO (CDCON, COFGE) VALUES ('000004', 'F4')");
        import.Execute(
            "INSERT INTO X01_ART_FOR (CDART, CDCON, ARPRZ, AFABI, USINS) VALUES ('AB', '000004', 2, 1, 'ANNA')");
        import.Get().Source->Execute("UPDATE FORNITORI SET CONTO = 'F4', PREZZO = 9 WHERE CONTO = 'F1'");
        import.Get().Source->Execute("UPDATE FORNITORI SET PREZZO = 8 WHERE CONTO = 'F2'");
        const QString links = "SELECT CDCON, ARPRZ, AFABI FROM X01_ART_FOR ORDER BY CDCON";
        import.Run(ProcedureOf(std::nullopt, articles), links);
        QCOMPARE(import.Rows(links), QStringList({"000002|5|false", "000003|8|true", "000004|2|true"}));
        QVERIFY(import.Again);
        const QString price = "SELECT ARPRZ FROM X01_ART_ICO";
        QCOMPARE(import.Rows(price), QStringList{"1"});
        import.Get().Source->Execute("DELETE FROM FORNITORI"); // what there is no row of any more is cleared
        import.Run(ProcedureOf(std::nullopt, articles), price);
        QCOMPARE(import.Rows(price), QStringList{"NULL"});
    }

    /// The first bill of an article counts, wherever the further ones stand.
    void furtherBills() {
        Trial import(R"(
CREATE TABLE DISTINTE (ID INT, ARTICOLO VARCHAR(10));
CREATE TABLE PARTI (ID INT, ARTICOLO VARCHAR(10), QTA INT);
INSERT INTO DISTINTE VALUES (1, 'A'), (2, 'B'), (3, 'A');
INSERT INTO PARTI VALUES (1, 'C', 1), (2, 'C', 2), (3, 'C', 3);
)");
        import.Execute("INSERT INTO X01_ART_ICO (CDART, ARDES) VALUES ('A', 'Uno'), ('B', 'Due'), ('C', 'Parte')");
        const Bills bills{.frame = FrameNamed("ImportDistinte"),
                          .source = {.table = "DISTINTE", .key = "ID", .order = "ID"},
                          .article = {"ARTICOLO", ArticleCode("DISTINTE", "ARTICOLO")},
                          .components = {.rows = {.table = "PARTI", .on = {{"ID"}}, .order = "ID"},
                                         .article = {"ARTICOLO", ArticleCode("PARTI", "ARTICOLO")},
                                         .quantity = "QTA"},
                          .furtherRows = "distinta ulteriore"};
        const QString rows = "SELECT B.DBART, C.DCQTA FROM X01_DIS_BAS B INNER JOIN X01_DIS_COM C ON "
                             "C.IDDIS = B.RECORD_ID ORDER BY B.DBART";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, bills), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows), QStringList({"A|1", "B|2"}));
        QCOMPARE(result.skippedBy.keys(), QStringList{"distinta ulteriore"});
        QVERIFY(import.Again);
    }

    /// A bank keeps its code, whether its own of the source or its IBAN tells it; counterparties find it. One that
    /// nothing tells is given up, and is nobody's.
    void banks() {
        Trial import(R"(
CREATE TABLE BANCHE (CODICE VARCHAR(8), NOME VARCHAR(20), IBAN VARCHAR(40));
INSERT INTO BANCHE VALUES ('B1', 'Uno', NULL), ('B2', 'Due', 'IT60 X054'), ('B3', 'Tre', ''), ('', 'Quattro', '');
)");
        import.Execute("INSERT INTO X01_BAN_CHE (CDBAN, BADES, BAIBA, BAEXT) VALUES ('00007', 'vecchia', 'IT60X 054', "
                       "NULL), ('CASSA', 'Cassa', NULL, ''), ('00003', 'prima', NULL, 'B3')");
        const Banks banks{.frame = FrameNamed("ImportBanche"),
                          .source = {.table = "BANCHE", .key = "CODICE", .order = "CODICE"},
                          .code = "CODICE",
                          .iban = {"IBAN", WithoutBlanks()},
                          .lines = {{"BADES", "NOME", Text()}}};
        const QString rows = "SELECT CDBAN, BADES, BAIBA, BAEXT FROM X01_BAN_CHE ORDER BY CDBAN";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, banks), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows(rows),
                 QStringList({"00003|Tre||B3", "00007|Due|IT60X054|B2", "00008|Uno||B1", "CASSA|Cassa|NULL|"}));
        QVERIFY(import.Again);
        QCOMPARE(result.givenUpCount, 1);
        Recordset source = import.Get().Source->ExecuteWC("SELECT 'B1' AS A UNION ALL SELECT ''");
        const Field bank("A", OwnBank("CONTI", "BANCA"));
        QCOMPARE(bank.Text(import.Get(), SourceRow(source)), QString("00008"));
        source.MoveNext();
        QCOMPARE(bank.Text(import.Get(), SourceRow(source)), QString());
    }

    void partsThatAreNotReached_data() {
        Columns<bool>("limited");
        Row("of all rows", false);
        Row("of rows given up before", true);
    }
    /// What a run that breaks off does not come to counts as not reached, and the tables not begun are told.
    void partsThatAreNotReached() {
        QFETCH(const bool, limited);
        Trial import("CREATE TABLE A (COD VARCHAR(4)); CREATE TABLE B (COD VARCHAR(4)); "
                     "INSERT INTO A VALUES ('1'), ('2'), ('3'); INSERT INTO B VALUES ('4'), ('5')");
        const auto part = [](const QString& table) {
            const EachRow row = [](ImportRun&, const SourceRow& each) {
                if (each.Text("COD") == "2") {
                    throw ImportError("guasta");
                }
                return RowOutcome::Inserted;
            };
            return ImportPart{.step = "Tabella " + table,
                              .source = {.table = table, .key = "COD"},
                              .needs = {},
                              .make = Importing(row)};
        };
        import.Get().Errors.Action = ErrorAction::Abort;
        RowSelection rows;
        rows.Add({.procedure = "Import", .name = "tabella 'A', COD '2'", .table = "A", .key = "2"});
        rows.Add({.procedure = "Import", .name = "tabella 'B', COD '5'", .table = "B", .key = "5"});
        rows.Begin("Import");
        import.Get().Selection = limited ? &rows : nullptr;
        ProcedureOf(std::nullopt, FrameNamed("Import"), {part("A"), part("B")}).run(import.Get(), {}, false);
        import.Get().Selection = nullptr;
        const RunResult& result = import.Get().Results.last();
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(result.sourceRows, limited ? 2 : 5);
        QCOMPARE(result.givenUpCount, 1);
        QCOMPARE(result.notReached, limited ? 1 : 3);
        QVERIFY(result.AddsUp());
        QCOMPARE(result.details, limited ? QStringList() : QStringList("Tabella B, righe non lette: 2"));
    }

    /// The code of the source is kept beside the code, where the table has a place for it.
    void codesOfTheSource() {
        Trial import("CREATE TABLE IVA (COD VARCHAR(4), PERC REAL); INSERT INTO IVA VALUES ('10r', 10)");
        const BaseTable vat{.frame = FrameNamed("ImportIva"),
                            .source = {.table = "IVA", .key = "COD"},
                            .target = "TAB_IVA",
                            .code = {"COD", FirstUpper(10)},
                            .lines = {{"IVALI", "PERC", RoundedTo(2)}},
                            .empties = DeletedImports("TAB_IVA")};
        const QString rows = "SELECT CDIVA, IVALI, IVEXT FROM TAB_IVA WHERE IVEXT <> ''";
        import.Run(ProcedureOf(std::nullopt, vat), rows);
        QCOMPARE(import.Rows(rows), QStringList({"10R|10|10r"}));
        QVERIFY(import.Again);
    }
};

QUADRIX_TEST(TestKinds)
#include "test_kinds.moc"
