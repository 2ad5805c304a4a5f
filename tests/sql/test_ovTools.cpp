#include "sql/mod_ovTools.h"
#include "tests/support/QuadrixTest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace mod_ovTools;

namespace {

const LocaleSeparators Italian{",", "."};
const LocaleSeparators English{".", ","};
const LocaleSeparators French{",", QString::fromUtf8("\xe2\x80\xaf")}; // a narrow blank

} // namespace

class TestOvTools : public QObject {
    Q_OBJECT

private slots:
    void NumbersRead_data();
    void NumbersRead();
    void SqlNumbers_data();
    void SqlNumbers();
    void NumberTexts_data();
    void NumberTexts();
    void NullReaders();
    void Booleans_data();
    void Booleans();
    void DatesRead_data();
    void DatesRead();
    void Backslashes_data();
    void Backslashes();
    void Discounts_data();
    void Discounts();
    void Ibans_data();
    void Ibans();
    void FilesAndPrograms();
    void LocaleItems();
};

void TestOvTools::NumbersRead_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<double>("number");
    QTest::newRow("null") << QVariant() << 0.0;
    QTest::newRow("empty") << QVariant("") << 0.0;
    QTest::newRow("comma") << QVariant("12,5") << 12.5;
    QTest::newRow("point") << QVariant("12.5") << 12.5;
    QTest::newRow("one point in three digits") << QVariant("1.234") << 1.234;
    QTest::newRow("two points") << QVariant("1.234.567") << 1234.567;
    QTest::newRow("thousands and decimals") << QVariant("1.234.567,89") << 1234567.89;
    QTest::newRow("currency") << QVariant(QString::fromUtf8("\xe2\x82\xac 1.234,50")) << 1234.5;
    QTest::newRow("minus in front") << QVariant("-1.234,50") << -1234.5;
    QTest::newRow("minus behind") << QVariant("12,50-") << -12.5;
    QTest::newRow("blank between thousands") << QVariant("1 234,5") << 1234.5;
    QTest::newRow("separator first") << QVariant(",5") << 0.5;
    QTest::newRow("separator last") << QVariant("5,") << 5.0;
    QTest::newRow("exponent") << QVariant("1.5E+3") << 1500.0;
    QTest::newRow("word") << QVariant("nessuno") << 0.0;
    QTest::newRow("integer") << QVariant(7) << 7.0;
    QTest::newRow("true") << QVariant(true) << 1.0;
}

void TestOvTools::NumbersRead() {
    QFETCH(QVariant, value);
    QFETCH(double, number);
    for (const auto& separators : {Italian, English, French}) {
        QCOMPARE(ToDouble(value, separators), number);
    }
}

void TestOvTools::SqlNumbers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<LocaleSeparators>("separators");
    QTest::addColumn<QString>("number");
    QTest::newRow("Italian") << "1.234,5" << Italian << "1234.5";
    QTest::newRow("English") << "1,234.5" << English << "1234.5";
    QTest::newRow("French") << QString("1" + French.thousands + "234,5") << French << "1234.5";
    QTest::newRow("no locale") << "1234,5" << LocaleSeparators{} << "1234.5";
}

void TestOvTools::SqlNumbers() {
    QFETCH(QString, text);
    QFETCH(LocaleSeparators, separators);
    QFETCH(QString, number);
    QCOMPARE(ToSqlNumber(text, separators), number);
}

void TestOvTools::NumberTexts_data() {
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("minus zero") << -0.0 << "0";
    QTest::newRow("no exponent up to 1e17") << 99999999999999984.0 << "99999999999999984";
    QTest::newRow("exponent from 1e17") << 1e17 << "1e+17";
    QTest::newRow("no exponent down to 1e-7") << 1e-7 << "0.0000001";
    QTest::newRow("shortest") << 0.1 << "0.1";
}

void TestOvTools::NumberTexts() {
    QFETCH(double, number);
    QTEST(NumberText(number), "text");
    QCOMPARE(NumberText(number).toDouble(), number);
}

void TestOvTools::NullReaders() {
    QCOMPARE(NzNumber({}), QVariant(0));
    QCOMPARE(NzNumber("  "), QVariant(0));
    QCOMPARE(NzNumber("12,5"), QVariant("12,5"));
    QCOMPARE(NzNumber(0.0), QVariant(0.0));
    QCOMPARE(NzNumber({}, false), QVariant("Null"));
    QCOMPARE(NzNumber("", false), QVariant("Null"));
    QCOMPARE(NzNumber("0,00", false), QVariant("Null"));
    QCOMPARE(NzNumber(0, false), QVariant("Null"));
    QCOMPARE(NzNumber(5, false), QVariant(5));
    QCOMPARE(NzText({}), QVariant(""));
    QVERIFY(!NzText({}).isNull());
    QCOMPARE(NzText("a"), QVariant("a"));
    QCOMPARE(NzText({}, false), QVariant("Null"));
    QCOMPARE(NzText("", false), QVariant("Null"));
    QCOMPARE(NzText(" ", false), QVariant(" "));
}

void TestOvTools::Booleans_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("truth");
    QTest::newRow("null") << QVariant() << false;
    QTest::newRow("empty") << QVariant("") << false;
    QTest::newRow("true") << QVariant(" true ") << true;
    QTest::newRow("-1") << QVariant("-1") << true;
    QTest::newRow("false") << QVariant("False") << false;
    QTest::newRow("0") << QVariant(" 0 ") << false;
    QTest::newRow("number") << QVariant(0.5) << true;
    QTest::newRow("zero") << QVariant(0) << false;
    QTest::newRow("bool") << QVariant(true) << true;
    QTest::newRow("word") << QVariant("Vero") << false;
}

void TestOvTools::Booleans() {
    QFETCH(QVariant, value);
    QTEST(ToBoolean(value), "truth");
}

void TestOvTools::DatesRead_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("date"); ///< empty: none
    QTest::newRow("ISO") << QVariant("2024-03-05") << "2024-03-05 00:00:00";
    QTest::newRow("ISO moment") << QVariant("2024-03-05T04:06:07.500") << "2024-03-05 04:06:07";
    QTest::newRow("Italian") << QVariant("5/3/2024") << "2024-03-05 00:00:00";
    QTest::newRow("Italian moment") << QVariant("05/03/2024 04.06") << "2024-03-05 04:06:00";
    QTest::newRow("dashes") << QVariant("05-03-2024") << "2024-03-05 00:00:00";
    QTest::newRow("packed") << QVariant("20240305") << "2024-03-05 00:00:00";
    QTest::newRow("packed moment") << QVariant("20240305040607") << "2024-03-05 04:06:07";
    QTest::newRow("time alone") << QVariant("04:06:07") << "1899-12-30 04:06:07";
    QTest::newRow("leap day") << QVariant("29/02/2024") << "2024-02-29 00:00:00";
    QTest::newRow("skipped hour") << QVariant(QDateTime(QDate(2024, 3, 31), QTime(2, 30), Qt::UTC))
                                  << "2024-03-31 02:30:00";
    QTest::newRow("no leap day") << QVariant("29/02/2023") << "";
    QTest::newRow("two-digit year") << QVariant("05/03/24") << "";
    QTest::newRow("mixed marks") << QVariant("05/03-2024") << "";
    QTest::newRow("month beyond") << QVariant("2024-13-01") << "";
    QTest::newRow("zero date") << QVariant("0000-00-00") << "";
    QTest::newRow("hour beyond") << QVariant("2024-03-05 24:00:00") << "";
    QTest::newRow("rest behind") << QVariant("2024-03-05 x") << "";
    QTest::newRow("number") << QVariant(20240305) << "";
    QTest::newRow("null") << QVariant() << "";
}

void TestOvTools::DatesRead() {
    QFETCH(QVariant, value);
    QFETCH(QString, date);
    const auto read = ReadDate(value);
    QCOMPARE(read ? read->toString("yyyy-MM-dd hh:mm:ss") : QString(), date);
    const QDateTime zero(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    QCOMPARE(ToDate(value), read.value_or(zero));
}

void TestOvTools::Backslashes_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("with");
    QTest::addColumn<QString>("without");
    QTest::newRow("slashes") << "C:/data"
                             << "C:\\data\\"
                             << "C:\\data";
    QTest::newRow("ended") << " C:\\data\\ "
                           << "C:\\data\\"
                           << "C:\\data";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("blank") << "  "
                           << ""
                           << "";
    QTest::newRow("root") << "/"
                          << "\\"
                          << "";
}

void TestOvTools::Backslashes() {
    QFETCH(QString, path);
    QTEST(AddBackslash(path, true), "with");
    QTEST(AddBackslash(path, false), "without");
}

void TestOvTools::Discounts_data() {
    QTest::addColumn<QVector<double>>("discounts");
    QTest::addColumn<double>("amount");
    QTest::newRow("none") << QVector<double>{0, 0, 0} << 200.0;
    QTest::newRow("in cascade") << QVector<double>{10, 50, 10} << 81.0;
    QTest::newRow("negative is skipped") << QVector<double>{-10, 50, 0} << 100.0;
    QTest::newRow("whole") << QVector<double>{10, 100, 10} << 0.0;
    QTest::newRow("beyond the whole") << QVector<double>{0, 0, 150} << 0.0;
}

void TestOvTools::Discounts() {
    QFETCH(QVector<double>, discounts);
    QTEST(ApplyDiscounts(4, 50, discounts[0], discounts[1], discounts[2]), "amount");
    QCOMPARE(Percentage(250, 22), 55.0);
}

void TestOvTools::Ibans_data() {
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QString>("iban");
    // The registry's own examples.
    QTest::newRow("Italy") << QStringList{"IT", "X", "05428", "11101", "000000123456"} << "IT60X0542811101000000123456";
    QTest::newRow("San Marino") << QStringList{"SM", "U", "03225", "09800", "000000270100"}
                                << "SM86U0322509800000000270100";
    QTest::newRow("short account") << QStringList{"IT", "x", "05428", "11101", "12 34 56"}
                                   << "IT60X0542811101000000123456";
    QTest::newRow("marks in the account") << QStringList{"IT", "X", "05428", "11101", "000000/123456"} << "";
    QTest::newRow("one-digit check") << QStringList{"IT", "A", "00000", "00000", "77"} << "";
    QTest::newRow("no bank") << QStringList{"IT", "X", "", "11101", "123456"} << "";
    QTest::newRow("blank account") << QStringList{"IT", "X", "05428", "11101", " "} << "";
}

void TestOvTools::Ibans() {
    QFETCH(QStringList, parts);
    QFETCH(QString, iban);
    const QString made = MakeIban(parts[0], parts[1], parts[2], parts[3], parts[4]);
    if (parts.contains("") || parts.contains(" ") || !iban.isEmpty()) {
        QCOMPARE(made, iban);
        return;
    }
    // What has no known answer must pass the check of the bank that gets it: the number modulo 97 is 1.
    int remainder = 0;
    for (const QChar c : QString(made.mid(4) + made.left(4))) {
        remainder =
            c.isDigit() ? (remainder * 10 + c.digitValue()) % 97 : (remainder * 100 + c.unicode() - u'A' + 10) % 97;
    }
    QCOMPARE(remainder, 1);
    QVERIFY(made.mid(2, 2).toInt() >= 2);
    QCOMPARE(MakeItalianIban(parts[1], parts[2], parts[3], parts[4]), made);
}

void TestOvTools::FilesAndPrograms() {
    QTemporaryDir folder;
    const QString file = GetTempFile(folder.path());
    QVERIFY(FileExists(file));
    QVERIFY(QFileInfo(file).fileName().startsWith("Quadrix") && file.endsWith(".tmp"));
    QVERIFY(GetTempFile(folder.path()) != file);
    QVERIFY(FileExists(folder.path()));
    QVERIFY(!FileExists(folder.filePath("nessuno")));
    QCOMPARE(GetTempFile(folder.filePath("nessuno")), "");
    QCOMPARE(GetLongPath(file), file);
    qputenv("TEMP", folder.path().toLocal8Bit());
    QCOMPARE(GetTempFolder(), folder.path());
    QVERIFY(GetTempFile().startsWith(folder.path()));
    qunsetenv("TEMP");
#ifdef Q_OS_UNIX
    const QString made = folder.filePath("made by a program");
    QVERIFY(ShellAndWait("/usr/bin/touch \"" + made + "\""));
    QVERIFY(FileExists(made));
#endif
    QVERIFY(!ShellAndWait(folder.filePath("nessuno")));
    QVERIFY(!ShellAndWait(""));
}

void TestOvTools::LocaleItems() {
    QCOMPARE(GetLocaleString(14), UserSeparators().decimal);
    QCOMPARE(GetLocaleString(15), UserSeparators().thousands);
    QCOMPARE(GetLocaleString(3), "-1");
    QCOMPARE(GetLocaleString(-1, true), "-1");
}

QUADRIX_TEST(TestOvTools)

#include "test_ovTools.moc"
