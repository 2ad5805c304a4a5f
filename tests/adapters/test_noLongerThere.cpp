#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// What an import has written and the source has no more.
class TestNoLongerThere : public QObject {
    Q_OBJECT

private slots:
    void WhatTheSourceHasNoMoreIsTold_data() {
        Columns<QString, QString, QString, QString>("module", "procedure", "change", "told");
        Row("row of a head and its rows", "modImport_ArcaEvolution", "ImportDocumentiArcaEvolution",
            "DELETE FROM DORig WHERE Id_DORig = 103",
            "RIGHE: ORDCL 12/2024 di 'Officine Riunite (come fornitore)', DRNUM '4': 1");
        Row("document", "modImport_ArcaEvolution", "ImportDocumentiArcaEvolution",
            "DELETE FROM DOTes WHERE Id_DOTes = 12", "DOCUMENTI: DDTVE 5/2024 di ");
        Row("row of an order", "modImport_Lantek24", "ImportDocumentiLantek24",
            "DELETE FROM SSHH_PPOO_00000200 WHERE OrdRef = 'PO-2024-0012' AND LineNum = 2",
            "RIGHE: ORDFL 20240012/2024 di 'Nome di 200', DRNUM '2': 1");
        Row("order that is settled", "modImport_VS", "ImportDocVenVSP",
            "UPDATE T_ORDINI_CLI SET SALDATO = 1 WHERE ANNO = 2024 AND NUM_ORDINE = 7", "DOCUMENTI: ORDCV 7/2024 di ");
        Row("order whose rows are delivered", "modImport_VS", "ImportDocVenVSP",
            "UPDATE R_ORDINI_CLI SET QTA_EVASA = QTA WHERE ANNO = 2024 AND NUM_ORDINE = 8",
            "DOCUMENTI: ORDCV 8/2024 di ");
        Row("order that is closed", "modImport_Tessera", "ImportOrdCliTessera",
            "UPDATE OrdCliT SET StatOrd = 2 WHERE AnnOrd = 2024 AND NumOrd = 7", "DOCUMENTI: ORDCL 7/2024 di ");
        Row("job that another source may have", "modImport_Factory", "ImportCommesseAperteFactory",
            "UPDATE COMMESSE SET STATO = 'C' WHERE IDCOMM = 1",
            "DOCUMENTI: ORDCL 7/2024 di 'Officine Meccaniche', se non viene dal file Excel: 1");
        Row("component", "modImport_Tessera", "ImportDistinteTessera",
            "DELETE FROM DisBasR WHERE IdDisBas = 2 AND CodArt = 'AB-03'",
            "COMPONENTI: tabella 'DisBasT', CodArt 'ab-01', Rev '1', 'AB-03': 1");
        Row("phase", "modImport_OSL", "ImportDistinteOSL", "DELETE FROM CICLI WHERE FASE = 20",
            "FASI: tabella 'DISTINTA', PADRE 'te-100', '20 GEN': 1 rimane in Quadrix");
        Row("bill", "modImport_OSL", "ImportDistinteOSL", "DELETE FROM DISTINTA WHERE PADRE = 'te-100'",
            "DISTINTE: 'TE-100', revisione 0: 1 rimane in Quadrix");
        Row("production order", "modImport_Lantek24", "ImportDocumentiLantek24",
            "DELETE FROM MMNN_MMOO_00000100 WHERE MnORef = 'MO-2'",
            "ORDINI DI PRODUZIONE: MO-2 di 'PZ-01' del 05/01/2024, quantità 10: 1 rimane in Quadrix");
        Row("code at a supplier that is none of the article any more", "modImport_OS1", "ImportArticoliOS1",
            "DELETE FROM ARTFORN WHERE CodFornitore = '124' AND Codice = 'te-100'",
            "CODICI: articolo 'TE-100', 'VR-1' di '000126': 1 rimane in Quadrix");
        Row("list of a customer", "modImport_AccessVelmoran", "ImportListiniAccessVelmoran",
            "UPDATE Listini SET CodCliente = NULL WHERE Codice = 'H2'",
            "LISTINI DEI CLIENTI: 'H2' di '000102': 1 rimane in Quadrix");
        Row("supplier of an article", "modImport_OSL", "ImportArticoliOSL", "UPDATE ARTICOLI SET CODFOR = NULL",
            "FORNITORI: articolo 'TE-100', '000301', non più abituale: 1 rimane in Quadrix");
        Row("code of an article", "modImport_OS1", "ImportArticoliOS1", "UPDATE ARTICOLI SET CodiceBarre = NULL",
            "CODICI: articolo 'TE-100', '8001234567890': 1 rimane in Quadrix");
        Row("location of an article", "modImport_OS1", "ImportArticoliOS1", "UPDATE ARTICOLI SET Ubicazione = NULL",
            "UBICAZIONI: articolo 'TE-100', 'A-01-3': 1 rimane in Quadrix");
        Row("location of an article that has none any more", "modImport_VS", "ImportUbicazioniVSP",
            "DELETE FROM MAGAZZINO_1 WHERE COD_ARTICOLO = 'TE-200'",
            "UBICAZIONI: articolo 'TE-200', 'A-01': 1 rimane in Quadrix");
        Row("text in another language", "modImport_BMS", "ImportArticoliBMS", "DELETE FROM LGARTLIN",
            "TESTI: articolo 'TE-100', lingua 'EN': 1 rimane in Quadrix");
        Row("attribute", "modImport_BMS", "ImportArticoliBMS", "DELETE FROM LGARTCAR",
            "ATTRIBUTI: 'COLORE' di 'TE-100': 1 rimane in Quadrix");
        Row("attachment", "modImport_Factory", "ImportAllegatiFactory",
            "DELETE FROM ALLEGATI WHERE NOMEFILE = 'ciclo.txt'",
            "ALLEGATI: ART_ICO 'TE-100', 'ciclo.txt': 1 rimane in Quadrix");
        Row("check of an article", "modImport_Factory", "ImportControlliFactory",
            "DELETE FROM CONTROLLI WHERE PROGR = 2", "RIGHE: CHK_LST, CDART 'TE-100', CKFAS '10', CKSEQ '2': 1");
        Row("price of an article", "modImport_Gescom", "ImportListiniGescom",
            "DELETE FROM LISTINI WHERE CDLISTIN = 'L1' AND DILISTIN LIKE '2025%'",
            "PREZZI: listino 'L1': 1 rimane in Quadrix");
        Row("price list of one of several procedures", "modImport_GammaSqlServer", "ImportListiniGammaSqlServer",
            "DELETE FROM LI10_LISTARTIC WHERE LI10_NUMLIST = 3", "PREZZI: listino '3': 1 rimane in Quadrix");
        Row("price list of one of several parts", "modImport_Panthera", "ImportListiniPanthera",
            "UPDATE LST_ACQ SET STATO = 'A'", "PREZZI: listino 'ACQ1': ");
        Row("list of a customer's own", "modImport_Panthera", "ImportListiniPanthera",
            "DELETE FROM LST_VEN_RIG WHERE R_CLIENTE = 'C0123'", "PREZZI: listino '000123': 1 rimane in Quadrix");
        Row("instalments", "modImport_AdHoc", "ImportTabelleBaseAHR", "DELETE FROM PAG_2AME WHERE P2CODICE = 'RB3'",
            "RATE: pagamento 'RB3");
        Row("movement of stock", "modImport_AdHoc", "ImportMovimentiAhr",
            "DELETE FROM MVM_MAST WHERE MMSERIAL = '0000000002'", "MOVIMENTI: movimento 2/2024: 1 rimane in Quadrix");
        Row("balance", "modImport_VS", "ImportSaldiVSP",
            "DELETE FROM STOCK WHERE COD_ARTICOLO = 'TE-300' AND COD_MAGAZZINO = 'M9'",
            "GIACENZE: movimento 1/2024, magazzino '001': 1 rimane in Quadrix");
        Row("sheets of which there are none", "modImport_Lantek24", "ImportInventarioLantek24",
            "UPDATE WWHH_IIVV_00000100 SET StockQ = 0", "GIACENZE: movimento");
        Row("handling unit", "modImport_AUTOMA", "ImportInventarioAUTOMA",
            "UPDATE GIACENZE SET ID_UDC = NULL WHERE COD_ARTICOLO LIKE 'L15%'",
            "UNITÀ DI CARICO: 'U-1', ubicazione 'A-02': 1 rimane in Quadrix");
        Row("balances of a warehouse that is empty", "modImport_AdHoc", "ImportInventarioAhr",
            "UPDATE SALDIART SET SLQTAPER = 0 WHERE SLCODMAG = '002'", "magazzino '002': 1 rimane in Quadrix");
    }
    /// It stays, and the totals of a document go on agreeing with its rows.
    void WhatTheSourceHasNoMoreIsTold() {
        QFETCH(const QString, module);
        QFETCH(const QString, procedure);
        QFETCH(const QString, change);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        fixture.RunLine(procedure);
        const QByteArray before = fixture.Target().Log();
        QVERIFY2(!before.contains("NON PI"), before);
        const qsizetype rows = fixture.Content().size();
        fixture.ChangeSource(change);
        fixture.RunLine(procedure);
        const RunResult& result = fixture.Results().last();
        QVERIFY2(result.outcome == RunResult::Outcome::Done, qPrintable(result.errors.join('\n')));
        QFETCH(const QString, told);
        const QString log = QString::fromLatin1(fixture.Target().Log())
                                .remove(" NON PIÙ NELL'ORIGINE")
                                .remove(" O TRA LE RIGHE ABBANDONATE"); // a fixture has a row that is given up
        QVERIFY2(log.contains(told), qPrintable(log.section("Inizio", -1)));
        QCOMPARE(fixture.Content().size(), rows);
        if (told.startsWith("RIGHE")) {
            for (const QString& heads : {QString("X01_DOC_VEN"), QString("X01_DOC_ACQ")}) {
                QCOMPARE(
                    fixture.Target().Rows("SELECT DTNUM, DTMER, DTSCT, DTIMP, DTIVA, DTTOT FROM " + heads +
                                          " WHERE ABS(DTMER - DTSCT - DTIMP) > 0.005 OR ABS(DTIMP + DTIVA - DTTOT) > "
                                          "0.005"),
                    QStringList());
            }
        }
    }

    /// What a run leaves out stays as it was, and is not told as gone.
    void WhatIsLeftOutIsNotGone_data() {
        Columns<QString, QString, QString, QString>("module", "procedure", "change", "told");
        Row("component of a kind", "modImport_Tessera", "ImportDistinteTessera", "AB-03",
            "NON RISCRITTO: componenti di tabella 'DisBasT', CodArt 'ab-01', Rev '1', 'AB-03'");
        Row("component that a correction would delete", "modImport_VS", "CorreggiDistinteVSP answers=si", "TE-300",
            "ARTICOLO NON TROVATO: tabella 'DISTINTA_BASE', PADRE 'TE-200'");
        Row("row of a document", "modImport_ArcaEvolution", "ImportDocumentiArcaEvolution", "AB-03",
            "NON RISCRITTO: righe di ORDCL 12/2024 di ");
        Row("row of an order that is delivered", "modImport_VS", "ImportDocVenVSP",
            "UPDATE R_ORDINI_CLI SET QTA_EVASA = QTA WHERE ANNO = 2024 AND NUM_ORDINE = 7 AND NUM_RIGA = 1",
            "NON RISCRITTO: righe di ORDCV 7/2024 di ");
        Row("row of a head that is cancelled", "modImport_NetSuite", "ImportDocumentiNetSuite",
            "UPDATE ORCR200F SET ATREC = 'A' WHERE AAORD = 2024 AND NRORD = 7 AND NRRIG = 10",
            "NON RISCRITTO: righe di ");
        Row("price list", "modImport_Gescom", "ImportListiniGescom", "AB-01", "ARTICOLO NON TROVATO");
        Row("location", "modImport_VS", "ImportUbicazioniVSP", "TE-200", "ARTICOLO NON TROVATO");
    }
    void WhatIsLeftOutIsNotGone() {
        QFETCH(const QString, module);
        QFETCH(const QString, procedure);
        QFETCH(const QString, change); // of the source, or the article that goes
        QFETCH(const QString, told);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        fixture.RunLine(procedure);
        const qsizetype rows = fixture.Content().size();
        if (change.startsWith("UPDATE")) {
            fixture.ChangeSource(change);
        } else {
            fixture.Target().Execute("UPDATE X01_ART_ICO SET CDART = 'RINOMINATO' WHERE CDART = '" + change + "'");
        }
        fixture.RunLine(procedure);
        const QString log = QString::fromLatin1(fixture.Target().Log()).section("Inizio", -1);
        QVERIFY2(log.contains(told), qPrintable(log));
        QVERIFY2(!log.contains("NON PI") && !log.contains("COMPONENTE ELIMINATO"), qPrintable(log));
        QCOMPARE(fixture.Content().size(), rows);
    }

    /// Columns of a sheet are called as those of Quadrix, with their table before a point.
    void WhatASheetHasNoMoreIsTold() {
        const QString module = "modImport_Excel";
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        fixture.Target().Execute(
            "INSERT INTO X01_ART_COD (CDART, CDCOD, COTIP, COTPC, COCON, USINS) SELECT MAX(CDART), "
            "'PRIMA', 'C', 'PER', '000001', 'SYSTEM_IMPORT' FROM X01_ART_ICO WHERE USINS = "
            "'SYSTEM_IMPORT'");
        fixture.Target().Execute("INSERT INTO X01_UBI_ART (CDART, CDUBI, UADEF, USINS) SELECT '7', 'PRIMA', 1, USINS "
                                 "FROM X01_ART_COD WHERE CDCOD = 'PRIMA'");
        fixture.RunLine("ImportArticoliExcel");
        const QString log = QString::fromLatin1(fixture.Target().Log()).section("Inizio", -1);
        QVERIFY2(log.contains("CODICI NON PIÙ NELL'ORIGINE") && log.contains("'PRIMA' di '000001'"), qPrintable(log));
        QVERIFY2(log.contains("UBICAZIONI NON PIÙ NELL'ORIGINE"), qPrintable(log));
    }

    /// The columns of a file hold several suppliers of an article each.
    void WhatAFileHasClearedOfASupplierGoes() {
        const QString module = "modImport_Mexal";
        bool isCleared = false;
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::Embedded,
                        [&](ovConnection& source) {
                            if (isCleared) {
                                source.Execute("UPDATE ART_MAG SET [_ARCOF(1)] = NULL, [_ARGGR(1)] = NULL, [_ARLOT(1)] "
                                               "= NULL, [_ARFOR(2)] = NULL, [_ARFOR(3)] = NULL");
                            }
                        });
        fixture.Run();
        const QString links = "SELECT AFGGR, AFLOR FROM X01_ART_FOR WHERE CDART = '00120' AND AFABI <> 0";
        QCOMPARE(fixture.Target().Rows(links), QStringList("15|10"));
        isCleared = true;
        fixture.RunLine("ImportArticoliMEX");
        QCOMPARE(fixture.Target().Rows(links), QStringList("NULL|NULL"));
        const QString log = QString::fromLatin1(fixture.Target().Log()).section("Inizio", -1);
        QVERIFY2(log.contains("articolo '00120', 'AS-77' di '"), qPrintable(log));
        QVERIFY2(log.contains("FORNITORI NON PIÙ NELL'ORIGINE"), qPrintable(log));
    }

    void WhatMayBeOfAnotherOriginIsNotTold_data() {
        Columns<QString, QString, QString, QString, QString>("module", "procedure", "table", "change", "told");
        Row("codes", "modImport_OS1", "ImportArticoliOS1", "X01_ART_ICO", "UPDATE ARTICOLI SET CodiceBarre = NULL",
            "articoli");
        Row("suppliers", "modImport_OSL", "ImportArticoliOSL", "X01_ART_ICO", "UPDATE ARTICOLI SET CODFOR = NULL",
            "articoli");
        Row("attributes", "modImport_BMS", "ImportArticoliBMS", "X01_ART_ICO", "DELETE FROM LGARTCAR", "attributi");
        Row("bills", "modImport_OSL", "ImportDistinteOSL", "X01_DIS_BAS", "DELETE FROM DISTINTA WHERE PADRE = 'te-100'",
            "distinte");
        Row("locations", "modImport_VS", "ImportUbicazioniVSP", "X01_UBI_ART",
            "DELETE FROM MAGAZZINO_1 WHERE COD_ARTICOLO = 'TE-200'", "ubicazioni");
        Row("prices", "modImport_Gescom", "ImportListiniGescom", "X01_LIS_TES",
            "DELETE FROM LISTINI WHERE CDLISTIN = 'L1' AND DILISTIN LIKE '2025%'", "prezzi");
    }
    /// An import knows of what it wrote only that an import did; one line tells that another origin writes here too.
    void WhatMayBeOfAnotherOriginIsNotTold() {
        QFETCH(const QString, module);
        QFETCH(const QString, procedure);
        QFETCH(const QString, table);
        QFETCH(const QString, change);
        QFETCH(const QString, told);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        const QString own = "SELECT TBOLD FROM SYS_IMP WHERE TBFLD = 'MODULO' AND TBNAM = '" + table + "'";
        QCOMPARE(fixture.Target().Rows(own), QStringList{module});
        const auto another = [&] {
            fixture.Target().Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('" + table +
                                     "', 'MODULO', 'modImport_Altra', 'modImport_Altra')");
        };
        another();
        fixture.ChangeSource(change);
        fixture.RunLine(procedure);
        const QString log = QString::fromLatin1(fixture.Target().Log()).section("Inizio", -1);
        QVERIFY2(!log.contains("NON PI") && log.contains("RIMANENZE NON CERCATE: " + told) &&
                     log.contains("modImport_Altra"),
                 qPrintable(log));
        fixture.RunLine(procedure + " reset");
        QCOMPARE(fixture.Target().Rows(own), QStringList{module}); // what the other one has written is gone
    }

    /// A production order has no code of its own in Quadrix: another day and quantity of one are no other order.
    void AnOrderOfTheSourceIsOneInQuadrix_data() {
        Columns<QString, QString>("keeps", "orders");
        Row("changed", "", "3|MO-1|7 4|MO-2|10 5|MO-3|10");
        Row("of before, alike", "DELETE FROM SYS_IMP WHERE TBNEW <> '3'", "3|MO-1|7 4|MO-2|10 5|MO-3|10");
        Row("bills emptied since", "DELETE FROM X01_DIS_BAS", "3|MO-1|7 4|MO-2|10 5|MO-3|10");
    }
    void AnOrderOfTheSourceIsOneInQuadrix() {
        QFETCH(const QString, keeps);
        Fixture fixture(FixtureFolder("modImport_Lantek24"), *FixtureOrigins().value("modImport_Lantek24"));
        fixture.Run();
        if (!keeps.isEmpty()) {
            fixture.Target().Execute(keeps);
        }
        fixture.ChangeSource("UPDATE MMNN_MMOO_00000300 SET Quantity = '7', CDate = '20240109 00:00:00' WHERE MnORef = "
                             "'MO-1'");
        fixture.RunLine("ImportDocumentiLantek24");
        QTEST(fixture.Target()
                  .Rows("SELECT O.RECORD_ID, TBOLD, OPQTA FROM X01_ORD_PRO O LEFT JOIN SYS_IMP ON TBNAM = "
                        "'X01_ORD_PRO' AND TBNEW = CAST(O.RECORD_ID AS VARCHAR(9)) WHERE O.USINS = 'SYSTEM_IMPORT'")
                  .join(' '),
              "orders");
        QVERIFY(!fixture.Target().Log().contains("ORDINI DI PRODUZIONE"));
    }

    void WhatTheSourceHasClearedIsCleared_data() {
        Columns<QString, QString, QString, QString, QString>("module", "procedure", "change", "columns", "written");
        const QString party = "COMOP, COSC1, COSC2, COSF1, COCOC, COIBA, COFID, CONOT, COINV FROM X01_CON_TRO WHERE "
                              "CDCON = '000123'";
        Row("nothing", "modImport_BMS", "AggiornaContropartiBMS", "UPDATE ANCLIENT SET COD_ZONA = 'Z2'", party,
            "RB30|10.5|2|4|000000123456|IT72X0306905696000000123456|25000|Chiamare 'prima'|2020-05-15T00:00:00.000Z");
        // The row of the supplier, which comes behind, has blanks in the other columns.
        Row("blanks and a zero", "modImport_BMS", "AggiornaContropartiBMS",
            "UPDATE ANCLIENT SET COD_PAGAM = NULL, SCONTO1 = NULL, SCONTO2 = 0, NUM_CC = NULL, FIDO = 0, NOTE = ' ', "
            "DT_INS = NULL WHERE COD_CLIENTE = 'C123'",
            party, "NULL|NULL|0|4|NULL|NULL|0||2020-05-15T00:00:00.000Z");
        const QString exemption = "COESE FROM X01_CON_TRO WHERE COCGE = 'C124'";
        Row("no exemption any more", "modImport_BMS", "AggiornaContropartiBMS",
            "UPDATE ANCLIENT SET COD_IVA = '22' WHERE COD_CLIENTE = 'C124'", exemption, "NULL");
        Row("a code without translation yet", "modImport_BMS", "AggiornaContropartiBMS",
            "UPDATE ANCLIENT SET COD_IVA = 'ZZ' WHERE COD_CLIENTE = 'C124'", exemption, "N8");
        Row("state and account", "modImport_ArcaEvolution", "ImportArticoliArcaEvolution",
            "UPDATE AR SET Cd_ARStato = NULL, Cd_CGConto_VI = NULL",
            "COUNT(*) FROM X01_ART_ICO WHERE AROBS <> '' OR ARCAC <> ''", "0");
        Row("discounts", "modImport_ArcaEvolution", "ImportArticoliArcaEvolution", "UPDATE AR SET Sconto = '20'",
            "DISTINCT ARSCO, ARSC2, ARSC3 FROM X01_ART_ICO WHERE IDEST > ''", "20|NULL|NULL");
        Row("row that comes from no other any more", "modImport_ArcaEvolution", "ImportDocumentiArcaEvolution",
            "UPDATE DORig SET Id_DORig_Evade = NULL WHERE Id_DORig = 120",
            "COUNT(DRORI) FROM X01_DOC_VER WHERE DRQTR = 4", "0");
        Row("article of a component", "modImport_Tessera", "ImportOrdCliTessera",
            "UPDATE OrdProR SET CodArt = NULL WHERE IdOrdPro = 1 AND CodArt = 'AB-03'",
            "OCART, OCQTA FROM X01_ORD_COM WHERE OCDES = 'Vite'", "NULL|8");
        Row("phase of a row", "modImport_Gescom", "ImportDocumentiGescom", "DELETE FROM MOVMAG",
            "COUNT(*) FROM X01_DOC_CTR WHERE DRLAV <> '' OR DRLDS <> '' OR DRSEQ <> 0", "0");
        Row("supplier and machine of a phase", "modImport_OSL", "ImportDistinteOSL",
            "UPDATE CICLI SET CODFOR = NULL, MACCHINA = NULL",
            "COUNT(*) FROM X01_DIS_FAS WHERE DLFOR <> '' OR DLMAC <> ''", "0");
        Row("phase that is done inside", "modImport_GammaSqlServer", "ImportDistinteGammaSqlServer",
            "UPDATE PD48_CICLI SET PD48_INDTIPOPROV = 0", "COUNT(*) FROM X01_DIS_FAS WHERE DLFOR <> ''", "0");
        Row("supplier of a phase that is not known", "modImport_OSL", "ImportDistinteOSL",
            "UPDATE CICLI SET CODFOR = '999'", "COUNT(*) FROM X01_DIS_FAS WHERE DLFOR <> ''", "1");
        Row("type of an instalment", "modImport_Metodo", "ImportModalitaPagamentoMetodo",
            "UPDATE TABRATEPAG SET TIPOPAG = 0", "COUNT(*) FROM TAB_MPR WHERE MPTIP <> ''", "0");
        Row("note of a price", "modImport_Panthera", "ImportListiniPanthera", "UPDATE LST_VEN_RIG SET NOTE = NULL",
            "COUNT(*) FROM X01_LIS_ART WHERE CDLIS LIKE 'V%' AND LANOT <> ''", "0");
        Row("price", "modImport_G2", "ImportArticoliG2",
            "UPDATE ANAART SET PREZZO1 = '0', COSTOULT = '999' WHERE CODART LIKE 'as-100%'",
            "ARPRZ, ARCOS, ARRIC FROM X01_ART_ICO WHERE CDART = 'AS-100'", "0|999|0");
        const QString prices = "ARPRZ, ARRIC, ARSCO FROM X01_ART_ICO WHERE CDART = ";
        Row("price that holds no more", "modImport_AdHoc", "ImportArticoliAhr",
            "UPDATE LIS_TINI SET LIDATDIS = '20240101 00:00:00'", prices + "'TE-100'", "NULL|NULL|NULL");
        Row("price that ends on a day that is none", "modImport_AdHoc", "ImportArticoliAhr",
            "UPDATE LIS_TINI SET LIDATDIS = '18991230 00:00:00' WHERE LIDATDIS IS NULL",
            "ARPRZ > 0 FROM X01_ART_ICO WHERE CDART = 'TE-100'", "1");
        Row("price that ends in 1900", "modImport_GammaSqlServer", "ImportArticoliGammaSqlServer",
            "UPDATE LI10_LISTARTIC SET LI10_DATAFINEVAL = '19000101 00:00:00' WHERE LI10_DATAFINEVAL IS NULL",
            "ARPRZ > 0 FROM X01_ART_ICO WHERE CDART = 'AS-100'", "1");
        Row("list without prices", "modImport_Esatto", "ImportArticoliE", "DELETE FROM ListiniRighe",
            prices + "'TE-100'", "NULL|NULL|NULL");
        Row("price that is over", "modImport_GammaSqlServer", "ImportArticoliGammaSqlServer",
            "UPDATE LI10_LISTARTIC SET LI10_DATAFINEVAL = '20240101 00:00:00'", prices + "'AS-100'", "NULL|NULL|NULL");
        Row("price and drawing of a file", "modImport_NetSuite", "ImportArticoliNetSuite",
            "UPDATE ANPA200F SET PRVEN = NULL, NRDIS = NULL WHERE CDPAR = 'as-100'",
            "ARPRZ, ARRIC, ARDIS FROM X01_ART_ICO WHERE CDART = 'AS-100'", "NULL|NULL|");
        Row("factor", "modImport_NetSuite", "ImportArticoliNetSuite",
            "UPDATE ANPA200F SET CFCON = 0 WHERE CDPAR = 'SL-200'", "ARCOE FROM X01_ART_ICO WHERE CDART = 'SL-200'",
            "NULL");
        Row("prices of another table", "modImport_Metodo", "ImportArticoliMetodo", "DELETE FROM LISTINIARTICOLI",
            prices + "'AB-01'", "NULL|NULL|5");
        Row("units of another table", "modImport_Metodo", "ImportArticoliMetodo",
            "DELETE FROM ARTICOLIUMPREFERITE WHERE TIPOUM > 1",
            "ARUMS, ARUM2, ARUMV, ARUMP, ARCOE FROM X01_ART_ICO WHERE CDART = 'AB-01'", "NR|NULL|NULL|NULL|NULL");
        Row("what was long", "modImport_Metodo", "ImportArticoliMetodo",
            "UPDATE ANAGRAFICAARTICOLI SET DESCRESTESA = 'breve' WHERE CODICE = 'AB-02'",
            "ARDEC, ARNOT FROM X01_ART_ICO WHERE CDART = 'AB-02'", "breve|NULL");
        Row("description at a customer", "modImport_Metodo", "ImportArticoliMetodo",
            "UPDATE RELAZIONICFV SET DESCRIZIONE = 'Nuova' WHERE RIFERIMENTO = 'CANC-2A'",
            "CODES FROM X01_ART_COD WHERE CDCOD = 'CANC-2A'", "Nuova");
        Row("location", "modImport_Tessera", "ImportArticoliTessera", "UPDATE Artic SET CodUbi = 'C-9' WHERE IdArt = 1",
            "CDUBI, UADEF FROM X01_UBI_ART WHERE CDART = 'AB-01' ORDER BY CDUBI", "A-01|false\nC-9|true");
        const QString codes = "CDART, CDCOD FROM X01_ART_COD WHERE CDART LIKE 'TE-%' ORDER BY CDART, CDCOD";
        Row("codes of an article, of which one goes to another", "modImport_OS1", "ImportArticoliOS1",
            "UPDATE ARTICOLI SET CodiceBarre = CASE Codice WHEN 'TE-200' THEN '8001234567890' END; UPDATE ARTFORN SET "
            "CodArtFornitore = 'VR-3' WHERE CodArtFornitore = 'VR-1'",
            codes, "TE-100|AS-77\nTE-100|VR-1\nTE-100|VR-3\nTE-200|8001234567890\nTE-200|VR-2");
        const QString preferred = "CDART FROM X01_ART_FOR WHERE AFABI <> 0";
        Row("supplier", "modImport_OSL", "ImportArticoliOSL", "UPDATE ARTICOLI SET CODFOR = NULL", preferred, "");
        Row("supplier of a column that is not there", "modImport_OSL", "ImportArticoliOSL",
            "[COLONNE]\nARTICOLI.CODFOR=\n", preferred, "TE-100");
        Row("supplier who is not there", "modImport_OSL", "ImportArticoliOSL", "UPDATE ARTICOLI SET CODFOR = '999'",
            preferred, "TE-100");
        Row("supplier, of an article alone", "modImport_OSL", "ImportArticoliOSL code=te-100",
            "UPDATE ARTICOLI SET CODFOR = NULL", preferred, "TE-100");
        Row("second unit", "modImport_ArcaEvolution", "ImportArticoliArcaEvolution",
            "DELETE FROM ARARMisura WHERE Cd_ARMisura <> 'PZ'",
            "ARUM2, ARCOE, ARUMV FROM X01_ART_ICO WHERE CDART = 'AB-01'", "NULL|NULL|NR");
        Row("tolerances", "modImport_Factory", "ImportControlliFactory",
            "UPDATE CONTROLLI SET TOLMIN = NULL, TOLMAX = NULL WHERE VALNOM = '12'",
            "CKVAL, CKMIN, CKMAX FROM X01_CHK_LST WHERE CKVAL = '12'", "12|NULL|NULL");
        const QString ends = "DISTINCT LAFIV FROM X01_LIS_ART WHERE LAINV LIKE '2024%'";
        Row("end of a price, to SQL Server", "modImport_Factory", "ImportListiniFactory",
            "UPDATE LISTRIGHE SET DATAFIN = '19000101 00:00:00' WHERE DATAFIN <> ''", ends, "NULL");
        Row("end of a price, as zero", "modImport_Vision", "ImportListiniVision",
            "UPDATE LISTINI_R SET DATA_FIN = '18991230 00:00:00' WHERE DATA_FIN <> ''", ends, "NULL");
        Row("attribute without the column of values", "modImport_BMS", "ImportArticoliBMS",
            "[COLONNE]\nLGARTCAR.VALORE=\n", "COUNT(*) FROM X01_FLD_VAL WHERE FLVAL <> ''", "1");
        Row("attribute", "modImport_BMS", "ImportArticoliBMS", "UPDATE LGARTCAR SET VALORE = ' '",
            "COUNT(*) FROM X01_FLD_VAL", "0");
        Row("price up to a quantity that is another now", "modImport_Gescom", "ImportListiniGescom",
            "DELETE FROM LISTINI WHERE CDLISTIN = 'L4' OR CDLISTIN = 'L3'; UPDATE LISTINI SET QTLISTIN = '50' WHERE "
            "QTLISTIN = '100'",
            "SCQTA, SCPRZ FROM X01_LIS_ARS WHERE IDLSD = 1 ORDER BY SCQTA", "10|95.5\n50|90");
        Row("long description", "modImport_GammaSqlServer", "ImportArticoliGammaSqlServer",
            "UPDATE MG87_ARTDESC SET MG87_DESCARTEST = NULL", "ARDEC FROM X01_ART_ICO WHERE CDART = 'AS-100'", "");
    }
    /// What is imported anew agrees with the source, not half with what it was.
    void WhatTheSourceHasClearedIsCleared() {
        QFETCH(const QString, module);
        QFETCH(const QString, procedure);
        QFETCH(const QString, change);
        QFETCH(const QString, columns);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        for (const QString& one : change.split("; ")) {
            one.startsWith('[') ? fixture.WriteLayout(one) : fixture.ChangeSource(one);
        }
        fixture.RunLine(procedure);
        QTEST(fixture.Target().Rows("SELECT " + columns).join('\n'), "written");
    }
};

QUADRIX_TEST(TestNoLongerThere)
#include "test_noLongerThere.moc"
