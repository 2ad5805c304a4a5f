#include "tests/app/MergePair.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

using namespace modMain;

/// What a merge of two companies finds, copies and re-points.
class TestMerge : public QObject {
    Q_OBJECT

private slots:
    void matches_data() {
        QTest::addColumn<QStringList>("source"); // code;name;vatNumber;taxCode
        Columns<QStringList, QStringList>("destination", "matches");
        const QString vat = "01234567890";
        Row("VAT number", QStringList{"000001;Rossi;" + vat + ";RSS80"},
            QStringList{"000004;Altro;;RSS80", "000005;Rossi;;", "000006;Rossi snc;" + vat + ";"},
            QStringList{"000001 000006 Rossi snc PARTITA IVA"});
        Row("tax code", QStringList{"000001;Rossi;" + vat + ";RSS80"},
            QStringList{"000005;Rossi;;", "000006;Altro;;RSS80"}, QStringList{"000001 000006 Altro CODICE FISCALE"});
        Row("part of a name", QStringList{"000001;Rossi;" + vat + ";"}, QStringList{"000005;Ditta ROSSI Mario;;"},
            QStringList{"000001 000005 Ditta ROSSI Mario RAGIONE SOCIALE"});
        Row("a longer name is no match", QStringList{"000001;Rossi Mario;;"}, QStringList{"000005;Rossi;;"},
            QStringList{"000001 000006 Rossi Mario NUOVO!!!!"});
        Row("blank texts match nobody", QStringList{"000001; ; ;", "000002;;;"}, QStringList{"000005;; ;"},
            QStringList{"000001 000006   NUOVO!!!!", "000002 000007  NUOVO!!!!"});
        Row("a number of one character tells nobody",
            QStringList{"000001;Uno;00000000000;", "000002;Due;00000000000;aaa", "000003;uno;;AAA"},
            QStringList{"000005;Altro;00000000000;AAA"},
            QStringList{"000001 000006 Uno NUOVO!!!!", "000002 000007 Due NUOVO!!!!",
                        "000003 000006 Uno RAGIONE SOCIALE"});
        Row("a word in place of a number tells nobody", QStringList{"000001;Uno;ESTERO;n.d."},
            QStringList{"000005;Altro;ESTERO;N.D."}, QStringList{"000001 000006 Uno NUOVO!!!!"});
        Row("quotes", QStringList{"000001;D'Est;;"}, QStringList{"000005;Neri D'Est;;"},
            QStringList{"000001 000005 Neri D'Est RAGIONE SOCIALE"});
        Row("accents and wildcards", QStringList{"000001;Società;;", "000002;A_C;;", "000003;100%;;"},
            QStringList{"000005;La società;;", "000006;xABCx;;"},
            QStringList{"000001 000005 La società RAGIONE SOCIALE", "000002 000006 xABCx RAGIONE SOCIALE",
                        "000003 000007 100% NUOVO!!!!"});
        Row("first of an empty company", QStringList{"000031;Uno;;"}, QStringList{},
            QStringList{"000031 000001 Uno NUOVO!!!!"});
        Row("the copy of an earlier one is found",
            QStringList{"000001;Uno;" + vat + ";", "000002;Due;" + vat + ";", "000003;uno;;", "000004;Tre;;TRE3",
                        "000005;Altro;;tre3"},
            QStringList{"000005;Cinque;;"},
            QStringList{"000001 000006 Uno NUOVO!!!!", "000002 000006 Uno PARTITA IVA",
                        "000003 000006 Uno RAGIONE SOCIALE", "000004 000007 Tre NUOVO!!!!",
                        "000005 000007 Tre CODICE FISCALE"});
        Row("a copy is found as the database finds",
            QStringList{"000001;Nicolò;;", "000002;Nicolo;;", "000003;ABC srl;;", "000004;a_c;;"}, QStringList{},
            QStringList{"000001 000001 Nicolò NUOVO!!!!", "000002 000002 Nicolo NUOVO!!!!",
                        "000003 000003 ABC srl NUOVO!!!!", "000004 000003 ABC srl RAGIONE SOCIALE"});
        Row("names do not run into each other", QStringList{"000001;AB;;", "000002;CD;;", "000003;BC;;"}, QStringList{},
            QStringList{"000001 000001 AB NUOVO!!!!", "000002 000002 CD NUOVO!!!!", "000003 000003 BC NUOVO!!!!"});
    }
    void matches() {
        QFETCH(QStringList, source);
        QFETCH(QStringList, destination);
        MergePair pair;
        const auto add = [&pair](const QString& company, const QStringList& rows) {
            for (const QString& row : rows) {
                const QStringList parts = row.split(';');
                pair.Add(company, parts.at(0), parts.at(1), parts.at(2), parts.at(3));
            }
        };
        add("X01", source);
        add("X02", destination);
        const auto lines = [](const MergeResult& result) {
            QStringList found;
            for (const MergeMatch& match : result.matches) {
                found.append(match.oldCode + ' ' + match.newCode + ' ' + match.newName + ' ' +
                             MergeCriterionText(match.criterion));
            }
            return found;
        };
        // The first finds the same as the second, as it writes nothing.
        QTEST(lines(PreviewFusioneControparti(pair.target.Get(), "x01", "x02", true)), "matches");
        QVERIFY(pair.target.Log("fusione.log").isEmpty() && pair.target.Person.Messages.isEmpty());
        MergeResult merged;
        QVERIFY(pair.Merge(false, &merged));
        QTEST(lines(merged), "matches");
    }

    void newCounterpartyIsCopiedWhole_data() { Engines(); }
    void newCounterpartyIsCopiedWhole() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        const QString columns = "CORAS, COIVA, COCLI, COFID, CONOT, DTINS, COFOR";
        const QStringList before = pair.target.Rows("SELECT " + columns + " FROM X01_CON_TRO WHERE CDCON = '000007'");
        const QStringList source = Contents(pair.target, {"X01"});
        MergeResult result;
        QVERIFY(pair.Merge(false, &result));
        QCOMPARE(Contents(pair.target, {"X01"}), source); // references stay without the flag
        QCOMPARE(pair.target.Rows("SELECT " + columns + " FROM X02_CON_TRO WHERE CDCON = '000010'"), before);
        QCOMPARE(pair.target.Rows("SELECT CDCON, RFNOM FROM X02_CON_RIF ORDER BY RECORD_ID"),
                 QStringList({"000010|Anna", "000011|Ugo"}));
        QCOMPARE(pair.target.Rows("SELECT CDCON, CDSED, SERAS FROM X02_CON_SED WHERE CDCON = '000010'"),
                 QStringList("000010|001|Deposito"));
        QCOMPARE(result.copied, (QMap<QString, qint64>{
                                    {"CON_TRO", 2}, {"NUM_TEL", 3}, {"IND_WEB", 2}, {"CON_RIF", 2}, {"CON_SED", 1}}));
        QCOMPARE(result.merged, 5);
        QCOMPARE(pair.target.Person.Events.last(), QString("[i] Fusione completata correttamente!"));
    }

    /// The branch and the contacts have other numbers in the destination; what they own finds them.
    void numbersAndAddressesFollowTheirOwner_data() { Engines(); }
    void numbersAndAddressesFollowTheirOwner() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        QVERIFY(pair.Merge(false));
        const QString branch = pair.target.Value("SELECT RECORD_ID FROM X02_CON_SED WHERE CDCON = '000010'");
        const QString anna = pair.target.Value("SELECT RECORD_ID FROM X02_CON_RIF WHERE RFNOM = 'Anna'");
        const QString ugo = pair.target.Value("SELECT RECORD_ID FROM X02_CON_RIF WHERE RFNOM = 'Ugo'");
        QVERIFY(branch != "2" && anna != "2");
        QCOMPARE(pair.target.Rows("SELECT TBNAM, TBKEY, NRNUM FROM X02_NUM_TEL ORDER BY NRNUM"),
                 QStringList({"CON_TRO|000010|041", "CON_SED|" + branch + "|045", "CON_RIF|" + anna + "|046"}));
        QCOMPARE(pair.target.Rows("SELECT TBNAM, TBKEY, WBIND FROM X02_IND_WEB ORDER BY WBIND"),
                 QStringList({"CON_TRO|000010|a@b.it", "CON_RIF|" + ugo + "|ugo@b.it"}));
    }

    /// Two codes of a copied counterparty, one that the schema knows and one that the dictionary tells: of somebody
    /// who is matched or copied himself, or of none that is known.
    void carrierOfACopy_data() {
        Columns<QString, bool, QString, bool>("carrier", "references", "copied", "noted");
        for (const bool references : {false, true}) {
            const QString with = references ? ", with references" : "";
            Row(qPrintable("matched" + with), QString("000001"), references, QString("000007"), false);
            Row(qPrintable("copied" + with), QString("000010"), references, QString("000011"), false);
            Row(qPrintable("itself" + with), QString("000007"), references, QString("000010"), false);
            Row(qPrintable("unknown" + with), QString("000999"), references, QString("000999"), true);
            Row(qPrintable("blank" + with), QString(), references, QString(), false);
        }
    }
    void carrierOfACopy() {
        QFETCH(QString, carrier);
        QFETCH(bool, references);
        QFETCH(bool, noted);
        MergePair pair;
        FillAll(pair);
        pair.target.Execute("INSERT INTO SYS_SYS (TABLK, COLLK, TABNM, COLNM) VALUES ('CON_TRO', 'CDCON', 'CON_TRO', "
                            "'COALT')");
        pair.target.Execute("UPDATE X01_CON_TRO SET COVEP = '" + carrier + "', COALT = '" + carrier +
                            "' WHERE CDCON = '000007'");
        MergeResult result;
        QVERIFY(pair.Merge(references, &result));
        for (const QString column : {"COVEP", "COALT"}) {
            QTEST(pair.target.Value("SELECT " + column + " FROM X02_CON_TRO WHERE CDCON = '000010'"), "copied");
        }
        QCOMPARE(Noted(result, "CODICE NON TRADOTTO"), noted ? 2 : 0);
        QCOMPARE(pair.target.Log("fusione.log")
                     .contains("CODICE NON TRADOTTO: controparte 000007 di X01, colonna COVEP: '000999'"),
                 noted);
    }

    /// A price list or an agent of the other company is another one here, or none.
    void codesOfTheCompanysOwnTablesAreTold() {
        MergePair pair;
        FillAll(pair);
        pair.target.Execute("UPDATE X01_CON_TRO SET COLSC = 'L9', COAGE = 'A1', COBAN = 'B1', CONAZ = 'ITA'");
        for (const char* row :
             {"X01_AGE_NTI (CDAGE, AGDES) VALUES ('A1', 'Rossi')", "X02_AGE_NTI (CDAGE, AGDES) VALUES ('A1', 'Verdi')",
              "X01_BAN_CHE (CDBAN, BADES) VALUES ('B1', 'Banca')",
              "X02_BAN_CHE (CDBAN, BADES) VALUES ('B1', 'banca')"}) {
            pair.target.Execute(QString("INSERT INTO ") + row);
        }
        MergeResult result;
        QVERIFY(pair.Merge(false, &result));
        QCOMPARE(result.Count(MergeCriterion::New), 2);
        QCOMPARE(result.notes.count, 2);
        const QString log = pair.target.Log("fusione.log");
        for (const char* note : {"CODICE CHE MANCA: controparte 000007 di X01, colonna COLSC: 'L9'",
                                 "CODICE DI ALTRO SIGNIFICATO: controparte 000007 di X01, colonna COAGE: 'A1'"}) {
            QVERIFY2(log.contains(note), qPrintable(log));
        }
    }

    void referencesOfTheSourceAreRepointed_data() { Engines(); }
    void referencesOfTheSourceAreRepointed() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        MergeResult result;
        QVERIFY(pair.Merge(true, &result));
        const auto rows = [&pair](const char* query) { return pair.target.Rows(query).join(' '); };
        QCOMPARE(rows("SELECT DTCON FROM X01_DOC_VEN ORDER BY DTNUM"), QString("000010 000009 000009 000999"));
        QCOMPARE(rows("SELECT ARCLI FROM X01_ART_ICO ORDER BY CDART"), QString("000007 000010 NULL"));
        QCOMPARE(rows("SELECT CDCON FROM X01_CON_RIF ORDER BY RFNOM"), QString("000010 000007 000011"));
        // Keys of other tables in the same column are no counterparties, whatever they look like.
        QCOMPARE(rows("SELECT TBKEY FROM X01_NUM_TEL ORDER BY NRNUM"), QString("000010 000007 000007 1 2 2"));
        QCOMPARE(rows("SELECT FLKEY FROM X01_FLD_VAL ORDER BY FLVAL"), QString("000011 000001 MIX"));
        // The preferred carrier: in the source, and in the copy that was made of it.
        QCOMPARE(rows("SELECT COVEP FROM X01_CON_TRO WHERE COVEP IS NOT NULL ORDER BY CDCON"),
                 QString("000011 000007"));
        QCOMPARE(rows("SELECT COVEP FROM X02_CON_TRO WHERE CDCON = '000010'"), QString("000007"));
        // The source's own codes, and the documents of the destination.
        QCOMPARE(rows("SELECT CDCON FROM X01_CON_TRO ORDER BY CDCON"), QString("000001 000002 000003 000007 000010"));
        QCOMPARE(rows("SELECT DTCON FROM X02_DOC_VEN"), QString("000007"));
        QCOMPARE(result.referencesUpdated, 16);
    }

    /// What names nobody of the source means whoever has that code in the destination afterwards.
    void referencesToNobodyAreNoted() {
        MergePair pair;
        pair.Add("X01", "000001", "Tre\n27/11/2026 - 000009 Falso");
        pair.Add("X02", "000001", "Uno");
        pair.Add("X02", "000002", "Due");
        pair.target.Execute(
            "INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (1, '000001'), (2, '000002'), (3, '000002'), "
            "(4, '000003'), (5, ''), (6, 'DIRETTO')");
        const QString kind = "RIFERIMENTO SENZA CONTROPARTE";
        QCOMPARE(Noted(PreviewFusioneControparti(pair.target.Get(), "X01", "X02", true), kind), 3);
        MergeResult result;
        QVERIFY(pair.Merge(true, &result));
        QCOMPARE(Noted(result, kind), 3);
        const QString log = QString::fromLatin1(pair.target.Log("fusione.log"));
        for (const char* told :
             {"'000002' resta com'è, nessuna controparte di X01 ha questo codice; in X02 è 'Due'",
              "'000003' resta com'è, nessuna controparte di X01 ha questo codice; in X02 è 'Tre\\n27/",
              "X01_DOC_VEN, colonna DTCON: 'DIRETTO' resta com'è, nessuna controparte di X01 ha "
              "questo codice; in X02 non c'è"}) {
            QVERIFY2(log.count(told) == 1, qPrintable(log));
        }
        QVERIFY(!log.contains("\n27/11/2026")); // no name is a line of its own
        QCOMPARE(pair.target.Rows("SELECT DTCON FROM X01_DOC_VEN ORDER BY DTNUM"),
                 QStringList({"000003", "000002", "000002", "000003", "", "DIRETTO"}));
    }

    void conditionThatIsAComparison_data() {
        Columns<QString, QStringList>("condition", "codes");
        Row("one", QString("DTNUM > 1"), QStringList({"000007", "000009", "000009", "000999"}));
        Row("one of two", QString("DTNUM = 2 OR DTNUM = 4"), QStringList({"000007", "000009", "000003", "000999"}));
    }
    void conditionThatIsAComparison() {
        QFETCH(QString, condition);
        MergePair pair;
        FillAll(pair);
        pair.target.Execute("DELETE FROM SYS_SYS WHERE TABLK = 'CON_TRO'");
        pair.target.Execute("INSERT INTO SYS_SYS (TABLK, COLLK, TABNM, COLNM, CONNM) VALUES "
                            "('CON_TRO', 'CDCON', 'DOC_VEN', 'DTCON', '" +
                            condition +
                            "'), "
                            "('ART_ICO', 'CDART', 'CON_TRO', 'CORAS', NULL)");
        QVERIFY(pair.Merge(true));
        QTEST(pair.target.Rows("SELECT DTCON FROM X01_DOC_VEN ORDER BY DTNUM"), "codes");
    }

    /// A mark is an "X" in a code of six places; an "X" in another code was there before.
    void codesWithAnXOfTheirOwnStay_data() { Engines(); }
    void codesWithAnXOfTheirOwnStay() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        pair.target.Execute("INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (5, 'EXP001'), (6, 'D''X'), (7, 'XXX12')");
        QVERIFY(pair.Merge(true));
        QCOMPARE(pair.target.Rows("SELECT DTCON FROM X01_DOC_VEN ORDER BY DTNUM"),
                 QStringList({"000010", "000009", "000009", "000999", "EXP001", "D'X", "XXX12"}));
    }

    void log() {
        MergePair pair;
        FillAll(pair);
        QVERIFY(pair.Merge(false));
        QStringList lines = QString::fromLatin1(pair.target.Log("fusione.log")).split("\r\n", Qt::SkipEmptyParts);
        for (QString& line : lines) {
            QVERIFY(line.startsWith("05/03/2024 10:20:30 - "));
            line.remove(0, 22);
        }
        QCOMPARE(lines,
                 QStringList({"Inizio fusione controparti da X01 a X02",
                              "000001 Rossi Mario   -->   000007 Rossi Mario & C. S.n.c.   PARTITA IVA",
                              "000002 Bianchi Laura   -->   000009 Bianchi   CODICE FISCALE",
                              "000003 Bianchi   -->   000009 Bianchi   RAGIONE SOCIALE",
                              "000007 Verdi S.r.l.   -->   000010 Verdi S.r.l.   NUOVO!!!!",
                              "000010 Neri d'Est S.p.A.   -->   000011 Neri d'Est S.p.A.   NUOVO!!!!",
                              "Controparti fuse: 5 (PARTITA IVA 1, CODICE FISCALE 1, RAGIONE SOCIALE 1, NUOVO!!!! 2)",
                              "Corrispondenze per sola ragione sociale, da verificare: 1"}));
    }

    void errorsBeforeTheFirstWrite_data() {
        Columns<QString, QString, QString, QString>("from", "to", "statement", "told");
        Row("same company", "X01", "x01", "", "'X01': di partenza e di destinazione devono essere diverse");
        Row("unknown source", "X09", "X02", "", "Azienda 'X09': non esiste");
        Row("unknown destination", "X01", "", "", "Azienda '': non esiste");
        Row("code of the source", "X01", "X02", "UPDATE X01_CON_TRO SET CDCON = '12A' WHERE CDCON = '000010'",
            "X01_CON_TRO, colonna CDCON: '12A'");
        Row("code of the destination", "X01", "X02", "UPDATE X02_CON_TRO SET CDCON = '0000009' WHERE CDCON = '000009'",
            "X02_CON_TRO, colonna CDCON: '0000009'");
        Row("no more codes", "X01", "X02", "UPDATE X02_CON_TRO SET CDCON = '999999' WHERE CDCON = '000009'",
            "i codici di sei cifre sono finiti");
        Row("table of the dictionary", "X01", "X02", "DROP TABLE X01_DOC_ACQ", "X01_DOC_ACQ non esiste");
        Row("column of the dictionary", "X01", "X02",
            "UPDATE SYS_SYS SET COLNM = 'DTXXX' WHERE TABNM = 'DOC_ACQ' AND COLNM = 'DTCON'", "DTXXX");
        Row("column of the destination", "X01", "X02", "ALTER TABLE X02_CON_SED DROP COLUMN SERIF", "SERIF");
        Row("a code that cannot be marked", "X01", "X02",
            "UPDATE X02_CON_TRO SET CDCON = '111111' WHERE CDCON = '000009'; "
            "UPDATE X01_CON_TRO SET CDCON = '111111' WHERE CDCON = '000010'",
            "il nuovo codice 111111 non contiene zeri");
    }
    void errorsBeforeTheFirstWrite() {
        MergePair pair;
        FillAll(pair);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, statement);
        QFETCH(QString, told);
        pair.target.Db().ExecuteScript(statement);
        const QStringList before = Contents(pair.target);
        MergeResult result;
        QVERIFY(!FusioneControparti(pair.target.Get(), from, to, true, &result));
        QVERIFY2(pair.Error().contains(told), qPrintable(pair.Error()));
        QCOMPARE(pair.target.Person.Reported.last().procedure, QString("FusioneControparti"));
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(Contents(pair.target), before);
        QVERIFY(pair.target.Log("fusione.log").isEmpty());
        QVERIFY(!pair.target.Person.IsBusy());
    }
};

QUADRIX_TEST(TestMerge)
#include "test_merge.moc"
