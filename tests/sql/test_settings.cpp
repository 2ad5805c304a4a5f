#include "sql/ovConfig.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QStringConverter>
#include <QTemporaryDir>
#include <QTest>

class TestSettings : public QObject {
    Q_OBJECT

    static QByteArray Utf16(const QString& text, QStringConverter::Encoding encoding) {
        QStringEncoder encode(encoding, QStringConverter::Flag::WriteBom);
        return encode(text);
    }

private slots:
    void init() { QFile::remove(m_path); }
    void reads_data() {
        Columns<QByteArray, QString>("content", "value");
        Row("plain", QByteArray("[A]\r\nKey=value\r\n"), "value");
        Row("case of names", QByteArray("[a]\nKEY=value\n"), "value");
        Row("blanks around", QByteArray(" [ A ] \r\n\tKey = two words \t\r\n"), "two words");
        Row("quotes", QByteArray("[A]\nKey=\" v \"\n"), " v ");
        Row("one quote stays", QByteArray("[A]\nKey=\"v\n"), "\"v");
        Row("equal sign in it", QByteArray("[A]\nKey=Data Source=x;y\n"), "Data Source=x;y");
        Row("another section", QByteArray("[B]\nKey=1\n[A]\nOther=2\n[C]\nKey=3\n"), "");
        Row("first wins", QByteArray("[A]\nKey=1\nKey=2\n[A]\nKey=3\n"), "1");
        Row("comment", QByteArray("[A]\n;Key=1\n;[A]\nKey=2\n"), "2");
        Row("longer key", QByteArray("[A]\nKey2=1\nMyKey=2\n"), "");
        Row("code page", QByteArray("[A]\nKey=Citt\xe0 \x80\n"), "Città €");
        Row("hard blank belongs to the value", QByteArray("[A]\nKey=\xa0x\xa0\n"), QString("\u00a0x\u00a0"));
        Row("UTF-8 with its mark", QByteArray("\xef\xbb\xbf[A]\nKey=Citt\xc3\xa0 \xe2\x82\xac\n"), "Città €");
        Row("UTF-16", Utf16("[A]\r\nKey=Città €\r\n", QStringConverter::Utf16LE), "Città €");
        Row("UTF-16, high byte first", Utf16("[A]\r\nKey=日本\r\n", QStringConverter::Utf16BE), "日本");
        Row("no end of line", QByteArray("[A]\nKey=last"), "last");
        Row("empty file", QByteArray(), "");
    }
    void reads() {
        QFETCH(QByteArray, content);
        Put(content);
        QTEST(SettingsFile(m_path).Read("A", "Key"), "value");
    }

    void writes_data() {
        Columns<QByteArray, QByteArray>("before", "after");
        Row("new file", QByteArray(), QByteArray("[A]\r\nKey=new\r\n"));
        Row("everything else is kept",
            QByteArray("; mine\r\nstray line\r\n\r\n[B]\r\nx=1\r\n\r\n[A]\r\n; why\r\nkey=old\r\nz=\r\n"),
            QByteArray("; mine\r\nstray line\r\n\r\n[B]\r\nx=1\r\n\r\n[A]\r\n; why\r\nKey=new\r\nz=\r\n"));
        Row("key goes to the end of its section", QByteArray("[A]\nx=1\n; note\n\n[B]\nKey=b\n"),
            QByteArray("[A]\nx=1\n; note\nKey=new\n\n[B]\nKey=b\n"));
        Row("UTF-8 stays", QByteArray("\xef\xbb\xbf[A]\nx=\xc3\xa0\n"),
            QByteArray("\xef\xbb\xbf[A]\nx=\xc3\xa0\nKey=new\n"));
        Row("UTF-16 stays", Utf16("[A]\r\nx=à\r\n", QStringConverter::Utf16LE),
            Utf16("[A]\r\nx=à\r\nKey=new\r\n", QStringConverter::Utf16LE));
        Row("new section goes last", QByteArray("[B]\nx=1"), QByteArray("[B]\nx=1\n[A]\nKey=new\n"));
    }
    void writes() {
        QFETCH(QByteArray, before);
        if (!before.isEmpty()) {
            Put(before);
        }
        SettingsFile(m_path).Write("A", "Key", "new");
        QTEST(Content(), "after");
    }

    /// Values that mean something together.
    void writesAllOrNone() {
        Put("[A]\r\nKey=1\r\n");
        SettingsFile file(m_path);
        QVERIFY_EXCEPTION_THROWN(file.Write("A", {{"Key", "2"}, {"Other", "a\nb"}}), ImportError);
        QCOMPARE(Content(), QByteArray("[A]\r\nKey=1\r\n"));
        file.Write("A", {{"Key", "2"}, {"Other", "b"}});
        QCOMPARE(Content(), QByteArray("[A]\r\nKey=2\r\nOther=b\r\n"));
    }

    void bringsBackWhatItWrote_data() {
        Columns<QString>("value");
        for (const char* value :
             {" blanks ", "\"quoted\"", "'", "\"", "\ttab", ";no comment", "[no section]", "a=b", "è€"}) {
            Row(value, QString::fromUtf8(value));
        }
    }
    void bringsBackWhatItWrote() {
        QFETCH(QString, value);
        SettingsFile file(m_path);
        file.Write("A", "Key", value);
        file.Write("A", "Other", "x");
        QCOMPARE(SettingsFile(m_path).Read("A", "Key"), value);
    }

    void seedsMissingKeys() {
        Put("[A]\r\nEmpty=\r\nFull=1\r\n");
        ovConfig config;
        config.SetConfigFile(m_path);
        QCOMPARE(config.GetAppConfig("A", "Empty", "default"), QString("default"));
        QCOMPARE(config.GetAppConfig("A", "Full", "default"), QString("1"));
        QCOMPARE(config.GetAppConfig("A", "Missing", ""), QString());
        QCOMPARE(config.PeekAppConfig("A", "OnlyRead", "9"), QString("9"));
        QCOMPARE(config.GetConfig("KEYFIELD_CHAR", "1"), QString("1"));
        QCOMPARE(Content(), QByteArray("[A]\r\nEmpty=default\r\nFull=1\r\nMissing=\r\n"));
    }

    void cutsLongValues() {
        ovConfig config;
        config.SetConfigFile(m_path);
        config.SetAppConfig("A", "Key", QString(127, 'x') + "y");
        QCOMPARE(config.GetAppConfig("A", "Key"), QString(127, 'x'));
        QVERIFY2(Content().contains("xy"), "the file keeps the whole value");
    }

    void seesChangesOnDisk() {
        ovConfig config;
        config.SetConfigFile(m_path);
        Put("[CONFIG]\nKEYFIELD_CHAR=1\n");
        QCOMPARE(config.GetConfig("KEYFIELD_CHAR"), QString("1"));
        Put("[CONFIG]\nKEYFIELD_CHAR=0\n"); // of the same length, within the same moment
        QCOMPARE(config.GetConfig("KEYFIELD_CHAR"), QString("0"));
        QFile::remove(m_path);
        QCOMPARE(config.GetConfig("KEYFIELD_CHAR", "none"), QString("none"));
    }

    void namesTheFile() {
        const auto fails = [this](const auto& work) {
            const auto error = ErrorOf<ImportError>(work);
            return error && error->Message().contains(m_path);
        };
        for (const QByteArray& damaged :
             {QByteArray("\xef\xbb\xbf[A]\nKey=\xff\n"), QByteArray("\xff\xfe[\0A", 5), QByteArray("[\0A\0]\0", 6)}) {
            Put(damaged);
            QVERIFY(fails([this] { SettingsFile(m_path).Read("A", "Key"); }));
            QVERIFY(fails([this] { SettingsFile(m_path).Write("A", "Key", "new"); }));
            QCOMPARE(Content(), damaged);
        }
        Put("[A]\nKey=1\n");
        QVERIFY(fails([this] { SettingsFile(m_path).Write("A", "Key", "one\ntwo"); }));
        QVERIFY(fails([this] { SettingsFile(m_path).Write("A", "Key", "日本"); }));
        QCOMPARE(Content(), QByteArray("[A]\nKey=1\n"));
    }

    void readsFromAFolderWithoutRights() {
        // A path under a file can be neither read nor written, also by who may do everything.
        Put("[A]\nKey=1\n");
        ovConfig config;
        config.SetConfigFile(m_path + "/Quadrix.ini");
        QCOMPARE(config.GetAppConfig("A", "Key", "default"), QString("default"));
        QVERIFY(ErrorOf<ImportError>([&] { config.SetAppConfig("A", "Key", "x"); }).has_value());
    }

private:
    void Put(const QByteArray& bytes) const { WriteFile(m_path, bytes); }
    QByteArray Content() const { return ReadFile(m_path); }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("Quadrix.ini");
};

QUADRIX_TEST(TestSettings)
#include "test_settings.moc"
