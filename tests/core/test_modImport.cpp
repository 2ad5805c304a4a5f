#include "core/modImport.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace modImport;

class TestModImport : public QObject {
    Q_OBJECT

    static void AddTranslation(TestTarget& target, const QString& table, const QString& field, const QString& oldCode,
                               const QString& newCode) {
        target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('" + table + "', '" + field + "', '" +
                       oldCode + "', " + newCode + ")");
    }

private slots:
    void getNewCode_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("oldCode");
        QTest::addColumn<QString>("newCode");
        QTest::newRow("found") << "TAB_MOP"
                               << "CDMOP"
                               << "RB30"
                               << "030";
        QTest::newRow("another field") << "TAB_MOP"
                                       << "CDMPT"
                                       << "RB30"
                                       << "";
        QTest::newRow("another table") << "TAB_IVA"
                                       << "CDMOP"
                                       << "RB30"
                                       << "";
        QTest::newRow("first 20 characters count") << "ABCDEFGHIJKLMNOPQRST_ONE"
                                                   << "ABCDEFGHIJKLMNOPQRST_TWO"
                                                   << "A"
                                                   << "B";
        QTest::newRow("empty code has none") << "TAB_MOP"
                                             << "CDMOP"
                                             << ""
                                             << "";
        QTest::newRow("quotes") << "TAB_MOP"
                                << "CDMOP"
                                << "O'K"
                                << "Q1";
        QTest::newRow("Null is empty") << "TAB_MOP"
                                       << "CDMOP"
                                       << "NULLO"
                                       << "";
    }
    void getNewCode() {
        TestTarget target;
        AddTranslation(target, "TAB_MOP", "CDMOP", "RB30", "'030'");
        AddTranslation(target, "ABCDEFGHIJKLMNOPQRST", "ABCDEFGHIJKLMNOPQRST", "A", "'B'");
        AddTranslation(target, "TAB_MOP", "CDMOP", "O''K", "'Q1'");
        AddTranslation(target, "TAB_MOP", "CDMOP", "NULLO", "NULL");
        AddTranslation(target, "TAB_MOP", "CDMOP", "", "'XX'");
        QFETCH(QString, table);
        QFETCH(QString, field);
        QFETCH(QString, oldCode);
        QTEST(GetNewCode(target.Get(), table, field, oldCode, false), "newCode");
        QCOMPARE(target.Value("SELECT COUNT(*) FROM SYS_IMP"), QString("5"));
    }

    void firstMatchStaysForTheRun() {
        TestTarget target;
        AddTranslation(target, "TAB_MOP", "CDMOP", "abc", "'1'");
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "abc", false), QString("1"));
        target.Execute("UPDATE SYS_IMP SET TBNEW = '2'");
        QCOMPARE(GetNewCode(target.Get(), "tab_mop", "cdmop", "ABC", false), QString("1"));
        target.Get().Translations.clear();
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "abc", false), QString("2"));
    }

    void missingCodeIsAddedOnceAndNotRemembered() {
        TestTarget target;
        QCOMPARE(GetNewCode(target.Get(), "ANAGRAFICACF", "VALUTA", "LIT", true), QString());
        QCOMPARE(GetNewCode(target.Get(), "ANAGRAFICACF", "VALUTA", "LIT", true), QString());
        QCOMPARE(target.Rows("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP"),
                 QStringList("ANAGRAFICACF|VALUTA|LIT|"));
        QCOMPARE(target.Get().Untranslated, QStringList("ANAGRAFICACF.VALUTA = LIT"));
    }

    void codeThatIsNotThereIsAskedForAgain() {
        TestTarget target;
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "NEW", false), QString());
        AddTranslation(target, "TAB_MOP", "CDMOP", "NEW", "'9'");
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "NEW", false), QString("9"));
    }

    void counterpartyFromSourceCode_data() {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("asCustomer");
        QTest::addColumn<bool>("asSupplier");
        QTest::addColumn<bool>("partial");
        QTest::addColumn<QString>("found");
        QTest::newRow("customer") << "C12" << true << false << false << "000001";
        QTest::newRow("customer's code as supplier") << "C12" << false << true << false << "";
        QTest::newRow("supplier") << "F12" << false << true << false << "000002";
        QTest::newRow("either, customer") << "C12" << false << false << false << "000001";
        QTest::newRow("either, supplier") << "F12" << false << false << false << "000002";
        QTest::newRow("customer wins over supplier") << "F12" << true << true << false << "";
        QTest::newRow("no part of a code") << "12" << false << false << false << "";
        QTest::newRow("part of a code") << "12" << false << true << true << "000002";
        QTest::newRow("part of a longer code") << "33" << true << false << true << "000003";
    }
    void counterpartyFromSourceCode() {
        TestTarget target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000001', 'C12', NULL)");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000002', NULL, 'F12')");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000003', 'C1330', NULL)");
        QFETCH(QString, code);
        QFETCH(bool, asCustomer);
        QFETCH(bool, asSupplier);
        QFETCH(bool, partial);
        QTEST(GetNewControparteFromCodExt(target.Get(), code, asCustomer, asSupplier, partial), "found");
    }

    void externalCode_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("toQuadrix");
        QTest::addColumn<QString>("found");
        QTest::newRow("to Quadrix") << "TAB_IVA"
                                    << "22" << true << "022";
        QTest::newRow("from Quadrix") << "TAB_IVA"
                                      << "022" << false << "22";
        QTest::newRow("company table") << "BAN_CHE"
                                       << "INTESA" << true << "00007";
        QTest::newRow("unknown code") << "TAB_IVA"
                                      << "99" << true << "";
        QTest::newRow("a table without external codes") << "CON_TRO"
                                                        << "000001" << false << "";
    }
    void externalCode() {
        TestTarget target;
        target.Execute("UPDATE TAB_IVA SET IVEXT = '22' WHERE CDIVA = '022'");
        target.Execute("INSERT INTO X01_BAN_CHE (CDBAN, BAEXT) VALUES ('00007', 'INTESA')");
        QFETCH(QString, table);
        QFETCH(QString, code);
        QFETCH(bool, toQuadrix);
        QTEST(GetExternalCode(target.Get(), table, code, toQuadrix), "found");
        QVERIFY(target.Person.Reported.isEmpty());
    }

    /// A lookup reports an error under its own name and finds nothing.
    void lookupsNeverRaise() {
        TestTarget target;
        target.Execute("DROP TABLE SYS_IMP");
        target.Execute("DROP TABLE X01_CON_TRO");
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "RB30", true), QString());
        QCOMPARE(GetNewControparteFromCodExt(target.Get(), "C1", true, false, false), QString());
        QStringList reported;
        for (const ErrorEntry& entry : target.Person.Reported) {
            reported.append(entry.module + '.' + entry.procedure);
        }
        QCOMPARE(reported, QStringList({"modImport.GetNewCode", "modImport.GetNewControparteFromCodExt"}));
        QCOMPARE(target.Person.BusyChanges % 2, 0);
    }

    void docTypes_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("index");
        QTest::newRow("first") << "INT" << 0;
        QTest::newRow("order") << "ORD" << 5;
        QTest::newRow("packing list") << "PCK" << 6;
        QTest::newRow("any case") << "ddt" << 8;
        QTest::newRow("quality check") << "CQC" << 12;
        QTest::newRow("last") << "NDC" << 14;
        QTest::newRow("empty") << "" << -1;
        QTest::newRow("unknown") << "XYZ" << -1;
    }
    void docTypes() {
        QFETCH(QString, type);
        QTEST(int(GetDocTypeIndex(type)), "index");
    }

    void warehouseDestination_data() {
        QTest::addColumn<int>("family");
        QTest::addColumn<QString>("types");
        QTest::newRow("sales") << 0 << "DTL DTR";
        QTest::newRow("purchases") << 1 << "RDA RDL RDO ORD DDT DTI FAT NDC";
        QTest::newRow("subcontracting") << 2 << "RDA RDL RDO ORD DDT DTI FAT NDC";
        QTest::newRow("intra-company") << 3 << "RDL DTI";
        QTest::newRow("no family") << 4 << "";
        QTest::newRow("negative") << -1 << "";
    }
    void warehouseDestination() {
        QFETCH(int, family);
        QFETCH(QString, types);
        QStringList yes;
        for (const char* type : {"INT", "RDA", "RDL", "OFF", "RDO", "ORD", "PCK", "DTL", "DDT", "DTR", "DTU", "DTI",
                                 "CQC", "FAT", "NDC", "???"}) {
            if (IsWarehouseDestination(family, GetDocTypeIndex(type))) {
                yes.append(type);
            }
        }
        QCOMPARE(yes.join(' '), types);
    }

    void logStartsAfreshOrAppends() {
        TestTarget target;
        WriteImportLog(target.Get(), "prima", true);
        WriteImportLog(target.Get(), "Città €\nsu due righe", false);
        QCOMPARE(target.Log(), QByteArray("05/03/2024 10:20:30 - prima\r\n"
                                          "05/03/2024 10:20:30 - Citt\xE0 \x80\nsu due righe\r\n"));
        WriteImportLog(target.Get(), "nuovo \u4E2D", true);
        QCOMPARE(target.Log(), QByteArray("05/03/2024 10:20:30 - nuovo ?\r\n"));
        WriteImportLog(target.Get(), "altrove", false, target.Folder.filePath("fusione.log"));
        QCOMPARE(target.Log("fusione.log"), QByteArray("05/03/2024 10:20:30 - altrove\r\n"));
    }

    void logThatCannotBeWrittenIsAnError() {
        TestTarget target;
        const QString path = target.Folder.filePath("no/such/folder.log");
        try {
            WriteImportLog(target.Get(), "x", true, path);
            QFAIL("written");
        } catch (const ImportError& error) {
            QVERIFY(error.Message().contains(path));
        }
    }

    void caseOfKeysAndTexts_data() {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("text");
        QTest::newRow("default") << ""
                                 << "AB"
                                 << "Ab";
        QTest::newRow("both") << "KEYFIELD_CHAR=1\r\nTEXTFIELD_CHAR=1\r\n"
                              << "AB"
                              << "AB";
        QTest::newRow("neither") << "KEYFIELD_CHAR=0\r\nTEXTFIELD_CHAR=0\r\n"
                                 << "Ab"
                                 << "Ab";
        QTest::newRow("a number's value counts") << "KEYFIELD_CHAR=1.0\r\nTEXTFIELD_CHAR= 1\r\n"
                                                 << "AB"
                                                 << "AB";
        QTest::newRow("no number") << "KEYFIELD_CHAR=yes\r\nTEXTFIELD_CHAR=x\r\n"
                                   << "Ab"
                                   << "Ab";
    }
    void caseOfKeysAndTexts() {
        TestTarget target;
        QFETCH(QString, settings);
        QFile file(target.Folder.filePath("Quadrix.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[CONFIG]\r\n" + settings.toLatin1());
        file.close();
        target.Get().Config.SetConfigFile(file.fileName());
        QTEST(FormatKeyField(target.Get(), "Ab"), "key");
        QTEST(FormatTextField(target.Get(), "Ab"), "text");
    }

    void firstCharacter() {
        QVERIFY(IsDigitChar("0x"));
        QVERIFY(IsDigitChar("9"));
        QVERIFY(!IsDigitChar("x0"));
        QVERIFY(!IsDigitChar("\u0663"));
        QVERIFY(IsDotChar(".1"));
        QVERIFY(!IsDotChar("1."));
        QVERIFY_EXCEPTION_THROWN(IsDigitChar(""), ImportError);
        QVERIFY_EXCEPTION_THROWN(IsDotChar(""), ImportError);
    }
};

QUADRIX_TEST(TestModImport)
#include "test_modImport.moc"
