#include "adapters/registry.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QTest>

namespace {

const QString CamTables = QStringLiteral(
    "CREATE TABLE MMNN_PPOO_00000200 (RecID INTEGER PRIMARY KEY, PrdRef TEXT, OOrder INT);"
    "CREATE TABLE DIS_SHPR_PPTT_00000200 (RecID INTEGER PRIMARY KEY, PartRef TEXT, MCode TEXT, DValue NUMERIC %1);");

/// An old and a current CAM database, with their products folders.
class TwoCams {
public:
    TwoCams() {
        Session& session = Target.Get();
        QDir(Target.Folder.path()).mkpath("old");
        QDir(Target.Folder.path()).mkpath("new");
        for (const auto& [key, value] : {std::pair{"Old_CAM_Database", QString("old.db")},
                                         {"CAM_Database", "new.db"},
                                         {"Old_CAM_Path", Target.Folder.filePath("old")},
                                         {"CAM_Path", Target.Folder.filePath("new")}}) {
            session.Config.SetAppConfig("IMPORT", key, value);
        }
        Make(Old, "old.db",
             "CREATE TABLE PPRR_PPRR_00000100 (RecID INTEGER PRIMARY KEY, PrdRef TEXT, PrdName TEXT, DIS_PClass INT, "
             "DIS_IsRemnant INT, DIS_CamQuan NUMERIC, OldOnly TEXT);" +
                 CamTables.arg(""));
        Make(New, "new.db",
             "CREATE TABLE PPRR_PPRR_00000100 (RecID INTEGER PRIMARY KEY, PrdName TEXT, PrdRef TEXT, DIS_PClass INT, "
             "DIS_IsRemnant INT, DIS_CamQuan NUMERIC, NewOnly TEXT);" +
                 CamTables.arg(", CHECK (DValue >= 0)"));
        session.Errors.Action = ErrorAction::Ignore;
    }

    void Run(const QString& procedure) { RunProcedure(Target.Get(), *registry::Find("Lantek Expert 30"), procedure); }
    void File(const QString& path, const QByteArray& content) { WriteFile(Target.Folder.filePath(path), content); }
    QByteArray Content(const QString& path) { return ReadFile(Target.Folder.filePath(path)); }
    QStringList Rows(const QString& query) {
        QStringList rows;
        for (Recordset found = New.ExecuteWC(query); !found.Eof(); found.MoveNext()) {
            rows.append(found.Fields(0).Value().toString());
        }
        return rows;
    }

    TestTarget Target;
    ovConnection Old;
    ovConnection New;

private:
    void Make(ovConnection& database, const QString& file, const QString& script) {
        OpenEmbedded(database, Target.Folder.filePath(file)).ExecuteScript(script);
    }
};

} // namespace

/// Copies between two CAM databases, and the emptying of one.
class TestLantek30 : public QObject {
    Q_OBJECT

private slots:
    void productsWithTheirPartsAndFiles() {
        TwoCams cams;
        cams.Old.ExecuteScript(
            "INSERT INTO PPRR_PPRR_00000100 VALUES (7, 'A', 'L''asse', 50, 0, 0, 'x');"
            "INSERT INTO PPRR_PPRR_00000100 VALUES (8, 'B', 'C''è già', 50, 0, 0, 'x');"
            "INSERT INTO PPRR_PPRR_00000100 VALUES (9, 'C', 'A metà', 50, 0, 0, 'x');"
            "INSERT INTO MMNN_PPOO_00000200 VALUES (1, 'A', 1); INSERT INTO MMNN_PPOO_00000200 VALUES (2, 'A', 2);"
            "INSERT INTO MMNN_PPOO_00000200 VALUES (3, 'C', 1);"
            "INSERT INTO DIS_SHPR_PPTT_00000200 VALUES (1, 'A', 'ND025', 1.5);"
            "INSERT INTO DIS_SHPR_PPTT_00000200 VALUES (2, 'C', 'ND025', -1);");
        cams.New.Execute("INSERT INTO PPRR_PPRR_00000100 (PrdRef, PrdName) VALUES ('B', 'Nuovo')");
        cams.File("old/A.dxf", "geometria");
        cams.File("old/a.bmp", "disegno");
        cams.File("new/A.dxf", "più recente");

        cams.Run("CopyProductsFromLantekToLantek");

        QCOMPARE(cams.Rows("SELECT PrdRef || '|' || PrdName FROM PPRR_PPRR_00000100 ORDER BY PrdRef"),
                 (QStringList{"A|L'asse", "B|Nuovo"}));
        QCOMPARE(cams.Rows("SELECT OOrder FROM MMNN_PPOO_00000200 ORDER BY OOrder"), (QStringList{"1", "2"}));
        QCOMPARE(cams.Rows("SELECT DValue FROM DIS_SHPR_PPTT_00000200"), QStringList{"1.5"});
        QCOMPARE(cams.Content("new/A.dxf"), QByteArray("più recente"));
        QCOMPARE(cams.Content("new/a.bmp"), QByteArray("disegno"));
        const RunResult& result = cams.Target.Get().Results.last();
        QVERIFY(result.AddsUp());
        QCOMPARE(result.inserted, qint64(1));
        QCOMPARE(result.skipped, qint64(1));
        QCOMPARE(result.givenUpCount, qint64(1));
        QVERIFY(cams.Target.Log().contains("COLONNA NON COPIATA: 'PPRR_PPRR_00000100.OldOnly'"));
        QVERIFY(cams.Target.Get().Source == nullptr);
    }

    void scrapsThatAreInStock() {
        TwoCams cams;
        cams.Old.ExecuteScript("INSERT INTO PPRR_PPRR_00000100 VALUES (1, 'RIT-1', '', 51, 1, 2, '');"
                               "INSERT INTO PPRR_PPRR_00000100 VALUES (2, 'RIT-2', '', 51, 1, 1, '');"
                               "INSERT INTO PPRR_PPRR_00000100 VALUES (3, 'RIT-3', '', 51, 1, 0, '');"
                               "INSERT INTO PPRR_PPRR_00000100 VALUES (4, 'FE', '', 51, 0, 5, '');"
                               "INSERT INTO MMNN_PPOO_00000200 VALUES (1, 'RIT-1', 1)");
        cams.New.Execute("INSERT INTO PPRR_PPRR_00000100 (PrdRef) VALUES ('RIT-2')");
        cams.File("old/RIT-1.bmp", "disegno");
        cams.File("old/RIT-1.dxf", "geometria");

        cams.Run("CopyScrapsFromLantekToLantek");

        QCOMPARE(cams.Rows("SELECT PrdRef FROM PPRR_PPRR_00000100 ORDER BY PrdRef"), (QStringList{"RIT-1", "RIT-2"}));
        QVERIFY(cams.Rows("SELECT OOrder FROM MMNN_PPOO_00000200").isEmpty());
        QCOMPARE(cams.Content("new/RIT-1.bmp"), QByteArray("disegno"));
        QVERIFY(!QFile::exists(cams.Target.Folder.filePath("new/RIT-1.dxf")));
        QVERIFY(
            cams.Target.Person.Events.contains("[i] mhhh.. ne avevi da importare 2\n MA.. ne hai importati invece 1"));
    }

    /// All three tables or none; a trial empties nothing.
    void emptying_data() {
        Columns<QString, bool, qint64>("before", "trial", "left");
        Row("emptied", "", false, qint64(0));
        Row("a trial", "", true, qint64(2));
        Row("the last table is missing", "DROP TABLE DIS_SHPR_PPTT_00000200", false, qint64(2));
    }
    void emptying() {
        QFETCH(const QString, before);
        QFETCH(const bool, trial);
        TwoCams cams;
        cams.New.ExecuteScript("INSERT INTO PPRR_PPRR_00000100 (PrdRef) VALUES ('A');"
                               "INSERT INTO MMNN_PPOO_00000200 (PrdRef) VALUES ('A');" +
                               before);
        if (trial) {
            cams.Target.Db().BeginTrans();
        }
        cams.Run("SvuotaTabelleCam");
        QTEST(cams.New.ExecuteCommand("SELECT (SELECT COUNT(*) FROM PPRR_PPRR_00000100) + "
                                      "(SELECT COUNT(*) FROM MMNN_PPOO_00000200)"),
              "left");
        const RunResult& result = cams.Target.Get().Results.last();
        QCOMPARE(result.notes.kinds.size(), before.isEmpty() ? 3 : 0); // what went, by table
        QCOMPARE(cams.Target.Log().contains("Tabella PPRR_PPRR_00000100: svuotata, righe 1"), before.isEmpty());
        QCOMPARE(result.outcome, before.isEmpty() ? RunResult::Outcome::Done : RunResult::Outcome::Failed);
    }

    void missingDatabaseIsTold() {
        TwoCams cams;
        cams.Target.Get().Config.SetAppConfig("IMPORT", "Old_CAM_Database", "nessuna/cartella/old.db");
        cams.Run("CopyScrapsFromLantekToLantek");
        QVERIFY(cams.Target.Person.Events.contains("[!] Impossibile connettersi a Lantek Expert 30!"));
        QCOMPARE(cams.Target.Get().Results.last().outcome, RunResult::Outcome::Failed);
    }
};

QUADRIX_TEST(TestLantek30)
#include "test_lantek30.moc"
