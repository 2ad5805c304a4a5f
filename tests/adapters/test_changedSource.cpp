#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// What an import makes of a source that has changed since the last one, and what it tells.
class TestChangedSource : public QObject {
    Q_OBJECT

private slots:
    void WhatComesOfAChange_data() {
        Columns<QString, QString, QString, QString, QString, QString>("module", "change", "line", "query", "written",
                                                                      "told");
        const QString movements = "ImportMovimentiAhr";
        Row("movement of another day", "modImport_AdHoc",
            "UPDATE MVM_MAST SET MMDATREG = '20240102 00:00:00' WHERE MMSERIAL = '0000000006'", movements,
            "MMANN, MMNUM FROM X01_MOV_MAG M JOIN X01_MOV_MAR R ON R.MRTES = M.RECORD_ID WHERE R.MRQTA = 7", "2024|7",
            "MMSERIAL '0000000006', CPROWNUM '1': il movimento 2/2024 è di un altro, prende il numero 7");
        Row("movement of another number", "modImport_AdHoc",
            "UPDATE MVM_MAST SET MMNUMREG = 9 WHERE MMSERIAL = '0000000006'", movements,
            "MMANN, MMNUM FROM X01_MOV_MAG M JOIN X01_MOV_MAR R ON R.MRTES = M.RECORD_ID WHERE R.MRQTA = 7", "2023|9",
            "");
        Row("movement without a quantity of its own", "modImport_AdHoc",
            "UPDATE MVM_DETT SET MMQTAMOV = NULL, MMVALMAG = 0 WHERE MMSERIAL = '0000000003'", movements,
            "MRPRZ, MRVAL FROM X01_MOV_MAR WHERE MRQTA = 4", "0.08|0.32", "");
        Row("two formats of the same measures", "modImport_AdHoc",
            "INSERT INTO ART_ICOL VALUES ('LM-S235-3-3000X1500Z', 'Zincata', NULL, 'KG', NULL, NULL, NULL, 'MP', "
            "'S235', 'LAM', '22', NULL, '110', '1.2', NULL, 3000, 1500, 3, NULL, NULL, NULL)",
            "ImportLamiereAhr answers=si", "CDFMT, LMPES, LMEXT FROM X01_ART_FMT WHERE LMDMX = 3000 ORDER BY CDFMT",
            "3000X1500|105.98|LM-S235-3-3000X1500\n3000X1500-2|110|LM-S235-3-3000X1500Z", "FORMATO RINUMERATO");
        Row("format whose code is another now", "modImport_AdHoc",
            "UPDATE ART_ICOL SET ARCODART = 'LM-S235-3-3000X1500N' WHERE ARCODART = 'LM-S235-3-3000X1500'",
            "ImportLamiereAhr answers=si", "CDFMT, LMEXT FROM X01_ART_FMT WHERE LMDMX = 3000",
            "3000X1500|LM-S235-3-3000X1500N", "FORMATO RINOMINATO");
        Row("split payment of the counterparty itself", "modImport_Mago",
            "UPDATE MA_CustSupp SET SplitTax = '1' WHERE CustSupp = 'DE01'", "ImportContropartiMago reset",
            "COSPP FROM X01_CON_TRO WHERE COCGE = 'DE01'", "true", "");
        Row("exemption that is none", "modImport_Mago",
            "UPDATE MA_CustSuppCustomerOptions SET ExemptFromTax = '0' WHERE Customer = '0123'",
            "ImportContropartiMago reset", "COESE FROM X01_CON_TRO WHERE COCGE = '0123'", "NULL",
            "CODICE DI ESENZIONE NON USATO");
        Row("long description in another language", "modImport_GammaSqlServer",
            "UPDATE MG87_ARTDESC SET MG87_DESCARTEST = 'Galvanised' WHERE MG87_LINGUA_MG52 = 'ING'",
            "ImportArticoliGammaSqlServer", "LNFLD, LNLNG FROM SYS_LNG WHERE LNTXT = 'Galvanised'", "ARDEC|EN", "");
        Row("number that is cleared", "modImport_Metodo",
            "UPDATE ANAGRAFICACF SET TELEFONO = NULL, FAX = NULL WHERE CODCONTO = 'C   127'",
            "RiallineaTelFaxContropartiMetodo",
            "NRDES, USINS FROM X01_NUM_TEL WHERE TBKEY = '000127' AND NRDES IN ('Ufficio', 'Fax (uff.)')",
            "Fax (uff.)|ANNA", "RECAPITO TOLTO");
        Row("number that is cleared of a customer who is a supplier too", "modImport_Metodo",
            "UPDATE ANAGRAFICACF SET FAX = NULL WHERE CODCONTO = 'C   123'", "RiallineaTelFaxContropartiMetodo",
            "COUNT(*) FROM X01_NUM_TEL WHERE TBKEY = '000123' AND NRDES = 'Fax (uff.)'", "2", "");
        Row("contact of another role", "modImport_GammaSqlServer",
            "UPDATE CG45_RIFERIMENTI SET CG45_MANSIONE = 'Vendite', CG45_TELEFONO = '0464 999' WHERE CG45_NOMINATIVO = "
            "'Mario Rossi'",
            "ImportRiferimentiGammaSqlServer",
            "COUNT(*) FROM X01_NUM_TEL WHERE TBNAM = 'CON_RIF' AND NRDES = 'Ufficio'", "1", "RFQUA 'Vendite'");
        Row("price that a tube has already", "modImport_GammaSqlServer",
            "> UPDATE X01_ART_ICO SET ARPRZ = 1.8 WHERE CDART = 'TU-320'",
            "ImportTubolariFromCSVSqlServer files=TUBI.CSV", "ARRIC FROM X01_ART_ICO WHERE CDART = 'TU-320'", "100",
            "");
        const QString customer = "COANN, COBLK FROM X01_CON_TRO WHERE COCGE = 'ESTERO'";
        Row("customer who is cancelled", "modImport_AdHoc",
            "UPDATE CONTI SET ANDTOBSO = '20240101 00:00:00' WHERE ANCODICE = 'ESTERO'", "ImportContropartiAHR",
            customer, "false|false", "ANNULLATA NELL'ORIGINE: tabella 'CONTI'");
        const QString both = "COANN FROM X01_CON_TRO WHERE COCGE = '123' AND COFGE = 'F0002'";
        Row("customer who is cancelled, and in use as a supplier", "modImport_VS",
            "UPDATE A_CLIENTI SET ANNULLATO = 1 WHERE COD_CLIENTE = '123'", "ImportContropartiVSP", both, "false",
            "!ANNULLATA NELL'ORIGINE");
        Row("customer and supplier who is cancelled", "modImport_VS",
            "UPDATE A_CLIENTI SET ANNULLATO = 1 WHERE COD_CLIENTE = '123'; UPDATE A_FORNITORI SET ANNULLATO = 1 WHERE "
            "COD_FORNITORE = 'F0002'",
            "ImportContropartiVSP", both, "false", "ANNULLATA NELL'ORIGINE: tabella 'A_CLIENTI', COD_CLIENTE '123'");
        Row("customer who is blocked", "modImport_AdHoc", "UPDATE CONTI SET ANFLBLVE = 'S' WHERE ANCODICE = 'ESTERO'",
            "ImportContropartiAHR", customer, "false|false", "BLOCCATA NELL'ORIGINE: tabella 'CONTI'");
        Row("row of a customer that is left out because it is cancelled", "modImport_NetSuite",
            "UPDATE ANCL200F SET ATREC = 'A' WHERE CDCLI = '125'", "ImportContropartiNetSuite",
            "COANN FROM X01_CON_TRO WHERE COCGE = '125'", "false", "ANNULLATA NELL'ORIGINE: tabella 'ANCL200F'");
        Row("article that is cancelled", "modImport_NetSuite", "UPDATE ANPA200F SET ATREC = 'A' WHERE CDPAR = 'SL-200'",
            "ImportArticoliNetSuite", "ARANN FROM X01_ART_ICO WHERE CDART = 'SL-200'", "false",
            "l'articolo 'SL-200' non è annullato");
        Row("article that was not read when cancelled", "modImport_MexalDB",
            "UPDATE AR_ANAGRAFICHE SET IFL_ART_CANC = 'S' WHERE CKY_ART LIKE 'ab-01%'", "ImportArticoliMexalDB",
            "ARANN FROM X01_ART_ICO WHERE CDART = 'AB-01'", "false", "l'articolo 'AB-01' non è annullato");
    }
    void WhatComesOfAChange() {
        QFETCH(const QString, module);
        QFETCH(const QString, change);
        QFETCH(const QString, line);
        QFETCH(const QString, query);
        QFETCH(const QString, told);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        QVERIFY(told.isEmpty() || !fixture.Target().Log().contains(told.toLatin1()));
        for (const QString& one : change.split("; ")) {
            if (one.startsWith('>')) {
                fixture.Target().Execute(one.mid(2));
            } else {
                fixture.ChangeSource(one);
            }
        }
        fixture.RunLine(line);
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QTEST(fixture.Target().Rows("SELECT " + query).join('\n'), "written");
        QVERIFY2(told.startsWith('!') ? !log.contains(told.mid(1)) : log.contains(told), qPrintable(log));
        const QStringList content = fixture.Content();
        fixture.RunLine(line);
        QCOMPARE(fixture.Content(), content);
    }
};

QUADRIX_TEST(TestChangedSource)
#include "test_changedSource.moc"
