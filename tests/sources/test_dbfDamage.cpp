#include "tests/sources/dbfBytes.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;
using dbfBytes::Table;

/// Tables that are damaged, or of kinds that programs of old have left: nothing of them is guessed.
class DbfDamageTest : public QObject {
    Q_OBJECT

private:
    /// A whole table of two rows "00001" and "00002" with an amount.
    static Table Good() {
        return {0x30, 0x03, {{"codice", 'C', 5}, {"importo", 'N', 6, 2}}, " 00001  1.50 00002  2.50", 2};
    }

    static QString ErrorOfReading(const QByteArray& bytes) {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("Anagrafe.DBF"), bytes);
        return ErrorTextOf([&] { OpenFolder(dir.path())->Query("SELECT * FROM anagrafe"); });
    }

    /// The first row's memo text, of a table beside a memo file; or the error.
    static QString Memo(const Table& table, const QByteArray& memoFile, const QString& extension) {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"), table.Bytes());
        if (!extension.isEmpty()) {
            WriteFile(dir.filePath("T." + extension), memoFile);
        }
        QString text;
        const QString error =
            ErrorTextOf([&] { text = Value(*OpenFolder(dir.path()), "SELECT note FROM t").toString(); });
        return error == "no error" ? text : error;
    }

    static Table MemoTable(int version, const QByteArray& pointer) {
        return {version, 0x03, {{"note", 'M', static_cast<int>(pointer.size())}}, " " + pointer};
    }

    static QByteArray FoxProMemo(const QByteArray& text, quint32 length) {
        QByteArray bytes(512 + 8, '\0');
        bytes[7] = 64;
        bytes[512 + 3] = 1;
        qToBigEndian(length, bytes.data() + 512 + 4);
        return bytes + text;
    }

private slots:
    void ReadsAWholeTable() {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("Anagrafe.DBF"), Good().Bytes() + "rubbish behind the end mark");
        QCOMPARE(Values(*OpenFolder(dir.path()), "SELECT codice || importo FROM anagrafe"),
                 QString("000011.5,000022.5"));
    }

    void NamesWhatIsWrong_data() {
        Columns<QByteArray, QStringList>("bytes", "message");
        const auto changed = [](qsizetype at, char byte) {
            QByteArray bytes = Good().Bytes();
            bytes[at] = byte;
            return bytes;
        };
        const auto row = [](const char* name, const QByteArray& bytes, const QStringList& message) {
            Row(name, bytes, (QStringList{"Anagrafe.DBF"} + message));
        };
        const QByteArray whole = Good().Bytes();
        row("empty file", "", {"non è una tabella"});
        row("other kind of file", QByteArray("PK\x03\x04", 4) + QByteArray(60, '\0'), {"non è una tabella"});
        row("cut in the second row", whole.left(whole.size() - 4), {"2 righe", "finisce alla riga 1"});
        row("cut in the header", whole.left(50), {"intestazione"});
        row("header longer than the file", changed(9, 0x7f), {"finisce alla riga 0"});
        row("no header", changed(8, 20), {"lunghezze impossibili", "intestazione 20"});
        row("rows of no length", changed(10, 1), {"lunghezze impossibili", "riga 1"});
        row("rows longer than the columns", changed(10, 40), {"12 byte", "40"});
        row("deleted mark that is none", changed(whole.size() - 13, 'x'), {"riga 2", "riga cancellata"});
        row("column of no length", changed(32 + 16, 0), {"'codice'", "lunghezza impossibile"});
        row("date of nine bytes", changed(32 + 32 + 11, 'D'), {"'importo'", "lunghezza impossibile (6)"});
    }
    void NamesWhatIsWrong() {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, message);
        QVERIFY(Holds(ErrorOfReading(bytes), message));
    }

    /// What is odd, but leaves no doubt, is read and told.
    void ReadsWhatIsOdd_data() {
        Columns<QByteArray, QString, QString>("bytes", "first", "noted");
        const auto changed = [](qsizetype at, char byte) {
            QByteArray bytes = Good().Bytes();
            bytes[at] = byte;
            return bytes;
        };
        Row("more rows than announced", changed(4, 1), "00001", "annuncia 1 righe, il file ne contiene altre 1");
        Row("column list without end", changed(96, ' '), "00001", "");
        Row("version of a program of its kind", changed(0, '\x7b'), "00001", "");
        Table twice = Good();
        twice.fields.append({"IMPORTO", 'C', 1});
        twice.rows = " 00001  1.50x 00002  2.50y";
        Row("same name twice", twice.Bytes(), "00001", "'importo': il nome non dice");
        QByteArray stranger = Good().Bytes();
        stranger[29] = 0x05;
        stranger.replace("00001", "C\x8d   ");
        Row("language that is none", stranger, QString("C\u008d"), "in cp850 sarebbe 'Cì'");
    }
    void ReadsWhatIsOdd() {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, noted);
        const QTemporaryDir dir;
        WriteFile(dir.filePath("Anagrafe.DBF"), bytes);
        QString notes;
        ConnectionSettings settings;
        settings.note = [&notes](const QString& note) { notes += note; };
        const auto engine = OpenFolder(dir.path(), settings);
        QTEST(Value(*engine, "SELECT codice FROM anagrafe").toString(), "first");
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM anagrafe").toInt(), 2);
        QVERIFY2(notes.contains(noted) && notes.isEmpty() == noted.isEmpty(), qPrintable(notes));
    }

    /// A memo that cannot be read ends the row that asks for it, and is told.
    void ReadsRowsWithoutTheirMemos() {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"),
                  Table{0x30, 0x03, {{"nome", 'C', 2}, {"note", 'M', 4}}, QByteArray(" ab\0\0\0\0 cd\1\0\0\0", 14), 2}
                      .Bytes());
        QStringList notes;
        ConnectionSettings settings;
        settings.note = [&notes](const QString& note) { notes.append(note); };
        const auto engine = OpenFolder(dir.path(), settings);
        const auto rows = engine->Query("SELECT nome, note FROM t");
        QVERIFY(rows->Next());
        QCOMPARE(rows->Value(1).toString(), QString());
        QVERIFY(rows->Next());
        QCOMPARE(rows->Value(0).toString(), QString("cd"));
        QVERIFY(Holds(ErrorTextOf([&] { rows->Value(1); }), {"File 't.dbf', riga 2, colonna 'note'", "t.fpt"}));
        QVERIFY2(notes.join('\n').contains("VALORE NON LEGGIBILE: file 't.dbf', riga 2, colonna 'note': manca"),
                 qPrintable(notes.join('\n')));
    }

    void SurvivesAnyChangedByte() {
        const QByteArray whole = Good().Bytes();
        for (int at = 0; at < whole.size(); ++at) {
            for (const char byte : {'\0', '\x7f', '\xff'}) {
                QByteArray bytes = whole;
                bytes[at] = byte;
                const QString message = ErrorOfReading(bytes);
                QVERIFY2(message == "no error" || message.contains("Anagrafe.DBF"), qPrintable(message));
            }
        }
    }

    /// The setting holds where the file tells nothing, or is put above it.
    void ChoosesTheCodePage_data() {
        Columns<int, QByteArray, QString, QString>("language", "beside", "setting", "read");
        const QByteArray none;
        Row("header", 0x02, none, "cp1252", "àèX");
        Row("header is overruled", 0x03, none, "cp850!", "àèX");
        Row("file beside it", 0x03, QByteArray("CP850"), "", "àèX");
        Row("file beside it, in other words", 0, QByteArray("OEM 850\r\n"), "cp1252", "àèX");
        Row("file beside it is overruled", 0, QByteArray("1252"), "cp850!", "àèX");
    }
    void ChoosesTheCodePage() {
        QFETCH(const int, language);
        QFETCH(const QByteArray, beside);
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"), Table{0x03, language, {{"nome", 'C', 3}}, " \x85\x8aX"}.Bytes());
        if (!beside.isEmpty()) {
            WriteFile(dir.filePath("T.CPG"), beside);
        }
        QFETCH(const QString, setting);
        ConnectionSettings settings;
        settings.codePage = setting;
        QTEST(Value(*OpenFolder(dir.path(), settings), "SELECT nome FROM t").toString(), "read");
    }

    void TakesTheSettingWhereTheFileTellsNoCodePage() {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"), Table{0x03, 0, {{"nome", 'C', 3}}, " \x85\x8aX"}.Bytes());
        ConnectionSettings settings;
        settings.codePage = "cp850";
        QCOMPARE(Value(*OpenFolder(dir.path(), settings), "SELECT nome FROM t").toString(), QString("àèX"));
        settings.codePage.clear();
        QCOMPARE(Value(*OpenFolder(dir.path(), settings), "SELECT nome FROM t").toString(), QString("…ŠX"));
        settings.codePage = "cp0";
        QVERIFY(Holds(ErrorTextOf([&] { OpenFolder(dir.path(), settings)->Query("SELECT * FROM t"); }),
                      {"t.dbf", "'cp0'"}));
    }

    void ReadsNullsAndTextsOfTheirOwnLength() {
        // Bits of the flags, in the order of the columns: length of "corto", Null of "corto", Null of "numero".
        Table table{
            0x32,
            0x03,
            {{"corto", 'V', 5, 0, 2}, {"numero", 'N', 3, 0, 2}, {"fisso", 'C', 2}, {"_NullFlags", '0', 1, 0, 5}},
            QByteArray(" ab \0\3  7xy\1", 12) + QByteArray(" abcde   xy\4", 12) + QByteArray(" abcde  7xy\3", 12),
            3};
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"), table.Bytes());
        const auto engine = OpenFolder(dir.path());
        QCOMPARE(Values(*engine, "SELECT '<' || corto || '>' FROM t WHERE _RECNO < 3"), QString("<ab >,<abcde>"));
        QCOMPARE(Values(*engine, "SELECT _RECNO FROM t WHERE corto IS NULL"), QString("3"));
        QCOMPARE(Values(*engine, "SELECT _RECNO FROM t WHERE numero IS NULL"), QString("2"));
        QCOMPARE(engine->Columns("t").size(), 4); // the flags themselves are no column
    }

    void LeavesOutColumnsThatAreNoValues() {
        const QTemporaryDir dir;
        WriteFile(dir.filePath("t.dbf"),
                  Table{0x30, 0x03, {{"foto", 'G', 4}, {"dato", 'W', 4}, {"nome", 'C', 2}}, " aaaabbbbxy"}.Bytes());
        const auto engine = OpenFolder(dir.path());
        QCOMPARE(Value(*engine, "SELECT nome FROM t").toString(), QString("xy"));
        QVERIFY_EXCEPTION_THROWN(engine->Query("SELECT foto FROM t"), SqlError);
    }

    void ReadsMemosOfEachKind_data() {
        Columns<int, QByteArray, QString, QByteArray, QStringList>("version", "pointer", "extension", "file",
                                                                   "expected");
        const auto row = [](const char* name, int version, const QByteArray& pointer, const QString& extension,
                            const QByteArray& file,
                            const QStringList& expected) { Row(name, version, pointer, extension, file, expected); };
        const QByteArray second = "         1";
        const QByteArray dBase3 = QByteArray(512, '\0') + "Nota gi\xe0 lunga" + QByteArray(600, 'x') + "\x1a\x1a";
        const QByteArray dBase4 = QByteArray(512, '\0') + QByteArray("\xff\xff\x08\0\x0c\0\0\0nota", 12);
        const QByteArray binary("\x08\0\0\0", 4);
        const QByteArray foxPro = FoxProMemo("testo", 5);
        row("dBase III", 0x83, second, "dbt", dBase3, {"Nota già lunga", QString(600, u'x')});
        row("dBase III without end mark", 0x83, second, "dbt", dBase3.left(600), {"Nota già lunga"});
        row("dBase III of another program", 0x83, QByteArray("         8"), "fpt", foxPro, {"testo"});
        row("dBase III that tells of no memos", 0x03, second, "dbt", dBase3, {"Nota già lunga"});
        row("lines that dBase ends", 0x83, second, "dbt", QByteArray(512, '\0') + "uno\x8d\ndue\r\ntre\x1a",
            {"uno\r\ndue\r\ntre"});
        row("lines that end in a letter", 0x83, second, "dbt", QByteArray(512, '\0') + "luned\x8d\ndue\nx\x1a",
            {QString("luned%1\ndue\nx").arg(QChar(0x8d))});
        row("dBase IV", 0x8b, second, "DBT", dBase4, {"nota"});
        row("dBase IV, no text there", 0x8b, second, "dbt", QByteArray(1024, '\0'), {"riga 1", "'note'", "blocco 1"});
        row("FoxPro, pointer in digits", 0xf5, "         8", "FPT", foxPro, {"testo"});
        row("FoxPro, binary pointer", 0x30, binary, "fpt", foxPro, {"testo"});
        row("FoxPro, length beyond the file", 0x30, binary, "fpt", FoxProMemo("testo", 0x7fffffff),
            {"'note'", "fuori"});
        row("FoxPro, block beyond the file", 0x30, QByteArray("\xff\xff\xff\x7f", 4), "fpt", foxPro, {"fuori"});
        row("FoxPro, block in the header", 0x30, QByteArray("\x01\0\0\0", 4), "fpt", foxPro, {"blocco 1"});
        row("memo file cut in its header", 0x30, binary, "fpt", "abc", {"riga 1", "fuori"});
        row("pointer that is none", 0xf5, "      12x4", "fpt", foxPro, {"riga 1", "'note'", "12x4"});
        row("missing memo file", 0x30, binary, "", {}, {"t.dbf", "riga 1", "'note'", "t.fpt"});
    }
    void ReadsMemosOfEachKind() {
        QFETCH(int, version);
        QFETCH(QByteArray, pointer);
        QFETCH(QString, extension);
        QFETCH(QByteArray, file);
        QFETCH(QStringList, expected);
        QVERIFY(Holds(Memo(MemoTable(version, pointer), file, extension), expected));
    }

    void NeedsNoMemoFileForEmptyMemos() {
        QCOMPARE(Memo(MemoTable(0x30, QByteArray(4, '\0')), {}, {}), QString());
        QCOMPARE(Memo(MemoTable(0xf5, QByteArray(10, ' ')), {}, {}), QString());
    }
};

QUADRIX_TEST(DbfDamageTest)
#include "test_dbfDamage.moc"
