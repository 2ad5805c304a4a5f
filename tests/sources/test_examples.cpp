#include "examples/arca2000.h"
#include "examples/italian.h"
#include "examples/italianWords.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/QuadrixTest.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

using namespace examples;
using namespace sourcesTest;

/// Made-up data is the same everywhere, and its codes are right.
class ExamplesTest : public QObject {
    Q_OBJECT

private:
    static Totals MakeIn(const QString& example, const QString& folder, qint64 rows, quint64 seed = 1) {
        Options options;
        options.rows = rows;
        options.seed = seed;
        options.folder = folder;
        return Make(example, options);
    }

    /// Of all bytes of a folder's files, in the order of their names.
    static QByteArray HashOf(const QString& folder) {
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
            QFile file(info.filePath());
            hash.addData(info.fileName().toUtf8());
            if (file.open(QIODevice::ReadOnly)) {
                hash.addData(file.readAll());
            }
        }
        return hash.result().toHex();
    }

    static qint64 Number(const Totals& totals, const QString& name) {
        for (const auto& total : totals) {
            if (total.first == name) {
                return total.second.toLongLong();
            }
        }
        return -1;
    }

private slots:
    void CalculatesKnownCodes() {
        // Printed examples of the three kinds of code.
        QVERIFY(italian::IsVatNumber("07643520567"));
        QVERIFY(!italian::IsVatNumber("07643520568"));
        QCOMPARE(italian::TaxCode("Rossi", "Mario", QDate(1985, 12, 10), false, "A562"), QString("RSSMRA85T10A562S"));
        QCOMPARE(italian::TaxCode("Fo", "Noemi", QDate(1950, 1, 2), true, "H501").left(11), QString("FOXNMO50A42"));
        QCOMPARE(italian::TaxCode("D'Amico", "Nicolò", QDate(1970, 8, 31), false, "H501").left(6), QString("DMCNCL"));
        QCOMPARE(italian::BankCheck("05428", "11101", "000000123456"), QString("X"));
    }

    void NeverGivesAnIdentityTwice() {
        QSet<QString> seen;
        for (qint64 number = 0; number < 50000; ++number) {
            const italian::Identity identity = italian::MakeIdentity(7, number);
            QVERIFY(identity.vatNumber.isEmpty() || italian::IsVatNumber(identity.vatNumber));
            QVERIFY(identity.isCompany ? identity.taxCode == identity.vatNumber : italian::IsTaxCode(identity.taxCode));
            QVERIFY2(!seen.contains(identity.taxCode), qPrintable(identity.taxCode));
            seen.insert(identity.taxCode);
        }
    }

    void KeepsStreetsBeforeTheHouseNumber() {
        for (const auto* street : italian::Streets()) {
            QVERIFY2(QString::fromUtf16(street).size() <= 25, qPrintable(QString::fromUtf16(street)));
        }
    }

    void GivesTheSameBytesForTheSameSeed_data() {
        QTest::addColumn<QString>("example");
        for (const Example& example : Examples()) {
            QTest::newRow(qPrintable(example.name)) << example.name;
        }
    }

    void GivesTheSameBytesForTheSameSeed() {
        QFETCH(QString, example);
        const QTemporaryDir first;
        const QTemporaryDir second;
        const QTemporaryDir other;
        MakeIn(example, first.path(), 300, 5);
        MakeIn(example, second.path(), 300, 5);
        MakeIn(example, other.path(), 300, 6);
        QCOMPARE(HashOf(first.path()), HashOf(second.path()));
        QVERIFY(HashOf(first.path()) != HashOf(other.path()));
    }

    void CountsWhatItWrites() {
        const QTemporaryDir dir;
        const Totals totals = MakeIn("arca2000", dir.path(), 2000);
        const auto engine = OpenFolder(dir.path());
        const auto count = [&](const QString& from) {
            return Value(*engine, "SELECT COUNT(*) FROM " + from).toLongLong();
        };
        QCOMPARE(count("anagrafe"), qint64(2000));
        QCOMPARE(count("anagrafe WHERE codice LIKE 'C%'"), Number(totals, "anagrafe: clienti"));
        QCOMPARE(count("destinaz"), Number(totals, "destinaz: righe"));
        const QString supplier =
            "anagrafe f WHERE codice LIKE 'F%' AND EXISTS (SELECT 1 FROM anagrafe c WHERE c.codice "
            "LIKE 'C%' AND ((f.partiva <> '' AND c.partiva = f.partiva) OR "
            "(f.partiva = '' AND f.codfiscale <> '' AND c.codfiscale = f.codfiscale)))";
        QCOMPARE(count(supplier), Number(totals, "anagrafe: fornitori che sono anche clienti"));
        QCOMPARE(count(supplier), qint64(600 / 33));
        QCOMPARE(count("(SELECT partiva FROM anagrafe WHERE partiva <> '' AND codice LIKE 'C%' GROUP BY partiva HAVING "
                       "COUNT(*) > 1)"),
                 qint64(0));
        QVERIFY(Number(totals, "anagrafe: righe cancellate") > 0);
        QVERIFY(count("anagrafe WHERE LENGTH(descrizion) > 35") > 10);
        QVERIFY(count("anagrafe WHERE note LIKE '%già%'") > 10);
        QVERIFY(count("anagrafe WHERE telefono GLOB '*[a-z]*'") > 10);
    }

    void WidensCodesForManyRows() {
        QCOMPARE(arca2000::Codes(1000).Customer(1), QString("C00001"));
        const arca2000::Codes many(150001);
        QCOMPARE(many.Customers() + many.Suppliers(), qint64(150001));
        QCOMPARE(many.Customer(1), QString("C000001"));
        QCOMPARE(many.Supplier(many.Suppliers()).size(), many.Length());
    }

    void NamesWhatCannotBeMade_data() {
        QTest::addColumn<QString>("example");
        QTest::addColumn<qint64>("rows");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("message");
        QTest::newRow("no such example") << "arca" << qint64(1) << ""
                                         << "arca2000";
        QTest::newRow("no rows") << "arca2000" << qint64(0) << ""
                                 << "da 1 a";
        QTest::newRow("no such tables") << "arca2000" << qint64(1) << "bilanci"
                                        << "controparti";
    }

    void NamesWhatCannotBeMade() {
        QFETCH(QString, example);
        QFETCH(qint64, rows);
        QFETCH(QString, table);
        QFETCH(QString, message);
        const QTemporaryDir dir;
        Options options;
        options.rows = rows;
        options.folder = dir.path();
        options.tables = table.isEmpty() ? QStringList() : QStringList(table);
        try {
            Make(example, options);
            QFAIL("no error");
        } catch (const ExampleError& error) {
            QVERIFY(Holds(error.Message(), {message}));
        }
    }
};

QUADRIX_TEST(ExamplesTest)
#include "test_examples.moc"
