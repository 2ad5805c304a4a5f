#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// What an import makes of a sheet or file that is filled in otherwise.
class TestSheetValues : public QObject {
    Q_OBJECT

private slots:
    void WhatIsWritten_data() {
        Columns<QString, QString, QString, QString, QString, QString>("module", "change", "line", "query", "written",
                                                                      "told");
        const QString zeros = "UPDATE CLIENTI SET CAP = '0', PARIV = '0', CODFI = '0', TELE1 = '0', TELE2 = '0', TELFX "
                              "= '0', CELLU = '0', NRCCO = '0', CDIBA = '0', CDPAG = '0', CDAGE = '0', CDLIS = '0', "
                              "CDESE = '0' WHERE CDCLI = '123'";
        const QString customers = "ImportClientiExcelAS400 reset";
        Row("zeros of a dump", "modImport_ExcelAS400", zeros, customers,
            "COUNT(*) FROM X01_CON_TRO WHERE COCGE = '123' AND COALESCE(COCAP, '') = '' AND COALESCE(COIVA, '') = '' "
            "AND COALESCE(COFIS, '') = '' AND COALESCE(COCOC, '') = '' AND COALESCE(COIBA, '') = ''",
            "1", "!TELEFONO");
        Row("numbers that are zero", "modImport_ExcelAS400", zeros, customers,
            "COUNT(*) FROM X01_NUM_TEL WHERE NRNUM = '0'", "0", "");
        Row("codes that are zero", "modImport_ExcelAS400", zeros, customers, "COUNT(*) FROM SYS_IMP WHERE TBOLD = '0'",
            "0", "");
        Row("place and drawing that are zero", "modImport_ExcelAS400",
            "UPDATE ARTICOLI SET CDUBI = '0', NRDIS = '0', ARTFO = '0', CDFAM = '0'", "ImportArticoliExcelAS400 reset",
            "ARDIS, (SELECT COUNT(*) FROM X01_UBI_ART), (SELECT COUNT(*) FROM X01_ART_COD WHERE CDCOD = '0') FROM "
            "X01_ART_ICO WHERE CDART = 'TE100'",
            "|0|0", "");
        Row("class in small letters", "modImport_Excel", "UPDATE ARTICOLI SET ARCLA = 'lm' WHERE CDART = 'te-100'",
            "ImportArticoliExcel reset", "ARCLA, ARLAM FROM X01_ART_ICO WHERE CDART = 'TE-100'", "LM|true", "");
        Row("class of tubes", "modImport_Excel", "UPDATE ARTICOLI SET ARCLA = 'Tb' WHERE CDART = 'te-100'",
            "ImportArticoliExcel reset", "ARCLA, ARLAM, ARTUB FROM X01_ART_ICO WHERE CDART = 'TE-100'", "TB|false|true",
            "");
        Row("mark of the sheet itself", "modImport_Excel",
            "ALTER TABLE ARTICOLI ADD COLUMN ARLAM TEXT; UPDATE ARTICOLI SET ARCLA = 'pf', ARLAM = 'sì' WHERE CDART = "
            "'te-100'",
            "ImportArticoliExcel reset", "ARCLA, ARLAM FROM X01_ART_ICO WHERE CDART = 'TE-100'", "PF|true", "");
        Row("end of a promotion that is no day", "modImport_WinProgest", "UPDATE PROMO SET DATFIN = '1900-01-01'",
            "ImportPromozioniWinProgest reset answers=si", "CDPRM, PMVLD FROM X01_PRO_MOZ ORDER BY CDPRM",
            "PR1|true\nPR2|true\nPR3|true", "");
        Row("letter of an order in small ones", "modImport_Siderea",
            "UPDATE SIDEREA SET Tipo = 'c', Articolo = 'VT-10' WHERE Numero = '7' AND Articolo = 'IGNOTO'",
            "ImportOrdiniApertiSiderea reset",
            "T.DTNUM, COUNT(*) FROM X01_DOC_VEN T JOIN X01_DOC_VER R ON R.IDTES = T.RECORD_ID WHERE T.DTNUM = 7 GROUP "
            "BY T.DTNUM, T.RECORD_ID",
            "7|2", "!è già un altro documento");
        Row("account that comes again", "modImport_Lumen",
            "INSERT INTO PIANO_CONTI (_RIGA, CODICE, RIGA) VALUES (900, '10.10.0001', '10.10.0001    Cassa doppia')",
            "ImportPianoContiLumen reset", "PCDES FROM X01_PIA_CON WHERE CDCNT = '10100001'", "Cassa doppia",
            "CODICE DOPPIO: ");
        Row("account whose code is that of another without points", "modImport_Lumen",
            "INSERT INTO PIANO_CONTI (_RIGA, CODICE, RIGA) VALUES (900, '101.0', '101.0         Altro')",
            "ImportPianoContiLumen reset", "PCMAS, PCLEV FROM X01_PIA_CON WHERE CDCNT = '1010'", "101|2",
            "una riga di prima ha scritto altro di '1010' in PIA_CON");
    }
    void WhatIsWritten() {
        QFETCH(const QString, module);
        QFETCH(const QString, change);
        QFETCH(const QString, line);
        QFETCH(const QString, query);
        QFETCH(const QString, told);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::Embedded,
                        [&change](ovConnection& source) { source.ExecuteScript(change); });
        fixture.RunLine(line);
        QTEST(fixture.Target().Rows("SELECT " + query).join('\n'), "written");
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QVERIFY2(told.startsWith('!') ? !log.contains(told.mid(1)) : log.contains(told), qPrintable(log));
    }

    /// Contacts stay as they are in Quadrix: what the file sends them now is told.
    void WhatAContactIsSentNowIsTold() {
        QString change = "UPDATE CONTATTI SET NOTE = NOTE";
        Fixture fixture(FixtureFolder("modImport_Lamina"), *FixtureOrigins().value("modImport_Lamina"),
                        TestTarget::On::Embedded, [&change](ovConnection& source) { source.ExecuteScript(change); });
        fixture.RunLine("ImportContropartiLaminaFromCSV reset files=controparti.csv");
        fixture.RunLine("ImportContattiContropartiLamina reset files=contatti.csv");
        fixture.RunLine("ImportContattiContropartiLamina files=contatti.csv");
        QVERIFY(!QString::fromLatin1(fixture.Target().Log()).contains("RECAPITO DIVERSO"));
        change = "UPDATE CONTATTI SET OFFERTE = 'N', FATTURE = 'S' WHERE NOME = 'Anna Neri'";
        fixture.RunLine("ImportContattiContropartiLamina files=contatti.csv");
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QVERIFY2(log.contains("RFOFF (offerte) 'no' del riferimento 'Anna Neri' in Quadrix è 'sì', e resta"),
                 qPrintable(log));
        QVERIFY2(log.contains("RFFAT (fatture) 'sì'") && log.count("RECAPITO DIVERSO") == 2, qPrintable(log));
    }
};

QUADRIX_TEST(TestSheetValues)
#include "test_sheetValues.moc"
