#include "core/Schema.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTest>

class TestCreateDatabase : public QObject {
    Q_OBJECT

    static void Engines() {
        QTest::addColumn<TestTarget::On>("engine");
        QTest::newRow("embedded") << TestTarget::On::Embedded;
        if (TestTarget::HasMariaDb()) {
            QTest::newRow("MariaDB") << TestTarget::On::MariaDb;
        }
    }

private slots:
    void makesEveryTableAndColumn_data() { Engines(); }
    void makesEveryTableAndColumn() {
        QFETCH(TestTarget::On, engine);
        TestTarget target(engine);
        for (const schema::Table& table : schema::Tables()) {
            const auto columns = target.Db().GetColumns(target.Db().GetFullTableName(table.name));
            QCOMPARE(columns.size(), qsizetype(table.columns.size()));
            for (qsizetype i = 0; i < columns.size(); ++i) {
                QCOMPARE(columns.at(i).name, table.columns[size_t(i)].name);
            }
        }
        QCOMPARE(target.Value("SELECT AZRAS FROM SYS_AZI WHERE CDAZI = 'X01'"), QString("Prova Uno S.r.l."));
        QCOMPARE(target.Value("SELECT MADES FROM X01_MAG_AZZ WHERE CDMAG = '001'"), QString("Magazzino principale"));
    }

    void baseTablesHaveTheUsualCodes_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("value");
        QTest::newRow("ordinary rate") << "SELECT IVALI FROM TAB_IVA WHERE CDIVA = '022'"
                                       << "22";
        QTest::newRow("old rate") << "SELECT IVALI FROM TAB_IVA WHERE CDIVA = '020'"
                                  << "20";
        QTest::newRow("exemptions have no rate") << "SELECT COUNT(*) FROM TAB_IVA WHERE CDIVA LIKE 'N_' AND IVALI = 0"
                                                 << "7";
        QTest::newRow("currency") << "SELECT VADES FROM TAB_VAL WHERE CDVAL = 'EUR'"
                                  << "Euro";
        QTest::newRow("country") << "SELECT NADES FROM TAB_NAZ WHERE CDNAZ = 'VAT'"
                                 << "Città del Vaticano";
        QTest::newRow("language") << "SELECT LNDES FROM TAB_LNG WHERE CDLNG = 'IT'"
                                  << "Italiano";
        QTest::newRow("unit") << "SELECT UMDES FROM TAB_UMS WHERE CDUMS = 'NR'"
                              << "Numero";
        QTest::newRow("audit") << "SELECT DISTINCT USINS FROM TAB_IVA"
                               << "SYSTEM";
    }
    void baseTablesHaveTheUsualCodes() {
        TestTarget target;
        QFETCH(QString, query);
        QTEST(target.Value(query), "value");
    }

    void dictionariesTellReferencesAndTypes_data() { Engines(); }
    void dictionariesTellReferencesAndTypes() {
        QFETCH(TestTarget::On, engine);
        TestTarget target(engine);
        const QStringList references =
            target.Rows("SELECT TABNM, COLNM, CONNM FROM SYS_SYS WHERE TABLK = 'CON_TRO' AND "
                        "COLLK = 'CDCON' ORDER BY TABNM, COLNM");
        QVERIFY(references.contains("CON_SED|CDCON|"));
        QVERIFY(references.contains("NUM_TEL|TBKEY|TBNAM"));
        QVERIFY(references.contains("DOC_ACQ|DTCON|"));
        QVERIFY(references.contains("CON_TRO|COVEP|"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM SYS_SYS WHERE TABNM = 'CON_TRO' AND COLNM = 'CDCON'"),
                 QString("0"));
        QCOMPARE(target.Value("SELECT COLTP FROM SYS_SYS_COL WHERE TABNM = 'CON_TRO' AND COLNM = 'CORAS'"),
                 QString::number(int(DataType::NVarChar)));
        QCOMPARE(target.Value("SELECT COLTP FROM SYS_SYS_COL WHERE TABNM = 'CON_TRO' AND COLNM = 'COINV'"),
                 QString::number(int(DataType::DateTime)));
    }

    void codeOfAMasterIsUnique_data() { Engines(); }
    void codeOfAMasterIsUnique() {
        QFETCH(TestTarget::On, engine);
        TestTarget target(engine);
        target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')");
        QVERIFY_EXCEPTION_THROWN(target.Execute("INSERT INTO X01_CON_TRO (CDCON) VALUES ('000001')"), SqlError);
        target.Execute("INSERT INTO X01_CON_SED (CDCON, CDSED) VALUES ('000001', '001')");
        target.Execute("INSERT INTO X01_CON_SED (CDCON, CDSED) VALUES ('000001', '001')");
    }

    /// The second company brings its own tables and leaves the shared ones as the operator keeps them.
    void secondCompanySharesTheBaseTables_data() { Engines(); }
    void secondCompanySharesTheBaseTables() {
        QFETCH(TestTarget::On, engine);
        TestTarget target(engine);
        target.Execute("UPDATE TAB_IVA SET IVEXT = '22' WHERE CDIVA = '022'");
        target.Execute("DELETE FROM TAB_IVA WHERE CDIVA = '020'");
        const QString references = target.Value("SELECT COUNT(*) FROM SYS_SYS");
        target.AddCompany("x02", "Prova Due S.p.A.");
        QCOMPARE(target.Rows("SELECT CDAZI FROM SYS_AZI ORDER BY CDAZI"), QStringList({"X01", "X02"}));
        QCOMPARE(target.Value("SELECT IVEXT FROM TAB_IVA WHERE CDIVA = '022'"), QString("22"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM TAB_IVA WHERE CDIVA = '020'"), QString("0"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM SYS_SYS"), references);
        target.Execute("INSERT INTO X02_CON_TRO (CDCON) VALUES ('000001')");
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_CON_TRO"), QString("0"));
    }

    void refusals_data() {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("told");
        QTest::newRow("same code") << "X01"
                                   << "Altra"
                                   << "'X01': esiste già";
        QTest::newRow("same code in small letters") << "x01"
                                                    << "Altra"
                                                    << "'X01': esiste già";
        QTest::newRow("same name") << "X02"
                                   << "Prova Uno S.r.l."
                                   << "AZRAS";
        QTest::newRow("no name") << "X02"
                                 << "  "
                                 << "ragione sociale";
        QTest::newRow("no code") << ""
                                 << "Altra"
                                 << "lettere e cifre";
        QTest::newRow("a digit first") << "1X"
                                       << "Altra"
                                       << "lettere e cifre";
        QTest::newRow("no part of a table name") << "X0;"
                                                 << "Altra"
                                                 << "lettere e cifre";
        QTest::newRow("too long") << "ABCDEFGHIJK"
                                  << "Altra"
                                  << "al più 10";
    }
    void refusals() {
        TestTarget target;
        QFETCH(QString, code);
        QFETCH(QString, name);
        QFETCH(QString, told);
        const qsizetype tables = target.Db().GetTables().size();
        try {
            target.AddCompany(code, name);
            QFAIL("accepted");
        } catch (const ImportError& error) {
            QVERIFY2(error.Message().contains(told), qPrintable(error.Message()));
        }
        QCOMPARE(target.Db().GetTables().size(), tables);
    }

    void failureLeavesTheDatabaseAsItWas() {
        TestTarget target;
        const qsizetype tables = target.Db().GetTables().size();
        target.Execute("CREATE TRIGGER no_more BEFORE INSERT ON SYS_AZI BEGIN SELECT RAISE(ABORT, 'stop'); END");
        QVERIFY_EXCEPTION_THROWN(target.AddCompany("X02", "Prova Due"), SqlError);
        QCOMPARE(target.Db().GetTables().size(), tables);
        target.Execute("DROP TRIGGER no_more");
        target.AddCompany("X02", "Prova Due");
    }

    void reopens() {
        TestTarget target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, CORAS) VALUES ('000001', 'Città')");
        target.Db().CloseConnection();
        target.Db().OpenConnection();
        QCOMPARE(target.Value("SELECT CORAS FROM X01_CON_TRO WHERE CDCON = '000001'"), QString("Città"));
    }
};

QUADRIX_TEST(TestCreateDatabase)
#include "test_createDatabase.moc"
