#include "core/modMain.h"
#include "core/passwordScrambling.h"
#include "sql/CodePage.h"
#include "sql/ovQueryConstructor.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/ScriptedOperator.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestModMain : public QObject {
    Q_OBJECT

private slots:
    void unscramblesKnownTexts() {
        const QString scrambled = QString::fromLatin1("A\x04\xbe\xc8\x03\xbe\x0d\xaa");
        QCOMPARE(ScramblePassword(scrambled, Scrambling::Unscramble, false), QString("segreta"));
        // the first byte is 200, and 8b is a character of its own in the code page
        QCOMPARE(ScramblePassword("È\u2039\u0031î?ª", Scrambling::Unscramble, true), QString("sa 1à"));
        QCOMPARE(ScramblePassword("", Scrambling::Scramble, true), QString());
    }

    void scramblesAndBack_data() {
        Columns<QString, bool>("text", "printable");
        for (const bool printable : {false, true}) {
            const char* kind = printable ? "printable" : "any";
            QTest::addRow("%s one", kind) << "x" << printable;
            QTest::addRow("%s accents", kind) << "pàss wörd €" << printable;
            QTest::addRow("%s long", kind) << QString("Tr1v0la8!").repeated(3) << printable;
        }
    }
    void scramblesAndBack() {
        QFETCH(QString, text);
        QFETCH(bool, printable);
        QSet<QString> seen;
        for (int time = 0; time < 200; ++time) { // the key is drawn: many keys must hold
            const QString scrambled = ScramblePassword(text, Scrambling::Scramble, printable);
            QCOMPARE(scrambled.size(), text.size() + 1);
            QVERIFY(!scrambled.contains(QChar(0)));
            if (printable) {
                QVERIFY(
                    std::all_of(scrambled.begin(), scrambled.end(), [](QChar c) { return c >= u' ' && c != u'ÿ'; }));
            }
            QCOMPARE(ScramblePassword(scrambled, Scrambling::Unscramble, printable), text);
            seen.insert(scrambled);
        }
        QVERIFY2(seen.size() > 20, "the scrambled text differs from call to call");
    }

    void refusesWhatCannotBeScrambled() {
        QVERIFY(ErrorOf<ImportError>([] { ScramblePassword("日本", Scrambling::Scramble, true); }).has_value());
        QByteArray every; // some of them always falls on a forbidden one
        for (int code = 1; code < 256; ++code) {
            every += static_cast<char>(code);
        }
        const QString text = DecodeText(every, CodePage());
        QVERIFY(ErrorOf<ImportError>([&] { ScramblePassword(text, Scrambling::Scramble, true); }).has_value());
    }

    void readsSwitches_data() {
        Columns<QString, QString>("value", "on");
        Row("1", "1", "yes");
        Row("1.0", "1.0", "yes");
        Row("0", "0", "no");
        Row("0.0", " 0.0", "no");
        Row("2", "2", "refused");
        Row("yes", "yes", "refused");
        Row("a comment behind it", "1 ; controlla", "refused");
        Row("missing", "", "yes"); // the default
    }
    void readsSwitches() {
        QFETCH(QString, value);
        const QTemporaryDir folder;
        ScriptedOperator person;
        Session session(person);
        session.Config.SetConfigFile(folder.filePath("Quadrix.ini"));
        modMain::SetAppConfig(session, "IMPORT", "Key", value);
        QString on;
        const auto refused = ErrorOf<ImportError>([&] {
            on = modMain::IsAppConfigOn(session, "IMPORT", "Key", "1") ? "yes" : "no"; //
        });
        QTEST(refused ? QString("refused") : on, "on");
        QVERIFY(!refused || refused->Message().startsWith("chiave Key, sezione [IMPORT] di '" +
                                                          folder.filePath("Quadrix.ini") + "': '" + value + "' non è"));
    }

    void reportsUnreadableSettings() {
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

    void buildsStoredProcedureCalls() {
        ScriptedOperator person;
        Session session(person);
        QCOMPARE(modMain::GetSP(session, "qdx_Prova", nullptr), QString("EXEC qdx_Prova\r"));
        ovQueryConstructor parameters;
        parameters.AddProcedureParam("@Codice", "L'A", DataType::NVarChar);
        parameters.AddProcedureParam("@Dal", QDate(2024, 3, 5), DataType::Date);
        parameters.AddProcedureParam("@Nullo", {}, DataType::Integer);
        QCOMPARE(modMain::GetSP(session, "qdx_Prova", &parameters),
                 QString("EXEC qdx_Prova\r    @Codice = 'L''A',\r    @Dal = '20240305',\r    @Nullo = Null"));
        QVERIFY(!person.IsBusy());
    }

    void findsFiles() {
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
};

QUADRIX_TEST(TestModMain)
#include "test_modMain.moc"
