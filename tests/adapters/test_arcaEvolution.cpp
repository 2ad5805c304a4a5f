#include "adapters/contract/map/rules.h"
#include "adapters/contract/write/PaymentTerm.h"
#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using modImport_ArcaEvolution::StreetOf;
using modImport_ArcaEvolution::ValidateIBAN;

class TestArcaEvolution : public QObject {
    Q_OBJECT

private slots:
    void ibans_data() {
        Columns<QString, bool>("iban", "valid");
        Row("Italian", "IT60X0542811101000000123456", true);
        Row("German", "DE89370400440532013000", true);
        Row("British, with letters in the account", "GB82WEST12345698765432", true);
        Row("one digit changed", "IT60X0542811101000000123457", false);
        Row("two digits exchanged", "IT60X0542811101000000124356", false);
        Row("Italian, one short", "IT60X054281110100000012345", false);
        Row("blank inside", "IT60 X0542811101000000123456", false);
        Row("lower case", "it60x0542811101000000123456", false);
        Row("country alone", "DE89", false);
        Row("no country", "60X0542811101000000123456IT", false);
        Row("empty", "", false);
    }
    void ibans() {
        QFETCH(const QString, iban);
        QTEST(ValidateIBAN(iban), "valid");
    }

    void streets_data() {
        Columns<QString, QString, QString, QString>("text", "first", "rest", "number");
        const auto row = [](const char* text, const char* first, const char* rest, const char* number) {
            Row(text, QString(text), QString(first), QString(rest), QString(number));
        };
        row("Via Roma, 12/A", "Via Roma", "", "12/A");
        row("Via Roma, angolo via Verdi, snc", "Via Roma, angolo via Verdi", "", "snc");
        row("Via Roma 12", "Via Roma 12", "", "");
        row("Via Roma, interno B", "Via Roma, interno B", "", "");
        row("Via Roma, 12 scala B interno 4", "Via Roma, 12 scala B interno 4", "", "");
        row("Strada Statale del Lago di Garda e del Trentino, 3", "Strada Statale del Lago di Garda e ", "del Trentino",
            "3");
        row("", "", "", "");
    }
    void streets() {
        QFETCH(const QString, text);
        const auto street = StreetOf(text);
        QTEST(street.first, "first");
        QTEST(street.rest, "rest");
        QTEST(street.number, "number");
    }

    void discounts() {
        QCOMPARE(contract::DiscountsOf("10+4"), (std::array<double, 3>{10, 4, 0}));
        QCOMPARE(contract::DiscountsOf("1 + 2,5 + 3"), (std::array<double, 3>{1, 2.5, 3}));
        QCOMPARE(contract::DiscountsOf(""), (std::array<double, 3>{0, 0, 0}));
        QVERIFY_EXCEPTION_THROWN(contract::DiscountsOf("10+x"), ImportError);
        QVERIFY_EXCEPTION_THROWN(contract::DiscountsOf("1+2+3+4"), ImportError);
    }

    /// Whatever their count, the shares are a hundred.
    void sharesAddUp() {
        QVERIFY(contract::EqualShares(0).empty());
        for (int count = 1; count <= 36; ++count) {
            qint64 hundredths = 0;
            for (const double share : contract::EqualShares(count)) {
                hundredths += qRound64(share * 100);
            }
            QCOMPARE(hundredths, qint64(10000));
        }
    }
};

QUADRIX_TEST(TestArcaEvolution)
#include "test_arcaEvolution.moc"
