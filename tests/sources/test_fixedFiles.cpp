#include "sources/fixedFiles.h"
#include "sources/FixedValue.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;
using sources::FixedField;
using Kind = FixedField::Kind;

Q_DECLARE_METATYPE(Kind)

/// Files whose fields stand at fixed places of a line.
class FixedFilesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QStringList m_notes;

    std::unique_ptr<Engine> Open(bool mayBeShort = false, const QString& codePage = "cp850") {
        ConnectionSettings settings;
        settings.codePage = codePage;
        settings.note = [this](const QString& note) { m_notes.append(note); };
        const auto begins = [](QChar mark) { return [mark](QStringView line) { return line.startsWith(mark); }; };
        return sources::OpenFixedFiles(m_dir->path(),
                                       {{"TESTE",
                                         "ordini.DAT",
                                         20,
                                         {{"NUMERO", 2, 4}, {"DATA", 6, 6, Kind::DayMonthYear}, {"CLIENTE", 12, 9}},
                                         begins(u'T'),
                                         mayBeShort},
                                        {"RIGHE",
                                         "ORDINI.dat",
                                         20,
                                         {{"ARTICOLO", 2, 6}, {"QUANTITA", 8, 7, Kind::SignedNumber, 2}},
                                         begins(u'R'),
                                         mayBeShort},
                                        {"MANCA", "manca.dat", 5, {{"A", 1, 5}}}},
                                       settings);
    }

private slots:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        m_notes.clear();
    }

    void ReadsValues_data() {
        Columns<QString, Kind, int, QVariant>("written", "kind", "decimals", "value");
        Row("text", "  ab  ", Kind::Text, 0, QVariant("  ab"));
        Row("blank text", "      ", Kind::Text, 0, QVariant());
        Row("code", "000120", Kind::Text, 0, QVariant("000120"));
        Row("whole", "000120", Kind::Number, 0, QVariant(120LL));
        Row("implied decimals", "001250", Kind::Number, 2, QVariant(12.5));
        Row("fewer digits than decimals", "     5", Kind::Number, 2, QVariant(0.05));
        Row("written decimals", " 12.50", Kind::Number, 2, QVariant(12.5));
        Row("written with a comma", " 12,50", Kind::Number, 2, QVariant(12.5));
        Row("zero", "000000", Kind::Number, 2, QVariant(0.0));
        Row("blank number", "      ", Kind::Number, 2, QVariant());
        Row("sign behind", "00125-", Kind::Number, 2, QVariant(-1.25));
        Row("sign in front", "-  125", Kind::Number, 0, QVariant(-125LL));
        Row("sign in the last digit", "0012N", Kind::SignedNumber, 0, QVariant(-125LL));
        Row("plus in the last digit", "0012E", Kind::SignedNumber, 2, QVariant(1.25));
        Row("nought below zero", "0012}", Kind::SignedNumber, 0, QVariant(-120LL));
        Row("the way of micros", "0012u", Kind::SignedNumber, 0, QVariant(-125LL));
        Row("no signed number", "0012N", Kind::Number, 0, QVariant("0012N"));
        Row("more digits than a number keeps", "1234567890123456.7", Kind::Number, 0, QVariant("1234567890123456.7"));
        Row("day", "050324", Kind::DayMonthYear, 0, QVariant("20240305"));
        Row("day of the last century", "311299", Kind::DayMonthYear, 0, QVariant("19991231"));
        Row("whole day", "20240229", Kind::YearMonthDay, 0, QVariant("20240229"));
        Row("no such day", "20230229", Kind::YearMonthDay, 0, QVariant("20230229"));
        Row("no day", "00000000", Kind::YearMonthDay, 0, QVariant());
        Row("half a day", "0503", Kind::DayMonthYear, 0, QVariant("0503"));
    }
    void ReadsValues() {
        QFETCH(const QString, written);
        QFETCH(const Kind, kind);
        QFETCH(const int, decimals);
        QTEST(sources::ReadFixedValue(written, {"x", 1, static_cast<int>(written.size()), kind, decimals}), "value");
    }

    void ReadsRecordsOfSeveralKinds_data() {
        Columns<QByteArray>("end");
        Row("CR LF", QByteArray("\r\n"));
        Row("LF", QByteArray("\n"));
        Row("none", QByteArray());
    }
    void ReadsRecordsOfSeveralKinds() {
        QFETCH(const QByteArray, end);
        WriteFile(m_dir->filePath("Ordini.dat"), "\x0c"
                                                 "Stampa ordini pag.1" +
                                                     end + "T0001050324Forl\x8d    " + end + "R00012A0012345      " +
                                                     end + "R00012B001234J      " + end + "T0002000000         " + end +
                                                     "\x1a");
        const auto engine = Open();
        QCOMPARE(engine->Tables(), (QStringList{"TESTE", "RIGHE", "MANCA"}));
        QCOMPARE(Values(*engine, "SELECT NUMERO FROM TESTE"), QString("0001,0002"));
        QCOMPARE(Value(*engine, "SELECT CLIENTE FROM TESTE").toString(), QString::fromUtf8("Forlì"));
        QCOMPARE(Value(*engine, "SELECT DATA FROM TESTE").toDate(), QDate(2024, 3, 5));
        QCOMPARE(Values(*engine, "SELECT _RIGA FROM TESTE"), QString("2,5"));
        QCOMPARE(Values(*engine, "SELECT QUANTITA FROM RIGHE"), QString("123.45,-123.41"));
        QVERIFY(m_notes.join('\n').contains("riga 1: non è un record: 'Stampa ordini pag.1'"));
        QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM MANCA"); }), {m_dir->path(), "manca.dat"}));
    }

    /// Its fields are counted in characters, whatever bytes these take.
    void ReadsUtf8_data() {
        Columns<QByteArray>("end");
        Row("lines", QByteArray("\n"));
        Row("none", QByteArray());
    }
    void ReadsUtf8() {
        QFETCH(const QByteArray, end);
        WriteFile(m_dir->filePath("ordini.dat"),
                  "T0001050324\xc3\x80\xe2\x82\xac\xc3\xac      " + end + "R0001\xc3\xa0" + "A0012345      " + end);
        const auto engine = Open(false, QString());
        QCOMPARE(Value(*engine, "SELECT CLIENTE FROM TESTE").toString(), QString::fromUtf8("À€ì"));
        QCOMPARE(Value(*engine, "SELECT QUANTITA FROM RIGHE").toDouble(), 123.45);
        QVERIFY2(m_notes.isEmpty(), qPrintable(m_notes.join('\n')));
    }

    void NamesLinesOfAnotherLength_data() {
        Columns<QByteArray, bool, QString>("line", "mayBeShort", "error");
        Row("longer", QByteArray("R00012A0012345      x"), false,
            "riga 2, colonna 'QUANTITA': è lunga 21 caratteri, un record ne ha 20");
        Row("longer by blanks", QByteArray("R00012A0012345         "), false, "");
        Row("shorter", QByteArray("R00012A0012345"), false,
            "riga 2, colonna 'QUANTITA': è lunga 14 caratteri, un record ne ha 20");
        Row("shorter, as it may be", QByteArray("R00012A0012345"), true, "");
        Row("cut in a number", QByteArray("R00012A00123"), true, "riga 2, colonna 'QUANTITA': la riga finisce dentro");
    }
    void NamesLinesOfAnotherLength() {
        QFETCH(const QByteArray, line);
        QFETCH(const bool, mayBeShort);
        QFETCH(const QString, error);
        const QByteArray good = "R00012B0000100      \n";
        WriteFile(m_dir->filePath("ordini.dat"), good + line + '\n' + good);
        const auto engine = Open(mayBeShort);
        const auto rows = engine->Query("SELECT QUANTITA FROM RIGHE");
        QVERIFY(rows->Next() && rows->Value(0).toInt() == 1);
        QVERIFY(rows->Next());
        const QString raised = ErrorTextOf([&] { QCOMPARE(rows->Value(0).toDouble(), 123.45); });
        QVERIFY(Holds(raised, {error.isEmpty() ? "no error" : "ordini.dat", error}));
        QCOMPARE(m_notes.join('\n').contains("NON LEGGIBILE"), !error.isEmpty());
        QVERIFY(rows->Next() && rows->Value(0).toInt() == 1);
    }
};

QUADRIX_TEST(FixedFilesTest)
#include "test_fixedFiles.moc"
