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
    QStringList m_notes;
    std::unique_ptr<Engine> Open(const ConnectionSettings& more = {}) {
        ConnectionSettings settings = more;
        m_notes.clear();
        settings.note = [this](const QString& note) { m_notes.append(note); };
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
        QCOMPARE(Values(*engine, "SELECT _ARCOD FROM ART_MAG ORDER BY _RIGA"), QString("00120,A;\"B\",C,fine"));
        QCOMPARE(Values(*engine, "SELECT _RIGA FROM art_mag ORDER BY 1"), QString("2,4,6,7"));
        QCOMPARE(Value(*engine, "SELECT \"[_X]\" FROM ART_MAG WHERE _ARCOD = '00120'").toString(),
                 QString(" due blanks "));
        QCOMPARE(Value(*engine, "SELECT \"[_X]\" FROM ART_MAG WHERE _ARCOD = 'c'").toString(),
                 QString("Tubo 1\" zincato"));
        QCOMPARE(Value(*engine, "SELECT [_ARPRZ(1)] FROM ART_MAG").toString(), QString("1234,50"));
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
        Row("schema: an own name over one of a header", QByteArray("a;due\n1;x\n"),
            QByteArray("ColNameHeader=1\nCol1=A Text\nCol2=B Text\n"), "x");
        Row("schema: own names over a header", QByteArray("uno;due\n1;x\n"), QByteArray("Col1=A Text\nCol2=B Text\n"),
            "x");
        Row("schema: no header", QByteArray("1;x\n"), QByteArray("ColNameHeader=0\nCol1=A Text\nCol2=B Text\n"), "x");
        Row("schema: no quotes", QByteArray("a;b\n1;\"x\n"), QByteArray("TextDelimiter=none\n"), "\"x");
        Row("schema: other quotes", QByteArray("a;b\n1;'x;'';y'\n"), QByteArray("TextDelimiter='\n"), "x;';y");
        Row("schema: dates as they are read", QByteArray("a;b\n1;x\n"), QByteArray("DateTimeFormat=gg/mm/aaaa hh:nn\n"),
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
        Row("open quote", QByteArray("a;b\n1;2\n\"3;4\n5;6\n"), none, QStringList{"riga 3", "non si chiudono"});
        Row("empty", none, none, QStringList{"vuoto"});
        Row("header broken by a CR", QByteArray("a;b\r1;2\n3;4\n"), none, QStringList{"riga 1", "(CR)"});
        Row("neither header nor names", QByteArray("1;2\n"), QByteArray("ColNameHeader=False\n"), QStringList{"Col1"});
        const QByteArray columns("Col1=Codice Text\nCol2=Costo\nCol3=Prezzo\n");
        Row("a record for a header", QByteArray("A1;5;9\n"), columns,
            QStringList{"('A1', '5', '9')", "('Codice', 'Costo', 'Prezzo')", "ColNameHeader=False"});
        Row("columns at other places", QByteArray("Codice;Prezzo;Costo\nA1;9;5\n"), columns,
            QStringList{"la colonna 2 è 'Costo', nel file è 'Prezzo' e 'Costo' è la 3"});
        Row("header or not", QByteArray("a;b\n"), QByteArray("ColNameHeader=No\n"),
            QStringList{"schema.ini, riga 2: 'ColNameHeader=No'"});
        Row("month first", QByteArray("a;b\n"), QByteArray("\nDateTimeFormat=MM/dd/yyyy\n"),
            QStringList{"schema.ini, riga 3: 'DateTimeFormat=MM/dd/yyyy'"});
        Row("other quotes", QByteArray("a;b\n"), QByteArray("TextDelimiter=|\n"), QStringList{"'TextDelimiter=|'"});
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
            QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM dati"); }),
                          QStringList(m_dir->filePath("dati.csv")) + named));
        }
        QCOMPARE(Value(*engine, "SELECT a FROM buoni").toString(), QString("1"));
    }

    /// A line or a text that cannot be read ends who asks for it; the others are there.
    void GoesOnBehindWhatCannotBeRead_data() {
        Columns<QByteArray, QByteArray, QStringList>("content", "schema", "named");
        const QByteArray none;
        Row("fewer fields", QByteArray("a;b\n1;2\n3\n4;5\n"), none, QStringList{"riga 3", "1 campi", "2"});
        Row("more fields", QByteArray("a;b\n1;2\n1;2;3\n4;5\n"), none, QStringList{"riga 3", "3 campi"});
        Row("broken by a CR", QByteArray("a;b\n1;2\n3;x\r4\n4;5\n"), none,
            QStringList{"riga 3, colonna 'b': un ritorno a capo (CR)"});
        Row("no such text", QByteArray("a;b\n1;2\nCitt\xE0;Citt\xE0\n4;5\n"), QByteArray("CharacterSet=65001\n"),
            QStringList{"riga 3", "'b'", "UTF-8"});
    }
    void GoesOnBehindWhatCannotBeRead() {
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, schema);
        QFETCH(const QStringList, named);
        Write("dati.csv", content);
        Write("schema.ini", "[dati.csv]\n" + schema);
        const auto engine = Open();
        const auto rows = engine->Query("SELECT b FROM dati");
        QVERIFY(rows->Next());
        QCOMPARE(rows->Value(0).toString(), QString("2"));
        QVERIFY(rows->Next());
        QVERIFY(Holds(ErrorTextOf([&] { rows->Value(0); }), QStringList(m_dir->filePath("dati.csv")) + named));
        QVERIFY(rows->Next());
        QCOMPARE(rows->Value(0).toString(), QString("5"));
        QVERIFY2(m_notes.join('\n').contains("NON LEGGIBILE: file '"), qPrintable(m_notes.join('\n')));
    }

    /// A quote that is not doubled takes no neighbour with it.
    void GivesUpTheLineOfAStrayQuote_data() {
        Columns<QByteArray, QString, QString>("lines", "read", "noted");
        const QByteArray after("\"2\";\"b\";7\n3;\"c\";9\n");
        const QString noted = "RIGA NON LEGGIBILE: file '%1', riga 2: in un campo tra virgolette";
        Row("inches", QByteArray("1;\"a 1/2\"\";5\n") + after, "2 3:b:7 4:c:9", noted);
        Row("inches, key quoted", QByteArray("\"1\";\"a 1/2\"\";\"5\"\n") + after, "2 3:b:7 4:c:9", noted);
        Row("inside", QByteArray("1;\"a\" 1/2;5\n") + after, "2 3:b:7 4:c:9", noted);
        Row("two fields with blanks", QByteArray("1;\"a\" \"b\";5\n") + after, "2 3:b:7 4:c:9", noted);
        Row("behind a field of two lines", QByteArray("\"x\ny\";\"a\"1;5\n") + after, "2 4:b:7 5:c:9", noted);
        Row("twice", QByteArray("1;\"a\"\";5\n1;\"a\"\";5\n") + after, "2 3 4:b:7 5:c:9", "(così 2 volte)");
        Row("blanks behind the quote", QByteArray("1;\"a\" ;5\n") + after, "2:a:5 3:b:7 4:c:9", "");
        Row("blanks behind the last", QByteArray("1;\"a\";\"5\" \r\n") + after, "2:a:5 3:b:7 4:c:9", "");
        Row("doubled, over two lines", QByteArray("1;\"\"\"a\"\"\nb\";5\n") + after, "2:\"a\"\nb:5 4:b:7 5:c:9", "");
    }
    void GivesUpTheLineOfAStrayQuote() {
        QFETCH(const QByteArray, lines);
        QFETCH(const QString, noted);
        Write("dati.csv", "k;t;n\n" + lines);
        const auto engine = Open();
        QStringList read;
        const auto rows = engine->Query("SELECT _RIGA, t, n FROM dati ORDER BY _RIGA");
        while (rows->Next()) {
            QString row = rows->Value(0).toString();
            const QString error =
                ErrorTextOf([&] { row += ':' + rows->Value(1).toString() + ':' + rows->Value(2).toString(); });
            QVERIFY2(error == "no error" || error.contains("virgolette"), qPrintable(error));
            read.append(row);
        }
        QTEST(read.join(' '), "read");
        const QString expected = noted.contains("%1") ? noted.arg(m_dir->filePath("dati.csv")) : noted;
        QVERIFY2(noted.isEmpty() ? !m_notes.join('\n').contains("NON LEGGIBILE")
                                 : m_notes.join('\n').contains(expected),
                 qPrintable(m_notes.join('\n')));
    }

    /// What programs of old, and Excel, leave in text files.
    void ReadsOdditiesOfPrograms_data() {
        Columns<QByteArray, QString, QString>("content", "second", "noted");
        const QByteArray utf16 = QByteArray("\xff\xfe"
                                            "a\0;\0b\0\r\0\n\0"
                                            "1\0;\0\xe0\0\r\0\n\0",
                                            22);
        QByteArray swapped = utf16;
        for (qsizetype at = 0; at + 1 < swapped.size(); at += 2) {
            std::swap(swapped[at], swapped[at + 1]);
        }
        const QString a = QString::fromUtf8("à");
        Row("UTF-8 without a mark", QByteArray("a;b\n1;\xc3\xa0\n"), a, "in UTF-8");
        Row("UTF-16", utf16, a, "in UTF-8");
        Row("UTF-16, other way round", swapped, a, "in UTF-8");
        Row("other page", QByteArray("a;b\n1;\x85\n"), QString::fromUtf8("…"), "in cp850 sarebbe 'à'");
        Row("CR alone", QByteArray("a;b\r1;x\r"), "x", "separatore ';'");
        Row("end mark of DOS", QByteArray("a;b\r\n1;x\r\n\x1a"), "x", "");
        Row("separators at the end", QByteArray("a;b;\n1;x;\n"), "x", "");
        Row("separators at the end of rows", QByteArray("a;b\n1;x;;\n"), "x", "");
        Row("line of blanks", QByteArray("a;b\n  \n1;x\n"), "x", "");
        Row("separator told", QByteArray("sep=|\na|b\n1|x;,\n"), "x;,", "separatore '|'");
        Row("separator in a quoted name", QByteArray("a,\"c; d\",b\n1,2,x\n"), "x", "separatore ','");
        Row("name twice", QByteArray("c;b;C\n1;x;2\n"), "x", "si legge come 'c (1)'");
        Row("lines of separators", QByteArray("a;b\n;\n1;x\n; \n;;;\n"), "x", "");
        Row("a formula that keeps zeros", QByteArray("a;b\n1;=\"007\"\n"), "007", "'=\"007\"' si legge senza");
        Row("another formula", QByteArray("a;b\n1;\"=\"\"a\"\"&\"\"b\"\"\"\n"), "=\"a\"&\"b\"", "");
        Row("a code that Excel has cut", QByteArray("a;b\n1;8,01234E+12\n"), "8,01234E+12",
            "riga 2, colonna 'b': '8,01234E+12' è un numero abbreviato");
        Row("header repeated", QByteArray("a;b\n1;x\n A;\"B\"\n"), "x", "riga 3: ogni cella ha il nome");
        Row("lines with separators in one field", QByteArray("a;b\n1;\"x; y\nz; w\"\n"), "x; y\nz; w", "");
        Row("two records in one field", QByteArray("a;b\n1;\"x\n2;\"\n"), "x\n2;",
            "colonna 'b': il campo tra virgolette");
        Row("own number of row", QByteArray("_riga;b\n1;x\n"), "x", "si legge come '_riga (1)'");
    }
    void ReadsOdditiesOfPrograms() {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, noted);
        Write("dati.csv", content);
        const auto engine = Open();
        QTEST(Value(*engine, "SELECT b FROM dati").toString(), "second");
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM dati").toInt(), 1);
        QVERIFY2(m_notes.join('\n').contains(noted), qPrintable(m_notes.join('\n')));
    }

    /// A point divides thousands or decimals: the other numbers of the column tell.
    void TellsThousandsFromDecimals_data() {
        Columns<QByteArray, QByteArray, QString, QString>("values", "schema", "read", "noted");
        const QByteArray none;
        Row("decimal commas", QByteArray("1.234\n2,5\n-1.000.000\n"), none, "1234,2,5,-1000000",
            "SEGNO DELLE MIGLIAIA");
        Row("both marks", QByteArray("1.234\n2.500,75\n"), none, "1234,2500,75", "SEGNO DELLE MIGLIAIA");
        Row("both marks alone", QByteArray("9\n2.500,75\n1,234.5-\n"), none, "9,2500,75,1234.5-", "in '2.500,75'");
        Row("both marks beside the other way", QByteArray("1.234\n2.500,75\n2.5\n"), none, "1.234,2500,75,2.5",
            "AMBIGUO");
        Row("a sign behind, blanks of other kinds", QByteArray("2,5\n1.234-\n1.234\xa0\n- 1.234\n"), none,
            QString::fromUtf8("2,5,1234-,1234\u00a0,- 1234"), "SEGNO DELLE MIGLIAIA");
        Row("decimal points", QByteArray("1.234\n2.5\n1,000\n"), none, "1.234,2.5,1000", "SEGNO DELLE MIGLIAIA");
        Row("nothing tells", QByteArray("1.234\n5\n"), none, "1.234,5", "NUMERO AMBIGUO");
        Row("schema.ini tells", QByteArray("1.234\n5\n"), QByteArray("DecimalSymbol=,\n"), "1234,5", "SEGNO");
        Row("codes", QByteArray("1.234\n2,5\nA.1\n"), none, "1.234,2,5,A.1", "la colonna ha anche 'A.1'");
        Row("lettered codes among many", QByteArray("10.100\n12,5\n007\nA-1\n"), none, "10.100,12,5,007,A-1",
            "NUMERO AMBIGUO");
        Row("a dirty number", QByteArray("1.234\n12,5 \n- 5\n"), none, "1234,12,5 ,- 5", "SEGNO DELLE MIGLIAIA");
        Row("a currency, blanks between thousands", QByteArray("1.234\n\x80 2,5\n1 000,5\n"), none,
            QString::fromUtf8("1234,€ 2,5,1 000,5"), "SEGNO DELLE MIGLIAIA");
        Row("a currency in front", QByteArray("\x80 1.234\n2,5\n"), none, QString::fromUtf8("€ 1.234,2,5"),
            "CODE PAGE");
        Row("a unit", QByteArray("1.234\n2,5 kg\n"), none, "1234,2,5 kg", "SEGNO DELLE MIGLIAIA");
        Row("a word", QByteArray("1.234\n2,5\nn.d.\n"), none, "1234,2,5,n.d.", "SEGNO DELLE MIGLIAIA");
        Row("a word, nothing tells", QByteArray("1.234\n2\nn.d.\n"), none, "1.234,2,n.d.", "NUMERO AMBIGUO");
        Row("more words than numbers", QByteArray("1.234\nsu richiesta\nn.d.\n"), none, "1.234,su richiesta,n.d.",
            "NUMERO AMBIGUO");
        Row("numbers, as told", QByteArray("1.234\n1 x 3,00\n2.5\n"), QByteArray("DecimalSymbol=,\nCol1=a Double\n"),
            "1234,1 x 3,00,2.5", "SEGNO DELLE MIGLIAIA");
        Row("one code in eleven", QByteArray("1.234\n2,5\n10.1.2\n" + QByteArray("3\n").repeated(8)), none,
            "1234,2,5,10.1.2,3,3,3,3,3,3,3,3", "SEGNO DELLE MIGLIAIA");
        Row("words, commas told", QByteArray("10.100\n10.200\nTUBO\n"), QByteArray("DecimalSymbol=,\n"),
            "10.100,10.200,TUBO", "NUMERO AMBIGUO");
        Row("codes, commas told", QByteArray("10.100\n00.200\n"), QByteArray("DecimalSymbol=,\n"), "10.100,00.200", "");
        Row("contradiction", QByteArray("1.234\n2,5\n2.5\n"), none, "1.234,2,5,2.5", "NUMERO AMBIGUO");
        Row("fraction of three digits", QByteArray("0.125\n1,234\n"), none, "0.125,1234", "SEGNO DELLE MIGLIAIA");
        Row("fraction, commas told", QByteArray("0.125\n5\n"), QByteArray("DecimalSymbol=,\n"), "0.125,5", "");
        Row("codes, as told", QByteArray("1.234\n5\n"), QByteArray("DecimalSymbol=,\nCol1=a Char Width 9\n"), "1.234,5",
            "");
    }
    void TellsThousandsFromDecimals() {
        QFETCH(const QByteArray, values);
        QFETCH(const QByteArray, schema);
        QFETCH(const QString, noted);
        Write("dati.txt", "a\n" + values);
        Write("schema.ini", "[dati.txt]\nFormat=Delimited(;)\n" + schema);
        QTEST(Values(*Open(), "SELECT a FROM dati"), "read");
        const QString notes = m_notes.join('\n');
        QVERIFY2(noted.isEmpty() ? notes.isEmpty() : notes.contains(noted), qPrintable(notes));
    }

    void NotesWhatSchemaTellsInVain() {
        Write("dati.csv", "a;b\n1;x\n");
        Write("schema.ini", "[altri.csv]\nColl1=a\n[dati.csv]\nMaxScanRows=0\nnumberdigits=2\nDecimalSymbol=,\nCol3="
                            "b\n[Dati.csv]\nx=1\n");
        QCOMPARE(Value(*Open(), "SELECT a FROM dati").toString(), QString("1"));
        QVERIFY2(m_notes.join('\n').contains("CHIAVE SCONOSCIUTA") &&
                     m_notes.join('\n').contains("schema.ini, riga 5: 'numberdigits=2', riga 7: 'Col3=b': niente"),
                 qPrintable(m_notes.join('\n')));
    }

    void OffersAFileByItsFullName() {
        Write("Clienti.csv", "a\n1\n");
        Write("Clienti.txt", "a\n2\n");
        ConnectionSettings settings;
        settings.tables = QStringList{"Clienti.csv"};
        const auto engine = Open(settings);
        QCOMPARE(Value(*engine, "SELECT a FROM [clienti.csv]").toString(), QString("1"));
        QVERIFY(Holds(ErrorTextOf([&] { Open()->Query("SELECT * FROM clienti"); }), {"Clienti.csv", "Clienti.txt"}));
    }
};

QUADRIX_TEST(TextFolderTest)
#include "test_textFolder.moc"
