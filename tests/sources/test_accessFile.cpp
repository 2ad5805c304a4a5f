#include "tests/sources/dbfBytes.h"
#include "tests/sources/mdbBytes.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDir>
#include <QTemporaryDir>

using namespace sourcesTest;
using mdbBytes::Calculated;
using mdbBytes::Database;
using mdbBytes::Kept;
using mdbBytes::LongValue;
using mdbBytes::LongValueRow;
using mdbBytes::Utf16;

/// An Access file is a database.
class AccessFileTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

    QString Path() const { return m_dir->filePath("Dati.MDB"); }
    std::unique_ptr<Engine> Open(const QByteArray& bytes, const ConnectionSettings& more = {}) const {
        WriteFile(Path(), bytes);
        ConnectionSettings settings = more;
        settings.connectionString = "Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=" + Path();
        return sources::OpenFileSource(settings);
    }

    /// Two rows of a code and an amount, in a table and columns with blanks in their names.
    static mdbBytes::Table Articles() {
        return {
            "Anagrafica Articoli",
            {{"Codice Art", 10, 0}, {"Prezzo", 5, 8}},
            {{Utf16("00120"), RawBytes(qint64(12345))}, {Utf16(QString::fromUtf8("Città€")), RawBytes(qint64(-5))}}};
    }

    /// The only value of a table of one column, or the error of reading it.
    QString ValueOf(const mdbBytes::Column& column, const QByteArray& value,
                    const QVector<QByteArray>& longValues = {}) const {
        const mdbBytes::Table table{"t", {column, {"n", 4, 4}}, {{value, RawBytes(7)}}};
        QString text;
        const QString error = ErrorTextOf([&] {
            const auto engine = Open(Database({table}, longValues));
            const auto cursor = engine->Query("SELECT * FROM t");
            text = !cursor->Next()                   ? "no row"
                   : cursor->Value(2) != QVariant(7) ? "wrong row"
                   : cursor->Value(1).isNull()       ? "NULL"
                   : cursor->Value(1).userType() == QMetaType::QByteArray
                       ? QString(cursor->Value(1).toByteArray().toHex())
                   : cursor->Value(1).userType() == QMetaType::QDateTime
                       ? cursor->Value(1).toDateTime().toString("yyyy-MM-dd hh:mm:ss")
                       : cursor->Value(1).toString();
        });
        return error == "no error" ? text : error;
    }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void ReadsTablesWithBlanksInTheirNames() {
        ConnectionSettings settings;
        settings.lookupColumns = QStringList{"Anagrafica Articoli.Codice Art"};
        const auto engine = Open(Database({Articles(), {"MSysAccessObjects", {{"n", 4, 4}}, {}, -1, 1, 2}}), settings);
        QCOMPARE(engine->Tables(), QStringList{"Anagrafica Articoli"});
        QCOMPARE(Values(*engine, "SELECT [Codice Art] FROM [Anagrafica Articoli] ORDER BY _RECNO"),
                 QString::fromUtf8("00120,Città€"));
        QCOMPARE(Value(*engine, "SELECT Prezzo FROM [anagrafica articoli] WHERE [Codice Art] = 'CITTà€'").toDouble(),
                 -0.0005);
        const auto plan =
            engine->Query("EXPLAIN QUERY PLAN SELECT 1 FROM [Anagrafica Articoli] WHERE [Codice Art] = '00120'");
        QVERIFY(plan->Next());
        QVERIFY(plan->Value(3).toString().contains("INDEX"));
    }

    void ReadsRowsOfSeveralPages() {
        mdbBytes::Table table{"t", {{"n", 4, 4}, {"c", 10, 0}}, {}};
        constexpr int Rows = 400;
        for (int row = 1; row <= Rows; ++row) {
            table.rows.append({RawBytes(row), Utf16(QString(40, 'x'))});
        }
        const auto engine = Open(Database({Articles(), table, Articles()}));
        QCOMPARE(Value(*engine, "SELECT COUNT(DISTINCT n) FROM t"), QVariant(Rows));
        QCOMPARE(Value(*engine, "SELECT MAX(n) FROM t"), QVariant(Rows));
    }

    void ReadsEveryType_data() {
        Columns<mdbBytes::Column, QByteArray, QString>("column", "value", "expected");
        const auto row = [](const char* name, const mdbBytes::Column& column, const QByteArray& value,
                            const QString& expected) { Row(name, column, value, expected); };
        const auto decimal = [](int sign, const char* hexadecimal) -> QByteArray {
            return RawBytes(static_cast<qint8>(sign)) + QByteArray::fromHex(hexadecimal);
        };
        row("yes", {"c", 1, 0}, "", "true");
        row("no", {"c", 1, 0}, {}, "false");
        row("byte", {"c", 2, 1}, "\xff", "255");
        row("integer", {"c", 3, 2}, RawBytes(qint16(-2)), "-2");
        row("Null integer", {"c", 3, 2}, {}, "NULL");
        row("currency", {"c", 5, 8}, RawBytes(qint64(-12345678)), "-1234.5678");
        row("currency of many digits", {"c", 5, 8}, RawBytes(std::numeric_limits<qint64>::max()),
            "922337203685477.5807");
        row("least currency", {"c", 5, 8}, RawBytes(std::numeric_limits<qint64>::min()), "-922337203685477.5808");
        row("single", {"c", 6, 4}, RawBytes(0.1F), "0.1");
        row("double", {"c", 7, 8}, RawBytes(1234.56), "1234.56");
        row("moment", {"c", 8, 8}, RawBytes(45356.43090277778), "2024-03-05 10:20:30");
        row("moment near midnight", {"c", 8, 8}, RawBytes(45356.9999999), "2024-03-06 00:00:00");
        row("day before the first", {"c", 8, 8}, RawBytes(-1.25), "1899-12-29 06:00:00");
        row("binary", {"c", 9, 0}, QByteArray("\0\xff", 2), "00ff");
        row("text", {"c", 10, 0}, Utf16(" 007 "), " 007 ");
        row("compressed text", {"c", 10, 0},
            QByteArray("\xff\xfe"
                       "Citt\xe0\0\xac\x20\0!",
                       12),
            QString::fromUtf8("Città€!"));
        row("empty text", {"c", 10, 0}, "", "");
        row("Null text", {"c", 10, 0}, {}, "NULL");
        row("replication number", {"c", 15, 16}, QByteArray::fromHex("10b8a76bad9dd11180b400c04fd430c8"),
            "6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
        row("decimal", {"c", 16, 17, 18, 4}, decimal(0, "00000000000000000000000040e20100"), "12.3456");
        row("negative decimal", {"c", 16, 17, 18, 4}, decimal(-128, "00000000000000000000000040e20100"), "-12.3456");
        row("decimal of 28 digits", {"c", 16, 17, 28, 4}, decimal(0, "000000005ece4f206102253effffff0f"),
            "999999999999999999999999.9999");
        row("no date", {"c", 8, 8}, RawBytes(4e6),
            "file 'Dati.MDB', tabella 't', riga 1, colonna 'c': il valore 4e+06 non è una data");
        row("big integer", {"c", 0x13, 8}, RawBytes(qint64(9007199254740993)), "9007199254740993");
        row("calculated number", {"c", 4, 0, 0, 0, true}, Calculated(RawBytes(12)), "12");
        row("calculated text", {"c", 10, 0, 0, 0, true}, Calculated(Utf16("Wayne, Bruce")), "Wayne, Bruce");
        row("calculated date", {"c", 8, 0, 0, 0, true}, Calculated(RawBytes(45356.5)), "2024-03-05 12:00:00");
        row("calculated yes", {"c", 1, 0, 0, 0, true}, Calculated(QByteArray(1, '\xff')), "true");
        row("calculated, cut", {"c", 4, 0, 0, 0, true}, QByteArray(10, '\0'),
            "file 'Dati.MDB', tabella 't', riga 1, colonna 'c': il valore calcolato non si legge (10 byte)");
    }
    void ReadsEveryType() {
        QFETCH(const mdbBytes::Column, column);
        QFETCH(const QByteArray, value);
        QTEST(ValueOf(column, value), "expected");
    }

    /// A damaged value ends who asks for it; rows that the definition does not announce are read.
    void ReadsWhatIsOdd() {
        mdbBytes::Table odd = Articles();
        odd.columns[1].length = 4;
        odd.columns.append({"Allegati", 0x12, 4});
        odd.rows = {{Utf16("A"), RawBytes(1), RawBytes(1)}, {Utf16("B"), RawBytes(1), RawBytes(1)}};
        odd.announced = 1;
        QStringList notes;
        ConnectionSettings settings;
        settings.note = [&notes](const QString& note) { notes.append(note); };
        const auto engine = Open(Database({odd}), settings);
        QCOMPARE(Values(*engine, "SELECT [Codice Art] FROM [Anagrafica Articoli]"), QString("A,B"));
        QVERIFY(Holds(ErrorTextOf([&] { Value(*engine, "SELECT Prezzo FROM [Anagrafica Articoli]"); }),
                      {"riga 1, colonna 'Prezzo'", "4 byte invece di 8"}));
        QVERIFY(Holds(notes.join('\n'), {"VALORE NON LEGGIBILE", "(così 2 volte)", "RIGHE NON ANNUNCIATE",
                                         "annuncia 1 righe, se ne leggono 2", "COLONNA NON LETTA", "'Allegati'"}));
    }

    void ReadsLongValues_data() {
        Columns<int, QByteArray, QStringList>("type", "head", "expected");
        const auto row = [](const char* name, int type, const QByteArray& head, const QStringList& expected) {
            Row(name, type, head, expected);
        };
        const auto place = [](int index) { return LongValueRow(1, index); };
        constexpr int Memo = 12;
        constexpr int Ole = 11;
        row("memo in the row", Memo, LongValue(Kept::Inline, 8, 0, Utf16("Nota")), {"Nota"});
        row("memo of its own row", Memo, LongValue(Kept::OneRow, 10, place(0)), {"Lunga"});
        row("memo in a chain", Memo, LongValue(Kept::Chain, 18, place(2)), {"CatenaFin"});
        row("empty memo", Memo, LongValue(Kept::Inline, 0, 0, ""), {""});
        row("object in a chain", Ole, LongValue(Kept::Chain, 18, place(2)),
            {"43006100740065006e0061004600"
             "69006e00"});
        const QStringList where{"Dati.MDB", "'t'", "riga 1", "'c'"};
        row("longer than it is", Memo, LongValue(Kept::Chain, 20, place(2)),
            where + QStringList{"20 byte", "leggono 18"});
        row("shorter than it is", Memo, LongValue(Kept::OneRow, 4, place(0)), where + QStringList{"danneggiato"});
        row("chain without end", Memo, LongValue(Kept::Chain, 5000, place(3)), where + QStringList{"danneggiato"});
        row("page that is not there", Memo, LongValue(Kept::OneRow, 10, 0x7000), where + QStringList{"danneggiato"});
        row("row that is not there", Memo, LongValue(Kept::OneRow, 10, place(9)), where + QStringList{"danneggiato"});
        row("head cut off", Memo, QByteArray(5, '\1'), where + QStringList{"danneggiato (5 byte)"});
    }
    void ReadsLongValues() {
        QFETCH(const int, type);
        QFETCH(const QByteArray, head);
        QFETCH(const QStringList, expected);
        const QVector<QByteArray> longValues{Utf16("Lunga"), RawBytes(quint32(0)) + Utf16("Fin"),
                                             RawBytes(LongValueRow(1, 1)) + Utf16("Catena"),
                                             RawBytes(LongValueRow(1, 3)) + QByteArray(500, 'x')};
        QVERIFY(Holds(ValueOf({"c", type, 0}, head, longValues), expected));
    }

    void NamesWhatCannotBeRead_data() {
        Columns<QByteArray, QStringList>("bytes", "message");
        const auto row = [](const char* name, const QByteArray& bytes, const QStringList& message) {
            Row(name, bytes, (QStringList{"Dati.MDB"} + message));
        };
        const QByteArray whole = Database({Articles()});
        const auto changed = [&](qsizetype at, const QByteArray& with) {
            return QByteArray(whole).replace(at, with.size(), with);
        };
        row("other kind of file", QByteArray(9000, 'x'), {"non è un database di Access"});
        row("empty file", "", {"non è un database di Access"});
        row("cut in the list of tables", whole.left(2 * mdbBytes::PageSize + 100), {"danneggiato"});
        row("encrypted", whole.left(mdbBytes::PageSize) + QByteArray(whole.size() - mdbBytes::PageSize, '\x5a'),
            {"danneggiato o cifrato"});
        row("version of the future", changed(0x14, "\x63"), {"danneggiato"});
        row("cut before the rows", whole.left(5 * mdbBytes::PageSize), {"Anagrafica Articoli", "2 righe", "leggono 0"});
        row("definition overwritten", changed(4 * mdbBytes::PageSize, QByteArray(mdbBytes::PageSize, '\xff')),
            {"Anagrafica Articoli", "definizione"});
        mdbBytes::Table other = Articles();
        other.announced = 3;
        row("rows lost", Database({other}), {"Anagrafica Articoli", "3 righe", "leggono 2"});
        other.announced = -1;
        other.objectType = 6;
        row("linked table", Database({other}), {"Anagrafica Articoli", "altro file"});
    }
    void NamesWhatCannotBeRead() {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QStringList, message);
        QVERIFY(Holds(ErrorTextOf([&] { Open(bytes)->Query("SELECT * FROM [Anagrafica Articoli]"); }), message));
    }

    void NamesTheFileThatIsNotThere() {
        ConnectionSettings settings;
        settings.databaseName = m_dir->filePath("manca.mdb");
        QVERIFY(Holds(ErrorTextOf([&] { sources::OpenFileSource(settings); }), {"manca.mdb", "non esiste"}));
        QVERIFY(QDir(m_dir->path()).mkdir("manca.mdb") && QFile::link("/proc/self/mem", m_dir->filePath("Blocco.mdb")));
        settings.databaseName = m_dir->filePath("blocco.mdb");
        QVERIFY(Holds(ErrorTextOf([&] { sources::OpenFileSource(settings); }), {"Blocco.mdb"}));
    }

    void ReadsConnectionSettings_data() {
        Columns<QString, QString, QString, bool>("text", "dsn", "database", "isFile");
        ::Row("driver", "Driver={Microsoft Access Driver (*.mdb)};Dbq=%1\\dati.mdb;Uid=Admin;Pwd=;", "", "", true);
        ::Row("Jet", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"%1/Dati.mdb\";User Id=admin", "", "", true);
        ::Row("ACE", "Provider=Microsoft.ACE.OLEDB.12.0;Data Source=%1/Dati.mdb", "", "", true);
        ::Row("file alone", "Data Source=%1/Dati.mdb", "", "", true);
        ::Row("data source", "", "%1\\DATI.MDB", "", true);
        ::Row("database", "", "", "%1/dati.mdb", true);
        ::Row("database of a server", "", "", "FACTORY", false);
        ::Row("DSN", "", "FACTORY", "", false);
    }
    void ReadsConnectionSettings() {
        QFETCH(QString, text);
        QFETCH(QString, dsn);
        QFETCH(QString, database);
        QFETCH(const bool, isFile);
        WriteFile(Path(), Database({Articles()}));
        ConnectionSettings settings;
        settings.connectionString = text.replace("%1", m_dir->path());
        settings.dsn = dsn.replace("%1", m_dir->path());
        settings.databaseName = database.replace("%1", m_dir->path());
        const auto engine = sources::OpenFileSource(settings);
        QCOMPARE(engine != nullptr, isFile);
        QVERIFY(!isFile || Value(*engine, "SELECT COUNT(*) FROM [Anagrafica Articoli]").toInt() == 2);
    }

    /// A database that Access itself has written.
    void ReadsASampleOfAccess() {
        ConnectionSettings settings;
        settings.databaseName = qEnvironmentVariable("QUADRIX_TEST_ACCESS");
        if (settings.databaseName.isEmpty()) {
            QSKIP("no sample of Access: scripts/test fetches it where a package registry can be reached");
        }
        const auto engine = sources::OpenFileSource(settings);
        QCOMPARE(engine->Tables(), (QStringList{"Fruit", "Fruit Salad", "Veggie Salad", "Muffin/Bread", "Dried"}));
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM Fruit").toInt(), 37);
        QCOMPARE(Value(*engine, "SELECT [Vit A] FROM fruit WHERE Fruit = 'apricot'").toInt(), 420);
        QCOMPARE(Values(*engine, "SELECT fruit FROM [Veggie Salad] ORDER BY _RECNO"),
                 QString("Avocado,Carrots,Pepper, Red Bell,Tomato"));
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM [Muffin/Bread]").toInt(), 13);
    }
};

QUADRIX_TEST(AccessFileTest)
#include "test_accessFile.moc"
