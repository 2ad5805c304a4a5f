#pragma once

#include "sql/ovConnection.h"

/// A database of customers, suppliers, branches and carriers whose tables and columns are called as no origin calls
/// them: three counterparties, one of them with a branch, and a carrier, all of which can be imported by "Gescom".
inline void MakeForeignSource(const QString& file) {
    ovConnection source;
    source.Embedded = true;
    source.DatabaseName = file;
    source.OpenConnection();
    source.ExecuteScript(QStringLiteral(
        "CREATE TABLE SOGGETTI (COD_SOGGETTO VARCHAR(8), TIPO_SOGGETTO VARCHAR(1), DENOMINAZIONE VARCHAR(60), "
        "DENOMINAZIONE_2 VARCHAR(60), COD_FISCALE VARCHAR(16), VIA "
        "VARCHAR(40), ZIP VARCHAR(5), COMUNE VARCHAR(30), PROV VARCHAR(2), PAESE VARCHAR(3), CAMPO7 VARCHAR(16), "
        "PHONE VARCHAR(20), E_MAIL VARCHAR(60), ANNOTAZIONI VARCHAR(200), GRUPPO_VENDITA VARCHAR(10), SOCIETA "
        "VARCHAR(2));\n"
        "INSERT INTO SOGGETTI VALUES ('1', 'C', 'Ferramenta L''Incudine', NULL, NULL, 'Via Roma 1', '38122', 'Trento', "
        "'TN', "
        "'IT', "
        "'00743110157', '0461/123456', 'info@incudine.it', 'Chiude in agosto', 'NORD', '01');\n"
        "INSERT INTO SOGGETTI VALUES ('2', 'C', 'Consorzio del legno', NULL, NULL, 'Via Po 2', '10121', 'Torino', "
        "'TO', "
        "'IT', "
        "'01234567897', '011 223344', NULL, NULL, 'OVEST', '01');\n"
        "INSERT INTO SOGGETTI VALUES ('7', 'F', 'Acciaierie Nord S.p.A.', NULL, NULL, 'Via Ferro 9', '37100', "
        "'Verona', "
        "'VR', "
        "'IT', '07643520567', '045 998877', 'acq@nord.it', NULL, 'NORD', '02');\n"
        "CREATE TABLE LUOGHI (COD_SOGGETTO VARCHAR(8), TIPO_SOGGETTO VARCHAR(1), PROGRESSIVO INTEGER, DENOMINAZIONE "
        "VARCHAR(60), VIA VARCHAR(40), ZIP VARCHAR(5), COMUNE VARCHAR(30), PROV VARCHAR(2));\n"
        "INSERT INTO LUOGHI VALUES ('1', 'C', 1, 'Magazzino', 'Via del Porto 3', '38068', 'Rovereto', 'TN');\n"
        "CREATE TABLE TRASPORTATORI (CODICE VARCHAR(4), NOME VARCHAR(60), INDIRIZZO VARCHAR(40), CAP VARCHAR(5), "
        "CITTA VARCHAR(30), PROVINCIA VARCHAR(2), PARTITA_IVA VARCHAR(16), TELEFONO VARCHAR(20));\n"
        "INSERT INTO TRASPORTATORI VALUES ('10', 'Corriere Veloce', 'Via Mare 1', '35100', 'Padova', 'PD', NULL, '049 "
        "11');\n"
        "CREATE TABLE PARAMETRI (CHIAVE VARCHAR(20), VALORE VARCHAR(200));\n"));
}
