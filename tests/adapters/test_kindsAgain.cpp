#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/Bills.h"
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
};

QUADRIX_TEST(TestKindsAgain)
#include "test_kindsAgain.moc"
