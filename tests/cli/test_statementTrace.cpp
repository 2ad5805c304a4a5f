#include "cli/nearNames.h"
#include "cli/StatementTrace.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

class TestStatementTrace : public QObject {
    Q_OBJECT

private slots:
    void replaysEveryText_data();
    void replaysEveryText();
    void showsBothConnections();
    void namesAFileThatCannotBeWritten();
    void suggestsNearNames_data();
    void suggestsNearNames();
};

void TestStatementTrace::replaysEveryText_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("quote") << "L'Aquila";
    QTest::newRow("semicolon") << "a; DELETE FROM X01_CON_TRO;";
    QTest::newRow("line feed") << "a\nb";
    QTest::newRow("carriage return") << "a\rb";
    QTest::newRow("both") << "a\r\nb'\r\n";
    QTest::newRow("command of the client") << "a\n.quit\n/\ngo\nb";
    QTest::newRow("comment") << "a -- b\n/* c";
    QTest::newRow("accents") << "Città € 😀";
}

void TestStatementTrace::replaysEveryText() {
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
    target.Execute("INSERT INTO X01_CON_TRO (CDCON, CONOT) VALUES ('000001', '" + literal.replace("'", "''") + "')");
    QProcess client;
    client.setStandardInputFile(path);
    client.start("sqlite3", {"-bail", copy});
    QVERIFY(client.waitForFinished() && client.exitCode() == 0);
    ovConnection replayed;
    replayed.Embedded = true;
    replayed.DatabaseName = copy;
    replayed.OpenConnection();
    QCOMPARE(replayed.ExecuteWC("SELECT CONOT FROM X01_CON_TRO").Fields(0).Value().toString(), text);
    QCOMPARE(target.Value("SELECT CONOT FROM X01_CON_TRO"), text);
}

void TestStatementTrace::showsBothConnections() {
    TestTarget target;
    StatementTrace trace;
    trace.Start(target.Folder.filePath("trace.sql"), target.Get());
    target.Get().TraceSource("SELECT *\rFROM anagrafe\r\nWHERE 1 = 1");
    target.Execute("DELETE X01_CON_TRO");
    target.Db().BeginTrans();
    target.Execute("TRUNCATE TABLE X01_CON_RIF");
    target.Db().RollbackTrans();
    QCOMPARE(target.Log("trace.sql"),
             QByteArray("-- SELECT *\n-- FROM anagrafe\n-- WHERE 1 = 1\nDELETE FROM X01_CON_TRO;\nBEGIN TRANSACTION;\n"
                        "DELETE FROM X01_CON_RIF;\n"
                        "DELETE FROM sqlite_sequence WHERE name = 'X01_CON_RIF' COLLATE NOCASE;\nROLLBACK;\n"));
}

void TestStatementTrace::namesAFileThatCannotBeWritten() {
    TestTarget target;
    StatementTrace trace;
    const QString path = target.Folder.filePath("no/trace.sql");
    const auto error = ErrorOf<ImportError>([&] { trace.Start(path, target.Get()); });
    QVERIFY(error && error->Message().contains(path));
}

void TestStatementTrace::suggestsNearNames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("near");
    QTest::newRow("a letter wrong") << "Gescam"
                                    << "Gescom";
    QTest::newRow("a part") << "adhoc win"
                            << "Ad-Hoc,Ad-Hoc Windows";
    QTest::newRow("a part of two") << "ad-hoc"
                                   << "Ad-Hoc,Ad-Hoc Windows";
    QTest::newRow("letters changed round") << "scaal"
                                           << "Scala";
    QTest::newRow("nothing near") << "Zeta Plus"
                                  << "";
    QTest::newRow("empty") << ""
                           << "";
}

void TestStatementTrace::suggestsNearNames() {
    QFETCH(QString, name);
    QTEST(cli::NearNames(name, {"Ad-Hoc", "Ad-Hoc Windows", "Gescom", "Scala", "SAM"}).join(','), "near");
}

QUADRIX_TEST(TestStatementTrace)
#include "test_statementTrace.moc"
