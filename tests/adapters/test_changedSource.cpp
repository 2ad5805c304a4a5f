#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

/// What an import makes of a source that has changed since the last one, and what it tells.
class TestChangedSource : public QObject {
    Q_OBJECT

    static void rowsOfArcaEvolution() {
        const QString documents = "ImportDocumentiArcaEvolution";
        const auto head = [](const QString& cause, const QString& side, const QString& party) {
            return QStringLiteral("INSERT INTO DOTes (Id_DOTes, Cd_DO, CliFor, TipoDocumento, NumeroDoc, DataDoc, "
                                  "EsAnno, Cd_CF, Cd_CFDest, Esecutivo) VALUES (30, '%1', '%2', 'O', '30', '20240201 "
                                  "00:00:00', '2024', '%3', '001', 1)")
                .arg(cause, side, party);
        };
        Row("row of a document without an article", "modImport_ArcaEvolution",
            "INSERT INTO DORig (Id_DORig, Id_DOTes, Riga, Descrizione, Qta, PrezzoUnitarioV, Cd_Aliquota, Evasa) "
            "VALUES (201, 20, 2, 'Trasporto', '2', 50, '22', 0)",
            documents,
            "R.DRTIP, R.DRIVA, R.DRTOT, T.DTIMP, T.DTSTA FROM X01_DOC_VER R JOIN X01_DOC_VEN T ON T.RECORD_ID = "
            "R.IDTES WHERE R.DRDES = 'Trasporto'",
            "N|22|100|101|PV", "");
        Row("destination of a supplier who is a customer too", "modImport_ArcaEvolution", head("OF", "F", "F000825"),
            documents, "DTRSS, DTVIA FROM X01_DOC_ACQ WHERE DTNUM = 30", "Ritiro materiali|Via del Porto, 3", "");
        Row("document of a kind that is not there", "modImport_ArcaEvolution", head("XX", "C", "C000123"), documents,
            "COUNT(*) FROM X01_DOC_VEN WHERE DTNUM = 30", "0",
            "CAUSALE NON TRADOTTA: tabella 'DOTes', Id_DOTes '30', NumeroDoc '30': 'XX'");
        Row("prices without a price, and of a day to come", "modImport_ArcaEvolution",
            "UPDATE LSArticolo SET Prezzo = NULL WHERE Id_LSRevisione = 2; UPDATE LSRevisione SET DataPubblicazione = "
            "'20990101 00:00:00' WHERE Id_LSRevisione = 3; INSERT INTO LSArticolo (Id_LSRevisione, Cd_AR, Prezzo) "
            "VALUES (3, 'AB-03', 8)",
            "ImportArticoliArcaEvolution",
            "CDART, ARPRZ FROM X01_ART_ICO WHERE CDART IN ('AB-01', 'AB-02', 'AB-03') ORDER BY CDART",
            "AB-01|95\nAB-02|0\nAB-03|0", "");
        Row("discount without a price", "modImport_ArcaEvolution",
            "INSERT INTO LSArticolo (Id_LSRevisione, Cd_AR, Sconto) VALUES (4, 'ab-01', '7')",
            "ImportListiniArcaEvolution", "SCPRZ, SCSCO FROM X01_LIS_ARS WHERE SCSCO = 7", "NULL|7", "");
        Row("delivery day that is none", "modImport_ArcaEvolution",
            "UPDATE DOTes SET DataConsegna = '19000101 00:00:00', DataDocRif = '18991230 00:00:00'", documents,
            "COUNT(DTCOR), COUNT(DTCOC), COUNT(DTRID) FROM X01_DOC_VEN", "0|0|0", "");
        const QString articles = "ImportArticoliArcaEvolution";
        const auto units = [](const QString& article) {
            return QStringLiteral("ARUM2, ARCOE FROM X01_ART_ICO WHERE CDART = '%1'").arg(article);
        };
        Row("second unit that the source clears", "modImport_ArcaEvolution",
            "DELETE FROM ARARMisura WHERE Cd_ARMisura <> 'PZ'", articles, units("AB-01"), "NULL|NULL",
            "UNITÀ DI MISURA TOLTA: tabella 'AR', Cd_AR 'ab-01': ARUM2 'KG', ARCOE '12.5'");
        Row("second unit that somebody has given", "modImport_ArcaEvolution",
            "> UPDATE X01_ART_ICO SET ARUM2 = 'MT', ARCOE = 2.5, USMDF = 'ROSSI' WHERE CDART = 'AB-03'", articles,
            units("AB-03"), "MT|2.5", "UNITÀ DI MISURA RIMASTA: tabella 'AR', Cd_AR 'AB-03': ARUM2 'MT', ARCOE '2.5'");
        Row("second unit of which the source has no row", "modImport_ArcaEvolution",
            "> UPDATE X01_ART_ICO SET ARUM2 = 'MT', ARCOE = 2.5 WHERE CDART = 'AB-02'", articles, units("AB-02"),
            "MT|2.5", "UNITÀ DI MISURA RIMASTA: tabella 'AR'");
        Row("code of a supplier who is not there", "modImport_ArcaEvolution",
            "UPDATE ARCodCF SET Cd_CF = 'F000999' WHERE CodiceAlternativo = 'AS-77'", articles,
            "COCON FROM X01_ART_COD WHERE CDCOD = 'AS-77'", "000128", "!CODICI NON PIÙ NELL'ORIGINE");
    }
    static void rowsThatWereNotRead() {
        Row("counterparty that was not read when cancelled", "modImport_Mexal",
            "> INSERT INTO X01_CON_TRO (CDCON, CORAS, COCLI, COANN, COCGE, USINS) VALUES ('000777', 'Annullato', 1, 0, "
            "'201.00003', 'SYSTEM_IMPORT')",
            "ImportContropartiMEX", "COANN FROM X01_CON_TRO WHERE COCGE = '201.00003'", "false",
            "_PCCOD '201.00003': la controparte 000777 non è annullata in Quadrix");
        Row("counterparty without a type", "modImport_Cometa",
            "INSERT INTO ANAGCF (ACTIPO, ACCODI, ACRAG1) VALUES (NULL, '901', 'Senza tipo')", "ImportClientiCometa",
            "COUNT(*) FROM X01_CON_TRO WHERE COCGE = '901'", "0",
            "CONTROPARTE NON LETTA: tabella 'ANAGCF', ACCODI '901' 'Senza tipo': ACTIPO è vuota");
        Row("person without a code", "modImport_SAM",
            "INSERT INTO Persone (IdPersona, RagioneSociale) VALUES (7, 'Senza codice'); INSERT INTO Clienti "
            "(IdPersona, CodCliente) VALUES (7, '130')",
            "ImportContropartiSAM", "CORAS FROM X01_CON_TRO WHERE COCGE = '130'", "Senza codice", "");
        const QString codes = "COCGE, COFGE FROM X01_CON_TRO WHERE COCGE IN ('140', '141') ORDER BY COCGE";
        const QString person =
            "INSERT INTO Persone (IdPersona, Codice, RagioneSociale) VALUES (8, 'P008', 'Due codici'); INSERT INTO "
            "Clienti (IdPersona, CodCliente) VALUES (8, '140'); INSERT INTO Clienti (IdPersona, CodCliente) VALUES "
            "(8, '141'); INSERT INTO Fornitori (IdPersona, CodFornitore) VALUES (8, 'F40')";
        Row("person of two codes in a role", "modImport_SAM", person, "ImportContropartiSAM", codes,
            "140|F40\n141|NULL", "!CODICE DI DUE CONTROPARTI");
        Row("further code of a person who is a supplier too", "modImport_SAM",
            "INSERT INTO Clienti (IdPersona, CodCliente) VALUES (3, '126')", "ImportContropartiSAM",
            "COCGE, COFGE FROM X01_CON_TRO WHERE COCGE IN ('125', '126') ORDER BY COCGE", "125|F11\n126|NULL",
            "!lascia il posto");
        Row("two codes of a person who was a supplier", "modImport_SAM",
            "> INSERT INTO X01_CON_TRO (CDCON, CORAS, COFOR, COFGE, USINS) VALUES ('000808', 'Due codici', 1, 'F40', "
            "'SYSTEM_IMPORT'); " +
                person,
            "ImportContropartiSAM", codes, "140|F40\n141|NULL", "!lascia il posto");
    }

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
        const QString sheets = "ImportMaterialiFerrobrio";
        const QString formats = "CDFMT, LMEXT FROM X01_ART_FMT WHERE CDART = 'LM-FE-1.5' ORDER BY CDFMT";
        Row("sheet that gets another code", "modImport_Ferrobrio",
            "UPDATE Lamiere SET CodErp = 'NUOVA' WHERE CodLamiera = 'fe15'", sheets,
            "CDART FROM X01_ART_ICO WHERE CDART LIKE 'LM-F%' OR CDART LIKE 'NUO%'", "LM-FE-1.5",
            "'fe15' è già l'articolo 'LM-FE-1.5', e non diventa 'NUOVA'");
        Row("two sheets of the same measures", "modImport_Ferrobrio",
            "INSERT INTO Lamiere VALUES ('FE15Z', 'S235', 1.5, 3000, 1500, NULL)", sheets, formats,
            "1000X500|FE15C\n2000X1000|FE15B\n3000X1500|fe15\n3000X1500-2|FE15Z", "FORMATO RINUMERATO");
        Row("stock of the second of them", "modImport_Ferrobrio",
            "INSERT INTO Lamiere VALUES ('FE15Z', 'S235', 1.5, 3000, 1500, NULL); INSERT INTO Giacenze (Codice, "
            "Magazzino, Quantita) VALUES ('FE15Z', 'M1', '4'); > INSERT INTO X01_ART_FMT (CDART, CDFMT, LMEXT) VALUES "
            "('LM-FE-1.5', '3000X1500-2', 'FE15Z'); > INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES "
            "('ART_ICO', 'CDART', 'FE15Z', 'LM-FE-1.5')",
            "ImportSaldiFerrobrio", "MRFMT, MRQTA FROM X01_MOV_MAR WHERE MRART = 'LM-FE-1.5' ORDER BY MRFMT",
            "3000X1500|20\n3000X1500-2|4", "");
        Row("sheet of other measures", "modImport_Ferrobrio",
            "UPDATE Lamiere SET Lunghezza = 2500, Larghezza = 1250 WHERE CodLamiera = 'fe15'", sheets, formats,
            "1000X500|FE15C\n2000X1000|FE15B\n2500X1250|fe15\n3000X1500|NULL", "FORMATO LASCIATO");
        Row("sheet whose material is translated otherwise", "modImport_Ferrobrio",
            "> UPDATE SYS_IMP SET TBNEW = 'S2' WHERE TBNAM = 'TAB_MAT' AND TBOLD = 'S235'", sheets,
            "CDART, ARMAT FROM X01_ART_ICO WHERE ARDMZ = 1.5", "LM-FE-1.5|S2",
            "'fe15' è già l'articolo 'LM-FE-1.5', e non diventa 'LM-S2-1.5'");
        const QString shared = "I.CDART, I.ARMAT, I.ARDMZ, F.CDFMT, F.LMEXT FROM X01_ART_ICO I JOIN X01_ART_FMT F ON "
                               "F.CDART = I.CDART WHERE F.LMDMX IN (2000, 3000) AND I.ARMAT <> 'FE' OR I.CDART LIKE "
                               "'LM-FE-%' ORDER BY I.CDART, F.CDFMT";
        const QString others = "\nLM-FE-1.5|FE|1.5|1000X500|FE15C\nLM-FE-1.5|FE|1.5|2000X1000|NULL\n"
                               "LM-FE-1.5|FE|1.5|3000X1500|fe15";
        Row("sheets of articles in which nobody writes a column that is demanded", "modImport_Ferrobrio",
            "> DELETE FROM X01_ART_ICO; > ALTER TABLE X01_ART_ICO ADD EXTRA INT NOT NULL; > INSERT INTO X01_ART_ICO "
            "(CDART, EXTRA) VALUES ('LM-FE-1.5', 7)",
            sheets, "CDART, ARMAT, EXTRA FROM X01_ART_ICO", "LM-FE-1.5|FE|7",
            "COLONNE DI QUADRIX OBBLIGATORIE: X01_ART_ICO.EXTRA INT");
        Row("sheet of another material, which shared its article", "modImport_Ferrobrio",
            "UPDATE Lamiere SET CodMateriale = 'AISI304' WHERE CodLamiera = 'FE15B'", sheets, shared,
            "LM-AISI304-1.5|AISI304|1.5|2000X1000|FE15B" + others,
            "'FE15B' era il formato '2000X1000' di 'LM-FE-1.5', ora è '2000X1000' di 'LM-AISI304-1.5'");
        Row("sheet of another thickness, which shared its article", "modImport_Ferrobrio",
            "UPDATE Lamiere SET Spessore = 1 WHERE CodLamiera = 'FE15B'", sheets, shared,
            "LM-FE-1|FE|1|2000X1000|FE15B" + others, "FORMATO LASCIATO");
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
        Row("tube that somebody has marked", "modImport_Excel",
            "> UPDATE X01_ART_ICO SET ARTUB = 1 WHERE CDART = 'TE-100'", "ImportArticoliExcel",
            "ARTUB FROM X01_ART_ICO WHERE CDART = 'TE-100'", "true", "");
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
        Row("carrier with the code of a customer", "modImport_Albalog",
            "INSERT INTO anagraf (tipana, codana, ragsoc) VALUES ('V', '123', 'Corriere Rossi'); UPDATE anagraf SET "
            "codvet = '123' WHERE codana = '124'",
            "ImportClientiFornitoriAlbalog",
            "V.CORAS, V.COVET FROM X01_CON_TRO V JOIN X01_CON_TRO C ON C.COVEP = V.CDCON WHERE C.COCGE = '124'",
            "Corriere Rossi|true", "");
        Row("customer with the code of a carrier", "modImport_Albalog",
            "INSERT INTO anagraf (tipana, codana, ragsoc) VALUES ('C', 'V01', 'Cliente nuovo')",
            "ImportClientiFornitoriAlbalog", "CORAS, COVET FROM X01_CON_TRO WHERE COCGE = 'V01'", "Cliente nuovo|false",
            "");
        Row("purchase list of a supplier with the code of a customer", "modImport_Albalog",
            "INSERT INTO listini (codlis, tiplis, codart, prezzo, codana) VALUES ('P3', 'A', 'te-100', '70', '123')",
            "ImportListiniAlbalog", "CORAS FROM X01_CON_TRO WHERE COLSF = CDCON", "Acciai Speciali", "");
        const QString orders = "RECORD_ID, OPIDD FROM X01_ORD_PRO WHERE USINS = 'SYSTEM_IMPORT' ORDER BY RECORD_ID";
        const QString moved = "UPDATE MMNN_MMOO_00000100 SET PrdRef = 'ASS-01' WHERE MnORef = 'MO-3'";
        Row("production order of another product", "modImport_Lantek24", moved, "ImportDocumentiLantek24", orders,
            "3|1\n4|2\n5|1", "!ORDINI DI PRODUZIONE");
        Row("production order of another product in which somebody has written", "modImport_Lantek24",
            "> UPDATE X01_ORD_FAS SET USMDF = 'ANNA' WHERE IDOPR = 5; " + moved, "ImportDocumentiLantek24", orders,
            "3|1\n4|2\n5|2\n6|1", "MO-3 di 'PZ-01' del 05/01/2024, quantità 10: 1 rimane in Quadrix");
        const QString operations = "FLSEQ, FLLAV FROM X01_ORD_FAS WHERE IDOPR = 4 ORDER BY FLSEQ";
        const QString gone = "DELETE FROM MMNN_MMOO_00000300 WHERE MnORef = 'MO-2' AND OprRef = 'PIEGA'";
        Row("operation of a production order", "modImport_Lantek24", gone, "ImportDocumentiLantek24", operations,
            "1|TAGLIO\n2|GEN", "RIGHE DI PRODUZIONE TOLTE: tabella 'MMNN_MMOO_00000100', MnORef 'MO-2'");
        Row("operation that somebody has changed", "modImport_Lantek24",
            "> UPDATE X01_ORD_FAS SET USMDF = 'ANNA' WHERE IDOPR = 4 AND FLSEQ = 3; " + gone, "ImportDocumentiLantek24",
            operations, "1|TAGLIO\n2|GEN\n3|GEN", "PrdRef 'pz-01', '3 GEN': 1 rimane in Quadrix");
        Row("remnant of another sheet", "modImport_Lantek24",
            "UPDATE PPRR_PPRR_00000100 SET DIS_ShtRefOrg = 'INOX-2000' WHERE PrdRef = 'RIT-100'",
            "ImportRitagliLantek24", "CDART FROM X01_ART_FMT WHERE LMEXT = 'RIT-100' ORDER BY CDART",
            "FE-3000\nINOX-2000",
            "FORMATI NON PIÙ NELL'ORIGINE: tabella 'PPRR_PPRR_00000100', PrdRef 'RIT-100', ora di 'INOX-2000': "
            "'RIT-100' di 'FE-3000': 1 rimane in Quadrix");
        Row("remnant that is an article of its own too", "modImport_Lantek24",
            "> INSERT INTO X01_ART_FMT (CDART, CDFMT, LMEXT, USINS) VALUES ('RIT-100', '800X600', 'RIT-100', "
            "'SYSTEM_IMPORT')",
            "ImportRitagliLantek24", "COUNT(*) FROM X01_ART_FMT WHERE LMEXT = 'RIT-100'", "2",
            "!FORMATI NON PIÙ NELL'ORIGINE");
        Row("stock of a remnant of another sheet", "modImport_Lantek30",
            "> INSERT INTO X01_ART_ICO (CDART, ARDES, ARUMS) VALUES ('LM-INOX', 'Inox', 'NR'); > INSERT INTO "
            "X01_ART_FMT "
            "(CDART, CDFMT, LMEXT) VALUES ('LM-INOX', '2000X1000', 'INOX-2000'); > INSERT INTO X01_ART_FMT (CDART, "
            "CDFMT, LMSFR, LMEXT) VALUES ('LM-INOX', 'RIT-7', '7', 'RIT-7'); UPDATE PPRR_PPRR_00000100 SET "
            "DIS_ShtRefOrg = 'INOX-2000' WHERE PrdRef = 'RIT-7'",
            "ImportInventarioLantek30", "MRART FROM X01_MOV_MAR WHERE MRSFR = '7' ORDER BY MRART", "LM-FE-1.5\nLM-INOX",
            "");
        const QString place = "UBDES FROM X01_UBI_MAG WHERE CDUBI = 'B-02'";
        const QString described = "UPDATE MAGAZZINO_1 SET DES_UBICAZIONE = 'Scaffale B' WHERE COD_UBICAZIONE = 'B-02'";
        Row("location that is described now", "modImport_VS", described, "ImportUbicazioniVSP", place, "Scaffale B",
            "");
        Row("location that somebody has described", "modImport_VS",
            "> UPDATE X01_UBI_MAG SET UBDES = 'Di Anna' WHERE CDUBI = 'B-02'; " + described, "ImportUbicazioniVSP",
            place, "Di Anna", "");
        const auto toTheRight = [](const QString& table, const QString& column, const QString& code,
                                   const QString& further = {}) {
            return QString("UPDATE %1 SET %2 = '  %3'%4 WHERE %2 = '%3'").arg(table, column, code, further);
        };
        Row("bill whose parent stands to the right", "modImport_VS",
            toTheRight("DISTINTA_BASE", "PADRE", "TE-200") +
                "; UPDATE DISTINTA_BASE SET QUANTITA = '360' WHERE FIGLIO "
                "= 'TE-500' AND UM = 'g'; INSERT INTO CICLI VALUES ('  TE-200', 30, NULL, '7', NULL)",
            "ImportDistinteVSP",
            "C.DCQTA, F.DLSEQ, F.DLTAP FROM X01_DIS_COM C JOIN X01_DIS_BAS B ON B.RECORD_ID = C.IDDIS JOIN X01_DIS_FAS "
            "F ON F.IDDIS = B.RECORD_ID WHERE B.DBART = 'TE-200' AND C.DCART = 'TE-500' AND F.DLSEQ = 30",
            "360|30|7", "");
        Row("conditions of a company whose code stands to the right", "modImport_Lantek24",
            toTheRight("CCOO_CCOO_00000100", "ComRef", "300") + "; " +
                toTheRight("SSHH_SSPP_00000100", "SuppRef", "300", ", PymName = 'RB 30'"),
            "ImportContropartiLantek24", "COMOA FROM X01_CON_TRO WHERE COFGE = '300'", "RB30", "");
        Row("material whose code stands to the right", "modImport_Lantek24",
            toTheRight("DIS_MMTT_MMTT_00000100", "MatRef", "S235", ", Density = 7.9") + "; " +
                toTheRight("PPRR_PPRR_00000100", "DIS_MatRef", "S235"),
            "ImportArticoliLantek24", "LMPSR FROM X01_ART_FMT WHERE LMEXT = 'FE-2000'", "7.9", "");
        Row("bill of a product whose code stands to the right", "modImport_Lantek24",
            toTheRight("MMNN_PPOO_00000300", "PrdRef", "pz-01", ", StdQuan = '1.75'") + "; " +
                toTheRight("MMNN_PPOO_00000200", "PrdRef", "pz-01") + "; " +
                toTheRight("PPRR_PPRR_00000100", "PrdRef", "pz-01"),
            "ImportDistintaLantek24",
            "C.DCQTA, F.DLLAV FROM X01_DIS_COM C JOIN X01_DIS_FAS F ON F.RECORD_ID = C.IDDBL WHERE C.DCART = 'FE-3000'",
            "1.75|TAGLIO", "");
        Row("production order whose number stands to the right", "modImport_Lantek24",
            toTheRight("MMNN_MMOO_00000100", "MnORef", "MO-1") + "; " +
                toTheRight("MMNN_MMOO_00000300", "MnORef", "MO-1", ", Quantity = '6'"),
            "ImportDocumentiLantek24", "OPQTA, OPSTA FROM X01_ORD_PRO WHERE RECORD_ID = 3", "6|PV", "");
        Row("production order whose number has a blank behind", "modImport_Lantek24",
            "UPDATE MMNN_MMOO_00000100 SET MnORef = 'MO-2 ' WHERE MnORef = 'MO-2'", "ImportDocumentiLantek24",
            "COUNT(*) FROM X01_ORD_FAS WHERE IDOPR = 4", "3", "!RIGHE DI PRODUZIONE TOLTE");
        const auto order = [](const QString& number, const QString& row) -> QString {
            return QString("INSERT INTO SSHH_PPOO_00000100 (OrdRef, CDate, SuppRef, SuppName, RQPrice) VALUES ('%1', "
                           "'20240120 00:00:00', '200', 'x', 0)")
                       .arg(number) +
                   (row.isEmpty() ? QString()
                                  : QString("; INSERT INTO SSHH_PPOO_00000200 (OrdRef, LineNum, Quantity, QUANUntName, "
                                            "UPrice, TaxRef, PrdRef, TPrice, DlvStatus) VALUES ('%1', 1, '10', 'unt', "
                                            "0.5, '22', %2)")
                                        .arg(number, row));
        };
        const QString state = "T.DTSTA, R.DRTOT, R.DRLMX FROM X01_DOC_ACQ T LEFT JOIN X01_DOC_ACR R ON R.IDTES = "
                              "T.RECORD_ID WHERE T.DTNUM = 21";
        Row("order whose number stands to the right", "modImport_Lantek24",
            toTheRight("PPRR_PPRR_00000100", "PrdRef", "FE-3000") + "; " + order("  21", "'  FE-3000', NULL, 10"),
            "ImportDocumentiLantek24", state, "PV|5|3000", "");
        Row("order row without a state, whose total is zero", "modImport_Lantek24", order("21", "'VITE', 0, NULL"),
            "ImportDocumentiLantek24", state, "PV|5|NULL", "");
        Row("order without rows", "modImport_Lantek24", order("21", {}), "ImportDocumentiLantek24", state,
            "PV|NULL|NULL", "");
        Row("sheet that does not tell whether it is a remnant", "modImport_Lantek24",
            "UPDATE PPRR_PPRR_00000100 SET DIS_IsRemnant = NULL WHERE PrdRef = 'INOX-2000'; UPDATE WWHH_IIVV_00000100 "
            "SET StockQ = '4.5' WHERE PrdRef = 'INOX-2000' AND WrhRef = 'W2'",
            "ImportInventarioLantek24", "MRQTA FROM X01_MOV_MAR WHERE MRART = 'INOX-2000' AND MRFMT = '2000X1000'",
            "4.5", "");
        rowsOfArcaEvolution();
        rowsThatWereNotRead();
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
        fixture.Target().Get().Translations.clear();
        fixture.RunLine(line);
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QTEST(fixture.Target().Rows("SELECT " + query).join('\n'), "written");
        QVERIFY2(told.startsWith('!') ? !log.contains(told.mid(1)) : log.contains(told), qPrintable(log));
        const QStringList content = fixture.Content();
        fixture.RunLine(line);
        QCOMPARE(fixture.Content(), content);
    }

    /// What a sheet has for suppliers is theirs on each import, not what it has for customers.
    void ConditionsOfBothRolesOfASheet() {
        QString discount = "7";
        const auto change = [&discount](ovConnection& source) {
            source.ExecuteScript("ALTER TABLE CLIENTI ADD COLUMN COMOA TEXT; ALTER TABLE CLIENTI ADD COLUMN COSF1 TEXT;"
                                 "ALTER TABLE CLIENTI ADD COLUMN COLSF TEXT; UPDATE CLIENTI SET COCLI = '1', COMOA = "
                                 "'RB60', COSF1 = '" +
                                 discount + "', COLSC = 'L1', COLSF = 'A1' WHERE COCGE = 'F20'");
        };
        Fixture fixture(FixtureFolder("modImport_Excel"), *FixtureOrigins().value("modImport_Excel"),
                        TestTarget::On::Embedded, change);
        const QString conditions = "SELECT COSC1, COSF1, COLSC, COLSF, COMOA FROM X01_CON_TRO WHERE COFGE = 'F20'";
        fixture.RunLine("ImportClientiExcel");
        QCOMPARE(fixture.Target().Rows(conditions), QStringList{"2|7|L1|A1|RB60"});
        discount = "8";
        fixture.RunLine("ImportClientiExcel");
        QCOMPARE(fixture.Target().Rows(conditions), QStringList{"2|8|L1|A1|RB60"});
    }

    /// The code of a customer may stand to the right of its column, or in small letters; a row that is no price gives
    /// him no list.
    void pricesOfACustomer_data() {
        Columns<QString, QString, QString>("row", "price", "told");
        Row("in small letters", "codclifor = 'c7'", "", "PREZZI NON LETTI: righe di 'listini'");
        Row("to the right", "codclifor = '    C7'", "", "uno spazio, e non con 'C': 1");
        Row("without a price", "codclifor = 'C7', u_prezzo = NULL", "", "PREZZO VUOTO: tabella 'listini'");
        Row("that ends on a day that is none", "codclifor = 'C7', datafine = '1900-01-01'", "NULL|19", "");
        Row("up to less than nothing", "codclifor = 'C7', u_qta = -5", "", "una quantità di -5 non è di nessun prezzo");
    }
    void pricesOfACustomer() {
        QFETCH(const QString, row);
        QFETCH(const QString, told);
        const QString module = "modImport_Arca2000";
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::Embedded,
                        [&](ovConnection& source) {
                            source.Execute("UPDATE listini SET " + row + " WHERE codicearti = 'AB12-C'");
                        });
        fixture.Target().Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, CORAS) VALUES ('000077', 'C7', 'Rossi')");
        fixture.RunLine("ImportListiniArca2000 reset");
        const QString prices = "SELECT A.LAFIV, S.SCPRZ FROM X01_CON_TRO C JOIN X01_LIS_ART A ON A.CDLIS = C.COLSF "
                               "JOIN X01_LIS_ARS S ON S.IDLSD = A.RECORD_ID WHERE C.CDCON = '000077'";
        QTEST(fixture.Target().Rows(prices).join('\n'), "price");
        const QString log = QString::fromLatin1(fixture.Target().Log());
        QVERIFY2(log.contains(told), qPrintable(log));
    }
};

QUADRIX_TEST(TestChangedSource)
#include "test_changedSource.moc"
