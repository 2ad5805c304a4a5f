#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// Which rows of a source are a document or a bill, and which one of Quadrix it is.
class TestToldApart : public QObject {
    Q_OBJECT

private slots:
    void WhatIsOneInQuadrixIsToldApart_data() {
        Columns<QString, QString, QString, QString, QString, QString>("module", "line", "change", "told", "query",
                                                                      "rows");
        const QString heads = "DTCON, COALESCE(DTSER, ''), (SELECT COUNT(*) FROM X01_DOC_%1R R WHERE R.IDTES = "
                              "T.RECORD_ID) FROM X01_DOC_%2 T WHERE %3 ORDER BY RECORD_ID";
        const QString sales = heads.arg("VE", "VEN");
        Row("joined, one number of two customers", "modImport_Tessera", "ImportOrdCliTessera",
            "INSERT INTO OrdCliT VALUES (8, 2024, 7, '20240201 00:00:00', 13, NULL, NULL, 0, 0, NULL);"
            "INSERT INTO OrdCliR SELECT 112, 8, 1, CodArt, DesArt, UniMis, Qta, QtaEva, Prezzo, Sconto1, Sconto2, "
            "IdIva, "
            "DatCons FROM OrdCliR WHERE IdOrdCliR = 102;"
            "INSERT INTO OrdCliR SELECT 113, 8, 2, CodArt, DesArt, UniMis, Qta, QtaEva, Prezzo, Sconto1, Sconto2, "
            "IdIva, "
            "DatCons FROM OrdCliR WHERE IdOrdCliR = 102",
            "NumOrd '7', NumRig '1': ORDCL 7/2024 di '", sales.arg("DTNUM = 7 AND DTANN = 2024"), "000123||3");
        Row("one number in two series", "modImport_Solution", "ImportDocumentiSolution inputs=01/02/2024",
            "INSERT INTO DOC_TES (DT_ID, DT_TIPO, DT_NUMERO, DT_ANNO, DT_DATA, DT_CODCON) VALUES (8, 'BC', 7, 2024, "
            "'20240203 00:00:00', 'C0001'); INSERT INTO DOC_RIG (DR_IDTES, DR_RIGA, DR_CODART, DR_QTA) VALUES (8, 1, "
            "'te-100', '1')",
            "CODICE IVA DELL'ARTICOLO: tabella 'DOC_TES', DT_TIPO 'BC'", sales.arg("DTNUM = 7 AND DTCAU = 'DDTCS'"),
            "000002|A|1\n000001||1");
        Row("heads that share their rows", "modImport_OSL", "ImportDocumentiOSL answers=si",
            "INSERT INTO ORDTES (ANNO, TIPO, NUMERO, DATA, CODICE) VALUES (2024, 'C', 2, '20240309 00:00:00', '123')",
            "NRIGA '1': colonne 'ANNO', 'TIPO', 'NUMERO': più testate hanno '2024', 'C', '2', le righe non si possono "
            "distinguere",
            "DTCON FROM X01_DOC_VEN WHERE DTNUM = 2", "000124");
        Row("digits alone, and the row that comes from them", "modImport_ArcaEvolution", "ImportDocumentiArcaEvolution",
            "INSERT INTO DOTes (Id_DOTes, Cd_DO, CliFor, TipoDocumento, NumeroDoc, DataDoc, EsAnno, Cd_CF, Esecutivo) "
            "VALUES (30, 'OC', 'C', 'O', '13', '20240201 00:00:00', '2024', 'C000123', 1), (31, 'OC', 'C', 'O', "
            "'13BIS', '20240201 00:00:00', '2024', 'C000123', 1), (32, 'DDT', 'C', 'B', '6', '20240202 00:00:00', "
            "'2024', 'C000123', 1); INSERT INTO DORig (Id_DORig, Id_DOTes, Riga, Cd_AR, Qta, Cd_Aliquota, "
            "Id_DORig_Evade) "
            "VALUES (300, 30, 1, 'AB-03', '1', '22', NULL), (310, 31, 1, 'AB-03', '2', '22', NULL), (320, 32, 1, "
            "'AB-03', '2', '22', 310)",
            "NumeroDoc '13BIS': ORDCL 13/2024 di '",
            "(SELECT DRQTR FROM X01_DOC_VER WHERE IDTES = T.RECORD_ID), (SELECT COUNT(DRORI) FROM X01_DOC_VER R JOIN "
            "X01_DOC_VEN D ON D.RECORD_ID = R.IDTES WHERE D.DTNUM = 6) FROM X01_DOC_VEN T WHERE DTNUM = 13",
            "1|0");
        Row("a bad row of another family and year", "modImport_Gescom", "ImportDocumentiGescom",
            "INSERT INTO RIEMOV VALUES (9, '97', '20240301 00:00:00', 2024, '000020', 'F', 1, 'AB-03', '1', '1', '1'), "
            "(9, 'BV', '20230301 00:00:00', 2023, '000123', 'C', 1, 'AB-03', '1', '1', '1')",
            "ESRIEMOV '2024', CSRIEMOV 'BV', RGRIEMOV '2': colonna 'QSRIEMOV'",
            "COUNT(*), (SELECT MAX(DTANN) FROM X01_DOC_VEN WHERE DTNUM = 9) FROM X01_DOC_ACQ WHERE DTNUM = 9",
            "1|2023");
        Row("two kinds of movement that are one document", "modImport_Gescom", "ImportDocumentiGescom",
            "UPDATE RIEMOV SET QSRIEMOV = 'una' WHERE RDRIEMOV = 8 AND CSRIEMOV = 'LEB'",
            "CSRIEMOV 'LE', RGRIEMOV '1': appartiene a ", "COUNT(*) FROM X01_DOC_CTL WHERE DTNUM = 8", "1");
        Row("rows of two customers", "modImport_Gescom", "ImportDocumentiGescom",
            "INSERT INTO RIEMOV VALUES (10, 'BV', '20240302 00:00:00', 2024, '77', 'C', 2, 'AB-03', '1', '1', '1')",
            "RDRIEMOV '10', ESRIEMOV '2024', CSRIEMOV 'BV', RGRIEMOV '2': colonne 'CLRIEMOV', 'FLRIEMOV': la riga è "
            "della controparte '000077', il suo documento di '000123'",
            sales.arg("DTNUM = 10"), "000123||1");
        Row("no day", "modImport_Gescom", "ImportDocumentiGescom",
            "UPDATE RIEMOV SET DTRIEMOV = NULL WHERE RDRIEMOV = 10",
            "RDRIEMOV '10', ESRIEMOV '2024', CSRIEMOV 'BV', RGRIEMOV '1': colonna 'DTRIEMOV': il documento non ha una "
            "data",
            sales.arg("DTNUM = 10"), "000123||1");
        Row("what comes back", "modImport_Template", "ImportOrdini",
            "UPDATE RIGHE SET QUANTITA = '-10', EVASA = '-4' WHERE ARTICOLO = 'AR-1'", "ARTICOLO NON TROVATO",
            "DISTINCT DRSTA, DRQTD FROM X01_DOC_VER WHERE DRART = 'AR-1'", "PE|-6");
        Row("two bills of one revision", "modImport_Tessera", "ImportDistinteTessera",
            "INSERT INTO DisBasT SELECT 90, CodArt, Rev, FlgAtt, Note FROM DisBasT WHERE IdDisBas = 2; INSERT INTO "
            "DisBasR SELECT 90, NumRig, CodArt, '70', NumFas, Note FROM DisBasR WHERE IdDisBas = 2",
            "la distinta di 'AB-01', revisione 1, è già quella che l'origine chiama '2'",
            "IDOLD, (SELECT COUNT(*) FROM X01_DIS_COM WHERE DCQTA = 70) FROM X01_DIS_BAS WHERE DBART = 'AB-01' AND "
            "DBREV = 1",
            "2|0");
        Row("a revision in the place of another", "modImport_Punta", "ImportDistintePunta",
            "INSERT INTO DISTINTE VALUES ('te-100', 'A', 10, 'TR-200', '2', 10, NULL); INSERT INTO DISTINTE VALUES "
            "('te-100', 'A', 20, 'VT-10', '8', 20, NULL); DELETE FROM DISTINTE WHERE REV = '1'",
            "'B' diventa 0 come 'A', e la sostituisce",
            "DBMAN, DCART, DCQTA FROM X01_DIS_BAS B INNER JOIN X01_DIS_COM C ON C.IDDIS = B.RECORD_ID WHERE DBART = "
            "'TE-100' AND DBREV = 0",
            "true|VT-10|6");
        Row("a blank revision in the place of none", "modImport_Punta", "ImportDistintePunta",
            "INSERT INTO DISTINTE VALUES ('TR-200', '', 10, 'VT-10', '5', NULL, NULL)",
            "'' diventa 0 come '', e la sostituisce",
            "DCQTA FROM X01_DIS_BAS B INNER JOIN X01_DIS_COM C ON C.IDDIS = B.RECORD_ID WHERE DBART = 'TR-200'", "5");
        Row("a component without an end", "modImport_NetSuite", "ImportDistinteNetSuite",
            "UPDATE DIBA200F SET DTFIV = 99999999 WHERE NRSEQ = 10 AND CDPAD = 'as-100'", "COMPONENTE SCADUTO",
            "COUNT(*) FROM X01_DIS_COM WHERE DCART = 'SL-200' AND DCPOS = 10", "1");
        Row("a third discount", "modImport_Metodo", "ImportDocumentiMetodo",
            "UPDATE TESTEDOCUMENTI SET SCONTOFINALE = '10+5+2' WHERE PROGRESSIVO = 1", "'10+5+2' scritto come 10 e 6.9",
            "DTSCO, DTSCI FROM X01_DOC_VEN WHERE DTNUM = 7 AND DTSCO > 0", "10|6.9");
        Row("a default branch with another street", "modImport_Veldra", "ImportContropartiVeldra",
            "UPDATE Sedi SET Indirizzo = 'Via Nuova' WHERE Progressivo = 1", "DUE SEDI PREDEFINITE",
            "COUNT(*) FROM X01_CON_SED WHERE SEDEF = 1 AND CDSED IN ('001', 'F001')", "2");
        Row("a component without a quantity", "modImport_Tessera", "ImportDistinteTessera",
            "UPDATE DisBasR SET Qta = NULL WHERE IdDisBas = 2 AND NumRig = 2",
            "NumRig '2', CodArt 'AB-03': 'AB-03', scritto con 0", "DCQTA FROM X01_DIS_COM WHERE DCART = 'AB-03'", "0");
    }
    /// What the fixture holds has been imported; it is imported again from the source as it is changed then.
    void WhatIsOneInQuadrixIsToldApart() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        QFETCH(const QString, change);
        QFETCH(const QString, told);
        QFETCH(const QString, query);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        for (const QString& statement : change.split(';')) {
            fixture.ChangeSource(statement);
        }
        fixture.RunLine(line);
        const RunResult& result = fixture.Results().last();
        QVERIFY2(result.outcome == RunResult::Outcome::Done, qPrintable(result.errors.join('\n')));
        QVERIFY(result.AddsUp());
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QVERIFY2(log.contains(told), qPrintable(log.section("Inizio", -1)));
        QTEST(fixture.Target().Rows("SELECT " + query).join('\n'), "rows");
    }

    /// Rows that the source does not number are found by what they are, wherever they stand now.
    void RowsWithoutANumber_data() {
        Columns<QString, QString, QString, QString, QString>("module", "before", "after", "rows", "told");
        const QString siderea = "modImport_Siderea";
        const QString three = "TE-100,a,10 TE-100,b,7 VT-10,c,5";
        Row("the first is delivered", siderea, three, "TE-100,b,7 VT-10,c,5", "10|a|10 20|b|7 30|c|5",
            "RIGHE: ORDCL 77/2024 di 'Officine Meccaniche', DRNUM '10': 1 rimane");
        Row("one more before them", siderea, three, "VT-10,n,1 " + three, "10|a|10 20|b|7 30|c|5 40|n|1", "");
        Row("another quantity", siderea, "TE-100,a,10 TE-100,a,7", "TE-100,a,9 TE-100,a,7", "10|a|9 20|a|7",
            "nessuna riga di ORDCL 77/2024 di 'Officine Meccaniche' è proprio questa: riscritta la 10, 'TE-100'");
        Row("another quantity of the only one", siderea, "TE-100,a,10 VT-10,c,5", "VT-10,c,4 TE-100,a,10",
            "10|a|10 20|c|4", "riscritta la 20, 'VT-10'");
        Row("another article", siderea, "TE-100,a,10", "VT-10,a,10", "10|a|10", "RIGA SENZA NUMERO");
        Row("a number that a place has", siderea, "TE-100,a,10 TE-100,b,7 VT-10,c,5,20",
            "TE-100,a,10 TE-100,b,7 VT-10,c,5,20", "10|a|10 30|b|7 20|c|5", "");
        Row("one that is left out", siderea, three, "TE-100,a,10 TE-100,b,7 VT-10,c,0", "10|a|10 20|b|7 30|c|5",
            "NON RISCRITTO: righe di ORDCL 77/2024 di 'Officine Meccaniche', DRNUM '30'");
        Row("no numbers at all", "modImport_Lamina", "TE-100,a,1 VITE,b,2", "VITE,b,2", "0|a|1 0|b|2",
            "DRNUM '0' (TE-100): 1 rimane");
        Row("an amount and nothing else", "modImport_Lamina", "TE-100,a,1 ,,2", "TE-100,a,1 ,,2", "0|a|1 0||2", "");
        Row("a note alone", "modImport_Lamina", "TE-100,a,1 ,,,,n", "TE-100,a,1 ,,,,n", "0|a|1 0||0", "");
        Row("a new one before one like it", "modImport_Lamina", "TE-100,a,5", "TE-100,a,3 TE-100,a,5", "0|a|3 0|a|5",
            "è proprio questa: riscritta la 0, 'TE-100'");
    }
    void RowsWithoutANumber() {
        QFETCH(const QString, module);
        QFETCH(const QString, told);
        const bool isLamina = module == "modImport_Lamina";
        const QString insert =
            isLamina ? "INSERT INTO ORDINI (_RIGA, ANNO, NUMERO, DATA, CLIENTE, ARTICOLO, DESCRIZIONE, QUANTITA, RIGA, "
                       "NOTE) VALUES ('%1', '2024', '77', '01/02/2024', '123', '%2', '%3', '%4', '%5', '%6')"
                     : "INSERT INTO SIDEREA (_RIGA, Tipo, Anno, Numero, Data, [Codice controparte], Articolo, "
                       "Descrizione, [Quantita ordinata], Riga) VALUES ('%1', 'C', '2024', '77', '1/2/2024', 'C1', "
                       "'%2', '%3', '%4', '%5')";
        QStringList rows;
        const auto change = [&](ovConnection& source) {
            for (qsizetype i = 0; i < rows.size(); ++i) {
                const QStringList cells = rows.at(i).split(',');
                const QString row = insert.arg(1000 + i).arg(cells.at(0), cells.at(1), cells.at(2), cells.value(3));
                source.Execute(isLamina ? row.arg(cells.value(4)) : row);
            }
        };
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::Embedded, change);
        fixture.Run();
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        for (const QString& sheet : {before, after}) {
            rows = sheet.split(' ');
            fixture.RunLine(isLamina ? "ImportOrdiniLaminaFromCSV files=ordini.csv" : "ImportOrdiniApertiSiderea");
        }
        const QString log = QString::fromLatin1(fixture.Target().Log())
                                .section("Inizio", -1)
                                .remove(" NON PIÙ NELL'ORIGINE")
                                .remove(" O TRA LE RIGHE ABBANDONATE");
        QVERIFY2(told.isEmpty() ? !log.contains("DRNUM") && !log.contains("RIGA SENZA NUMERO") : log.contains(told),
                 qPrintable(log));
        QTEST(fixture.Target()
                  .Rows("SELECT DRNUM, R.DRDES, DRQTR FROM X01_DOC_VER R JOIN X01_DOC_VEN T ON T.RECORD_ID = R.IDTES "
                        "WHERE DTNUM = 77 ORDER BY R.RECORD_ID")
                  .join(' '),
              "rows");
    }

    /// Of a company that keeps fewer decimals than the source has.
    void ARoundedRowIsTheSame() {
        if (!TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        const QString module = "modImport_Lamina";
        bool isOfOrders = false;
        const auto change = [&](ovConnection& source) {
            if (isOfOrders) {
                source.Execute("INSERT INTO ORDINI (_RIGA, ANNO, NUMERO, DATA, CLIENTE, ARTICOLO, QUANTITA, PREZZO) "
                               "VALUES ('1000', '2024', '77', '01/02/2024', '123', 'TE-100', '1,126', '10,123')");
            }
        };
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::MariaDb, change);
        fixture.Run();
        fixture.Target().Db().Trace = nullptr; // the target goes after what is traced
        fixture.Target().Execute("ALTER TABLE X01_DOC_VER MODIFY DRQTR DECIMAL(12,2), MODIFY DRPRZ DECIMAL(12,1)");
        isOfOrders = true;
        fixture.RunLine("ImportOrdiniLaminaFromCSV files=ordini.csv");
        fixture.RunLine("ImportOrdiniLaminaFromCSV files=ordini.csv");
        QVERIFY(!fixture.Target().Log().contains("RIGA SENZA NUMERO"));
        QCOMPARE(fixture.Target().Rows("SELECT DRQTR, DRPRZ FROM X01_DOC_VER R JOIN X01_DOC_VEN T ON T.RECORD_ID = "
                                       "R.IDTES WHERE DTNUM = 77"),
                 QStringList{"1.13|10.1"});
    }
};

QUADRIX_TEST(TestToldApart)
#include "test_toldApart.moc"
