#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/PartyRows.h"
#include "adapters/contract/kinds/Stock.h"
#include "tests/adapters/Trial.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

/// What imports of a kind do with what stands in Quadrix already.
class TestKindsAgain : public QObject {
    Q_OBJECT

private slots:
    /// The newest revision alone is in force, as number and then as text, whatever an earlier import said and wherever
    /// it stands.
    void newestRevision_data() {
        Columns<QString, QString>("revisions", "written");
        Row("as numbers", "'9' '10'", "9|false 10|true");
        Row("a lower one behind", "'10' '9'", "9|false 10|true");
        Row("letters are one number", "'A' 'B'", "0|true");
        Row("a number above a letter", "'C' '1'", "0|false 1|true");
        Row("one that is not told", "NULL '1'", "0|false 1|true");
        Row("none newer", "'1'", "1|true");
    }
    void newestRevision() {
        QFETCH(const QString, revisions);
        Trial import("CREATE TABLE DISTINTE (PADRE VARCHAR(10), REV VARCHAR(5), FIGLIO VARCHAR(10), QTA INT)");
        for (const QString& revision : revisions.split(' ')) {
            import.Get().Source->Execute("INSERT INTO DISTINTE VALUES ('A', " + revision + ", 'C', 1)");
        }
        import.Execute("INSERT INTO X01_ART_ICO (CDART, ARDES) VALUES ('A', 'Uno'), ('C', 'Parte')");
        import.Execute("INSERT INTO X01_DIS_BAS (DBART, DBREV, DBMAN, USINS) VALUES ('A', 7, 1, 'ANNA'), "
                       "('A', 8, 1, 'SYSTEM_IMPORT')");
        const ChildTable rows{.table = "DISTINTE", .on = {{"PADRE"}}, .order = "REV"};
        const Bills bills{
            .frame = FrameNamed("ImportDistinte"),
            .source = {.table = "DISTINTE", .key = "PADRE", .order = "PADRE", .distinct = true, .apart = "REV"},
            .article = {"PADRE", ArticleCode("DISTINTE", "PADRE")},
            .revision = {"REV", RevisionNumber()},
            .active = {"REV", IsNewestRevision(rows, "REV")},
            .oneInForce = true,
            .components = {.rows = {.table = "DISTINTE",
                                    .on = {{"PADRE"}, {.column = "REV", .tiesNulls = true}},
                                    .order = "FIGLIO"},
                           .article = {"FIGLIO", ArticleCode("DISTINTE", "FIGLIO")},
                           .quantity = "QTA"}};
        const QString written = "SELECT DBREV, DBMAN FROM X01_DIS_BAS WHERE DBREV < 7 OR DBREV > 8 ORDER BY DBREV";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, bills), written);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(import.Rows("SELECT DBMAN FROM X01_DIS_BAS WHERE DBREV IN (7, 8)"), QStringList({"true", "false"}));
        QVERIFY(import.Again);
        QVERIFY(import.Log().contains("'A', revisione 8, non in vigore: 1 rimane"));
        QVERIFY(!import.Log().contains("revisione 7"));
        QTEST(import.Rows(written).join(' '), "written");
    }

    /// A sheet may have a code twice: which of the two is right only somebody can tell.
    void oneCodeOfTwoRows_data() {
        Columns<QString, bool>("second", "told");
        Row("the same", "('A', 'Vite', 1)", false);
        Row("other data", "('A', 'Bullone', 1)", true);
        Row("a blank behind it", "('A ', 'Vite', 2)", true);
    }
    void oneCodeOfTwoRows() {
        QFETCH(const QString, second);
        Trial import("CREATE TABLE ART (COD VARCHAR(5), DES VARCHAR(20), PESO INT)");
        import.Get().Source->Execute("INSERT INTO ART VALUES ('A', 'Vite', 1), ('B', 'Dado', 1), " + second);
        const Articles articles{.frame = FrameNamed("ImportArt"),
                                .source = {.table = "ART", .key = "COD"},
                                .code = {"COD", ArticleCode("ART", "COD")},
                                .description = "DES",
                                .lines = {{"ARDES", "DES", Text()}, {"ARSMN", "PESO", RoundedTo(0)}}};
        import.Run(ProcedureOf(std::nullopt, articles), "SELECT CDART, ARDES FROM X01_ART_ICO ORDER BY CDART");
        QTEST(import.Log().contains("ARTICOLO DOPPIO: tabella 'ART'"), "told");
    }

    /// The same of codes, in each kind of table that has them.
    void oneCodeOfTwoRowsInATable_data() {
        Columns<QString, QString, bool>("table", "second", "told");
        Row("the same", "TAB_IVA", "('A', 'Uno', 1)", false);
        Row("another rate", "TAB_IVA", "('A', 'Uno', 22)", true);
        Row("in another case", "TAB_IVA", "('a', 'Uno', 1)", true);
        Row("the same term", "TAB_MOP", "('A', 'Uno', 1)", false);
        Row("a term of other days", "TAB_MOP", "('A', 'Uno', 30)", true);
        Row("the same bank", "BAN_CHE", "('A', 'Uno', 1)", false);
        Row("a bank of another name", "BAN_CHE", "('A', 'Due', 1)", true);
    }
    void oneCodeOfTwoRowsInATable() {
        QFETCH(const QString, table);
        QFETCH(const QString, second);
        Trial import("CREATE TABLE CODICI (COD VARCHAR(5), NOME VARCHAR(20), N INT)");
        import.Get().Source->Execute("INSERT INTO CODICI VALUES ('A', 'Uno', 1), ('B', 'Uno', 2), " + second);
        const Frame frame = FrameNamed("ImportCodici");
        const SourceTable source{.table = "CODICI", .key = "COD"};
        const BaseTable vat{.frame = frame,
                            .source = source,
                            .target = "TAB_IVA",
                            .code = "COD",
                            .lines = {{"IVDES", "NOME", Text()}, {"IVALI", "N", RoundedTo(2)}}};
        const PaymentTerms terms{.frame = frame, .source = source, .code = "COD", .instalments = {{.days = "N"}}};
        const Banks banks{.frame = frame, .source = source, .code = "COD", .lines = {{"BADES", "NOME", Text()}}};
        const ImportPart part = table == u"TAB_IVA" ? PartOf(vat) : table == u"TAB_MOP" ? PartOf(terms) : PartOf(banks);
        import.Run(ProcedureOf(std::nullopt, frame, {part}), "SELECT CDIVA FROM TAB_IVA");
        QTEST(import.Log().contains(
                  QByteArray("CODICE DOPPIO: tabella 'CODICI', COD '" + second.mid(2, 1).toLatin1() + "': ")),
              "told");
    }

    /// What somebody has entered stays; shares and numbers that do not agree are told.
    void instalmentsOfOthers_data() {
        Columns<QString, QString, QString>("source", "written", "told");
        Row("none in the source", "('T', 0, NULL, NULL)", "1|40|ANNA 2|60|ANNA", "");
        Row("a further one", "('T', 1, 100, NULL)", "1|40|ANNA 2|60|ANNA", "RATA NON RISCRITTA");
        Row("two thirds", "('U', 2, 33.33, 33.33)", "1|33.33|SYSTEM_IMPORT 2|33.33|SYSTEM_IMPORT",
            "RATE DIVERSE DA CENTO: ");
        Row("within a cent", "('U', 2, 33.33, 66.66)", "1|33.33|SYSTEM_IMPORT 2|66.66|SYSTEM_IMPORT", "");
        Row("another number", "('U', 3, 50, 50)", "1|50|SYSTEM_IMPORT 2|50|SYSTEM_IMPORT", "RATE DIVERSE DAL NUMERO: ");
        Row("a number alone", "('U', 1, NULL, NULL)", "", "RATE DIVERSE DAL NUMERO: ");
        Row("one of before", "('U', 1, 100, NULL)", "1|100|SYSTEM_IMPORT", "");
    }
    void instalmentsOfOthers() {
        QFETCH(const QString, source);
        Trial import("CREATE TABLE PAGAMENTI (CODICE VARCHAR(4), RATE INT, P1 REAL, P2 REAL); INSERT INTO PAGAMENTI "
                     "VALUES " +
                     source);
        import.Execute("INSERT INTO TAB_MOP (CDMOP, MPDES) VALUES ('T', 'Due')");
        import.Execute("INSERT INTO TAB_MPR (CDMOP, NRRAT, MPPER, USINS) VALUES ('T', 1, 40, 'ANNA'), "
                       "('T', 2, 60, 'ANNA'), ('U', 3, 9, 'SYSTEM_IMPORT')");
        const PaymentTerms terms{.frame = FrameNamed("ImportPagamenti"),
                                 .source = {.table = "PAGAMENTI", .key = "CODICE"},
                                 .code = "CODICE",
                                 .lines = {{"MPRAT", "RATE", RoundedTo(0)}},
                                 .instalments = {{.percent = "P1"}, {.percent = "P2"}}};
        const QString rows = "SELECT NRRAT, MPPER, USINS FROM TAB_MPR WHERE NRRAT < 3 AND CDMOP = '" +
                             source.mid(2, 1) + "' ORDER BY NRRAT";
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, terms), rows);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QTEST(import.Rows(rows).join(' '), "written");
        QVERIFY(import.Again);
        QFETCH(const QString, told);
        const QString log = QString::fromLatin1(import.Log());
        QVERIFY2(told.isEmpty() ? !log.contains("RAT") : log.contains(told), qPrintable(log));
    }

    /// The source tells no phases: what somebody has made of them stays, and whom they consume.
    void phasesOfAPlannerStay_data() {
        Columns<QString, QString>("planner", "phases");
        Row("nothing", "", "C|10, D|10, E|10");
        Row("a further phase", "UPDATE X01_DIS_COM SET IDDBL = 100 WHERE DCART = 'C'", "C|20, D|10, E|10");
        Row("a phase of another bill", "UPDATE X01_DIS_COM SET IDDBL = 101 WHERE DCART = 'C'", "C|10, D|10, E|10");
        Row("the generic one has a name",
            "UPDATE X01_DIS_FAS SET DLNOT = 'Taglio' WHERE DLSEQ = 10; "
            "UPDATE X01_DIS_COM SET IDDBL = 100 WHERE DCART = 'C'",
            "C|20, D|10, E|10");
    }
    void phasesOfAPlannerStay() {
        QFETCH(const QString, planner);
        Trial import("CREATE TABLE DISTINTE (PADRE VARCHAR(60), FIGLIO VARCHAR(10)); INSERT INTO DISTINTE VALUES "
                     "('A', 'C'), ('A', 'D')");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('A'), ('C'), ('D'), ('E')");
        const Bills bills{.frame = FrameNamed("ImportDistinte"),
                          .source = {.table = "DISTINTE", .key = "PADRE", .order = "PADRE", .distinct = true},
                          .article = {"PADRE", ArticleCode("DISTINTE", "PADRE")},
                          .components = {.rows = {.table = "DISTINTE", .on = {{"PADRE"}}, .order = "FIGLIO"},
                                         .article = {"FIGLIO", ArticleCode("DISTINTE", "FIGLIO")},
                                         .quantity = Fixed(1)}};
        const Procedure procedure = ProcedureOf(std::nullopt, bills);
        procedure.run(import.Get(), {}, false);
        import.Execute("INSERT INTO X01_DIS_FAS (RECORD_ID, IDDIS, DLSEQ, DLLAV) SELECT 100, RECORD_ID, 20, 'SAL' FROM "
                       "X01_DIS_BAS");
        import.Execute("INSERT INTO X01_DIS_FAS (RECORD_ID, IDDIS, DLSEQ, DLLAV) VALUES (101, 999, 20, 'SAL')");
        for (const QString& change : planner.split("; ", Qt::SkipEmptyParts)) {
            import.Execute(change);
        }
        import.Get().Source->Execute("INSERT INTO DISTINTE VALUES ('A', 'E')");
        procedure.run(import.Get(), {}, false);
        QTEST(import
                  .Rows("SELECT DCART, DLSEQ FROM X01_DIS_COM C JOIN X01_DIS_FAS F ON F.RECORD_ID = C.IDDBL "
                        "ORDER BY DCART")
                  .join(", "),
              "phases");
    }

    /// Two keys of the source that are cut to one are two bills, whose components must not be mixed.
    void keysCutToOneAreTwoBills() {
        const QString first = QString(50, 'Y') + 'A';
        Trial import("CREATE TABLE DISTINTE (PADRE VARCHAR(60), FIGLIO VARCHAR(10)); INSERT INTO DISTINTE VALUES ('" +
                     first + "', 'C'), ('" + QString(50, 'Y') + "B', 'D')");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('" + QString(50, 'Y') + "'), ('C'), ('D')");
        const Bills bills{.frame = FrameNamed("ImportDistinte"),
                          .source = {.table = "DISTINTE", .key = "PADRE", .order = "PADRE"},
                          .article = {"PADRE", First(50)},
                          .sourceKey = {"PADRE", First(50)},
                          .components = {.rows = {.table = "DISTINTE", .on = {{"PADRE"}}, .order = "FIGLIO"},
                                         .article = {"FIGLIO", ArticleCode("DISTINTE", "FIGLIO")},
                                         .quantity = Fixed(1)}};
        const RunResult& result = import.Run(ProcedureOf(std::nullopt, bills), "SELECT DCART FROM X01_DIS_COM");
        QCOMPARE(import.Rows("SELECT DCART FROM X01_DIS_COM"), QStringList{"C"});
        QCOMPARE(result.givenUpCount, 1);
        QVERIFY2(import.Log().contains("B', tagliato a 'YYY"), import.Log());
    }

    /// An article has the locations that the source shows of it; what else an import has given it is told.
    void locationsFollowTheSource_data() {
        Columns<QString, QString, bool>("source", "defaults", "isTold");
        Row("another one", "('A', 'U2')", "A|U2, B|U1, C|HAND", true);
        Row("two of one article", "('A', 'U1'), ('A', 'U2')", "A|U1, A|U2, B|U1, C|HAND", false);
        Row("article that it lacks", "('B', 'U1')", "A|U1, B|U1, C|HAND", true);
        Row("somebody's own", "('C', 'U1')", "A|U1, B|U1, C|HAND, C|U1", true);
    }
    void locationsFollowTheSource() {
        QFETCH(const QString, source);
        Trial import("CREATE TABLE POSTI (ART VARCHAR(5), POSTO VARCHAR(5)); INSERT INTO POSTI VALUES ('A', 'U1'), "
                     "('B', 'U1')");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('A'), ('B'), ('C')");
        import.Execute("INSERT INTO X01_UBI_ART (CDART, CDUBI, UADEF, USINS) VALUES ('C', 'HAND', 1, 'ANNA')");
        const Locations locations{.frame = FrameNamed("ImportPosti"),
                                  .source = {.table = "POSTI", .key = "ART", .order = "ART, POSTO"},
                                  .article = {"ART", ArticleCode("POSTI", "ART")},
                                  .location = "POSTO"};
        const QString defaults = "SELECT CDART, CDUBI FROM X01_UBI_ART WHERE UADEF = 1 ORDER BY CDART, CDUBI";
        const Procedure procedure = ProcedureOf(std::nullopt, locations);
        procedure.run(import.Get(), {}, false);
        import.Get().Source->Execute("DELETE FROM POSTI");
        import.Get().Source->Execute("INSERT INTO POSTI VALUES " + source);
        procedure.run(import.Get(), {}, false);
        QTEST(import.Rows(defaults).join(", "), "defaults");
        QTEST(import.Log().contains("articolo 'A', 'U1': 1 rimane"), "isTold");
        import.Get().Source->Execute("DELETE FROM POSTI");
        import.Get().Source->Execute("INSERT INTO POSTI VALUES ('A', 'U1')");
        procedure.run(import.Get(), {}, false); // it is there again
        QVERIFY(import.Rows(defaults).contains("A|U1"));
    }

    /// Without a code of its own a row is found again by its keys; one of an article that is not there stays behind.
    void rowsFoundByTheirKeys() {
        Trial import(R"(
CREATE TABLE CONTROLLI (ARTICOLO VARCHAR(10), FASE VARCHAR(5), NUM INT, MASSIMO REAL);
INSERT INTO CONTROLLI VALUES ('AB', '10', 1, 2.5), ('AB', NULL, 1, 3), ('AB', '10', 2, 4), ('ZZ', '10', 1, 1);
CREATE TABLE LETTERE (CLIENTE VARCHAR(8), ANNO INT, NUMERO VARCHAR(8), FINO VARCHAR(10));
INSERT INTO LETTERE VALUES ('C1', 2024, '12', '2024-12-31'), ('C9', 2024, '13', NULL), ('C1', 2025, '12', NULL);
)");
        import.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('AB')");
        import.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE) VALUES ('000001', 'C1')");
        const BaseTable checks{.frame = FrameNamed("ImportControlli"),
                               .source = {.table = "CONTROLLI", .key = "ARTICOLO", .order = "ARTICOLO, NUM"},
                               .target = "CHK_LST",
                               .lines = {{"CDART", "ARTICOLO", ArticleCode("CONTROLLI", "ARTICOLO")},
                                         {"CKFAS", "FASE", NotBlank(Text())},
                                         {"CKSEQ", "NUM", RoundedTo(0)},
                                         {"CKMAX", "MASSIMO", RoundedTo(6)}},
                               .keys = {"CDART", "CKFAS", "CKSEQ"}};
        const BaseTable letters{.frame = FrameNamed("ImportLettere"),
                                .source = {.table = "LETTERE", .key = "NUMERO", .order = "ANNO, NUMERO"},
                                .target = "DIC_INT",
                                .lines = {{"DICON", "CLIENTE", CustomerOf()},
                                          {"DIANN", "ANNO", RoundedTo(0)},
                                          {"DINUM", "NUMERO", Text()},
                                          {"DIVAL", "FINO", Day()}},
                                .keys = {"DICON", "DIANN", "DINUM"}};
        const QString rows = "SELECT CDART, CKFAS, CKSEQ, CKMAX FROM X01_CHK_LST UNION ALL SELECT DICON, DINUM, DIANN, "
                             "DIVAL FROM X01_DIC_INT";
        const RunResult result =
            import.Run(ProcedureOf(std::nullopt, FrameNamed("Import"), {PartOf(checks), PartOf(letters)}), rows);
        QCOMPARE(import.Rows(rows), QStringList({"AB|10|1|2.5", "AB|NULL|1|3", "AB|10|2|4",
                                                 "000001|12|2024|20241231 00:00:00", "000001|12|2025|NULL"}));
        QVERIFY(import.Again);
        QCOMPARE(result.skippedBy.keys(), QStringList({"articolo non trovato"}));
        QCOMPARE(result.givenUpCount, 1);
    }

    /// Numbers of branches and contacts that somebody has mended stay as they are.
    void mendedNumbersStay_data() {
        Columns<PartyRow, QString>("kind", "name");
        Row("of a branch", PartyRow::Branch, QString("SEIND"));
        Row("of a contact", PartyRow::Contact, QString("RFNOM"));
    }
    void mendedNumbersStay() {
        QFETCH(const PartyRow, kind);
        QFETCH(const QString, name);
        Trial import("CREATE TABLE RIGHE (CLIENTE VARCHAR(10), NOME VARCHAR(20), TEL VARCHAR(20), MAIL VARCHAR(20)); "
                     "INSERT INTO RIGHE VALUES ('7', 'Via Roma', '0464551240', 'a@b.example')");
        import.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE) VALUES ('000007', '7')");
        const PartyRows rows{.kind = kind,
                             .frame = FrameNamed("ImportRighe"),
                             .source = {.table = "RIGHE", .key = "CLIENTE", .order = "CLIENTE"},
                             .roles = Always({.customer = true}),
                             .owner = "CLIENTE",
                             .lines = {{name, "NOME", Text()}},
                             .numbers = {.office = "TEL", .mail = "MAIL"}};
        const Procedure procedure = ProcedureOf(std::nullopt, rows);
        procedure.run(import.Get(), {}, false);
        QCOMPARE(import.Rows("SELECT NRNUM FROM X01_NUM_TEL"), QStringList("0464551240"));
        import.Execute("UPDATE X01_NUM_TEL SET NRNUM = '0464999999'");
        import.Execute("DELETE FROM X01_IND_WEB");
        procedure.run(import.Get(), {}, false);
        QCOMPARE(import.Rows("SELECT NRNUM FROM X01_NUM_TEL"), QStringList("0464999999"));
        QCOMPARE(import.Value("SELECT COUNT(*) FROM X01_IND_WEB"), QString("0"));
        QCOMPARE(import.Log().count("RECAPITO DIVERSO"), 2);
        QCOMPARE(import.Get().Results.last().skipped, 1);
        import.Execute("DELETE FROM X01_NUM_TEL"); // as one that another procedure has made without numbers
        procedure.run(import.Get(), {}, false);
        QCOMPARE(import.Get().Results.last().updated, 1);
    }
};

QUADRIX_TEST(TestKindsAgain)
#include "test_kindsAgain.moc"
