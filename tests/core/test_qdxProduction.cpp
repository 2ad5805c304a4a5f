#include "core/qdxProduction.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

/// A head of a document of the company X01, whose totals are written as they come.
class Head final : public Record {
public:
    Head(TestTarget& target, QString table)
        : m_target(target),
          m_table(std::move(table)) {}

    Record& Set(QAnyStringView column, const QVariant& value) override {
        m_values += column.toString() + " = " + QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        return *this;
    }
    void Insert() override { QFAIL("the head is there"); }
    void Update(const QString& /*where*/) override { QFAIL("nobody has changed the head"); }
    void UpdateDerived(qint64 id, const QVariantMap& before) override {
        Before = before;
        m_target.Execute(
            QString("UPDATE X01_%1 SET %2 WHERE RECORD_ID = %3").arg(m_table, m_values.join(", ")).arg(id));
    }

    QVariantMap Before;

private:
    TestTarget& m_target;
    QString m_table;
    QStringList m_values;
};

} // namespace

/// Totals of documents, computed by hand.
class TestQdxProduction : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_target = std::make_unique<TestTarget>(); }
    void cleanupTestCase() { m_target.reset(); }

    void totals_data() {
        QTest::addColumn<QString>("head");   // discounts in percent, packing, transport
        QTest::addColumn<QString>("rows");   // VAT code and amount; "D" in front: a text
        QTest::addColumn<QString>("totals"); // goods, discount, taxable, tax, total

        Row("one row", "", "022 100", "100|0|100|22|122");
        Row("two VAT codes", "", "022 100, 010 50", "150|0|150|27|177");
        Row("rate zero", "", "N3 100, 022 1", "101|0|101|0.22|101.22");
        Row("without a VAT code", "", "- 100", "100|0|100|0|100");
        Row("a text does not count", "", "022 100, D022 999", "100|0|100|22|122");
        Row("no rows", "", "", "0|0|0|0|0");

        Row("tenths add up", "", QString("022 0.1, ").repeated(9) + "022 0.1", "1|0|1|0.22|1.22");
        Row("a row of half a cent", "", "022 1.005, 022 1.005", "2.02|0|2.02|0.44|2.46");
        Row("tax of half a cent", "", "022 0.25", "0.25|0|0.25|0.06|0.31");
        Row("tax is rounded by code, not by row", "", "022 0.02, 022 0.02, 022 0.02", "0.06|0|0.06|0.01|0.07");
        Row("large", "", "022 9999999.99", "9999999.99|0|9999999.99|2200000|12199999.99");

        // 10 % of 200, then 5 % of 180
        Row("two discounts", "DTSCO 10, DTSCI 5", "022 200", "200|29|171|37.62|208.62");
        Row("discount of half a cent", "DTSCO 50", "022 0.05", "0.05|0.03|0.02|0|0.02");
        Row("everything discounted", "DTSCO 100", "022 80", "80|80|0|0|0");
        // 90 spread as 66.67 to 33.33: 60.00 at 4 %, the rest at 22 %
        Row("discount over two codes", "DTSCO 10", "022 33.33, 004 66.67", "100|10|90|9|99");

        Row("packing and transport", "DTSIM 5, DTSTR 7.5", "022 100", "100|0|112.5|24.75|137.25");
        // 30.10 over three equal codes: 10.03 at 4 %, 10.03 at 10 %, 10.04 at 22 %
        Row("the last code takes the rest", "DTSIM 0.1", "022 10, 004 10, 010 10", "30|0|30.1|3.61|33.71");
        Row("discount, then charges", "DTSCO 10, DTSTR 10", "022 100", "100|10|100|22|122");
        Row("charges alone", "DTSTR 10", "", "0|0|10|0|10");

        Row("a return", "", "022 -50", "-50|0|-50|-11|-61");
        Row("a row taken back, transport stays", "DTSTR 10", "022 100, 022 -100", "0|0|10|2.2|12.2");
        // what is sold and what comes back are taxed at their own rates
        Row("an exchange", "", "022 100, 010 -100", "0|0|0|12|12");
        Row("an exchange, nearly", "DTSCO 10", "022 100, 010 -90", "10|1|9|11.7|20.7");
        // 5.00 of the transport at 10 %, 5.00 at 22 %
        Row("an exchange with transport", "DTSTR 10", "022 100, 010 -100", "0|0|10|13.6|23.6");
    }
    void totals() {
        QFETCH(const QString, head);
        QFETCH(const QString, rows);
        TestTarget& target = *m_target;
        const qint64 other = AddHead(target, "DOC_VEN", {});
        AddRows(target, "DOC_VER", other, "022 1000");
        const qint64 id = AddHead(target, "DOC_VEN", head);
        AddRows(target, "DOC_VER", id, rows);
        Total(target, "DOC_VEN", id);
        QTEST(TotalsOf(target, "DOC_VEN", id), "totals");
        QCOMPARE(TotalsOf(target, "DOC_VEN", other), QString("NULL|NULL|NULL|NULL|NULL"));
    }

    void everyFamily_data() {
        Columns<QString, QString>("head", "row");
        Row("purchases", "DOC_ACQ", "DOC_ACR");
        Row("work account", "DOC_CTL", "DOC_CTR");
        Row("within the company", "DOC_ICO", "DOC_ICR");
    }
    void everyFamily() {
        QFETCH(const QString, head);
        QFETCH(const QString, row);
        TestTarget& target = *m_target;
        const qint64 id = AddHead(target, head, {});
        AddRows(target, row, id, "010 10");
        AddRows(target, "DOC_VER", id, "022 1000");
        QCOMPARE(Total(target, head, id).value("DTTOT"), QVariant());
        QCOMPARE(TotalsOf(target, head, id), QString("10|0|10|1|11"));
        QCOMPARE(Total(target, head, id).value("DTTOT").toDouble(), 11.0); // what the head had is told
    }

    /// What would leave the totals wrong is an error that says of which document, and the head stays as it was.
    void refuses() {
        TestTarget& target = *m_target;
        const qint64 id = AddHead(target, "DOC_VEN", {});
        AddRows(target, "DOC_VER", id, "022 10, 99 10");
        const auto error = ErrorOf<ImportError>([&] { Total(target, "DOC_VEN", id); });
        QVERIFY(error);
        QCOMPARE(error->Message(), QString("documento DOC_VEN, RECORD_ID %1: il codice IVA '99' manca in TAB_IVA, "
                                           "l'imposta non si può calcolare")
                                       .arg(id));
        QCOMPARE(TotalsOf(target, "DOC_VEN", id), QString("NULL|NULL|NULL|NULL|NULL"));
        QVERIFY(ErrorOf<ImportError>([&] { Total(target, "DOC_VEN", 77); }));
        QVERIFY(ErrorOf<ImportError>([&] { Total(target, "CON_TRO", id); }));
    }

private:
    /// Writes the totals; returns those that the head had.
    static QVariantMap Total(TestTarget& target, const QString& table, qint64 id) {
        Head head(target, table);
        qdxProduction::qdxDocAggiornaTotale(target.Get(), table, id, head);
        return head.Before;
    }
    static qint64 AddHead(TestTarget& target, const QString& table, const QString& values) {
        QStringList columns{"DTANL"};
        QStringList numbers{"0"};
        for (const QString& value : values.split(", ", Qt::SkipEmptyParts)) {
            columns.append(value.section(' ', 0, 0));
            numbers.append(value.section(' ', 1, 1));
        }
        target.Execute(
            QString("INSERT INTO X01_%1 (%2) VALUES (%3)").arg(table, columns.join(", "), numbers.join(", ")));
        return target.Db().LastInsertId();
    }

    static void AddRows(TestTarget& target, const QString& table, qint64 head, const QString& rows) {
        for (const QString& row : rows.split(", ", Qt::SkipEmptyParts)) {
            const QString code = row.section(' ', 0, 0);
            const bool isText = code.startsWith('D');
            target.Execute(QString("INSERT INTO X01_%1 (IDTES, DRTIP, DRIVA, DRTOT) VALUES (%2, '%3', '%4', %5)")
                               .arg(table)
                               .arg(head)
                               .arg(isText ? "D" : "N", code == "-" ? QString() : code.mid(isText ? 1 : 0),
                                    row.section(' ', 1, 1)));
        }
    }

    static QString TotalsOf(TestTarget& target, const QString& table, qint64 id) {
        return target
            .Rows(
                QString("SELECT DTMER, DTSCT, DTIMP, DTIVA, DTTOT FROM X01_%1 WHERE RECORD_ID = %2").arg(table).arg(id))
            .value(0);
    }

    std::unique_ptr<TestTarget> m_target;
};

QUADRIX_TEST(TestQdxProduction)
#include "test_qdxProduction.moc"
