#include "adapters/contract/run/ImportRun.h"
#include "core/modMain.h"
#include "sources/fileSource.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;

/// What becomes of rows that are committed together, and of one among them that fails.
class TestRowLoop : public QObject {
    Q_OBJECT

    TestTarget m_target;
    QSet<QString> m_remembered;

    /// Imports the codes of a table, each as a contact; what does not end in a digit fails behind its insert.
    const RunResult& Import(const QStringList& codes, const std::function<void(const QString& code)>& before = {}) {
        return Import(m_target.Get(), codes, before);
    }
    const RunResult& Import(Session& session, const QStringList& codes,
                            const std::function<void(const QString& code)>& before = {}) {
        session.Source = std::make_unique<ovConnection>();
        OpenEmbedded(*session.Source).Execute("CREATE TABLE clienti (cod VARCHAR(40))");
        for (const QString& code : codes) {
            session.Source->Execute("INSERT INTO clienti VALUES ('" + code + "')");
        }
        return ImportSource(session, before);
    }
    const RunResult& ImportSource(Session& session, const std::function<void(const QString& code)>& before = {}) {
        session.Errors.Action = ErrorAction::Ignore;
        ImportRun run(session, "modImport_Prova", "ImportProva", {});
        run.Guard([&] {
            run.Announce("Inizio");
            run.Rows({"Clienti", "clienti", "cod", "SELECT COUNT(*) FROM clienti", "SELECT * FROM clienti"},
                     [&](const SourceRow& row) {
                         const QString code = row.Text("cod");
                         if (before) {
                             before(code);
                         }
                         TargetRow contact(run, "CON_RIF");
                         contact.Set("CDCON", code).Insert();
                         run.Remember(m_remembered, code);
                         run.Log("SCRITTO: " + code);
                         if (!code.back().isDigit()) {
                             throw ImportError("'" + code + "' non finisce con una cifra");
                         }
                         return RowOutcome::Inserted;
                     });
        });
        return session.Results.last();
    }
    QStringList Written() { return m_target.Rows("SELECT CDCON FROM X01_CON_RIF ORDER BY RECORD_ID"); }

private slots:
    void initTestCase() {
        m_target.Execute("CREATE TABLE ONCE (N INTEGER PRIMARY KEY)");
        m_target.Execute("INSERT INTO ONCE VALUES (1)");
    }
    void init() {
        m_target.Execute("DELETE FROM X01_CON_RIF");
        m_remembered.clear();
    }

    /// What is not of the database, such as a trace that the disk has no room for, takes the rows of a commit along.
    void ATraceThatCannotBeWritten_data() {
        Columns<QString, int>("statement", "written");
        Row("a commit", "COMMIT", 0);
        Row("the second commit", "COMMIT", 2);
        Row("an insert", "INSERT", 0);
    }
    void ATraceThatCannotBeWritten() {
        QFETCH(const QString, statement);
        QFETCH(const int, written);
        modMain::SetAppConfig(m_target.Get(), "IMPORT", "GruppoRighe", "2");
        bool isBroken = false;
        int passed = 0;
        m_target.Db().Trace = [&](const QString& text) {
            isBroken = isBroken || (text.startsWith(statement) && ++passed * 2 > written);
            if (isBroken && !text.startsWith("ROLLBACK")) {
                throw ImportError("File di traccia: disco pieno");
            }
        };
        const RunResult& result = Import({"A1", "A2", "A3", "A4", "A5"});
        m_target.Db().Trace = {};
        QCOMPARE(result.inserted, qint64(written));
        QCOMPARE(Written().size(), written);
        QVERIFY(result.AddsUp());
        QVERIFY2(result.errors.join(' ').contains("disco pieno") || result.givenUpCount > 0,
                 qPrintable(result.errors.join(' ')));
        QVERIFY2(statement != "COMMIT" || result.errors.first().contains(", che non sono scritte: "),
                 qPrintable(result.errors.join(' ')));
    }

    void ARowThatFails_data() {
        Columns<QString, QStringList, QString>("together", "left", "told");
        Row("is taken back alone", "200", QStringList{"A1", "A3"}, "");
        Row("each row by itself", "1", QStringList{"A1", "A3"}, "");
        Row("each statement by itself", "0", QStringList{"A1", "B", "A3"},
            "Rimane scritto di una riga abbandonata: tabella 'clienti', cod 'B': X01_CON_RIF (1)");
    }
    void ARowThatFails() {
        QFETCH(const QString, together);
        QFETCH(const QStringList, left);
        QFETCH(const QString, told);
        modMain::SetAppConfig(m_target.Get(), "IMPORT", "GruppoRighe", together);
        const RunResult& result = Import({"A1", "B", "A3"});
        QVERIFY(result.AddsUp());
        QCOMPARE(result.inserted, 2);
        QCOMPARE(result.givenUpCount, 1);
        QCOMPARE(result.tables.value("CON_RIF").inserted, qint64(left.size()));
        QCOMPARE(Written(), left);
        QCOMPARE(m_remembered, QSet<QString>(left.begin(), left.end()));
        const QString log = QString::fromLatin1(m_target.Log());
        QCOMPARE(log.contains("SCRITTO: B"), !told.isEmpty());
        QVERIFY2(log.contains(told), qPrintable(log));
    }

    /// What such a table keeps is told, never believed to be gone.
    void ARowThatFailsInATableWithoutTransactions() {
        if (!TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        TestTarget target(TestTarget::On::MariaDb);
        target.Execute("ALTER TABLE X01_CON_RIF ENGINE = MyISAM");
        const RunResult& result = Import(target.Get(), {"A1", "B", "A3"});
        QVERIFY(result.AddsUp());
        QCOMPARE(result.tables.value("CON_RIF").inserted, 3);
        const QString log = QString::fromLatin1(target.Log());
        for (const char* line : {"TABELLE SENZA TRANSAZIONI: di una riga abbandonata resta scritto ciò che ha già "
                                 "scritto (X01_CON_RIF (MyISAM))",
                                 "cod 'B': X01_CON_RIF (1)"}) {
            QCOMPARE(log.count(QString::fromUtf8(line)), 1);
        }
        QCOMPARE(target.Rows("SELECT CDCON FROM X01_CON_RIF ORDER BY RECORD_ID"), QStringList({"A1", "B", "A3"}));
    }

    /// To a server rows go ahead together: of those that it refuses, or that were done with what another program had
    /// changed meanwhile, each is found, and the others stand.
    void RowsThatGoAhead_data() {
        Columns<QString, QStringList>("together", "bad");
        Row("none fails", "1000", QStringList{});
        Row("one that the server refuses", "1000", QStringList{"A150"});
        Row("the first and the last", "1000", QStringList{"A1", "A200"});
        Row("many", "1000", QStringList{"A3", "A4", "A50", "A51", "A120", "A190"});
        Row("many, in small groups", "10", QStringList{"A10", "A11", "A12", "A99"});
    }
    void RowsThatGoAhead() {
        QFETCH(const QString, together);
        QFETCH(const QStringList, bad);
        if (!TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        TestTarget target(TestTarget::On::MariaDb);
        target.Execute("ALTER TABLE X01_CON_RIF ADD UNIQUE (CDCON)");
        QStringList codes;
        QStringList good;
        for (int row = 1; row <= 200; ++row) {
            codes.append(QStringLiteral("A%1").arg(row));
            if (bad.contains(codes.last())) {
                target.Execute("INSERT INTO X01_CON_RIF (CDCON) VALUES ('" + codes.last() + "')");
            } else {
                good.append(codes.last());
            }
        }
        codes.insert(100, "B"); // fails by itself
        modMain::SetAppConfig(target.Get(), "IMPORT", "GruppoRighe", together);
        const RunResult& result = Import(target.Get(), codes);
        QVERIFY(result.AddsUp());
        QCOMPARE(result.inserted, qint64(good.size()));
        QStringList givenUp;
        for (const RunResult::GivenUp& row : result.givenUp) {
            givenUp.append(row.rowKey.section(u'\'', 3, 3));
            QVERIFY2(row.reason.contains(givenUp.last() == "B" ? "non finisce con una cifra" : "Duplicate entry"),
                     qPrintable(row.reason));
        }
        QStringList expected = bad;
        expected.insert(
            std::count_if(bad.begin(), bad.end(), [](const QString& code) { return code.mid(1).toInt() <= 100; }), "B");
        QCOMPARE(givenUp, expected);
        QCOMPARE(target.Rows("SELECT CDCON FROM X01_CON_RIF WHERE DTINS IS NOT NULL ORDER BY RECORD_ID"), good);
        const QString log = QString::fromLatin1(target.Log());
        for (const QString& code : std::as_const(good)) {
            QCOMPARE(log.count("SCRITTO: " + code + "\n") + log.count("SCRITTO: " + code + "\r\n"), 1);
        }
        QVERIFY(!log.contains("SCRITTO: B"));
    }

    /// A value that a file does not give ends its row, by name; the others are imported.
    void AValueThatCannotBeRead() {
        WriteFile(m_target.Folder.filePath("clienti.csv"), "cod;nome\nA1;uno\nA2\nA3;tre\n");
        Session& session = m_target.Get();
        modMain::SetAppConfig(session, "IMPORT", "GruppoRighe", "200");
        session.Source = std::make_unique<ovConnection>();
        session.Source->ConnectionString =
            "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=" + m_target.Folder.path();
        session.Source->OpenFiles = sources::OpenFileSource;
        session.Source->OpenConnection();
        const RunResult& result = ImportSource(session);
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(Written(), (QStringList{"A1", "A3"}));
        QCOMPARE(result.givenUpCount, 1);
        QCOMPARE(result.givenUp.value(0).rowKey, QString("tabella 'clienti', riga 3, cod '(non leggibile)'"));
        QVERIFY2(result.givenUp.value(0).reason.contains(
                     "clienti.csv', riga 3, colonna 'cod': ha 1 campi, le colonne sono 2"),
                 qPrintable(result.givenUp.value(0).reason));
    }

    /// A cancel stops the database in the middle of a query, and the connection serves on.
    void AQueryThatTakesLong() {
        Session& session = m_target.Get();
        session.Source = std::make_unique<ovConnection>();
        OpenEmbedded(*session.Source)
            .Execute("CREATE VIEW clienti AS WITH RECURSIVE endless(cod) AS (SELECT 1 UNION ALL SELECT cod + 1 FROM "
                     "endless) SELECT cod FROM endless");
        m_target.Person.CancelAt = 0;
        const RunResult& result = ImportSource(session);
        m_target.Person.CancelAt.reset();
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(result.errors, QStringList());
        QCOMPARE(session.Source->ExecuteCommand("SELECT COUNT(*) FROM sqlite_master"), 1);
    }

    void ASettingThatIsNoNumber() {
        modMain::SetAppConfig(m_target.Get(), "IMPORT", "GruppoRighe", "molte");
        const RunResult& result = Import({"A1"});
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY2(result.errors.value(0).contains("GruppoRighe della sezione IMPORT: 'molte'"),
                 qPrintable(result.errors.join('\n')));
        QCOMPARE(Written(), QStringList());
    }

    /// What the database takes back with its transaction is done again, told once and counted once.
    void ATransactionThatEnds_data() {
        Columns<QStringList>("rows");
        Row("with the first row", QStringList{"A2", "A3", "A4"});
        Row("in the middle of a group", QStringList{"A1", "A2", "A3"});
    }
    void ATransactionThatEnds() {
        QFETCH(const QStringList, rows);
        modMain::SetAppConfig(m_target.Get(), "IMPORT", "GruppoRighe", "200");
        m_target.Person.AnswerToError = [](const ErrorEntry&) { return ErrorAnswer::Retry; };
        bool ended = false;
        const RunResult& result = Import(rows, [&](const QString& code) {
            m_target.Get().Errors.Action = ErrorAction::Ask;
            if (code == "A2" && !std::exchange(ended, true)) {
                m_target.Execute(
                    "INSERT OR ROLLBACK INTO ONCE VALUES (1)"); // ends the transaction, as a full disk does
            }
        });
        QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
        QCOMPARE(result.inserted, qint64(rows.size()));
        QCOMPARE(Written(), rows);
        QCOMPARE(QString::fromLatin1(m_target.Log()).count("SCRITTO: A2"), 1);
    }
};

QUADRIX_TEST(TestRowLoop)
#include "test_rowLoop.moc"
