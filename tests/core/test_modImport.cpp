#include "core/modImport.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
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
        Columns<QString, QString, QString, QString>("table", "field", "oldCode", "newCode");
        Row("found", "TAB_MOP", "CDMOP", "RB30", "030");
        Row("another field", "TAB_MOP", "CDMPT", "RB30", "");
        Row("another table", "TAB_IVA", "CDMOP", "RB30", "");
        Row("first 20 characters count", "ABCDEFGHIJKLMNOPQRST_ONE", "ABCDEFGHIJKLMNOPQRST_TWO", "A", "B");
        Row("empty code has none", "TAB_MOP", "CDMOP", "", "");
        Row("quotes", "TAB_MOP", "CDMOP", "O'K", "Q1");
        Row("Null is empty", "TAB_MOP", "CDMOP", "NULLO", "");
        Row("blanks are empty", "TAB_MOP", "CDMOP", "BIANCO", "");
        Row("blanks behind it are padding", "TAB_MOP", "CDMOP", "FISSO", " 031");
    }
    void getNewCode() {
        TestTarget target;
        AddTranslation(target, "TAB_MOP", "CDMOP", "RB30", "'030'");
        AddTranslation(target, "ABCDEFGHIJKLMNOPQRST", "ABCDEFGHIJKLMNOPQRST", "A", "'B'");
        AddTranslation(target, "TAB_MOP", "CDMOP", "O''K", "'Q1'");
        AddTranslation(target, "TAB_MOP", "CDMOP", "NULLO", "NULL");
        AddTranslation(target, "TAB_MOP", "CDMOP", "BIANCO", "'   '");
        AddTranslation(target, "TAB_MOP", "CDMOP", "FISSO", "' 031      '");
        AddTranslation(target, "TAB_MOP", "CDMOP", "", "'XX'");
        QFETCH(QString, table);
        QFETCH(QString, field);
        QFETCH(QString, oldCode);
        QTEST(GetNewCode(target.Get(), table, field, oldCode, false), "newCode");
        QCOMPARE(target.Value("SELECT COUNT(*) FROM SYS_IMP"), QString("7"));
    }

    void firstMatchStaysForTheRun() {
        TestTarget target;
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "abc", false), QString());
        AddTranslation(target, "TAB_MOP", "CDMOP", "abc", "'1'");
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "abc", false), QString("1"));
        target.Execute("UPDATE SYS_IMP SET TBNEW = '2'");
        QCOMPARE(GetNewCode(target.Get(), "tab_mop", "cdmop", "ABC", false), QString("1"));
        target.Get().Translations.clear();
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "abc", false), QString("2"));
    }

    void missingCodeIsAddedOnce() {
        TestTarget target;
        QCOMPARE(GetNewCode(target.Get(), "ANAGRAFICACF", "VALUTA", "LIT", true), QString());
        QCOMPARE(GetNewCode(target.Get(), "ANAGRAFICACF", "VALUTA", "LIT", true), QString());
        QCOMPARE(target.Rows("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP"),
                 QStringList("ANAGRAFICACF|VALUTA|LIT|"));
        GetNewCode(target.Get(), "ANAGRAFICACF", "VALUTA", "lit", true); // one row and one code, whatever the case
        QCOMPARE(target.Value("SELECT COUNT(*) FROM SYS_IMP"), QString("1"));
        QCOMPARE(target.Get().Untranslated.First(), QStringList("ANAGRAFICACF.VALUTA = LIT"));
    }

    /// However many there are, and each procedure tells its own.
    void untranslatedCodesAreCountedBeyondThoseKept() {
        UntranslatedCodes codes;
        for (int round = 0; round < 2; ++round) {
            for (int code = 0; code < 1500; ++code) {
                codes.Add(QString::number(code));
            }
        }
        QCOMPARE(codes.Count(), 1500);
        QCOMPARE(codes.First().size(), UntranslatedCodes::MostKept);
        QCOMPARE(codes.First().last(), QString("999"));
        codes.Begin();
        codes.Add("1200"); // told already
        codes.Add("nuovo");
        QCOMPARE(codes.Count(), 1);
        QCOMPARE(codes.First(), QStringList("nuovo"));
        codes.Forget();
        codes.Add("1200");
        QCOMPARE(codes.Count(), 1);
    }

    void counterpartyFromSourceCode_data() {
        Columns<QString, bool, bool, bool, QString>("code", "asCustomer", "asSupplier", "partial", "found");
        Row("customer", "C12", true, false, false, "000001");
        Row("customer's code as supplier", "C12", false, true, false, "");
        Row("supplier", "F12", false, true, false, "000002");
        Row("either, customer", "C12", false, false, false, "000001");
        Row("either, supplier", "F12", false, false, false, "000002");
        Row("customer wins over supplier", "F12", true, true, false, "");
        Row("no part of a code", "12", false, false, false, "");
        Row("part of a code", "12", false, true, true, "000002");
        Row("part of a longer code", "33", true, false, true, "000003");
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
        Columns<QString, QString, bool, QString>("table", "code", "toQuadrix", "found");
        Row("to Quadrix", "TAB_IVA", "22", true, "022");
        Row("from Quadrix", "TAB_IVA", "022", false, "22");
        Row("company table", "BAN_CHE", "INTESA", true, "00007");
        Row("unknown code", "TAB_IVA", "99", true, "");
        Row("a table without external codes", "CON_TRO", "000001", false, "");
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

    /// Codes are compared without case and not beyond it, and "Null" is one like any other.
    void codesThatLookAlike() {
        TestTarget target;
        AddTranslation(target, "TAB_MOP", "CDMOP", "STRASSE", "'1'");
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "strasse", false), QString("1"));
        QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "straße", false), QString());
        for (int time = 0; time < 2; ++time) {
            QCOMPARE(GetNewCode(target.Get(), "TAB_MOP", "CDMOP", "Null", true), QString());
        }
        QCOMPARE(target.Rows("SELECT TBOLD FROM SYS_IMP WHERE TBFLD = 'CDMOP' ORDER BY RECORD_ID"),
                 QStringList({"STRASSE", "Null"}));
    }

    /// A failure that comes back with each row is told once; the log has it with each row.
    void countsFailedLookups() {
        TestTarget target;
        Session& session = target.Get();
        target.Execute("ALTER TABLE SYS_IMP RENAME COLUMN TBOLD TO TBALT");
        for (const char* code : {"1", "2", "3"}) {
            const ovErrors::Row row(session.Errors, QString("Tabella 'pagamenti', codice ") + code);
            QCOMPARE(GetNewCode(session, "TAB_MOP", "CDMOP", code, false), QString());
        }
        QCOMPARE(session.FailedLookUps.count, 3);
        QCOMPARE(session.FailedLookUps.messages.size(), 1);
        QCOMPARE(target.Person.Reported.size(), 1);
        QCOMPARE(session.Notes.kinds.size(), 1);
        QCOMPARE(session.Notes.kinds[0].count, 3);
        QVERIFY2(session.Notes.kinds[0].first.startsWith("Tabella 'pagamenti', codice 1: TAB_MOP.CDMOP = 1: "),
                 qPrintable(session.Notes.kinds[0].first));
        QCOMPARE(target.Log().count("RICERCA FALLITA (GetNewCode): Tabella 'pagamenti', codice "), 3);
        target.Execute("DROP TABLE SYS_IMP"); // another failure
        GetNewCode(session, "TAB_MOP", "CDMOP", "4", false);
        QCOMPARE(target.Person.Reported.size(), 2);
        QFile::remove(session.LogFile);
        session.LogFile = target.Folder.path(); // a log that cannot be written
        QCOMPARE(GetNewCode(session, "TAB_MOP", "CDMOP", "5", false), QString());
        QCOMPARE(session.FailedLookUps.count, 5);
    }

    /// Whoever will not go on with a failing look-up is not asked about the next one: the import goes on in any case.
    void asksAboutFailedLookupsOnce() {
        TestTarget target;
        int asked = 0;
        target.Get().Errors.Action = ErrorAction::Ask;
        target.Get().Errors.AskOperator = [&asked](const ErrorEntry&) {
            ++asked;
            return ErrorAnswer::Abort;
        };
        target.Execute("DROP TABLE SYS_IMP");
        for (const char* code : {"1", "2", "3"}) {
            const ovErrors::Row row(target.Get().Errors, code);
            GetNewCode(target.Get(), "TAB_MOP", "CDMOP", code, false);
        }
        QCOMPARE(asked, 1);
        QCOMPARE(target.Get().Errors.Action, ErrorAction::Ask);
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

    void warehouseDestination_data() {
        Columns<int, QString>("family", "types");
        Row("sales", 0, "DTL DTR");
        Row("purchases", 1, "RDA RDL RDO ORD DDT DTI FAT NDC");
        Row("subcontracting", 2, "RDA RDL RDO ORD DDT DTI FAT NDC");
        Row("intra-company", 3, "RDL DTI");
        Row("no family", 4, "");
        Row("negative", -1, "");
    }
    void warehouseDestination() {
        QFETCH(int, family);
        QFETCH(QString, types);
        QStringList yes;
        for (const char* type : {"INT", "rda", "RDL", "OFF", "RDO", "ORD", "PCK", "DTL", "DDT", "DTR", "DTU", "DTI",
                                 "CQC", "FAT", "NDC", "???"}) {
            if (IsWarehouseDestination(family, GetDocTypeIndex(type))) {
                yes.append(QString(type).toUpper());
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
        WriteImportLog(target.Get(), "terminale \x1b[31m", false);
        LogNote(target.Get(), "TELEFONO: 055\r\n05/03/2024 10:20:30 - Fine"); // a value that would pass for a line
        QVERIFY(target.Log().endsWith("05/03/2024 10:20:30 - terminale \\x1b[31m\r\n"
                                      "05/03/2024 10:20:30 - TELEFONO: 055\\r\\n05/03/2024 10:20:30 - Fine\r\n"));
        WriteImportLog(target.Get(), "nuovo \u4E2D", true);
        QCOMPARE(target.Log(), QByteArray("05/03/2024 10:20:30 - nuovo ?\r\n"));
        WriteImportLog(target.Get(), "altrove", false, target.Folder.filePath("fusione.log"));
        QCOMPARE(target.Log("fusione.log"), QByteArray("05/03/2024 10:20:30 - altrove\r\n"));
    }

    void logThatCannotBeWrittenIsAnError() {
        TestTarget target;
        const QString path = target.Folder.filePath("no/such/folder.log");
        const auto error = ErrorOf<ImportError>([&] { WriteImportLog(target.Get(), "x", true, path); });
        QVERIFY(error && error->Message().contains(path));
    }

    void caseOfKeysAndTexts_data() {
        Columns<QString, QString, QString>("settings", "key", "text");
        Row("default", "", "AB", "Ab");
        Row("both", "KEYFIELD_CHAR=1\r\nTEXTFIELD_CHAR=1\r\n", "AB", "AB");
        Row("neither", "KEYFIELD_CHAR=0\r\nTEXTFIELD_CHAR=0\r\n", "Ab", "Ab");
        Row("a number's value counts", "KEYFIELD_CHAR=1.0\r\nTEXTFIELD_CHAR= 1\r\n", "AB", "AB");
        Row("no number", "KEYFIELD_CHAR=yes\r\nTEXTFIELD_CHAR=x\r\n", "Ab", "Ab");
    }
    void caseOfKeysAndTexts() {
        TestTarget target;
        QFETCH(QString, settings);
        WriteFile(target.Folder.filePath("Quadrix.ini"), "[CONFIG]\r\n" + settings.toLatin1());
        QTEST(FormatKeyField(target.Get(), "Ab"), "key");
        QTEST(FormatTextField(target.Get(), "Ab"), "text");
        QCOMPARE(FieldCaseLines(target.Get()).size(), settings.contains("yes") ? 2 : 0);
        QCOMPARE(FormatKeyField(target.Get(), "straße").size(), 6); // a code that fits its column goes on fitting
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
