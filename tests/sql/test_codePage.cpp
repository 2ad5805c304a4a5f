#include "sql/CodePage.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

class TestCodePage : public QObject {
    Q_OBJECT

private slots:
    void Decoded_data() {
        Columns<QString, QByteArray, QString, bool>("names", "bytes", "text", "clean");
        Row("Windows", "cp1252|1252|windows-1252|", QByteArray("citt\xe0 \x80 \x92"), "città € ’", true);
        Row("DOS", "cp850|IBM850|850", QByteArray("citt\x85 \xd5 \x15"), "città ı \x15", true);
        Row("old DOS", "437", QByteArray("citt\x85 \xe1 \xdb"), "città ß █", true);
        Row("Latin 1", "latin1|ISO-8859-1", QByteArray("citt\xe0"), "città", true);
        Row("UTF-8", "UTF-8|65001|utf8", QByteArray("citt\xc3\xa0 \xf0\x9f\x94\xa9"),
            QString::fromUtf8("citt\xc3\xa0 \xf0\x9f\x94\xa9"), true);
        Row("no UTF-8", "UTF-8", QByteArray("citt\xe0 x"), QString::fromUtf8("citt\xef\xbf\xbd x"), false);
    }
    void Decoded() {
        QFETCH(QString, names);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QFETCH(bool, clean);
        for (const QString& name : names.split(u'|')) {
            const CodePage page(name);
            QCOMPARE(DecodeText(bytes, page), text);
            QByteArray utf8("< ");
            QCOMPARE(page.AppendUtf8(bytes, utf8), clean);
            QCOMPARE(QString::fromUtf8(utf8), QString("< " + text));
        }
    }

    void EveryByteComesBack_data() {
        Columns<QString>("name");
        for (const char* name : {"cp1252", "cp850", "cp437", "latin1"}) {
            Row(name, name);
        }
    }
    void EveryByteComesBack() {
        QFETCH(QString, name);
        const CodePage page(name);
        for (int code = 0; code < 256; ++code) {
            const QByteArray byte(1, static_cast<char>(code));
            const QString text = DecodeText(byte, page);
            QCOMPARE(text.size(), 1);
            QCOMPARE(EncodeText(text, page), byte);
        }
    }

    void CharactersThatAPageLacks() {
        const CodePage page("cp850");
        const QString text = QString::fromUtf8("a\xe2\x82\xac"
                                               "b\xf0\x9f\x94\xa9\xe2\x82\xac");
        QString lost;
        QCOMPARE(EncodeText(text, page, &lost), "a?b??");
        QCOMPARE(lost, QString::fromUtf8("\xe2\x82\xac\xf0\x9f\x94\xa9"));
        EncodeText("abc", page, &lost);
        QCOMPARE(lost, "");
        const auto error = ErrorOf<ImportError>([&] { EncodeText(text, page); });
        QVERIFY(error && error->Message().contains(QString::fromUtf8("\xe2\x82\xac")) &&
                error->Message().contains("850"));
    }

    void UnknownPages() {
        for (const QString name : {"nessuna", "cp99999"}) {
            const auto error = ErrorOf<ImportError>([&] { const CodePage page(name); });
            QVERIFY(error && error->Message().contains(name));
        }
    }
};

QUADRIX_TEST(TestCodePage)

#include "test_codePage.moc"
