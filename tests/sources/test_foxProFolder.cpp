#include "examples/DbfWriter.h"
#include "tests/sources/dbfBytes.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;
using examples::DbfWriter;

/// A folder of tables is a database.
class FoxProFolderTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

    void WriteTable(const QString& file, int rows) const {
        DbfWriter writer(m_dir->filePath(file), {{"codice", 'C', 6}, {"valore", 'N', 6}});
        for (int row = 1; row <= rows; ++row) {
            writer.Set("codice", QString("C%1").arg(row)).Set("valore", row);
            row % 3 == 0 ? writer.AddDeleted() : writer.Add();
        }
        writer.Finish();
    }

    static ConnectionSettings Tables(const QStringList& tables, const QStringList& lookups = {}) {
        ConnectionSettings settings;
        settings.tables = tables;
        settings.lookupColumns = lookups;
        return settings;
    }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void SkipsDeletedRowsAndKeepsRowNumbers() {
        WriteTable("ANAGRAFE.Dbf", 7);
        const auto engine = OpenFolder(m_dir->path());
        QCOMPARE(Values(*engine, "SELECT _RECNO FROM Anagrafe ORDER BY codice DESC"), QString("7,5,4,2,1"));
        QCOMPARE(engine->Columns("anagrafe").first().name, QString("_RECNO"));
        QCOMPARE(Values(*engine, "SELECT CODICE FROM anagrafe WHERE Codice = 'c2'"), QString("C2"));
    }

    void OffersOnlyTheTablesAskedFor() {
        WriteTable("anagrafe.dbf", 2);
        WriteTable("magart.dbf", 2);
        const auto engine = OpenFolder(m_dir->path(), Tables({"ANAGRAFE", "destinaz"}));
        QCOMPARE(engine->Tables(), QStringList{"anagrafe"});
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM anagrafe").toInt(), 2);
        QVERIFY(engine->Columns("destinaz").isEmpty());
        QVERIFY_EXCEPTION_THROWN(engine->Query("SELECT * FROM magart"), SqlError);
        QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM destinaz"); }), {m_dir->path(), "'destinaz'"}));
    }

    void NamesAFolderThatIsNotTheRightOne() {
        WriteTable("magart.dbf", 1);
        const auto error = ErrorTextOf([&] { OpenFolder(m_dir->path(), Tables({"anagrafe", "destinaz"})); });
        QVERIFY(Holds(error, {m_dir->path(), "anagrafe, destinaz"}));
        QVERIFY(Holds(ErrorTextOf([&] { OpenFolder(m_dir->filePath("manca")); }), {m_dir->filePath("manca")}));
    }

    void ReadsATableWhenItIsNamed() {
        WriteTable("anagrafe.dbf", 2);
        WriteFile(m_dir->filePath("rotta.dbf"), "broken");
        const auto engine = OpenFolder(m_dir->path());
        const auto first = engine->Query("SELECT codice FROM anagrafe ORDER BY _RECNO");
        QVERIFY(first->Next());
        WriteTable("altra.dbf", 1); // tables are those that were there at the opening
        QVERIFY_EXCEPTION_THROWN(engine->Query("SELECT * FROM altra"), SqlError);
        for (int attempt = 0; attempt < 2; ++attempt) {
            QVERIFY(
                Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM rotta"); }), {"rotta.dbf", "non è una tabella"}));
        }
        QVERIFY(first->Next());
        QCOMPARE(first->Value(0).toString(), QString("C2"));
    }

    void ReadsATableWhileAnotherIsWalked() {
        WriteTable("anagrafe.dbf", 5);
        WriteTable("destinaz.dbf", 5);
        const auto engine = OpenFolder(m_dir->path(), Tables({}, {"destinaz.codice"}));
        QStringList found;
        const auto outer = engine->Query("SELECT codice FROM anagrafe ORDER BY _RECNO");
        while (outer->Next()) {
            const QString code = outer->Value(0).toString();
            found += Values(*engine, "SELECT valore FROM destinaz WHERE codice = '" + code + "'");
        }
        QCOMPARE(found, QStringList({"1", "2", "4", "5"}));
    }

    void TakesLongNamesFromTheContainer() {
        examples::DbfFolder folder(m_dir->path(), {true, 0x03, "Dati"});
        const auto table = folder.Create("magart", {{"codice", 'C', 6}, {"id_ClasseArt", 'C', 3}});
        table->Set("codice", QString("A1")).Set("id_ClasseArt", QString("STD")).Add();
        table->Finish();
        folder.Finish();
        QVERIFY(QFile::rename(m_dir->filePath("Dati.dbc"), m_dir->filePath("DATI.DBC")));
        QCOMPARE(Value(*OpenFolder(m_dir->path()), "SELECT ID_CLASSEART FROM magart").toString(), QString("STD"));

        WriteTable("altra.dbf", 1); // a table without a container stands beside
        QCOMPARE(Value(*OpenFolder(m_dir->path()), "SELECT codice FROM altra").toString(), QString("C1"));

        examples::DbfFolder other(m_dir->path(), {true, 0x03, "DATI"});
        other.Create("magart", {{"codice", 'C', 6}})->Finish();
        other.Finish();
        QVERIFY(QFile::remove(m_dir->filePath("DATI.DBC")));
        DbfWriter(m_dir->filePath("magart.dbf"), {{"a", 'C', 1}, {"b", 'C', 1}}, {true, 0x03, "DATI"}).Finish();
        QVERIFY(Holds(ErrorTextOf([&] { OpenFolder(m_dir->path())->Query("SELECT * FROM magart"); }),
                      {"DATI.dbc", "1 colonne", "magart.dbf"}));
        QVERIFY(QFile::remove(m_dir->filePath("DATI.dbc")));
        QCOMPARE(OpenFolder(m_dir->path())->Columns("magart").last().name, QString("b"));
    }

    void FindsLookupsByIndex() {
        WriteTable("anagrafe.dbf", 5);
        const auto engine = OpenFolder(m_dir->path(), Tables({"anagrafe"}, {"Anagrafe.CODICE"}));
        QVERIFY(engine->Columns("anagrafe").size() == 3);
        const auto plan = engine->Query("EXPLAIN QUERY PLAN SELECT * FROM anagrafe WHERE codice = 'C1'");
        QVERIFY(plan->Next());
        QVERIFY(plan->Value(3).toString().contains("USING INDEX"));
    }

    void RefusesTwoFilesOfOneTable() {
        WriteTable("anagrafe.dbf", 1);
        WriteTable("Anagrafe.DBF", 1);
        WriteTable("magart.dbf", 1);
        const auto engine = OpenFolder(m_dir->path());
        QCOMPARE(Value(*engine, "SELECT COUNT(*) FROM magart").toInt(), 1);
        QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM anagrafe"); }), {"anagrafe.dbf", "Anagrafe.DBF"}));
    }

    void NamesAFileThatCannotBeRead() {
        // Readable by its name, but not by its bytes: what a failing disk or a lock gives.
        QVERIFY(QFile::link("/proc/self/mem", m_dir->filePath("anagrafe.dbf")));
        const auto engine = OpenFolder(m_dir->path());
        QVERIFY(Holds(ErrorTextOf([&] { engine->Query("SELECT * FROM anagrafe"); }), {"anagrafe.dbf", "non si legge"}));
    }

    void ReadsConnectionStrings_data() {
        Columns<QString, bool>("text", "isFiles");
        Row("driver", "Driver={Microsoft Visual FoxPro Driver};Data Source=%1", true);
        Row("other order and case", "DATA SOURCE = \"%1\" ; driver=Microsoft Visual FoxPro Driver", true);
        Row("ODBC words", "Driver={Microsoft Visual FoxPro Driver};SourceType=DBF;SourceDB={%1};", true);
        Row("container", "Provider=VFPOLEDB.1;Data Source=%1/dati.DBC", true);
        Row("dBase driver", "Driver={Microsoft dBASE Driver (*.dbf)};DBQ=%1", true);
        Row("server", "Driver={SQL Server};Server=S;Database=FoxPro", false);
        Row("none", "", false);
    }
    void ReadsConnectionStrings() {
        QFETCH(QString, text);
        QFETCH(bool, isFiles);
        WriteTable("anagrafe.dbf", 1);
        ConnectionSettings settings;
        settings.connectionString = text.contains("%1") ? text.arg(m_dir->path()) : text;
        const auto engine = sources::OpenFileSource(settings);
        QCOMPARE(engine != nullptr, isFiles);
        QVERIFY(!isFiles || Value(*engine, "SELECT COUNT(*) FROM anagrafe").toInt() == 1);
    }
};

QUADRIX_TEST(FoxProFolderTest)
#include "test_foxProFolder.moc"
