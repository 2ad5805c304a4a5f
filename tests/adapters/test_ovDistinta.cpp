#include "adapters/contract/run/ImportRun.h"
#include "core/ovDistinta.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

/// A company with articles and bills, and the object that works on them.
class BillsTarget : public TestTarget {
public:
    explicit BillsTarget(On engine = On::Embedded)
        : TestTarget(engine) {}

    /// "code cost price markUp"; "-" leaves a column Null.
    void Articles(const QString& list) {
        for (const QString& line : list.split(", ", Qt::SkipEmptyParts)) {
            const QStringList words = line.split(' ');
            Insert("ART_ICO", {"CDART", "ARCOS", "ARPRZ", "ARRIC"}, words);
        }
    }
    /// "B: A x 2, C x 0.5" for each bill: its article and its components, linked to the bills of their articles.
    void Compose(const QString& bills) {
        const QStringList lines = bills.split("; ", Qt::SkipEmptyParts);
        for (const QString& line : lines) {
            Insert("DIS_BAS", {"DBART", "DBREV", "DBMAN"}, {line.section(": ", 0, 0), "0", "1"});
            m_bills.insert(line.section(": ", 0, 0), Db().LastInsertId());
        }
        for (const QString& line : lines) {
            for (const QString& part : line.section(": ", 1).split(", ", Qt::SkipEmptyParts)) {
                const QString article = part.section(" x ", 0, 0);
                const QString own = m_bills.contains(article) ? QString::number(m_bills.value(article)) : "-";
                Insert("DIS_COM", {"IDDIS", "DCART", "DCQTA", "DCCOE", "IDDBF"},
                       {QString::number(m_bills.value(line.section(": ", 0, 0))), article, part.section(" x ", 1), "1",
                        own});
            }
        }
    }
    void Insert(const QString& table, const QStringList& columns, const QStringList& values) {
        QStringList literals;
        for (qsizetype i = 0; i < columns.size(); ++i) {
            const QString value = values.value(i, "-");
            literals.append(value == "-" ? QString("NULL") : "'" + value + "'");
        }
        Execute("INSERT INTO X01_" + table + " (" + columns.join(", ") + ") VALUES (" + literals.join(", ") + ")");
    }
    qint64 Bill(const QString& article) const { return m_bills.value(article); }
    QString Amounts(const QString& article) {
        return Rows("SELECT ARCOS, ARPRZ, ARRIC FROM X01_ART_ICO WHERE CDART = '" + article + "'").value(0);
    }

    contract::ImportRun Run{Get(), "modImport_Prova", "ImportProva", "X"};
    ovDistinta Distinta{Get(),
                        [this](const QString& table) { return std::make_unique<contract::TargetRow>(Run, table); }};

private:
    QMap<QString, qint64> m_bills;
};

} // namespace

/// What bills of materials come to, worked out by hand.
class TestOvDistinta : public QObject {
    Q_OBJECT

private slots:
    void amounts_data() {
        Columns<QString, QString, QString, QString>("articles", "bills", "amounts", "told"); // of article P

        Row("components by their quantity", "P - - -, A 10 15 50, B 2 3 50", "P: A x 2, B x 0.5", "21|31.5|50", "");
        Row("levels", "P - - -, S 1 1 0, A 10 15 50", "S: A x 3; P: S x 2, A x 1", "70|105|50", "");
        Row("levels, in whatever order the bills were written", "P - - -, S 1 1 0, A 10 15 50",
            "P: S x 2, A x 1; S: A x 3", "70|105|50", "");
        Row("a sub-assembly in two places", "P - - -, L - - -, R - - -, S - - -, A 1 2 100",
            "P: L x 1, R x 2; L: S x 1; R: S x 3; S: A x 2", "14|28|100", "");
        Row("small amounts are not rounded away", "P - - -, A 0.0012 0.002 66.67", "P: A x 3", "0.0036|0.006|66.67",
            "");
        Row("a price of cost and mark-up", "P - - -, A 10 0 30", "P: A x 2", "20|26|30", "");
        Row("what is used none of needs no cost", "P - - -, A 10 15 50, B - - -", "P: A x 1, B x 0", "10|15|50", "");

        const QString keeps = "5|8|60";
        Row("a component without a cost", "P 5 8 60, A 10 15 50, B 0 3 -", "P: A x 1, B x 1", "5|18|260",
            "COSTO NON CALCOLATO: distinta 'P', revisione 0: manca per componente 'B'");
        Row("a component without a price", "P 5 8 60, A 10 15 50, B 1 0 -100", "P: A x 1, B x 1", "11|8|-27.27",
            "PREZZO NON CALCOLATO: distinta 'P', revisione 0: manca per componente 'B'");
        Row("a sub-assembly without a cost", "P 5 8 60, S 9 9 0, B - - -", "P: S x 1; S: B x 1", keeps,
            "COSTO NON CALCOLATO: distinta 'P', revisione 0: manca per componente 'S'");
        Row("an empty bill", "P 5 8 60", "P: ", keeps,
            "COSTO NON CALCOLATO: distinta 'P', revisione 0: non contiene nulla");
    }
    void amounts() {
        QFETCH(const QString, articles);
        QFETCH(const QString, bills);
        QFETCH(const QString, told);
        BillsTarget target;
        target.Articles(articles);
        target.Compose(bills);
        target.Distinta.AggiornaCostiPrezzi(target.Bill("P"));
        QTEST(target.Amounts("P"), "amounts");
        QVERIFY2(target.Log().contains(told.toLatin1()), target.Log());
        QCOMPARE(target.Log().isEmpty(), told.isEmpty());
    }

    void work_data() {
        Columns<QString, QString>("phase", "amounts"); // of P, beside a component of 10, sold at 15

        // DLTAP, DLTUP, DLNUP, DLCOS, DLRIC, DLPRZ, DLFOR
        Row("an hourly cost", "0 30 1 40 - -", "30|35|16.67");
        Row("two operators", "0 30 2 40 - -", "50|55|10");
        Row("the set-up is shared by the lot", "100 0 1 60 - -", "20|25|25");
        Row("sold for its mark-up", "0 30 1 40 50 -", "30|45|50");
        Row("sold for its own price", "0 30 1 40 50 100", "30|65|116.67");
        Row("no time needs no cost", "0 0 1 - - -", "10|15|50");
        Row("a cost that is not known", "0 30 1 0 - -", "5|8|60");
        Row("a supplier's, by its time", "0 30 1 7 - - 000009", "13.5|18.5|37.04");
        Row("a supplier's, with neither list nor time", "0 0 1 7 - - 000009", "5|8|60");
        Row("a supplier's, by his list", "0 0 1 7 10 - 000001", "27|33.7|24.81"); // 20 less 10 %, less 5.5555..: 17
    }
    void work() {
        QFETCH(const QString, phase);
        BillsTarget target;
        target.Articles("P 5 8 60, A 10 15 50");
        target.Execute("UPDATE X01_ART_ICO SET ARLOR = 10 WHERE CDART = 'P'");
        target.Compose("P: A x 1");
        QStringList values{QString::number(target.Bill("P")), "10", "TAGLIO", "0"};
        target.Insert(
            "DIS_FAS",
            {"IDDIS", "DLSEQ", "DLLAV", "DLTMP", "DLTAP", "DLTUP", "DLNUP", "DLCOS", "DLRIC", "DLPRZ", "DLFOR"},
            values + phase.split(' '));
        AddLists(target);
        target.Distinta.AggiornaCostiPrezzi(target.Bill("P"));
        QTEST(target.Amounts("P"), "amounts");
    }

    /// The second time there is nothing to write, and nothing is.
    void writesWhatHasChanged() {
        BillsTarget target;
        target.Articles("P 5 8 60, S - - -, A 10 15 50");
        target.Compose("P: S x 2; S: A x 3");
        QVERIFY(target.Distinta.AggiornaCostiPrezzi(target.Bill("P")));
        QCOMPARE(target.Rows("SELECT DCCOS, DCPRZ, DCRIC, USMDF FROM X01_DIS_COM WHERE DCART = 'S'"),
                 QStringList("30|45|50|SYSTEM_IMPORT"));
        QCOMPARE(target.Rows("SELECT ARDUC, ARDUP, DTMDF FROM X01_ART_ICO WHERE CDART = 'P'"),
                 QStringList(QStringList(3, "2024-03-05T00:00:00.000Z").join("|")));
        QCOMPARE(target.Amounts("S"), QString("NULL|NULL|NULL")); // waits for the turn of its own bill
        QVERIFY(target.Distinta.AggiornaCostiPrezzi(target.Bill("S")));
        QCOMPARE(target.Amounts("S"), QString("30|45|50"));
        QVERIFY(!target.Distinta.AggiornaCostiPrezzi(target.Bill("P")));
        QVERIFY(!target.Distinta.AggiornaCostiPrezzi(target.Bill("S")));
    }

    /// Of several revisions the one in force speaks for the article.
    void revisions() {
        BillsTarget target;
        target.Articles("P 5 8 60, A 10 15 50");
        target.Compose("P: A x 1");
        target.Insert("DIS_BAS", {"DBART", "DBREV", "DBMAN"}, {"P", "1", "0"});
        const qint64 draft = target.Db().LastInsertId();
        target.Insert("DIS_COM", {"IDDIS", "DCART", "DCQTA"}, {QString::number(draft), "A", "7"});
        target.Distinta.AggiornaCostiPrezzi(target.Bill("P"));
        QVERIFY(target.Distinta.AggiornaCostiPrezzi(draft)); // its component has gained its cost
        QCOMPARE(target.Amounts("P"), QString("10|15|50"));
        QCOMPARE(target.Distinta.NodeDistinta(draft).cost, std::optional(70.0));
    }

    void refuses_data() {
        Columns<QString, QString>("bills", "message");
        Row("a bill that contains itself", "P: P x 1", "distinta 'P', revisione 0: contiene se stessa: P > P");
        Row("over levels", "P: S x 1; S: T x 1; T: A x 1, P x 1",
            "distinta 'P', revisione 0: contiene se stessa: P > S > T > P");
        Row("below the bill", "P: S x 1; S: T x 1; T: S x 1",
            "distinta 'S', revisione 0: contiene se stessa: S > T > S");
        Row("a component that is no article", "P: S x 1; S: MANCA x 1",
            "distinta 'S', revisione 0: l'articolo 'MANCA' non c'è");
        Row("a head that is no article", "MANCA: A x 1; P: MANCA x 1",
            "distinta 'P', revisione 0: distinta 'MANCA', revisione 0: il suo articolo non c'è");
    }
    void refuses() {
        QFETCH(const QString, bills);
        BillsTarget target;
        target.Articles("P 5 8 60, S - - -, T - - -, A 10 15 50");
        target.Compose(bills);
        const auto error = ErrorOf<ImportError>([&] { target.Distinta.AggiornaCostiPrezzi(target.Bill("P")); });
        QVERIFY(error);
        QTEST(error->Message(), "message");
        QCOMPARE(target.Amounts("P"), QString("5|8|60"));
    }

    void refusesWhatIsNotThere() {
        BillsTarget target;
        target.Articles("P 5 8 60");
        target.Compose("P: ");
        QVERIFY(ErrorOf<ImportError>([&] { target.Distinta.LoadData(77); })->Message().contains("RECORD_ID 77"));
        target.Execute("INSERT INTO X01_DIS_COM (IDDIS, DCART, DCQTA, IDDBF) VALUES (1, 'P', 1, 78)");
        QCOMPARE(ErrorOf<ImportError>([&] { target.Distinta.LoadData(1); })->Message(),
                 QString("distinta 'P', revisione 0: la distinta con RECORD_ID 78 non c'è"));
        QVERIFY(ErrorOf<ImportError>([&] { target.Distinta.SaveData(); })); // nothing is loaded
        target.Execute("DELETE X01_DIS_COM");
        target.Execute("INSERT INTO X01_DIS_FAS (IDDIS, DLSEQ, DLTMP) VALUES (1, 10, 3)");
        const auto error = ErrorOf<ImportError>([&] { target.Distinta.LoadData(1); });
        QVERIFY(error && error->Message().contains("distinta 'P', revisione 0: i tempi della fase 10 sono di tipo 3"));
    }

    /// BillsTarget are nested as deep as the data say.
    void deep() {
        constexpr int levels = 4000;
        BillsTarget target;
        target.Db().Written = {}; // so many rows are made in the words of SQLite
        target.Db().BeginTrans();
        target.Execute(QString("WITH RECURSIVE N(N) AS (SELECT 0 UNION ALL SELECT N + 1 FROM N WHERE N < %1) "
                               "INSERT INTO X01_ART_ICO (CDART, ARCOS, ARPRZ) SELECT 'A' || N, 1, 2 FROM N")
                           .arg(levels));
        target.Execute("INSERT INTO X01_DIS_BAS (RECORD_ID, DBART, DBREV) SELECT RECORD_ID, CDART, 0 FROM X01_ART_ICO");
        target.Execute("INSERT INTO X01_DIS_COM (IDDIS, DCART, DCQTA, IDDBF) SELECT RECORD_ID, 'A' || RECORD_ID, 1, "
                       "CASE WHEN RECORD_ID < (SELECT MAX(RECORD_ID) FROM X01_DIS_BAS) THEN RECORD_ID + 1 END "
                       "FROM X01_DIS_BAS WHERE RECORD_ID < (SELECT MAX(RECORD_ID) FROM X01_DIS_BAS)");
        target.Execute("INSERT INTO X01_DIS_COM (IDDIS, DCART, DCQTA) SELECT MAX(RECORD_ID), 'A0', 4 FROM X01_DIS_BAS");
        target.Db().CommitTrans();
        QVERIFY(target.Distinta.AggiornaCostiPrezzi(1));
        QCOMPARE(target.Amounts("A0"), QString("4|8|100"));
    }

private:
    /// The work TAGLIO of P at two suppliers; that of 000001 costs 17 for a lot of ten.
    static void AddLists(BillsTarget& target) {
        const QStringList list{"CDLAV", "CDART", "CDFOR", "LLINV", "LLFIV"};
        const QStringList scale{"IDLSD", "SCQTA", "SCCOS", "SCSCO", "SCSC2"};
        target.Insert("LIS_LAV", list, {"TAGLIO", "P", "000001", "20200101", "20231231"}); // over
        target.Insert("LIS_LAS", scale, {"1", "999999999", "1"});
        target.Insert("LIS_LAV", list, {"TAGLIO", "P", "000001", "20240305 00:00:00", "20240305 00:00:00"});
        target.Insert("LIS_LAS", scale, {"2", "999999999", "2"});
        target.Insert("LIS_LAS", scale, {"2", "10", "20", "10", "5.555555555"});
        target.Insert("LIS_LAS", scale, {"2", "9", "30"});
        target.Insert("LIS_LAV", list, {"TAGLIO", "P", "000001", "20240306", "-"}); // not yet
        target.Insert("LIS_LAS", scale, {"3", "999999999", "3"});
    }
};

QUADRIX_TEST(TestOvDistinta)
#include "test_ovDistinta.moc"
