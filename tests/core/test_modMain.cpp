#include "core/modMain.h"
#include "core/passwordScrambling.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/ScriptedOperator.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestModMain : public QObject {
    Q_OBJECT

private slots:
    void unscramblesKnownTexts();
    void scramblesAndBack_data();
    void scramblesAndBack();
    void refusesWhatCannotBeScrambled();
    void readsSwitches_data();
    void readsSwitches();
    void reportsUnreadableSettings();
    void buildsStoredProcedureCalls();
    void findsFiles();
};

void TestModMain::unscramblesKnownTexts() {
    const QString scrambled = QString::fromLatin1("A\x04\xbe\xc8\x03\xbe\x0d\xaa");
    QCOMPARE(ScramblePassword(scrambled, Scrambling::Unscramble, false), QString("segreta"));
    // the first byte is 200, and 8b is a character of its own in the code page
    QCOMPARE(ScramblePassword("È\u2039\u0031î?ª", Scrambling::Unscramble, true), QString("sa 1à"));
    QCOMPARE(ScramblePassword("", Scrambling::Scramble, true), QString());
}

void TestModMain::scramblesAndBack_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("printable");
    for (const bool printable : {false, true}) {
        const char* kind = printable ? "printable" : "any";
        QTest::addRow("%s one", kind) << "x" << printable;
        QTest::addRow("%s accents", kind) << "pàss wörd €" << printable;
        QTest::addRow("%s long", kind) << QString("Tr1v0la8!").repeated(3) << printable;
    }
}

void TestModMain::scramblesAndBack() {
    QFETCH(QString, text);
    QFETCH(bool, printable);
    QSet<QString> seen;
    for (int time = 0; time < 200; ++time) { // the key is drawn: many keys must hold
        const QString scrambled = ScramblePassword(text, Scrambling::Scramble, printable);
        QCOMPARE(scrambled.size(), text.size() + 1);
        QVERIFY(!scrambled.contains(QChar(0)));
        if (printable) {
            QVERIFY(std::all_of(scrambled.begin(), scrambled.end(), [](QChar c) { return c >= u' ' && c != u'ÿ'; }));
        }
        QCOMPARE(ScramblePassword(scrambled, Scrambling::Unscramble, printable), text);
        seen.insert(scrambled);
    }
    QVERIFY2(seen.size() > 20, "the scrambled text differs from call to call");
}

void TestModMain::refusesWhatCannotBeScrambled() {
    QVERIFY(ErrorOf<ImportError>([] { ScramblePassword("日本", Scrambling::Scramble, true); }).has_value());
    QString every; // every byte once: some of them always falls on a forbidden one
    for (ushort code = 32; code < 127; ++code) {
        every += QChar(code);
    }
    for (ushort code = 0xa0; code < 0x100; ++code) {
        every += QChar(code);
    }
    QVERIFY(ErrorOf<ImportError>([&] { ScramblePassword(every, Scrambling::Scramble, true); }).has_value());
}

void TestModMain::readsSwitches_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("on");
    QTest::newRow("1") << "1" << true;
    QTest::newRow("1.0") << "1.0" << true;
    QTest::newRow("0") << "0" << false;
    QTest::newRow("2") << "2" << false;
    QTest::newRow("yes") << "yes" << false;
    QTest::newRow("missing") << "" << true; // the default
}

void TestModMain::readsSwitches() {
    QFETCH(QString, value);
    const QTemporaryDir folder;
    ScriptedOperator person;
    Session session(person);
    session.Config.SetConfigFile(folder.filePath("Quadrix.ini"));
    modMain::SetAppConfig(session, "IMPORT", "Key", value);
    QTEST(modMain::IsAppConfigOn(session, "IMPORT", "Key", "1"), "on");
}

void TestModMain::reportsUnreadableSettings() {
    const QTemporaryDir folder;
    ScriptedOperator person;
    Session session(person);
    session.Config.SetConfigFile(folder.path()); // a folder, no file
    QCOMPARE(modMain::GetAppConfig(session, "IMPORT", "DSN", "MEXAL"), QString("MEXAL"));
    modMain::SetAppConfig(session, "IMPORT", "DSN", "X");
    QCOMPARE(person.Reported.size(), 2);
    QCOMPARE(person.Reported[0].module + '.' + person.Reported[0].procedure, QString("modMain.GetAppConfig"));
    QCOMPARE(person.Reported[1].procedure, QString("SetAppConfig"));
    QVERIFY(person.Reported[1].message.contains(folder.path()));
}

void TestModMain::buildsStoredProcedureCalls() {
    ScriptedOperator person;
    Session session(person);
    QCOMPARE(modMain::GetSP(session, "qdx_Prova", nullptr), QString("EXEC qdx_Prova\r"));
    ovQueryConstructor parameters;
    parameters.AddProcedureParam("@Codice", "L'A", DataType::NVarChar);
    parameters.AddProcedureParam("@Peso", 1.5, DataType::Double);
    QCOMPARE(modMain::GetSP(session, "qdx_Prova", &parameters),
             QString("EXEC qdx_Prova\r    @Codice = 'L''A',\r    @Peso = 1.5"));
    QVERIFY(!person.IsBusy());
}

void TestModMain::findsFiles() {
    const QTemporaryDir folder;
    const QString path = folder.filePath("Disegno 1.bmp");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const qint64 large = (qint64(1) << 32) + 7; // the size is kept in 32 bits
    QVERIFY(file.resize(large));
    const QDateTime written(QDate(2020, 2, 29), QTime(13, 14, 15));
    QVERIFY(file.setFileTime(written, QFileDevice::FileModificationTime));
    file.close();

    modMain::FileInfo info;
    QVERIFY(modMain::GetFileInfo(path, info));
    QCOMPARE(info.fileName, QString("Disegno 1.bmp"));
    QCOMPARE(info.path, folder.path());
    QCOMPARE(info.size, 7);
    QCOMPARE(info.written, written);
    QCOMPARE(info.attributes & 16, 0);
    QVERIFY(modMain::GetFileInfo(folder.path(), info));
    QCOMPARE(info.attributes & 16, 16);

    QVERIFY(!modMain::GetFileInfo(folder.filePath("manca.bmp"), info));
    QCOMPARE(info.attributes & 16, 16);
}

QUADRIX_TEST(TestModMain)
#include "test_modMain.moc"
