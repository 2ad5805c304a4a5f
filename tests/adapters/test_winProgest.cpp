#include "adapters/origins/WinProgest/modImport_WinProgest.h"
#include "adapters/registry.h"
#include "sources/fileSource.h"
#include "tests/adapters/Fixture.h"
#include "tests/adapters/fixtureFiles.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QDir>
#include <QTest>

namespace {

const contract::Origin& WinProgest() { return *registry::Find("WinProgest"); }

} // namespace

/// What the fixture of WinProgest does not tell: settings, sources, cancel and errors that end an import.
class TestWinProgest : public QObject {
    Q_OBJECT

    std::unique_ptr<Fixture> m_fixture;

    Session& Target() { return m_fixture->Target().Get(); }
    ScriptedOperator& Person() { return m_fixture->Target().Person; }
    qint64 Count(const QString& table) { return Target().Quadrix.ExecuteCommand("SELECT COUNT(*) FROM X01_" + table); }
    QString Log() { return QString::fromLatin1(m_fixture->Target().Log()); }
    void Set(const QString& key, const QString& value) { Target().Config.SetAppConfig("IMPORT", key, value); }

    void OpenSource() {
        Target().Source = std::make_unique<ovConnection>();
        Target().Source->Errors = &Target().Errors;
        Target().Source->OpenFiles = sources::OpenFileSource;
        Person().Answers.push_front(true);
        WinProgest().source.prepare(Target(), *Target().Source);
        Target().Source->OpenConnection();
    }

    RunResult Run(const QString& name, const std::deque<bool>& answers = {}) {
        Person().Answers = answers;
        OpenSource();
        Person().Events.clear();
        Person().Messages.clear();
        RunProcedure(Target(), WinProgest(), name);
        Target().Source.reset();
        return Target().Results.last();
    }

private slots:
    void init() {
        m_fixture = std::make_unique<Fixture>(
            QStringLiteral(QUADRIX_SOURCE_DIR "/tests/adapters/fixtures/modImport_WinProgest"), WinProgest());
        Target().Errors.Action = ErrorAction::Ignore;
    }

    void sources_data() {
        Columns<bool, QString>("files", "database");
        QTest::addColumn<QString>("expected"); // DSN, server, database and connection string
        Row("folder of tables", true, "/tmp", "|||Driver={Microsoft Visual FoxPro Driver};Data Source=/tmp");
        Row("no folder", true, "", "WINPROGEST|||");
        Row("a database, but files are wanted", true, "PROGEST", "WINPROGEST|||");
        Row("server", false, "", "|SERVER|WINPROGEST|");
        Row("server, other database", false, "PROGEST", "|SERVER|PROGEST|");
    }
    void sources() {
        QFETCH(bool, files);
        QFETCH(QString, database);
        Set("Databasename", database);
        Person().AnswerTo["Mi collego a WinProgest sui file di dati?\n[SI] file\n[NO] SQLServer"] = files;
        ovConnection source;
        QVERIFY(WinProgest().source.prepare(Target(), source));
        QTEST(QString(source.DSN + '|' + source.Server + '|' + source.DatabaseName + '|' + source.ConnectionString),
              "expected");
    }

    void settingsThatStopAnImport_data() {
        Columns<QString, QString, QString>("procedure", "setting", "value");
        Row("start date", "ImportDocumentiWinProgest", "DOC_DateStart", "ieri");
        Row("no folder of drawings", "ImportDisegniWinProgest", "SourcePathAttachArticoli", "");
    }
    void settingsThatStopAnImport() {
        QFETCH(QString, procedure);
        QFETCH(QString, setting);
        QFETCH(QString, value);
        Set(setting, value);
        const RunResult result = Run(procedure);
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY2(result.errors.first().contains(setting), qPrintable(result.errors.first()));
        QVERIFY(result.tables.isEmpty());
        QVERIFY(Person().Messages.isEmpty());
    }

    void rowsWithoutTheirArticleWhenArticlesAreNotChecked() {
        Set("DOC_CheckArticoli", "0");
        Run("ImportDocumentiWinProgest", {false});
        QCOMPARE(m_fixture->Target().Rows("SELECT DRNUM, DRDES, DRUMS, DRTOT FROM X01_DOC_VER WHERE DRART = 'GHOST'"),
                 QStringList{"1|articolo che manca|NR|1"});
        QVERIFY(Log().contains("ARTICOLO NON TROVATO"));
    }

    void rowsThatAreNoLongerInTheSourceAreTold() {
        Set("DOC_CheckArticoli", "0");
        Run("ImportDocumentiWinProgest", {false});
        QVERIFY(!Log().contains("RIGHE NON"));
        m_fixture->Target().Execute(
            "INSERT INTO X01_DOC_VER (IDTES, DRNUM, USINS) SELECT RECORD_ID, 9, 'SYSTEM_IMPORT' "
            "FROM X01_DOC_VEN WHERE DTNUM = 11");
        Run("ImportDocumentiWinProgest", {false});
        QCOMPARE(Log().count("RIGHE NON"), 1);
        QVERIFY(Log().contains(
            "RIGHE NON PIÙ NELL'ORIGINE: ORDWP 11/2023 di 'Bianchi e Neri S.p.A.', DRNUM '9': 1 rimane"));
    }

    void anErrorThatEndsTheBillsIsLogged() {
        Run("ImportArticoliWinProgest");
        Target().Errors.Action = ErrorAction::Abort;
        const RunResult result = Run("ImportDistinteWinProgest");
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QVERIFY(result.AddsUp());
        QVERIFY(Log().contains("Errore: tabella 'NFCODIS'"));
        QVERIFY(Person().Messages.isEmpty());
        QCOMPARE(Count("DIS_BAS"), 1); // the one before the bad one stays, of the bad one nothing does
        QCOMPARE(Count("DIS_COM"), 2);
    }

    void aCancelEndsAllKindsOfDocuments() {
        Person().CancelAt = 1;
        const RunResult result = Run("ImportDocumentiWinProgest", {false});
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(Person().Progresses.size(), 2); // one offer is all there is; the orders are cancelled behind the first
        QCOMPARE(Count("DOC_VEN WHERE USINS = 'SYSTEM_IMPORT'"), 2);
        QCOMPARE(Count("DOC_ACQ"), 0);
        QVERIFY(Person().Messages.isEmpty());
    }

    void aLinkThatTheSourceHasNoMoreGoes() {
        Set("DOC_CheckArticoli", "0");
        Run("ImportDocumentiWinProgest", {false});
        const QString ofOrder = " FROM X01_DOC_VER WHERE DRQTR = 4 AND DRNUM = ";
        m_fixture->Target().Execute("UPDATE X01_DOC_VER SET DRORI = 3 WHERE DRQTR = 4 AND DRNUM = 1");
        m_fixture->Target().Execute(
            "INSERT INTO X01_DOC_VER (IDTES, DRNUM, DRQTR, DRORI, USINS) SELECT IDTES, 2, 4, 3, 'ANNA'" + ofOrder +
            '1');
        m_fixture->Target().Execute("DELETE FROM X01_DOC_VER WHERE DRDES = 'consegna completa'");
        m_fixture->Target().Execute("UPDATE X01_DOC_VER SET USMDF = 'MARIO' WHERE DRQTR = 4 AND DRNUM = 1");
        Run("RiallineaDRORIWinProgest", {true, false, false, false});
        QCOMPARE(m_fixture->Target().Rows("SELECT DRORI" + ofOrder + '1'), QStringList{"3"}); // so has one here
        QVERIFY(!Log().contains("COLLEGAMENTO TOLTO"));
        m_fixture->Target().Execute("UPDATE X01_DOC_VER SET USMDF = Null WHERE DRQTR = 4 AND DRNUM = 1");
        Run("RiallineaDRORIWinProgest", {true, false, false, false});
        QCOMPARE(m_fixture->Target().Rows("SELECT DRORI" + ofOrder + '1'), QStringList{"NULL"});
        QVERIFY2(Log().contains("COLLEGAMENTO TOLTO: "), qPrintable(Log()));
        QVERIFY(Log().contains(": DRORI era '3'"));
        QCOMPARE(m_fixture->Target().Rows("SELECT DRORI" + ofOrder + '2'), QStringList{"3"}); // a hand has linked it
    }

    void aRowOfAHandStays_data() {
        Columns<QString, QString, bool>("changedBy", "article", "stays");
        Row("its own", QString("ANNA"), QString(), true);
        Row("an earlier release has written over it", QString("SYSTEM_IMPORT"), QString(), false);
        Row("an import has linked it", QString("SYSTEM_IMPORT"), QString("ALTRO"), true);
    }
    void aRowOfAHandStays() {
        QFETCH(const QString, changedBy);
        QFETCH(const QString, article);
        QFETCH(const bool, stays);
        Set("DOC_CheckArticoli", "0");
        Run("ImportDocumentiWinProgest", {false});
        const QString rows = "SELECT COUNT(*) FROM X01_DOC_VER R JOIN X01_DOC_VEN T ON T.RECORD_ID = R.IDTES WHERE "
                             "DTNUM = 11 AND DRNUM = 1 AND R.USINS = ";
        m_fixture->Target().Execute(
            "UPDATE X01_DOC_VER SET USINS = 'ANNA', USMDF = '" + changedBy +
            "', DRART = " + (article.isEmpty() ? QString("DRART") : '\'' + article + '\'') +
            " WHERE DRNUM = 1 AND IDTES IN (SELECT RECORD_ID FROM X01_DOC_VEN WHERE DTNUM = 11)");
        const QStringList byHand = m_fixture->Target().Rows(rows + "'ANNA'");
        for (int run = 0; run < 2; ++run) {
            Run("ImportDocumentiWinProgest", {false});
            QCOMPARE(Log().count("RIGA DI ALTRA MANO: ") > 0, stays && run == 0);
            QCOMPARE(m_fixture->Target().Rows(rows + "'ANNA'"), byHand);
            QCOMPARE(m_fixture->Target().Rows(rows + "'SYSTEM_IMPORT'"), stays ? byHand : QStringList{"0"});
        }
    }

    void discountsOfACodeThatStandsToTheRightStay() {
        Run("ImportPromozioniWinProgest");
        const QString discounts = "SELECT CDPRM, PRSC1, PRSC2 FROM X01_PRO_MOR ORDER BY RECORD_ID";
        const QStringList before = m_fixture->Target().Rows(discounts);
        const QDir folder(m_fixture->Target().Folder.path());
        for (const char* table : {"promo", "promor"}) {
            const QString name = QString("tables/%1.txt").arg(table);
            QVERIFY(folder.mkpath("tables"));
            WriteFile(folder.filePath(name), m_fixture->Read(name).replace("\nPR1|", "\n  PR1|").toUtf8());
        }
        MakeFoxProTables(folder.filePath("tables"), folder.filePath("source"),
                         [](const QString& table, const QString& column) { return column.isEmpty() ? table : column; });
        Run("ImportPromozioniWinProgest");
        QCOMPARE(m_fixture->Target().Rows(discounts), before);
        QVERIFY2(!Log().contains("SCONTO TOLTO"), qPrintable(Log()));
    }

    void discountsThatTheSourceHasNoMoreGo() {
        Run("ImportPromozioniWinProgest");
        for (const char* discount :
             {"'PR1', 50, 'SYSTEM_IMPORT', NULL", "'PR1', 60, 'ANNA', NULL", "'PR1', 70, 'SYSTEM_IMPORT', 'ANNA'"}) {
            m_fixture->Target().Execute(
                QString("INSERT INTO X01_PRO_MOR (CDPRM, PRSC1, USINS, USMDF) VALUES (%1)").arg(discount));
        }
        m_fixture->Target().Execute("INSERT INTO X01_PRO_MOZ (CDPRM, USINS) VALUES ('PR9', 'SYSTEM_IMPORT')");
        m_fixture->Target().Execute("UPDATE X01_PRO_MOR SET PRSC1 = 4 WHERE PRSC1 = 3");
        Run("ImportPromozioniWinProgest");
        QCOMPARE(m_fixture->Target().Rows("SELECT PRSC1 FROM X01_PRO_MOR WHERE CDPRM = 'PR1' ORDER BY RECORD_ID"),
                 QStringList({"3", "10", "60", "70"}));
        for (const char* told : {"SCONTO TOLTO: promozione 'PR1', 50+0+0", "SCONTI DI ALTRA MANO: promozione 'PR1': 1",
                                 "ORIGINE: promozione 'PR1', 70+0+0: 1", "ABBANDONATE: 'PR9': 1"}) {
            QVERIFY2(Log().contains(told), qPrintable(Log()));
        }
    }

    void aCodeThatWentToAnotherArticleIsTakenOff() {
        Run("ImportArticoliWinProgest");
        Run("ImportCodificheWinProgest");
        const QStringList codes =
            m_fixture->Target().Rows("SELECT CDART, CDCOD FROM X01_ART_COD ORDER BY CDART, CDCOD");
        m_fixture->Target().Execute("UPDATE X01_ART_COD SET CDART = 'S300' WHERE CDCOD = 'VECCHIO'");
        Run("ImportCodificheWinProgest");
        QVERIFY2(Log().contains("CODICE TOLTO: articolo 'S300': l'origine ha dato 'VECCHIO'"), qPrintable(Log()));
        QCOMPARE(m_fixture->Target().Rows("SELECT CDART, CDCOD FROM X01_ART_COD ORDER BY CDART, CDCOD"), codes);
        m_fixture->Target().Execute("INSERT INTO X01_ART_COD (CDART, CDCOD, COTIP, USINS) VALUES ('S300', 'BAR', 'I', "
                                    "'SYSTEM_IMPORT')");
        Run("ImportCodificheWinProgest");
        QVERIFY2(Log().contains("ABBANDONATE: articolo 'S300', 'BAR': 1 rimane"), qPrintable(Log()));
        // Where another origin imports articles too, it may have given its own that code.
        m_fixture->Target().Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD) VALUES ('X01_ART_ICO', 'MODULO', "
                                    "'modImport_Altra')");
        m_fixture->Target().Execute("INSERT INTO X01_ART_COD (CDART, CDCOD, COTIP, USINS) VALUES ('ALTRO', 'VECCHIO', "
                                    "'I', 'SYSTEM_IMPORT')");
        Run("ImportCodificheWinProgest");
        QVERIFY2(Log().contains("CODICE DI DUE ARTICOLI: l'origine dà 'VECCHIO'"), qPrintable(Log()));
        QCOMPARE(Count("ART_COD WHERE CDART = 'ALTRO'"), 1);
    }

    void documentsThatComeFromNoOtherHaveNothingToLink() {
        OpenSource();
        contract::ImportRun run(Target(), modImport_WinProgest::Module, "RiallineaDRORIWinProgest", {});
        QVERIFY(modImport_WinProgest::RiallineaDRORI(run, modImport_WinProgest::Kind::Offers, {}));
        QCOMPARE(Person().Events.last(), QString("[!] Attenzione: tabella origine non specificata!"));
    }
};

QUADRIX_TEST(TestWinProgest)
#include "test_winProgest.moc"
