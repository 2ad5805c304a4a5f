#include "cli/StatementTrace.h"
#include "core/nearNames.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

class TestStatementTrace : public QObject {
    Q_OBJECT

private slots:
    void replaysEveryText_data() {
        Columns<QString>("text");
        Row("quote", "L'Aquila");
        Row("semicolon", "a; DELETE FROM X01_CON_TRO;");
        Row("line feed", "a\nb");
        Row("carriage return", "a\rb");
        Row("both", "a\r\nb'\r\n");
        Row("command of the client", "a\n.quit\n/\ngo\nb");
        Row("comment", "a -- b\n/* c");
        Row("accents", "Città € 😀");
    }
    void replaysEveryText() {
        if (QStandardPaths::findExecutable("sqlite3").isEmpty()) {
            QSKIP("sqlite3 is not installed");
        }
        QFETCH(QString, text);
        TestTarget target;
        const QString copy = target.Folder.filePath("copy.db");
        target.Execute("VACUUM INTO '" + copy + "'");
        StatementTrace trace;
        const QString path = target.Folder.filePath("trace.sql");
        trace.Start(path, target.Get());
        QString literal = text;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, CONOT) VALUES ('000001', '" + literal.replace("'", "''") +
                       "')");
        QProcess client;
        client.setStandardInputFile(path);
        client.start("sqlite3", {"-bail", copy});
        QVERIFY(client.waitForFinished() && client.exitCode() == 0);
        ovConnection replayed;
        QCOMPARE(OpenEmbedded(replayed, copy).ExecuteWC("SELECT CONOT FROM X01_CON_TRO").Fields(0).Value().toString(),
                 text);
        QCOMPARE(target.Value("SELECT CONOT FROM X01_CON_TRO"), text);
    }

    void showsBothConnections() {
        TestTarget target;
        StatementTrace trace;
        trace.Start(target.Folder.filePath("trace.sql"), target.Get());
        target.Get().TraceSource("SELECT *\rFROM anagrafe\r\nWHERE 1 = 1");
        target.Execute("DELETE X01_CON_TRO");
        target.Db().BeginTrans();
        target.Execute("TRUNCATE TABLE X01_CON_RIF");
        target.Db().RollbackTrans();
        QCOMPARE(
            target.Log("trace.sql"),
            StatementTrace::FirstLine.toUtf8() +
                QByteArray(
                    "\n-- SELECT *\n-- FROM anagrafe\n-- WHERE 1 = 1\nDELETE FROM X01_CON_TRO;\nBEGIN TRANSACTION;\n"
                    "DELETE FROM X01_CON_RIF;\n"
                    "DELETE FROM sqlite_sequence WHERE name = 'X01_CON_RIF' COLLATE NOCASE;\nROLLBACK;\n"));
    }

    void namesAFileThatCannotBeWritten() {
        TestTarget target;
        StatementTrace trace;
        const QString path = target.Folder.filePath("no/trace.sql");
        const auto error = ErrorOf<ImportError>([&] { trace.Start(path, target.Get()); });
        QVERIFY(error && error->Message().contains(path));
    }

    void suggestsNearNames_data() {
        Columns<QString, QString>("name", "near");
        Row("a letter wrong", "Gescam", "Gescom");
        Row("a part", "adhoc win", "Ad-Hoc,Ad-Hoc Windows");
        Row("a part of two", "ad-hoc", "Ad-Hoc,Ad-Hoc Windows");
        Row("letters changed round", "scaal", "Scala");
        Row("nothing near", "Zeta Plus", "");
        Row("empty", "", "");
    }
    void suggestsNearNames() {
        QFETCH(QString, name);
        QTEST(NearNames(name, {"Ad-Hoc", "Ad-Hoc Windows", "Gescom", "Scala", "SAM"}).join(','), "near");
    }
};

QUADRIX_TEST(TestStatementTrace)
#include "test_statementTrace.moc"
