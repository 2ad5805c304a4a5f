#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/write/ArticleRecoding.h"
#include "adapters/contract/write/Attachment.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QTest>

using namespace contract;

namespace {

/// Two companies, each with an article of its own and one whose code both have, and files that have one name.
class Companies : public TestTarget {
public:
    Companies() {
        AddCompany("X02", "Seconda");
        for (const QString& company : {QString("X01"), QString("X02")}) {
            Execute("INSERT INTO " + company + "_ART_ICO (CDART, ARDES) VALUES ('COMUNE', 'Comune'), ('SOLO-" +
                    company + "', 'Solo')");
        }
        for (const char* file : {"r0/A.pdf", "r1/A.pdf", "r2/A.pdf"}) {
            const QString path = Folder.filePath(file);
            QDir().mkpath(QFileInfo(path).path());
            WriteFile(path, "x");
        }
        Choose("X01");
    }
    /// What one import attaches: "ARTICLE FOLDER" of each file.
    void Attach(const QStringList& files) {
        ImportRun run(Get(), "modImport_Prova", "ImportAllegati", {});
        AttachmentWriter writer(run);
        for (const QString& file : files) {
            const QString path = Folder.filePath(file.section(' ', 1) + "/A.pdf");
            writer.Write({"ART_ICO", file.section(' ', 0, 0), path, Folder.path()});
        }
        writer.TellLeft("ART_ICO");
    }
    QString Attached() {
        return Rows("SELECT ATKEY, ATLNK FROM SYS_ATT ORDER BY ATKEY, RECORD_ID")
            .join(' ')
            .remove(Folder.path() + '/')
            .remove("/A.pdf");
    }
    bool Told(const QString& text) const { return QString::fromLatin1(Log()).contains(text); }
};

} // namespace

/// Attachments, which all companies share.
class TestAttachments : public QObject {
    Q_OBJECT

private slots:
    void filesOfOneNameAreSeveral_data() {
        Columns<QStringList, QStringList, QString, QString>("first", "second", "attached", "told");
        const QStringList two{"SOLO-X01 r0", "SOLO-X01 r1"};
        Row("the same again", two, two, "SOLO-X01|r0 SOLO-X01|r1", "");
        Row("in another order", two, QStringList{"SOLO-X01 r1", "SOLO-X01 r0"}, "SOLO-X01|r0 SOLO-X01|r1", "");
        Row("one that has moved", QStringList{"SOLO-X01 r0"}, QStringList{"SOLO-X01 r1"}, "SOLO-X01|r1", "");
        Row("one twice", QStringList{"SOLO-X01 r0"}, QStringList{"SOLO-X01 r0", "SOLO-X01 r0"}, "SOLO-X01|r0",
            "ALLEGATO DOPPIO");
        Row("one that is gone", two, QStringList{"SOLO-X01 r0"}, "SOLO-X01|r0 SOLO-X01|r1",
            "ALLEGATI NON PIÙ NELL'ORIGINE: ART_ICO 'SOLO-X01', 'A.pdf': 1");
        Row("a file that is not there", QStringList{"SOLO-X01 r0"}, QStringList{"SOLO-X01 r9"}, "SOLO-X01|r0",
            "ALLEGATO NON TROVATO");
        const QStringList wanting{"SOLO-X01 r9", "SOLO-X01 r0"};
        Row("one beside it", wanting, wanting, "SOLO-X01|r0", "ALLEGATO NON TROVATO");
        Row("one beside it that has moved", wanting, QStringList{"SOLO-X01 r9", "SOLO-X01 r1"}, "SOLO-X01|r1",
            "ALLEGATO NON TROVATO");
    }
    void filesOfOneNameAreSeveral() {
        QFETCH(const QStringList, first);
        QFETCH(const QStringList, second);
        QFETCH(const QString, told);
        Companies target;
        target.Attach(first);
        target.Attach(second);
        QTEST(target.Attached(), "attached");
        for (const QString& each : {QString("NON PIÙ"), QString("ALLEGATO DOPPIO")}) {
            QCOMPARE(target.Told(each), told.contains(each));
        }
        QVERIFY2(told.isEmpty() || target.Told(told), target.Log());
    }

    /// What one company attaches, rewrites or deletes leaves the other its own.
    void companiesLeaveEachOtherTheirs() {
        Companies target;
        target.Attach({"COMUNE r0", "SOLO-X01 r0"});
        target.Choose("X02");
        for (int run = 0; run < 2; ++run) {
            target.Attach({"COMUNE r1", "SOLO-X02 r1"});
            QCOMPARE(target.Attached(), QString("COMUNE|r0 COMUNE|r1 SOLO-X01|r0 SOLO-X02|r1"));
        }
        QVERIFY2(target.Told("ALLEGATI DI PIÙ AZIENDE: codici di X02_ART_ICO stanno anche in X01_ART_ICO"),
                 target.Log());
        QVERIFY(!target.Told("NON PIÙ"));
        ImportRun run(target.Get(), "modImport_Prova", "ImportAllegati", {});
        Empty(run, true, AttachmentEmptying("ART_ICO"));
        QCOMPARE(target.Attached(), QString("COMUNE|r0 COMUNE|r1 SOLO-X01|r0"));
        QVERIFY2(target.Told("RIGHE DI PIÙ AZIENDE: SYS_ATT: ne restano 2"), target.Log());
        RecodeArticle(run, "COMUNE", "NUOVO");
        QCOMPARE(target.Attached(), QString("COMUNE|r0 COMUNE|r1 NUOVO|r0 NUOVO|r1 SOLO-X01|r0"));
    }

    void aFolderCountsFromThatOfTheSettings_data() {
        Columns<QString, QString>("folder", "path");
        Row("none", "", "");
        Row("relative", "disegni\\nuovi", "%1/disegni/nuovi");
        Row("of Windows", "D:\\disegni", "D:/disegni");
    }
    void aFolderCountsFromThatOfTheSettings() {
        QFETCH(const QString, folder);
        QFETCH(const QString, path);
        TestTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "SourcePathAttachArticoli", folder);
        const QString settings = QFileInfo(target.Get().Config.ConfigFile()).absolutePath();
        QCOMPARE(AttachmentFolder(target.Get()), path.contains('%') ? path.arg(settings) : path);
    }
};

QUADRIX_TEST(TestAttachments)
#include "test_attachments.moc"
