#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// What becomes of the target columns that a source lacks the columns of, in the first import and in a later one.
class TestLackingColumns : public QObject {
    Q_OBJECT

private slots:
    void WhatTheSourceLacksIsLeftOut_data() {
        Columns<QString, QString, QString, QString, QString>("module", "lacking", "query", "rows", "told");
        Row("flag that is turned round, and one that decides", "modImport_NetSuite", "ANCL200F.FLPFI, ANCL200F.FLIVA",
            "SELECT COPER, COESE, COVAL FROM X01_CON_TRO WHERE COCGE = '123'", "NULL|NULL|EUR",
            "; non valorizzate: CON_TRO.COPER, CON_TRO.COESE");
        Row("operator of a factor", "modImport_AdHoc", "ART_ICOL.AROPERAT, ART_ICOL.ARPESNET",
            "SELECT CDART, ARCOE, ARPSN FROM X01_ART_ICO WHERE CDART IN ('TE-100', 'TE-200')",
            "TE-100|NULL|NULL|TE-200|NULL|NULL", "; non valorizzate: ART_ICO.ARCOE, ART_ICO.ARPSN");
        Row("usual code", "modImport_AdHoc", "ART_ICOL.ARUNMIS1, ART_ICOL.ARCODIVA",
            "SELECT ARUMS, ARIVA FROM X01_ART_ICO WHERE CDART = 'TE-100'", "NR|022",
            "; nelle righe nuove con il valore consueto: ");
        Row("one of several", "modImport_AdHoc", "ART_ICOL.ARCODFAM",
            "SELECT ARFAM FROM X01_ART_ICO WHERE CDART = 'TE-100'", "GRUPPO1", "; con le altre colonne: ");
        Row("what is left of a row", "modImport_Metodo", "RIGHEDOCUMENTI.QTAGESTRES",
            "SELECT DRQTE, DRSTA FROM X01_DOC_VER WHERE DRDES = 'Cancello su misura'", "0|PV",
            "; non valorizzate: DOC_VER.DRQTE, DOC_ACR.DRQTE");
        // What Quadrix usually has, where rules wrap others.
        Row("code by its id", "modImport_Tessera", "Artic.IdIva",
            "SELECT DISTINCT ARIVA FROM X01_ART_ICO WHERE USINS = 'SYSTEM_IMPORT'", "022",
            "; nelle righe nuove con il valore consueto: ART_ICO.ARIVA");
        Row("currency of another name", "modImport_NetSuite", "ANCL200F.CDVAL, ANFO200F.CDVAL",
            "SELECT COVAL FROM X01_CON_TRO WHERE COCGE = '123'", "EUR",
            "; nelle righe nuove con il valore consueto: CON_TRO.COVAL");
        Row("first that is not blank", "modImport_Sigla", "CLIFO.COD_NAZION, CLIFO.NAZIONE",
            "SELECT DISTINCT CONAZ FROM X01_CON_TRO WHERE CORAS > ''", "ITA",
            "; nelle righe nuove con il valore consueto: CON_TRO.CONAZ");
        Row("class", "modImport_Esatto", "ArtAnagrafica.TipoArt",
            "SELECT DISTINCT ARCLA FROM X01_ART_ICO WHERE ARCLA IS NULL", "",
            "; nelle righe nuove con il valore consueto: ART_ICO.ARCLA");
        // What is found elsewhere.
        Row("cost of the balances", "modImport_AdHoc", "ART_ICOL.ARULTCOS",
            "SELECT A.ARCOS, F.ARPRZ FROM X01_ART_ICO A INNER JOIN X01_ART_FOR F ON F.CDART = A.CDART WHERE A.CDART = "
            "'TE-100' AND F.USINS = 'SYSTEM_IMPORT'",
            "82|82", "; con le altre colonne: ");
        Row("text with notes of another table", "modImport_Mago", "MA_CustSupp.Notes",
            "SELECT CONOT FROM X01_CON_TRO WHERE COCGE = '0123'", "prima\nseconda",
            "; con le altre colonne: CON_TRO.CONOT");
    }
    void WhatTheSourceLacksIsLeftOut() {
        QFETCH(const QString, module);
        QFETCH(const QString, lacking);
        QFETCH(const QString, query);
        QFETCH(const QString, rows);
        QFETCH(const QString, told);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.WriteLayout("[COLONNE]\n" + QString(lacking).replace(", ", "=\n") + "=\n");
        fixture.Run();
        QCOMPARE(fixture.Target().Rows(query).join('|'), rows);
        const QString outcome = fixture.Outcome();
        QVERIFY2(outcome.contains("NELL'ORIGINE: " + lacking + told), qPrintable(outcome));
    }

    void WhatTheSourceLacksStays_data() {
        Columns<QString, QString, QString, QString>("module", "lacking", "line", "query");
        Row("articles", "modImport_AdHoc",
            "ART_ICOL.ARPESNET, ART_ICOL.AROPERAT, ART_ICOL.ARUNMIS1, ART_ICOL.ARCODIVA, ART_ICOL.ARTIPART, "
            "ART_ICOL.ARCODDIS, ART_ICOL.ARDESSUP",
            "ImportArticoliAhr",
            "SELECT ARPSN, ARCOE, ARUMS, ARIVA, ARCLA, ARDEC FROM X01_ART_ICO WHERE CDART = 'TE-100'");
        Row("class", "modImport_Esatto",
            "ArtAnagrafica.TipoArt, ArtAnagrafica.CostoStandard, ArtAnagrafica.CostoUltimo", "ImportArticoliE",
            "SELECT CDART, ARCLA, ARCOS, ARRIC FROM X01_ART_ICO ORDER BY CDART");
        Row("what another table has", "modImport_Metodo", "STORICOPREZZIARTICOLO.PREZZOEURO", "ImportArticoliMetodo",
            "SELECT A.CDART, A.ARCOS, A.ARRIC, F.ARPRZ FROM X01_ART_ICO A LEFT JOIN X01_ART_FOR F ON F.CDART = A.CDART "
            "ORDER BY A.CDART, F.CDCON");
        Row("preferred supplier", "modImport_BMS", "LGARTFOR.FL_ABIT, LGARTFOR.PREZZO", "ImportArticoliBMS",
            "SELECT CDART, CDCON, AFABI, ARPRZ FROM X01_ART_FOR ORDER BY CDART, CDCON");
        Row("documents", "modImport_ArcaEvolution", "DORig.PrezzoUnitarioV, DOTes.Cd_PG",
            "ImportDocumentiArcaEvolution",
            "SELECT T.DTNUM, T.DTMOP, R.DRNUM, R.DRPRZ, R.DRPR2, R.DRPRA, R.DRTOT, R.DRSTA FROM X01_DOC_VEN T INNER "
            "JOIN "
            "X01_DOC_VER R ON R.IDTES = T.RECORD_ID ORDER BY T.RECORD_ID, R.RECORD_ID");
        Row("bills", "modImport_OSL",
            "CICLI.TUNIT, CICLI.COSTOORA, CICLI.TATTREZ, CICLI.LAVORAZ, DISTINTA.SCARTO, DISTINTA.NOTE",
            "ImportDistinteOSL",
            "SELECT F.DLSEQ, F.DLLAV, F.DLTAP, F.DLTUP, F.DLCOS, C.DCART, C.DCQTA, C.DCCOE, C.DCNOT FROM X01_DIS_FAS F "
            "LEFT JOIN X01_DIS_COM C ON C.IDDIS = F.IDDIS WHERE F.IDDIS = 1 ORDER BY F.RECORD_ID, C.RECORD_ID");
        Row("discounts of a list", "modImport_Gescom", "LISTINI.S1LISTIN, LISTINI.S2LISTIN", "ImportListiniGescom",
            "SELECT SCQTA, SCPRZ, SCSCO, SCSC2 FROM X01_LIS_ARS ORDER BY RECORD_ID");
    }
    /// Values that an import has written stay when the source lacks their columns later.
    void WhatTheSourceLacksStays() {
        QFETCH(const QString, module);
        QFETCH(const QString, lacking);
        QFETCH(const QString, line);
        QFETCH(const QString, query);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.Run();
        fixture.RunLine(line); // which the fixture may have written otherwise meanwhile
        const QStringList before = fixture.Target().Rows(query);
        QVERIFY(!before.isEmpty());
        fixture.WriteLayout("[COLONNE]\n" + QString(lacking).replace(", ", "=\n") + "=\n");
        fixture.RunLine(line);
        QVERIFY2(!fixture.Results().last().errors.join('\n').contains("Non è stato scritto nulla"),
                 qPrintable(fixture.Results().last().errors.join('\n')));
        QCOMPARE(fixture.Target().Rows(query), before);
    }

    void OfAnotherArticleNothingStays_data() {
        Columns<QString, QString, QString>("lacking", "change", "row");
        Row("article and price", "DORig.PrezzoUnitarioV", "Cd_AR = 'AB-03'", "AB-03|0|PE|6");
        Row("the same article", "DORig.PrezzoUnitarioV", "Riga = 1", "AB-01|100|PE|6");
        Row("delivered, as the source tells", "DORig.QtaEvasa", "Evasa = 1, QtaEvadibile = 0", "AB-01|100|EV|0");
    }
    /// A row of a document keeps what the source lacks, unless it is of another article now; what the source tells
    /// counts.
    void OfAnotherArticleNothingStays() {
        QFETCH(const QString, lacking);
        QFETCH(const QString, change);
        Fixture fixture(FixtureFolder("modImport_ArcaEvolution"), *FixtureOrigins().value("modImport_ArcaEvolution"));
        fixture.Run();
        fixture.RunLine("ImportDocumentiArcaEvolution");
        fixture.WriteLayout("[COLONNE]\n" + lacking + "=\n");
        fixture.ChangeSource("UPDATE DORig SET " + change + " WHERE Id_DORig = 100");
        fixture.RunLine("ImportDocumentiArcaEvolution");
        QTEST(
            fixture.Target()
                .Rows("SELECT R.DRART, R.DRPRZ, R.DRSTA, R.DRQTD FROM X01_DOC_VER R WHERE R.IDTES = 4 AND R.DRNUM = 1")
                .join(','),
            "row");
    }
};

QUADRIX_TEST(TestLackingColumns)
#include "test_lackingColumns.moc"
