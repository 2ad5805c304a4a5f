#include "adapters/registry.h"
#include "app/importFlow.h"
#include "app/merge.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace modMain;

class TestMerge : public QObject {
    Q_OBJECT

    /// Two companies, X01 merged into X02.
    struct Pair {
        TestTarget target;

        explicit Pair(TestTarget::On engine = TestTarget::On::Embedded)
            : target(engine) {
            target.AddCompany("X02", "Prova Due S.p.A.");
            target.Execute("DELETE FROM X01_MAG_AZZ");
        }
        void Add(const QString& company, const QString& code, const QString& name, const QString& vatNumber = {},
                 const QString& taxCode = {}) {
            const auto quoted = [](QString text) -> QString { return "'" + text.replace("'", "''") + "'"; };
            target.Execute("INSERT INTO " + company + "_CON_TRO (CDCON, CORAS, COIVA, COFIS) VALUES (" + quoted(code) +
                           ", " + quoted(name) + ", " + quoted(vatNumber) + ", " + quoted(taxCode) + ")");
        }
        bool Merge(bool updateReferences, MergeResult* result = nullptr, bool again = false) {
            return FusioneControparti(target.Get(), "X01", "X02", updateReferences, result, again);
        }
        /// With references; cancelled behind the counterparty that is copied first.
        bool MergeUntilTheFirstCopy(MergeResult* result = nullptr) {
            target.Db().Trace = [this](const QString& statement) {
                if (statement.startsWith("INSERT") && statement.contains("X02_CON_TRO")) {
                    target.Person.CancelAt = 0;
                }
            };
            const bool ended = Merge(true, result);
            target.Db().Trace = nullptr;
            target.Person.CancelAt.reset();
            return ended;
        }
        FlowOutcome Press(bool dryRun = false) {
            ImportRequest request;
            request.choice = {"Prova Due S.p.A.", {}, registry::Find("Kordel NetSuite"), ErrorAction::Abort};
            request.button = contract::Button::Disegni;
            request.dryRun = dryRun;
            return RunImport(target.Get(), request);
        }
        QString Error() { return target.Person.Reported.isEmpty() ? QString() : target.Person.Reported.last().message; }
    };

    /// A merge with something of everything: matches of each kind, children, references of each kind.
    static void FillAll(Pair& pair) {
        pair.Add("X02", "000007", "Rossi Mario & C. S.n.c.", "01234567890");
        pair.Add("X02", "000009", "Bianchi", "", "BNCLRA80A01F205X");
        pair.Add("X01", "000001", "Rossi Mario", "01234567890");
        pair.Add("X01", "000002", "Bianchi Laura", "", "BNCLRA80A01F205X");
        pair.Add("X01", "000003", "Bianchi");
        pair.Add("X01", "000007", "Verdi S.r.l.", "99999999999");
        pair.Add("X01", "000010", "Neri d'Est S.p.A.");
        for (const char* statement :
             {"UPDATE X01_CON_TRO SET COVEP = '000001', COCLI = 1, DTINS = '20240115 08:30:00', COFID = 1234.5, "
              "CONOT = 'note' WHERE CDCON = '000007'",
              "UPDATE X01_CON_TRO SET COVEP = '000010' WHERE CDCON = '000001'",
              "INSERT INTO X01_NUM_TEL (TBNAM, TBKEY, NRNUM) VALUES ('CON_TRO', '000007', '041'), "
              "('CON_TRO', '000001', '042'), ('CON_SED', '000007', '043'), ('CON_SED', '1', '044'), "
              "('CON_SED', '2', '045'), ('CON_RIF', '2', '046')",
              "INSERT INTO X01_IND_WEB (TBNAM, TBKEY, WBIND) VALUES ('CON_TRO', '000007', 'a@b.it'), "
              "('CON_RIF', '1', 'eva@b.it'), ('CON_RIF', '3', 'ugo@b.it')",
              "INSERT INTO X01_CON_RIF (CDCON, RFNOM) VALUES ('000001', 'Eva'), ('000007', 'Anna'), ('000010', 'Ugo')",
              "INSERT INTO X01_CON_SED (CDCON, CDSED, SERAS) VALUES ('000001', '001', 'Sede'), "
              "('000007', '001', 'Deposito')",
              "INSERT INTO X02_CON_SED (CDCON, CDSED) VALUES ('000007', '001'), ('000007', '002'), ('000009', '001')",
              "INSERT INTO X01_ART_ICO (CDART, ARCLI) VALUES ('A', '000001'), ('B', '000007'), ('C', NULL)",
              "INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (1, '000007'), (2, '000002'), (3, '000003'), (4, "
              "'000999')",
              "INSERT INTO X01_FLD_VAL (FLTAB, FLKEY, FLVAL) VALUES ('CON_TRO', '000010', 'x'), "
              "('ART_ICO', '000001', 'y'), ('ART_ICO', 'MIX', 'z')",
              "INSERT INTO X02_DOC_VEN (DTNUM, DTCON) VALUES (1, '000007')"}) {
            pair.target.Execute(statement);
        }
    }

    /// Everything that the companies hold of counterparties.
    static QStringList Contents(TestTarget& target, const QStringList& companies = {"X01", "X02"}) {
        QStringList contents;
        for (const QString& company : companies) {
            for (const char* table :
                 {"CON_TRO", "CON_SED", "CON_RIF", "NUM_TEL", "IND_WEB", "ART_ICO", "DOC_VEN", "FLD_VAL"}) {
                const QString name = company + '_' + table;
                contents += name;
                contents += target.Rows("SELECT * FROM " + name + " ORDER BY RECORD_ID");
            }
        }
        return contents;
    }

    static void Engines() {
        Columns<TestTarget::On>("engine");
        Row("embedded", TestTarget::On::Embedded);
        if (TestTarget::HasMariaDb()) {
            Row("MariaDB", TestTarget::On::MariaDb);
        }
    }

    static inline const QStringList Counts{"Controparti: 5", "  PARTITA IVA: 1", "  CODICE FISCALE: 1",
                                           "  RAGIONE SOCIALE: 1 (per sola ragione sociale: da verificare)",
                                           "  NUOVO!!!!: 2"};
    static inline const QString Review =
        Counts.join('\n') + "\nI riferimenti di X01 Prova Uno S.r.l. si aggiornano.\n\nFondere le controparti di X01 "
                            "Prova Uno S.r.l. in quelle di X02 Prova Due S.p.A.?";

private slots:
    void matches_data() {
        QTest::addColumn<QStringList>("source"); // code;name;vatNumber;taxCode
        Columns<QStringList, QStringList>("destination", "matches");
        const QString vat = "01234567890";
        Row("VAT number", QStringList{"000001;Rossi;" + vat + ";RSS"},
            QStringList{"000004;Altro;;RSS", "000005;Rossi;;", "000006;Rossi snc;" + vat + ";"},
            QStringList{"000001 000006 Rossi snc PARTITA IVA"});
        Row("tax code", QStringList{"000001;Rossi;" + vat + ";RSS"}, QStringList{"000005;Rossi;;", "000006;Altro;;RSS"},
            QStringList{"000001 000006 Altro CODICE FISCALE"});
        Row("part of a name", QStringList{"000001;Rossi;" + vat + ";"}, QStringList{"000005;Ditta ROSSI Mario;;"},
            QStringList{"000001 000005 Ditta ROSSI Mario RAGIONE SOCIALE"});
        Row("a longer name is no match", QStringList{"000001;Rossi Mario;;"}, QStringList{"000005;Rossi;;"},
            QStringList{"000001 000006 Rossi Mario NUOVO!!!!"});
        Row("blank texts match nobody", QStringList{"000001; ; ;", "000002;;;"}, QStringList{"000005;; ;"},
            QStringList{"000001 000006   NUOVO!!!!", "000002 000007  NUOVO!!!!"});
        Row("quotes", QStringList{"000001;D'Est;;"}, QStringList{"000005;Neri D'Est;;"},
            QStringList{"000001 000005 Neri D'Est RAGIONE SOCIALE"});
        Row("accents and wildcards", QStringList{"000001;Società;;", "000002;A_C;;", "000003;100%;;"},
            QStringList{"000005;La società;;", "000006;xABCx;;"},
            QStringList{"000001 000005 La società RAGIONE SOCIALE", "000002 000006 xABCx RAGIONE SOCIALE",
                        "000003 000007 100% NUOVO!!!!"});
        Row("first of an empty company", QStringList{"000031;Uno;;"}, QStringList{},
            QStringList{"000031 000001 Uno NUOVO!!!!"});
        Row("the copy of an earlier one is found",
            QStringList{"000001;Uno;" + vat + ";", "000002;Due;" + vat + ";", "000003;uno;;", "000004;Tre;;TRE",
                        "000005;Altro;;tre"},
            QStringList{"000005;Cinque;;"},
            QStringList{"000001 000006 Uno NUOVO!!!!", "000002 000006 Uno PARTITA IVA",
                        "000003 000006 Uno RAGIONE SOCIALE", "000004 000007 Tre NUOVO!!!!",
                        "000005 000007 Tre CODICE FISCALE"});
        Row("names do not run into each other", QStringList{"000001;AB;;", "000002;CD;;", "000003;BC;;"}, QStringList{},
            QStringList{"000001 000001 AB NUOVO!!!!", "000002 000002 CD NUOVO!!!!", "000003 000003 BC NUOVO!!!!"});
    }
    void matches() {
        QFETCH(QStringList, source);
        QFETCH(QStringList, destination);
        Pair pair;
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
        Pair pair(engine);
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
        Pair pair(engine);
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

    /// The carrier of a copied counterparty, matched or copied itself, or none that is known.
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
        Pair pair;
        FillAll(pair);
        pair.target.Execute("UPDATE X01_CON_TRO SET COVEP = '" + carrier + "' WHERE CDCON = '000007'");
        MergeResult result;
        QVERIFY(pair.Merge(references, &result));
        QTEST(pair.target.Value("SELECT COVEP FROM X02_CON_TRO WHERE CDCON = '000010'"), "copied");
        QCOMPARE(result.notes.count, noted ? 1 : 0);
        QCOMPARE(pair.target.Log("fusione.log")
                     .contains("CODICE NON TRADOTTO: controparte 000007 di X01, colonna COVEP: '000999'"),
                 noted);
    }

    void referencesOfTheSourceAreRepointed_data() { Engines(); }
    void referencesOfTheSourceAreRepointed() {
        QFETCH(TestTarget::On, engine);
        Pair pair(engine);
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

    void conditionThatIsAComparison() {
        Pair pair;
        FillAll(pair);
        pair.target.Execute("DELETE FROM SYS_SYS WHERE TABLK = 'CON_TRO'");
        pair.target.Execute("INSERT INTO SYS_SYS (TABLK, COLLK, TABNM, COLNM, CONNM) VALUES "
                            "('CON_TRO', 'CDCON', 'DOC_VEN', 'DTCON', 'DTNUM > 1'), "
                            "('ART_ICO', 'CDART', 'CON_TRO', 'CORAS', NULL)");
        QVERIFY(pair.Merge(true));
        QCOMPARE(pair.target.Rows("SELECT DTCON FROM X01_DOC_VEN ORDER BY DTNUM"),
                 QStringList({"000007", "000009", "000009", "000999"}));
    }

    void log() {
        Pair pair;
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

    /// Re-pointed references are not re-pointed again, into whatever company, unless that is asked for by name.
    void secondMergeWithReferencesIsRefused_data() { Engines(); }
    void secondMergeWithReferencesIsRefused() {
        QFETCH(TestTarget::On, engine);
        Pair pair(engine);
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        pair.target.Execute("DROP TABLE SYS_FUS"); // a database that has never seen a merge
        QVERIFY(pair.Merge(true));
        const QStringList merged = Contents(pair.target);
        const QString told = "La fusione di X01 Prova Uno S.r.l. in X02 Prova Due S.p.A., con l'aggiornamento dei "
                             "riferimenti, è già stata fatta il 05/03/2024 10:20 da ";
        for (const QString& to : {QString("X02"), QString("X03")}) {
            QVERIFY(!FusioneControparti(pair.target.Get(), "X01", to, true));
            QVERIFY2(pair.Error().startsWith(told), qPrintable(pair.Error()));
            const MergeResult preview = PreviewFusioneControparti(pair.target.Get(), "X01", to, true);
            QVERIFY(preview.earlier && preview.earlier->IsDone() && !preview.takesUp);
        }
        QCOMPARE(Contents(pair.target), merged);
        QVERIFY(pair.Merge(false)); // everybody is found again, nothing is re-pointed
        QCOMPARE(Contents(pair.target), merged);
        QVERIFY(pair.Merge(true, nullptr, true));
        QVERIFY(Contents(pair.target) != merged);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM SYS_FUS WHERE FUFIN IS NOT NULL"), QString("2"));
    }

    /// After a merge of the references a counterparty that the source has gained may name its carrier by either code.
    void carrierIsKeptAfterAMergeOfTheReferences() {
        Pair pair;
        FillAll(pair);
        QVERIFY(pair.Merge(true));
        pair.Add("X01", "000020", "Gialli");
        pair.target.Execute("UPDATE X01_CON_TRO SET COVEP = '000007' WHERE CDCON = '000020'");
        MergeResult result;
        QVERIFY(pair.Merge(false, &result));
        QCOMPARE(pair.target.Value("SELECT COVEP FROM X02_CON_TRO WHERE CORAS = 'Gialli'"), QString("000007"));
        QCOMPARE(result.notes.count, 1);
    }

    void interruptedMergeIsTold_data() {
        Columns<QString, QString, bool, QString>("statement", "to", "takesUp", "refused");
        Row("marks and record", "", "X02", true, "");
        Row("marks of before there were records", "DELETE FROM SYS_FUS", "X02", true, "");
        Row("another destination", "", "X03", false, "rimasta interrotta: completarla prima");
    }
    void interruptedMergeIsTold() {
        QFETCH(QString, statement);
        QFETCH(QString, to);
        QFETCH(bool, takesUp);
        QFETCH(QString, refused);
        Pair pair;
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        QVERIFY(!pair.MergeUntilTheFirstCopy());
        pair.target.Db().ExecuteScript(statement);
        const QStringList before = Contents(pair.target);
        const MergeResult preview = PreviewFusioneControparti(pair.target.Get(), "X01", to, true);
        QCOMPARE(preview.takesUp, takesUp);
        QCOMPARE(Contents(pair.target), before);
        MergeResult result;
        QCOMPARE(FusioneControparti(pair.target.Get(), "X01", to, true, &result), refused.isEmpty());
        QVERIFY2(pair.Error().contains(refused), qPrintable(pair.Error()));
        QCOMPARE(result.takesUp, takesUp);
        QCOMPARE(pair.target.Log("fusione.log").contains("Si riprende una fusione interrotta"), takesUp);
        if (refused.isEmpty()) {
            QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM X01_DOC_VEN WHERE DTCON LIKE '%X%'"), QString("0"));
            QVERIFY(!pair.Merge(true)); // it is done now
        }
    }

    /// Whoever may not make tables learns it before anything is written.
    void tableThatCannotBeMadeIsTold() {
        Pair pair;
        FillAll(pair);
        pair.target.Execute("DROP TABLE SYS_FUS");
        const QStringList before = Contents(pair.target);
        pair.target.Db().Trace = [](const QString& statement) {
            if (statement.startsWith("CREATE TABLE")) {
                throw SqlError(statement, "permission denied");
            }
        };
        QVERIFY(!pair.Merge(true));
        QVERIFY2(pair.Error().contains("SYS_FUS, che non c'è e non si può creare"), qPrintable(pair.Error()));
        QCOMPARE(Contents(pair.target), before);
        QVERIFY(pair.target.Log("fusione.log").isEmpty());
        QVERIFY(pair.Merge(false)); // without references there is nothing to remember
    }

    /// Behind the button of its origin: the questions, and an account that adds up.
    void button_data() {
        Columns<bool>("dryRun");
        Row("merge", false);
        Row("trial", true);
    }
    void button() {
        QFETCH(bool, dryRun);
        Pair pair;
        FillAll(pair);
        const QStringList before = Contents(pair.target);
        pair.target.Person.AnswerTo = {{"Fondere le Controparti di due Aziende?", true},
                                       {"Aggiornare i Riferimenti alle tabelle esistenti?", true}};
        pair.target.Person.Inputs = {QString("X01"), QString("X02")};
        pair.target.Person.Otherwise = true; // the matches
        QCOMPARE(pair.Press(dryRun), FlowOutcome::Done);
        QCOMPARE(
            pair.target.Person.Events,
            QStringList({"? Fondere le Controparti di due Aziende? = si", "> Codice Azienda di Partenza:",
                         "> Codice Azienda di Destinazione:", "? Aggiornare i Riferimenti alle tabelle esistenti? = si",
                         "progress", "progress closed", "? " + Review + " = si", "progress", "progress closed",
                         "[i] Fusione completata correttamente!"}));
        QCOMPARE(pair.target.Person.Reviewed.at(2), QString("000003 Bianchi --> 000009 Bianchi (RAGIONE SOCIALE)"));
        QCOMPARE(pair.target.Person.Prompts.last().title, QString("Fusione Controparti"));
        QCOMPARE(pair.target.Person.Prompts.last().defaultText, QString("X02"));
        const RunResult& account = pair.target.Get().Results.last();
        QVERIFY(account.AddsUp());
        QCOMPARE(account.inserted, 2);
        QCOMPARE(account.skipped, 3);
        QCOMPARE(account.tables.value("CON_TRO").inserted, 2);
        QCOMPARE(account.details.mid(0, 5), Counts);
        QCOMPARE(account.details.last(), "Log della fusione: " + account.logFile);
        QVERIFY(QFile::exists(account.logFile));
        QCOMPARE(Contents(pair.target) == before, dryRun);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM SYS_FUS"), QString(dryRun ? "0" : "1"));
    }

    /// Nothing is written when the operator gives up, wherever he does.
    void buttonGivenUp_data() {
        Columns<std::optional<QString>, bool, QString, QString>("to", "merged", "givenUp", "answeredNo");
        const std::optional<QString> to = "X02";
        Row("at a prompt", std::optional<QString>(), false, QString(), QString());
        Row("at the references", to, false, QString("Aggiornare i Riferimenti alle tabelle esistenti?"), QString());
        Row("at the matches", to, false, QString(), Review);
        Row("at the earlier merge", to, true, QString(), QString("La fusione di X01"));
    }
    void buttonGivenUp() {
        QFETCH(std::optional<QString>, to);
        QFETCH(bool, merged);
        QFETCH(QString, givenUp);
        QFETCH(QString, answeredNo);
        Pair pair;
        FillAll(pair);
        pair.target.Person.GiveUpAt = {givenUp};
        QVERIFY(!merged || pair.Merge(true));
        const QStringList before = Contents(pair.target);
        pair.target.Person.Inputs = {QString("X01"), to};
        pair.target.Person.Answers = {true, true, false};
        pair.target.Person.Messages.clear();
        QCOMPARE(pair.Press(), FlowOutcome::Cancelled);
        QVERIFY(pair.target.Person.Messages.isEmpty());
        QCOMPARE(Contents(pair.target), before);
        if (!answeredNo.isEmpty()) {
            const ScriptedOperator::Asked& asked = pair.target.Person.Questions.last();
            QVERIFY2(asked.question.startsWith(answeredNo), qPrintable(asked.question));
            QCOMPARE(asked.style, Question::ExclamationNo);
        }
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
        Pair pair;
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

    void cancelStopsBetweenTwoCounterparties() {
        Pair pair;
        FillAll(pair);
        QStringList whole;
        {
            Pair other;
            FillAll(other);
            QVERIFY(other.Merge(true));
            whole = Contents(other.target);
        }
        MergeResult result;
        QVERIFY(!pair.MergeUntilTheFirstCopy(&result));
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(result.merged, 4);
        QVERIFY(pair.target.Log("fusione.log").contains("Fusione interrotta: 4 controparti fuse su 5"));
        QCOMPARE(pair.target.Value("SELECT DTCON FROM X01_DOC_VEN WHERE DTNUM = 1"), QString("XXXX1X"));
        QVERIFY(pair.target.Person.Messages.isEmpty());
        QVERIFY(pair.target.Person.Progresses.back().closed);
        QVERIFY(pair.Merge(true));
        QCOMPARE(Contents(pair.target), whole);
    }

    /// Wherever a statement fails, the next run ends where an undisturbed one does.
    void secondRunCompletesWhatFailedAtAnyStatement() {
        Pair pair;
        FillAll(pair);
        TestTarget& target = pair.target;
        // Fewer references, or there would be hundreds of runs.
        target.Execute(
            "DELETE FROM SYS_SYS WHERE TABNM NOT IN ('CON_TRO', 'CON_RIF', 'NUM_TEL', 'DOC_VEN', 'FLD_VAL')");
        const QString file = target.Db().DatabaseName;
        target.Db().CloseConnection();
        QVERIFY(QFile::copy(file, file + ".start"));
        const auto startAgain = [&] {
            target.Db().CloseConnection();
            return QFile::remove(file) && QFile::copy(file + ".start", file);
        };

        target.Db().OpenConnection();
        int statements = 0;
        target.Db().Trace = [&statements](const QString&) { ++statements; };
        QVERIFY(pair.Merge(true));
        target.Db().Trace = nullptr;
        const QStringList whole = Contents(target);

        int marksLeft = 0;
        for (int failing = 1; failing <= statements; ++failing) {
            QVERIFY(startAgain());
            target.Db().OpenConnection();
            int count = 0;
            target.Db().Trace = [&](const QString& statement) {
                if (++count == failing) {
                    throw SqlError(statement, "fault");
                }
            };
            QVERIFY2(!pair.Merge(true), qPrintable(QString::number(failing)));
            target.Db().Trace = nullptr;
            marksLeft += target.Value("SELECT COUNT(*) FROM X01_DOC_VEN WHERE DTCON LIKE '%X%'").toInt() > 0 ? 1 : 0;
            QVERIFY(pair.Merge(true));
            QVERIFY2(Contents(target) == whole, qPrintable(QString::number(failing)));
        }
        QVERIFY(marksLeft > 0);
    }
};

QUADRIX_TEST(TestMerge)
#include "test_merge.moc"
