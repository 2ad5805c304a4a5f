#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;

/// A folder of text files is a database.
class TextFolderTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

    void Write(const QString& name, const QByteArray& content) const { WriteFile(m_dir->filePath(name), content); }
    std::unique_ptr<Engine> Open(const ConnectionSettings& more = {}) const {
        ConnectionSettings settings = more;
        settings.connectionString = "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=" + m_dir->path();
        return sources::OpenFileSource(settings);
    }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void KeepsTextsAsTheyStand() {
        Write("ART_MAG.CSV", "_ARCOD;[_X];_ARPRZ(1)\r\n"
                             "00120; due blanks ;1.234,50\r\n"
                             "\r\n"
                             "\"A;\"\"B\"\"\";\"due\r\nrighe\";\r\n"
                             "C;Tubo 1\" zincato;\"\"\r\n"
                             "fine;d;e");
        const auto engine = Open();
        QCOMPARE(engine->Tables(), QStringList{"art_mag"});
        QCOMPARE(Values(*engine, "SELECT _ARCOD FROM ART_MAG ORDER BY _RECNO"), QString("00120,A;\"B\",C,fine"));
        QCOMPARE(Values(*engine, "SELECT _RECNO FROM art_mag ORDER BY 1"), QString("2,4,6,7"));
        QCOMPARE(Value(*engine, "SELECT \"[_X]\" FROM ART_MAG WHERE _ARCOD = '00120'").toString(),
                 QString(" due blanks "));
        QCOMPARE(Value(*engine, "SELECT \"[_X]\" FROM ART_MAG WHERE _ARCOD = 'c'").toString(),
                 QString("Tubo 1\" zincato"));
        QCOMPARE(Value(*engine, "SELECT [_ARPRZ(1)] FROM ART_MAG").toString(), QString("1.234,50"));
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM ART_MAG WHERE [_ARPRZ(1)] IS NULL").toInt(), 2);
    }

    void FindsSeparatorAndCodePage_data() {
        Columns<QByteArray, QByteArray, QString>("content", "schema", "second");
        const QString city = QString::fromUtf8("Città");
        Row("semicolons, cp1252", QByteArray("a;b\n1,5;Citt\xE0\n"), QByteArray(), city);
        Row("commas", QByteArray("a,b\n1,x;y\n"), QByteArray(), "x;y");
        Row("tabs", QByteArray("a\tb\n1\tx,y\n"), QByteArray(), "x,y");
        Row("UTF-8 mark",
            QByteArray("\xEF\xBB\xBF"
                       "a;b\n1;Citt\xC3\xA0\n"),
            QByteArray(), city);
        Row("schema: OEM", QByteArray("a;b\n1;Citt\x85\n"), QByteArray("CharacterSet=OEM\n"), city);
        Row("schema: own names", QByteArray("1|x\n"),
            QByteArray("Format=Delimited(|)\nColNameHeader=False\nCol1=A Text\n"
                       "Col2=\"B\" Text Width 10\n"),
            "x");
        Row("schema: own names over a header", QByteArray("uno;due\n1;x\n"), QByteArray("Col1=A Text\nCol2=B Text\n"),
            "x");
    }
    void FindsSeparatorAndCodePage() {
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, schema);
        Write("dati.csv", content);
        if (!schema.isEmpty()) {
            Write("Schema.ini", "[dati.csv]\n" + schema);
        }
        const auto engine = Open();
        QTEST(Value(*engine, "SELECT b FROM dati WHERE a > ''").toString(), "second");
    }

    void NamesWhatCannotBeRead_data() {
        Columns<QByteArray, QByteArray, QStringList>("content", "schema", "named");
        const QByteArray none;
        Row("fewer fields", QByteArray("a;b\n1;2\n3\n"), none, QStringList{"riga 3", "1 campi", "2"});
        Row("more fields", QByteArray("a;b\n1;2;3\n"), none, QStringList{"riga 2", "3 campi"});
        Row("open quote", QByteArray("a;b\n1;2\n\"3;4\n5;6\n"), none, QStringList{"riga 3", "virgolette"});
        Row("no such text", QByteArray("a;b\n1;Citt\xE0\n"), QByteArray("CharacterSet=65001\n"),
            QStringList{"riga 2", "'b'", "UTF-8"});
        Row("column twice", QByteArray("a;A\n1;2\n"), none, QStringList{"'A'", "due volte"});
        Row("column without a name", QByteArray("a;;c\n1;2;3\n"), none, QStringList{"colonna 2"});
        Row("empty", none, none, QStringList{"vuoto"});
        Row("neither header nor names", QByteArray("1;2\n"), QByteArray("ColNameHeader=False\n"), QStringList{"Col1"});
        Row("no format", QByteArray("1;2\n"), QByteArray("Format=FixedLength\n"), QStringList{"FixedLength"});
    }
    void NamesWhatCannotBeRead() {
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, schema);
        QFETCH(const QStringList, named);
        Write("dati.csv", content);
        Write("buoni.csv", "a\n1\n");
        if (!schema.isEmpty()) {
            Write("schema.ini", "[dati.csv]\n" + schema);
        }
        const auto engine = Open();
        // Asked twice: half a table is never read.
        for (int time = 0; time < 2; ++time) {
            QVERIFY(Holds(ErrorOf([&] { engine->Query("SELECT * FROM dati"); }),
                          QStringList(m_dir->filePath("dati.csv")) + named));
        }
        QCOMPARE(Value(*engine, "SELECT a FROM buoni").toString(), QString("1"));
    }

    void OffersAFileByItsFullName() {
        Write("Clienti.csv", "a\n1\n");
        Write("Clienti.txt", "a\n2\n");
        ConnectionSettings settings;
        settings.tables = QStringList{"Clienti.csv"};
        const auto engine = Open(settings);
        QCOMPARE(Value(*engine, "SELECT a FROM [clienti.csv]").toString(), QString("1"));
        QVERIFY(Holds(ErrorOf([&] { Open()->Query("SELECT * FROM clienti"); }), {"Clienti.csv", "Clienti.txt"}));
    }
};

QUADRIX_TEST(TextFolderTest)
#include "test_textFolder.moc"
