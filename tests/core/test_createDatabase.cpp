#include "core/Schema.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

class TestCreateDatabase : public QObject {
    Q_OBJECT

    static void Engines() {
        Columns<TestTarget::On>("engine");
        Row("embedded", TestTarget::On::Embedded);
        if (TestTarget::HasMariaDb()) {
            Row("MariaDB", TestTarget::On::MariaDb);
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
        for (const auto& [column, type] : {std::pair{"CORAS", DataType::NVarChar}, {"COINV", DataType::DateTime}}) {
            QCOMPARE(target.Value(
                         QString("SELECT COLTP FROM SYS_SYS_COL WHERE TABNM = 'CON_TRO' AND COLNM = '%1'").arg(column)),
                     QString::number(int(type)));
        }
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
    /// A code at a supplier has an index of its key and one of the supplier, who may have thousands.
    void emptyTablesAreAskedByTheirKey() {
        TestTarget target;
        const QString plan = target
                                 .Rows("EXPLAIN QUERY PLAN SELECT RECORD_ID FROM X01_ART_COD WHERE CDART = 'A' AND "
                                       "CDCOD = 'B' AND COCON = 'C'")
                                 .join('|');
        QVERIFY2(plan.contains("IX_X01_ART_COD_CDART_CDCOD (CDART=? AND CDCOD=?)"), qPrintable(plan));
    }

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
        target.AddCompany("x03", "Null");
        QCOMPARE(target.Value("SELECT AZRAS FROM SYS_AZI WHERE CDAZI = 'X03'"), QString("Null"));
    }

    void refusals_data() {
        Columns<QString, QString, QString>("code", "name", "told");
        Row("same code", "X01", "Altra", "'X01': esiste già");
        Row("same code in small letters", "x01", "Altra", "'X01': esiste già");
        Row("same name", "X02", "Prova Uno S.r.l.", "AZRAS");
        Row("no name", "X02", "  ", "ragione sociale");
        Row("name too long", "X02", QString(61, 'x'), "al più sono 60");
        Row("no code", "", "Altra", "lettere e cifre");
        Row("a digit first", "1X", "Altra", "lettere e cifre");
        Row("no part of a table name", "X0;", "Altra", "lettere e cifre");
        Row("an end of line behind it", "X02\n", "Altra", "lettere e cifre");
        Row("a letter that is two in capitals", "ßA", "Altra", "lettere e cifre");
        Row("tables that all share are called so", "gen", "Altra", "GEN_ART_ICO");
        Row("too long", "ABCDEFGHIJK", "Altra", "al più 10");
    }
    void refusals() {
        TestTarget target;
        QFETCH(QString, code);
        QFETCH(QString, name);
        QFETCH(QString, told);
        const qsizetype tables = target.Db().GetTables().size();
        const auto error = ErrorOf<ImportError>([&] { target.AddCompany(code, name); });
        QVERIFY2(error && error->Message().contains(told), qPrintable(error ? error->Message() : "accepted"));
        QCOMPARE(target.Db().GetTables().size(), tables);
    }

    void failureLeavesTheDatabaseAsItWas() {
        TestTarget target;
        const qsizetype tables = target.Db().GetTables().size();
        target.Execute("CREATE TRIGGER no_more BEFORE INSERT ON SYS_AZI BEGIN SELECT RAISE(ABORT, 'stop'); END");
        QVERIFY(ErrorOf<SqlError>([&] { target.AddCompany("X02", "Prova Due"); }));
        QCOMPARE(target.Db().GetTables().size(), tables);
        target.Execute("DROP TRIGGER no_more");
        target.AddCompany("X02", "Prova Due");
    }
};

QUADRIX_TEST(TestCreateDatabase)
#include "test_createDatabase.moc"
