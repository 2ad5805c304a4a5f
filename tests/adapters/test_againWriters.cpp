#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/contract/write/Document.h"
#include "adapters/contract/write/FreeAttribute.h"
#include "adapters/contract/write/PriceList.h"
#include "adapters/contract/write/Stock.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;

namespace {

/// A company with a run of everything under way.
class WritersTarget : public TestTarget {
public:
    ImportRun Run{Get(), "modImport_Prova", "ImportProva", {}};

    WritersTarget() {
        Execute("INSERT INTO X01_ART_ICO (CDART, ARDES, ARUMS, ARCOS) VALUES ('VITE', 'Vite M8', 'PZ', 0.5)");
        Execute("INSERT INTO X01_ART_ICO (CDART, ARDES, ARUMS, ARCOS) VALUES ('DADO', 'Dado M8', 'PZ', 0.25)");
    }
    /// What the log tells of things that the source has no more, each from its kind on.
    QStringList Left() const {
        QStringList lines = QString::fromLatin1(Log()).remove('\r').split('\n').filter("NON PI");
        for (QString& line : lines) {
            line = line.mid(line.indexOf("ORIGINE: ") + 9);
        }
        return lines;
    }
};

} // namespace

/// What the writers do with what an earlier run of an import has written.
class TestAgainWriters : public QObject {
    Q_OBJECT

    static WorkPrice Price(const QString& supplier, const QVariant& quantity, double price) {
        return {.article = "VITE",
                .supplier = supplier,
                .validity = {QDate(2024, 1, 1), {}},
                .scale = {quantity, price},
                .created = {}};
    }

private slots:
    void aBlankThresholdIsAnyQuantity_data() {
        Columns<QVariant, QString>("quantity", "written");
        Row("Null", QVariant(), "999999999");
        Row("zero", QVariant(0), "999999999");
        Row("zero of a text", QVariant("0,00"), "999999999");
        Row("blank", QVariant("  "), "999999999");
        Row("ten", QVariant(10), "10");
    }
    void aBlankThresholdIsAnyQuantity() {
        QFETCH(const QVariant, quantity);
        WritersTarget target;
        PriceListWriter writer(target.Run);
        const ListHead list = writer.Head("L1", "V", "Listino");
        writer.AddScale(writer.Article(list, "VITE", {}), {quantity, 1});
        writer.AddScale(writer.Article(list, "VITE", {}), {quantity, 2});
        writer.Work(Price("000001", quantity, 3));
        QTEST(target.Rows("SELECT SCQTA FROM X01_LIS_ARS").join('|'), "written");
        QTEST(target.Rows("SELECT SCQTA FROM X01_LIS_LAS").join('|'), "written");
    }

    /// A source that tells from where on a price holds, while Quadrix keeps up to where; twice the same rows, then
    /// others.
    void pricesThatHoldFromAQuantity_data() {
        QTest::addColumn<QList<double>>("first");
        QTest::addColumn<QList<double>>("again");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("gone"); // of the last time
        const QList<double> three{0, 10, 100};
        Row("one for any quantity", QList<double>{0}, QList<double>{0}, "999999999|0", "");
        Row("the lowest begins at one", QList<double>{1, 5}, QList<double>{1, 5}, "4.999999|1 999999999|5", "");
        Row("the lowest twice", QList<double>{0, 0, 5}, QList<double>{0, 0, 5}, "4.999999|0 999999999|5", "");
        Row("a higher one twice", QList<double>{0, 5, 5}, QList<double>{0, 5, 5}, "4.999999|0 999999999|5", "");
        Row("three", three, three, "9.999999|0 99.999999|10 999999999|100", "");
        Row("parts of a unit", QList<double>{0, 0.5}, QList<double>{0, 0.5}, "0.499999|0 999999999|0.5", "");
        Row("a new one between", three, QList<double>{0, 10, 50, 100},
            "9.999999|0 49.999999|10 99.999999|50 999999999|100", "");
        Row("one that is there no more", three, QList<double>{0, 100}, "99.999999|0 999999999|100", "un prezzo da 10");
        Row("the lowest is there no more", three, QList<double>{10, 100}, "99.999999|10 999999999|100",
            "il prezzo fino a 9.999999");
        Row("one that begins elsewhere", QList<double>{0, 50}, QList<double>{0, 100}, "99.999999|0 999999999|100",
            "un prezzo da 50");
        Row("only the lowest is left", three, QList<double>{0}, "999999999|0", "un prezzo da 10; un prezzo da 100");
        Row("in any order", QList<double>{100, 0, 10}, three, "9.999999|0 99.999999|10 999999999|100", "");
        Row("the lowest begins elsewhere", QList<double>{1, 10}, QList<double>{2, 10}, "9.999999|2 999999999|10", "");
    }
    void pricesThatHoldFromAQuantity() {
        QFETCH(const QList<double>, first);
        QFETCH(const QList<double>, again);
        WritersTarget target;
        for (const QList<double>& quantities : {first, first, again}) {
            PriceListWriter writer(target.Run);
            for (const double from : quantities) {
                writer.AddScaleFrom(writer.Article(writer.Head("L1", "V", "Listino"), "VITE", {}), {from, from});
            }
            writer.EndSteps();
        }
        QTEST(target.Rows("SELECT SCQTA, SCPRZ FROM X01_LIS_ARS ORDER BY SCQTA").join(' '), "written");
        QStringList gone = QString::fromLatin1(target.Log()).remove('\r').split('\n').filter("PREZZO TOLTO");
        for (QString& line : gone) {
            line = line.section("listino 'L1', articolo 'VITE': l'origine non ha più ", 1);
        }
        QTEST(gone.join("; "), "gone");
    }

    /// Also where the supplier has been imported since, and where the source has two alike.
    void workPricesAreRewritten() {
        WritersTarget target;
        PriceListWriter first(target.Run);
        first.Work(Price("000001", 0, 1));
        first.Work(Price("000001", 0, 2));
        first.Work(Price("000001", 10, 3));
        first.Work(Price({}, 0, 4));
        PriceListWriter again(target.Run);
        again.BeginWorks("VITE");
        again.Work(Price("000001", QVariant(), 5));
        again.Work(Price("000001", 0, 6));
        again.Work(Price("000001", 10, 7));
        again.Work(Price("000002", 0, 8));
        again.Work(Price("000003", 0, 9));
        QCOMPARE(target.Rows("SELECT L.CDFOR, S.SCQTA, S.SCCOS FROM X01_LIS_LAV L JOIN X01_LIS_LAS S ON S.IDLSD = "
                             "L.RECORD_ID ORDER BY L.RECORD_ID"),
                 QStringList({"000001|999999999|5", "000001|999999999|6", "000001|10|7", "000002|999999999|8",
                              "000003|999999999|9"}));
    }

    /// A second import of other prices of works: one that another has replaced would go on holding beside it.
    void workPricesThatHaveGone_data() {
        Columns<QString, bool, QString, QString, QString>("byHand", "again", "written", "gone", "told");
        const QString hand("UPDATE X01_LIS_LAS SET USMDF = 'ANNA'");
        const QString all("000001|999999999|1 000002|999999999|2 000003|999999999|7 000001|5|3");
        Row("as imported", QString(), false, "000002|999999999|2 000003|999999999|7 000001|5|3", "1", "1 rimane");
        Row("changed by hand", hand, false, all, "0", "2 rimangono");
        Row("another code of the article has them", QString(), true, all, "0", "");
    }
    void workPricesThatHaveGone() {
        QFETCH(const QString, byHand);
        QFETCH(const bool, again);
        QFETCH(const QString, told);
        WritersTarget target;
        const auto write = [](PriceListWriter& writer) {
            writer.BeginWorks("VITE");
            writer.Work(Price("000001", 0, 1));
            writer.Work(Price("000002", 0, 2));
            writer.Work(Price("000003", 0, 7));
        };
        PriceListWriter first(target.Run);
        write(first);
        first.EndWorks();
        QVERIFY(target.Left().isEmpty());
        if (!byHand.isEmpty()) {
            target.Execute(byHand);
        }
        PriceListWriter second(target.Run);
        if (again) {
            write(second);
        }
        second.BeginWorks("VITE");
        second.Work(Price("000001", 5, 3));
        second.Work(Price("000003", 0, 7));
        second.EndWorks();
        QTEST(target
                  .Rows("SELECT L.CDFOR, S.SCQTA, S.SCCOS FROM X01_LIS_LAV L JOIN X01_LIS_LAS S ON S.IDLSD = "
                        "L.RECORD_ID ORDER BY L.RECORD_ID")
                  .join(' '),
              "written");
        QTEST(QString::number(target.Log().count("PREZZO TOLTO")), "gone");
        QCOMPARE(target.Left().isEmpty(), told.isEmpty());
        QVERIFY2(target.Left().join(' ').contains(told), target.Log());
    }

    /// The name of a list that somebody has made by hand.
    void renamedListsAreTold() {
        WritersTarget target;
        target.Execute("INSERT INTO X01_LIS_TES (CDLIS, LTTIP, LTDES, LTVAL, USINS) VALUES ('A', 'V', 'Promo', 'EUR', "
                       "'ANNA'), ('B', 'V', 'Promo', 'EUR', 'SYSTEM_IMPORT')");
        for (const char* list : {"A", "B", "A"}) {
            PriceListWriter(target.Run).Head(list, "V", "Base");
        }
        QCOMPARE(target.Rows("SELECT LTDES FROM X01_LIS_TES"), QStringList({"Base", "Base"}));
        QCOMPARE(target.Log().count("LISTINO RINOMINATO"), 1);
    }

    /// Two codes of a source that are one article.
    void articlesOfTwoCodesAreTold_data() {
        Columns<QString, QString, QString, QString>("first", "second", "article", "told");
        const QString longest(50, 'L');
        Row("the same", "AB", "AB", "AB", "");
        Row("in another case", "ab", "AB", "AB", "ARTICOLO DOPPIO: : 'AB' e un altro codice");
        Row("translated", "OLD", "AB", "AB", "ARTICOLO DOPPIO: : 'AB' e un altro codice");
        Row("cut", longest + "1", longest + "2", longest, "tagliato a 50 caratteri, è quello di un'altra riga");
        Row("cut, of which one is whole", longest, longest + "2", longest, "tagliato a 50 caratteri");
    }
    void articlesOfTwoCodesAreTold() {
        QFETCH(const QString, first);
        QFETCH(const QString, second);
        QFETCH(const QString, article);
        QFETCH(const QString, told);
        WritersTarget target;
        ArticleWriter writer(target.Run);
        writer.Claim(article, first);
        writer.Claim("DADO", "DADO");
        const auto error = ErrorOf<ImportError>([&] { writer.Claim(article, second); });
        const QString log = QString::fromLatin1(target.Log());
        QVERIFY2(error ? error->Message().contains(told) : log.contains(told), target.Log());
        QCOMPARE(!error && log.contains("ARTICOLO"), told.startsWith("ARTICOLO"));
    }

    void historyWithoutADayIsWrittenOnce() {
        WritersTarget target;
        const ArticleWriter writer(target.Run);
        for (int run = 0; run < 2; ++run) {
            writer.Cost({"VITE", {}, 5, {}, "senza data", {}});
            writer.Cost({"VITE", QDate(2024, 1, 1), 6, {}, {}, {}});
        }
        QCOMPARE(target.Rows("SELECT STDAT, STCOS FROM X01_STO_COS").size(), qsizetype{2});
    }

    /// The opening movement of a warehouse and year is one; a balance that has gone to zero does not stay.
    void openingBalancesAreRewritten() {
        WritersTarget target;
        StockWriter first(target.Run);
        first.Balance({.warehouse = "001", .article = "VITE", .quantity = 3});
        first.Balance({.warehouse = "001", .article = "VITE", .quantity = 4, .location = "A1"});
        first.Balance({.warehouse = "001", .article = "DADO", .quantity = 7});
        first.Balance({.warehouse = "001", .article = "DADO", .quantity = 8, .location = "A1"});
        StockWriter again(target.Run);
        QCOMPARE(again.Balance({.warehouse = "001", .article = "VITE", .quantity = 4, .location = "A1"}),
                 RowOutcome::Updated);
        QCOMPARE(again.Balance({.warehouse = "001", .article = "VITE", .quantity = 0}), RowOutcome::Updated);
        QCOMPARE(again.Balance({.warehouse = "001", .article = "VITE", .quantity = 5}), RowOutcome::Inserted);
        QCOMPARE(again.Balance({.warehouse = "001", .article = "VITE", .quantity = 6}), RowOutcome::Inserted);
        QCOMPARE(target.Rows("SELECT MRTES, MRNUM, MRART, MRUBI, MRQTA, MRVAL FROM X01_MOV_MAR ORDER BY MRNUM"),
                 QStringList({"1|1|VITE|NULL|0|0", "1|2|VITE|A1|4|2", "1|3|DADO|NULL|7|1.75", "1|4|DADO|A1|8|2",
                              "1|5|VITE|NULL|5|2.5", "1|6|VITE|NULL|6|3"}));
        QVERIFY(target.Left().isEmpty());
        again.TellRowsLeft();
        QCOMPARE(target.Left(), QStringList{"movimento 1/2024, magazzino '001': 2 rimangono in Quadrix"});
        target.Get().UserManager.DataElaborazione = QDate(2025, 1, 2);
        StockWriter(target.Run).Balance({.warehouse = "001", .article = "VITE", .quantity = 1});
        QCOMPARE(target.Rows("SELECT MMANN, MMNUM FROM X01_MOV_MAG"), QStringList({"2024|1", "2025|1"}));
    }

    /// Two origins have stock of one article in one warehouse: each rewrites its own, and tells of its own alone. A
    /// movement that is nobody's yet goes to the first that finds it.
    void aMovementIsOfOneOrigin_data() {
        Columns<bool, QStringList, QStringList>("kept", "written", "left");
        Row("both are new", true, QStringList({"1|VITE|4", "1|DADO|7", "2|VITE|5"}),
            QStringList{"movimento 1/2024, magazzino '001': 1 rimane in Quadrix"});
        Row("of before", false, QStringList({"1|VITE|4", "1|DADO|7", "2|VITE|5"}),
            QStringList{"movimento 1/2024, magazzino '001': 1 rimane in Quadrix"});
    }
    void aMovementIsOfOneOrigin() {
        QFETCH(const bool, kept);
        WritersTarget target;
        ImportRun other(target.Get(), "modImport_Altra", "ImportSaldiAltra", {});
        StockWriter(target.Run).Balance("001", "VITE", 3);
        StockWriter(target.Run).Balance("001", "DADO", 7);
        if (!kept) {
            target.Execute("DELETE FROM SYS_IMP");
            target.Get().Translations.clear();
        } else {
            StockWriter(other).Balance("001", "VITE", 6);
        }
        StockWriter again(target.Run);
        QCOMPARE(again.Balance("001", "VITE", 4), RowOutcome::Updated);
        StockWriter others(other);
        QCOMPARE(others.Balance("001", "VITE", 5), kept ? RowOutcome::Updated : RowOutcome::Inserted);
        again.TellRowsLeft();
        others.TellRowsLeft();
        QTEST(target.Rows("SELECT MRTES, MRART, MRQTA FROM X01_MOV_MAR ORDER BY RECORD_ID"), "written");
        QTEST(target.Left(), "left");
        // The numbers begin anew behind an emptying: who comes first takes the one that was another's.
        target.Execute("DELETE FROM X01_MOV_MAG");
        StockWriter(other).Balance("001", "VITE", 5);
        QCOMPARE(target.Rows("SELECT TBNEW FROM SYS_IMP WHERE TBOLD = '2024/1'"), QStringList{"modImport_Altra"});
    }

    /// A balance whose warehouse is known by now takes the row of its quantity with it, and none of another.
    void aBalanceLeavesItsWarehouse_data() {
        Columns<QString, double, QString>("article", "quantity", "written");
        Row("several are alike", "VITE", 4.0, "1|001|VITE|3 2|002|VITE|4 1|001|DADO|7");
        Row("of another quantity", "VITE", 5.0, "give up");
        Row("none is there", "ROSETTA", 2.0, "1|001|VITE|3 1|001|VITE|4 1|001|DADO|7 2|002|ROSETTA|2");
    }
    void aBalanceLeavesItsWarehouse() {
        QFETCH(const QString, article);
        QFETCH(const double, quantity);
        QFETCH(const QString, written);
        WritersTarget target;
        target.Execute("INSERT INTO X01_ART_ICO (CDART, ARDES) VALUES ('ROSETTA', 'Rosetta')");
        StockWriter first(target.Run);
        first.Balance("001", "VITE", 3);
        first.Balance("001", "VITE", 4);
        first.Balance("001", "DADO", 7);
        StockWriter again(target.Run);
        const StockLine line{.warehouse = "002", .article = article, .quantity = quantity, .left = "001"};
        if (written == "give up") {
            QVERIFY_THROWS_EXCEPTION(ImportError, again.Balance(line));
            return;
        }
        again.Balance(line);
        QCOMPARE(target.Rows("SELECT MRTES, MRMAG, MRART, MRQTA FROM X01_MOV_MAR ORDER BY RECORD_ID").join(' '),
                 written);
    }

    /// A row that is tried again rewrites what its first attempt rewrote, and a movement of a hand is nobody's.
    void stockIsRewrittenOnceForARow() {
        WritersTarget target;
        target.Execute(
            "INSERT INTO X01_MOV_MAG (MMANN, MMNUM, MMMAG, MMINV, USINS) VALUES (2024, 1, '001', 1, 'ANNA')");
        StockWriter(target.Run).Balance("001", "VITE", 3);
        Session& session = target.Get();
        session.Source = std::make_unique<ovConnection>();
        OpenEmbedded(*session.Source).ExecuteScript("CREATE TABLE g (cod VARCHAR(9)); INSERT INTO g VALUES ('VITE')");
        session.Errors.Action = ErrorAction::Retry;
        int attempts = 0;
        StockWriter again(target.Run);
        target.Run.Guard([&] {
            target.Run.Rows({"Saldi", "g", "cod", "SELECT COUNT(*) FROM g", "SELECT * FROM g"}, [&](const SourceRow&) {
                const RowOutcome outcome = again.Balance("001", "VITE", 4);
                if (++attempts < 3) {
                    throw ImportError("non ancora");
                }
                return outcome;
            });
        });
        QCOMPARE(attempts, 3);
        QCOMPARE(target.Rows("SELECT MRTES, MRQTA FROM X01_MOV_MAR"), QStringList{"2|4"});
    }

    void documentsOfTheSourceAreTellingOfTheRest() {
        WritersTarget target;
        for (const char* head : {"'SYSTEM_IMPORT', 'ORDCL', 1, '20240201'", "'SYSTEM_IMPORT', 'ORDCL', 2, '20240201'",
                                 "'SYSTEM_IMPORT', 'ORDCL', 3, '20230201'", "'SYSTEM_IMPORT', 'DDT', 4, '20240201'",
                                 "'ANNA', 'ORDCL', 5, '20240201'", "'SYSTEM_IMPORT', 'ORDCL', 6, '20240301'"}) {
            target.Execute(QString("INSERT INTO X01_DOC_VEN (USINS, DTCAU, DTNUM, DTDAT, DTANN, DTRAS) VALUES (%1, "
                                   "2024, 'Rossi')")
                               .arg(head));
        }
        DocumentWriter writer(target.Run, Sales);
        writer.Saw(1);
        writer.TellDocumentsLeft({"ORDCL"}, QDate(2024, 1, 1));
        QCOMPARE(target.Left(), QStringList({"ORDCL 2/2024 di 'Rossi': 1 rimane in Quadrix",
                                             "ORDCL 6/2024 di 'Rossi': 1 rimane in Quadrix"}));
    }

    void componentsThatTheSourceHasNoMoreAreTold() {
        WritersTarget target;
        BillWriter bills(target.Run);
        bills.Begin("VITE", "V");
        bills.Write(Component{"DADO", 2}, bills.Write(Phase{}));
        bills.TellComponentsLeft();
        target.Execute("INSERT INTO X01_DIS_COM (IDDIS, DCART, USINS) VALUES (1, 'A MANO', 'ANNA')");
        QVERIFY(target.Left().isEmpty());
        bills.Begin("VITE", "V");
        bills.TellComponentsLeft();
        QCOMPARE(target.Left().size(), qsizetype{1});
        QVERIFY2(target.Left().first().contains("'DADO': 1 rimane"), qPrintable(target.Left().first()));
    }

    /// The phase that a bill had while the source told none goes, whatever it consumes; one by hand stays untold.
    void phasesThatTheSourceHasNoMoreAreTold() {
        WritersTarget target;
        BillWriter bills(target.Run);
        bills.Begin("VITE", "V");
        bills.Write(Component{"DADO", 2}, bills.Write(Phase{}));
        bills.ClosePhases();
        bills.Begin("VITE", "V");
        bills.Write(Phase{.sequence = 20, .work = "TAGLIO"});
        bills.Write(Phase{.sequence = 30, .work = "GEN", .unitTime = 1});
        bills.ClosePhases();
        target.Execute("INSERT INTO X01_DIS_FAS (IDDIS, DLSEQ, DLLAV, USINS) VALUES (1, 40, 'A MANO', 'ANNA')");
        const QString rows = "SELECT F.DLSEQ, C.DCART FROM X01_DIS_FAS F LEFT JOIN X01_DIS_COM C ON C.IDDBL = "
                             "F.RECORD_ID ORDER BY F.DLSEQ";
        QCOMPARE(target.Rows(rows), QStringList({"20|DADO", "30|NULL", "40|NULL"}));
        QVERIFY(target.Left().isEmpty());
        bills.Begin("VITE", "V");
        bills.Write(Phase{.sequence = 20, .work = "TAGLIO"});
        bills.ClosePhases();
        QCOMPARE(target.Left().size(), qsizetype{1});
        QVERIFY2(target.Left().first().contains("'30 GEN': 1 rimane"), qPrintable(target.Left().first()));
        QCOMPARE(target.Rows(rows).size(), qsizetype{3});
        bills.Begin("VITE", "V"); // the source has none of them any more
        bills.Write(Component{"DADO", 2}, bills.WriteGeneric());
        bills.ClosePhases();
        QCOMPARE(target.Rows(rows), QStringList({"20|DADO", "30|NULL", "40|NULL"}));
        QVERIFY2(target.Left().last().contains("'20 TAGLIO'"), qPrintable(target.Left().last()));
    }

    /// An import that knows no phases hangs its components on what is there, and writes over none.
    void aPhaseThatIsThereStays_data() {
        Columns<QString, QString>("change", "written");
        Row("nothing", "", "10|GEN|0|NULL|DADO");
        Row("filled in", "UPDATE X01_DIS_FAS SET DLLAV = 'TORN', DLTAP = 15", "10|TORN|15|NULL|DADO");
        Row("with a cost", "UPDATE X01_DIS_FAS SET DLCOS = 42", "10|GEN|0|42|DADO");
        Row("by hand", "UPDATE X01_DIS_FAS SET DLLAV = 'TORN', USINS = 'ANNA'", "10|TORN|0|NULL|DADO");
        Row("by hand elsewhere", "UPDATE X01_DIS_FAS SET DLSEQ = 30, USINS = 'ANNA'", "30|GEN|0|NULL|DADO");
        Row("gone", "DELETE FROM X01_DIS_FAS", "10|GEN|0|NULL|DADO");
    }
    void aPhaseThatIsThereStays() {
        QFETCH(const QString, change);
        WritersTarget target;
        for (int run = 0; run < 2; ++run) {
            BillWriter bills(target.Run);
            bills.Begin("VITE", "V");
            bills.Write(Component{"DADO", 2}, bills.KeepPhase());
            bills.ClosePhases();
            if (run == 0 && !change.isEmpty()) {
                target.Execute(change);
            }
        }
        QTEST(target
                  .Rows("SELECT F.DLSEQ, F.DLLAV, F.DLTAP, CASE WHEN F.DLCOS <> 0 THEN F.DLCOS END, C.DCART FROM "
                        "X01_DIS_FAS F LEFT JOIN "
                        "X01_DIS_COM C ON C.IDDBL = F.RECORD_ID ORDER BY F.DLSEQ")
                  .join(' '),
              "written");
        QVERIFY(target.Left().isEmpty());
    }

    /// Of several rows of an article, as a sheet has them for its suppliers, one tells the attribute.
    void anAttributeThatTheRunHasWrittenStays() {
        WritersTarget target;
        const QString attributes = "SELECT FLFLD, FLVAL FROM X01_FLD_VAL ORDER BY FLFLD";
        FreeAttributeWriter first(target.Run);
        first.Write({"ART_ICO", "VITE", "Lega", "S235"});
        first.Write({"ART_ICO", "VITE", "lega", ""});
        first.Write({"ART_ICO", "VITE", "Colore", "rosso"});
        QCOMPARE(target.Rows(attributes), QStringList({"Colore|rosso", "Lega|S235"}));
        FreeAttributeWriter again(target.Run);
        again.Write({"ART_ICO", "VITE", "Lega", ""});
        again.Write({"ART_ICO", "VITE", "Colore", "blu"});
        QCOMPARE(target.Rows(attributes), QStringList{"Colore|blu"});
    }

    /// What another kind of stock of the module has, and what is another's, is none that is left.
    void aWarehouseThatIsEmptyIsTold() {
        WritersTarget target;
        ImportRun other(target.Get(), "modImport_Altra", "ImportSaldiAltra", {});
        StockWriter first(target.Run);
        first.Balance("001", "VITE", 3);
        first.Balance("002", "VITE", 4);
        first.Balance({.warehouse = "003", .article = "VITE", .quantity = 1, .sheet = true});
        StockWriter(other).Balance("004", "VITE", 5);
        StockWriter again(target.Run);
        again.Balance("001", "VITE", 3);
        again.TellRowsLeft();
        StockWriter none(target.Run);
        none.TellRowsLeft();
        none.WritesLike({.warehouse = "003", .article = "VITE", .sheet = true});
        none.TellRowsLeft();
        QCOMPARE(target.Left(), QStringList({"movimento 2/2024, magazzino '002': 1 rimane in Quadrix",
                                             "movimento 3/2024, magazzino '003': 1 rimane in Quadrix"}));
    }

    /// A row that is given up with what belongs to it was not left out by a rule.
    void rowsLeftOutAreCountedByTheirRule() {
        WritersTarget target;
        Session& session = target.Get();
        session.Source = std::make_unique<ovConnection>();
        OpenEmbedded(*session.Source)
            .ExecuteScript("CREATE TABLE g (doc VARCHAR(9), rig INTEGER); INSERT INTO g VALUES ('A', 1), ('A', 2), "
                           "('A', 3), ('B', 1), ('B', 2)");
        session.Errors.Action = ErrorAction::Ignore;
        target.Run.Guard([&] {
            target.Run.Rows({"Prova", "g", "doc, rig", "SELECT COUNT(*) FROM g", "SELECT * FROM g", {"doc"}},
                            [&](const SourceRow& row) {
                                if (row.Text("doc") == "B" && row.Text("rig") == "2") {
                                    throw ImportError("guasta");
                                }
                                return target.Run.Skip(row.Text("rig") == "1" ? "prima" : "altra");
                            });
        });
        const RunResult& result = session.Results.last();
        QCOMPARE(result.skippedBy, (QMap<QString, qint64>{{"prima", 1}, {"altra", 2}}));
        QCOMPARE(result.skipped, qint64{3});
        QVERIFY(result.AddsUp());
    }
};

QUADRIX_TEST(TestAgainWriters)
#include "test_againWriters.moc"
