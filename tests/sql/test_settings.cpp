#include "sql/ovConfig.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestSettings : public QObject {
    Q_OBJECT

private slots:
    void init() { QFile::remove(m_path); }
    void reads_data();
    void reads();
    void writes_data();
    void writes();
    void bringsBackWhatItWrote_data();
    void bringsBackWhatItWrote();
    void seedsMissingKeys();
    void cutsLongValues();
    void seesChangesOnDisk();
    void namesTheFile();
    void readsFromAFolderWithoutRights();

private:
    void Put(const QByteArray& bytes) const {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray Content() const {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("Quadrix.ini");
};

void TestSettings::reads_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << QByteArray("[A]\r\nKey=value\r\n") << "value";
    QTest::newRow("case of names") << QByteArray("[a]\nKEY=value\n") << "value";
    QTest::newRow("blanks around") << QByteArray(" [ A ] \r\n\tKey = two words \t\r\n") << "two words";
    QTest::newRow("quotes") << QByteArray("[A]\nKey=\" v \"\n") << " v ";
    QTest::newRow("one quote stays") << QByteArray("[A]\nKey=\"v\n") << "\"v";
    QTest::newRow("equal sign in it") << QByteArray("[A]\nKey=Data Source=x;y\n") << "Data Source=x;y";
    QTest::newRow("another section") << QByteArray("[B]\nKey=1\n[A]\nOther=2\n[C]\nKey=3\n") << "";
    QTest::newRow("first wins") << QByteArray("[A]\nKey=1\nKey=2\n[A]\nKey=3\n") << "1";
    QTest::newRow("comment") << QByteArray("[A]\n;Key=1\n;[A]\nKey=2\n") << "2";
    QTest::newRow("longer key") << QByteArray("[A]\nKey2=1\nMyKey=2\n") << "";
    QTest::newRow("code page") << QByteArray("[A]\nKey=Citt\xe0 \x80\n") << "Città €";
    QTest::newRow("hard blank belongs to the value") << QByteArray("[A]\nKey=\xa0x\xa0\n") << QString("\u00a0x\u00a0");
    QTest::newRow("no end of line") << QByteArray("[A]\nKey=last") << "last";
    QTest::newRow("empty file") << QByteArray() << "";
}

void TestSettings::reads() {
    QFETCH(QByteArray, content);
    Put(content);
    QTEST(SettingsFile(m_path).Read("A", "Key"), "value");
}

void TestSettings::writes_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("new file") << QByteArray() << QByteArray("[A]\r\nKey=new\r\n");
    QTest::newRow("everything else is kept")
        << QByteArray("; mine\r\nstray line\r\n\r\n[B]\r\nx=1\r\n\r\n[A]\r\n; why\r\nkey=old\r\nz=\r\n")
        << QByteArray("; mine\r\nstray line\r\n\r\n[B]\r\nx=1\r\n\r\n[A]\r\n; why\r\nKey=new\r\nz=\r\n");
    QTest::newRow("key goes to the end of its section")
        << QByteArray("[A]\nx=1\n; note\n\n[B]\nKey=b\n") << QByteArray("[A]\nx=1\n; note\nKey=new\n\n[B]\nKey=b\n");
    QTest::newRow("new section goes last") << QByteArray("[B]\nx=1") << QByteArray("[B]\nx=1\n[A]\nKey=new\n");
}

void TestSettings::writes() {
    QFETCH(QByteArray, before);
    if (!before.isEmpty()) {
        Put(before);
    }
    SettingsFile(m_path).Write("A", "Key", "new");
    QTEST(Content(), "after");
}

void TestSettings::bringsBackWhatItWrote_data() {
    QTest::addColumn<QString>("value");
    for (const char* value :
         {" blanks ", "\"quoted\"", "'", "\"", "\ttab", ";no comment", "[no section]", "a=b", "è€"}) {
        QTest::newRow(value) << QString::fromUtf8(value);
    }
}

void TestSettings::bringsBackWhatItWrote() {
    QFETCH(QString, value);
    SettingsFile file(m_path);
    file.Write("A", "Key", value);
    file.Write("A", "Other", "x");
    QCOMPARE(SettingsFile(m_path).Read("A", "Key"), value);
}

void TestSettings::seedsMissingKeys() {
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

void TestSettings::cutsLongValues() {
    ovConfig config;
    config.SetConfigFile(m_path);
    config.SetAppConfig("A", "Key", QString(127, 'x') + "y");
    QCOMPARE(config.GetAppConfig("A", "Key"), QString(127, 'x'));
    QVERIFY2(Content().contains("xy"), "the file keeps the whole value");
}

void TestSettings::seesChangesOnDisk() {
    ovConfig config;
    config.SetConfigFile(m_path);
    Put("[CONFIG]\nKEYFIELD_CHAR=1\n");
    QCOMPARE(config.GetConfig("KEYFIELD_CHAR"), QString("1"));
    Put("[CONFIG]\nKEYFIELD_CHAR=0\n"); // of the same length, within the same moment
    QCOMPARE(config.GetConfig("KEYFIELD_CHAR"), QString("0"));
    QFile::remove(m_path);
    QCOMPARE(config.GetConfig("KEYFIELD_CHAR", "none"), QString("none"));
}

void TestSettings::namesTheFile() {
    const auto fails = [this](const auto& work) {
        const auto error = ErrorOf<ImportError>(work);
        return error && error->Message().contains(m_path);
    };
    Put("\xff\xfe[\0A\0]\0");
    QVERIFY(fails([this] { SettingsFile(m_path).Read("A", "Key"); }));
    Put("[A]\nKey=1\n");
    QVERIFY(fails([this] { SettingsFile(m_path).Write("A", "Key", "one\ntwo"); }));
    QVERIFY(fails([this] { SettingsFile(m_path).Write("A", "Key", "日本"); }));
    QCOMPARE(Content(), QByteArray("[A]\nKey=1\n"));
}

void TestSettings::readsFromAFolderWithoutRights() {
    // A path under a file can be neither read nor written, also by who may do everything.
    Put("[A]\nKey=1\n");
    ovConfig config;
    config.SetConfigFile(m_path + "/Quadrix.ini");
    QCOMPARE(config.GetAppConfig("A", "Key", "default"), QString("default"));
    QVERIFY(ErrorOf<ImportError>([&] { config.SetAppConfig("A", "Key", "x"); }).has_value());
}

QUADRIX_TEST(TestSettings)
#include "test_settings.moc"
