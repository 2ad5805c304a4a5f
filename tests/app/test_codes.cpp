#include "adapters/registry.h"
#include "app/codes/codeFile.h"
#include "app/codes/preview.h"
#include "core/modImport.h"
#include "examples/examples.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using codes::Code;
using codes::Worklist;

Q_DECLARE_METATYPE(codes::Change)

namespace {

/// A company with payment terms, VAT codes and units, and codes of Arca 2000 that wait.
class Coded : public TestTarget {
public:
    Coded() {
        Execute("INSERT INTO TAB_MOP (CDMOP, MPDES, MPEXT) VALUES ('RD', 'Rimessa diretta', ''), "
                "('R36', 'Ricevuta bancaria 30/60 gg', ''), ('B9', 'Bonifico 90 gg d.f.', 'X7'), "
                "('012', 'Contrassegno', '')");
        Execute("INSERT INTO TAB_MPR (CDMOP, NRRAT, MPGGF) VALUES ('R36', 1, 30), ('R36', 2, 60)");
        Wait("anagrafe", "pag", "ZZ99");
    }
    void Wait(const QString& table, const QString& field, const QString& oldCode, const QString& newCode = "") {
        Execute(QString("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('%1', '%2', '%3', '%4')")
                    .arg(table, field, QString(oldCode).replace('\'', "''"), newCode));
    }
    QStringList Translations() { return Rows("SELECT TBOLD, TBNEW FROM SYS_IMP ORDER BY RECORD_ID"); }
};

codes::Change Pag(const QString& oldCode, const QString& newCode) {
    return {.table = "anagrafe", .field = "pag", .oldCode = oldCode, .newCode = newCode};
}

/// Imports an example, by its buttons that ask nothing.
void Import(TestTarget& test, const examples::Example& example) {
    for (const char* key : {"Databasename", "DSN"}) {
        test.Get().Config.SetAppConfig("IMPORT", key, test.Folder.filePath("source/") + example.source);
    }
    test.Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2000");
    test.Person.Otherwise = false;
    for (const QString& import : example.imports) {
        if (const auto button = contract::ButtonFromName(import)) {
            ImportRequest request;
            request.choice = {"Prova Uno S.r.l.", {}, registry::Find(example.origin), ErrorAction::Ignore};
            request.button = *button;
            request.confirmed = true;
            request.reset = false;
            [&] { QCOMPARE(RunImport(test.Get(), request), FlowOutcome::Done); }();
        }
    }
}

/// Makes an example in the folder of a company, with its translations.
const examples::Example& MakeExample(TestTarget& test, const QString& name) {
    examples::Options options;
    options.rows = 40;
    options.folder = test.Folder.filePath("source");
    options.company = "X01";
    examples::Make(name, options);
    test.Db().ExecuteScript(QString::fromUtf8(ReadFile(options.folder + "/quadrix.sql")));
    const auto& all = examples::Examples();
    return *std::find_if(all.begin(), all.end(), [&name](const auto& example) { return example.name == name; });
}

/// Imports it without the translations of a list, which are given afterwards: codes with what they become.
QStringList ImportBeforeCodes(TestTarget& test, const examples::Example& example, const QString& list,
                              const QString& field) {
    const QString ofList = " FROM SYS_IMP WHERE TBNAM = '" + list + "' AND TBFLD = '" + field + "'";
    const QStringList given = test.Rows("SELECT TBOLD, TBNEW" + ofList);
    test.Execute("DELETE" + ofList);
    Import(test, example);
    for (const QString& each : given) {
        test.Execute("UPDATE SYS_IMP SET TBNEW = '" + each.section('|', 1) + "' WHERE TBNAM = '" + list +
                     "' AND TBFLD = '" + field + "' AND TBOLD = '" + each.section('|', 0, 0) + "'");
    }
    return given;
}

template<class Work>
QString Refusal(const Work& work) {
    try {
        work();
    } catch (const Error& error) {
        return error.Message();
    }
    return {};
}

} // namespace

/// The worklist of codes: what a code goes to, what is proposed for it, what is saved and what is refused.
class TestCodes : public QObject {
    Q_OBJECT

private slots:
    void lists_data() {
        Columns<QString, QString, QString, QString>("table", "field", "feeds", "kind");
        Row("a payment term", "anagrafe", "pag", "CON_TRO.COMOP, CON_TRO.COMOA", "codice di TAB_MOP");
        Row("in any case", "ANAGRAFE", "Pag", "CON_TRO.COMOP, CON_TRO.COMOA", "codice di TAB_MOP");
        Row("inside of other rules", "ARCLFR", "ESECLFOR", "CON_TRO.COESE", "codice di TAB_IVA");
        Row("a category", "anagrafe", "classe", "CON_TRO.COCCC", "testo libero, al massimo 10 caratteri");
        Row("the codes of what is imported", "ARTICOLI", "CDARTICO", "", "testo libero, al massimo 50 caratteri");
        Row("by the name of a base table", "TAB_NAZ", "CDNAZ", "non si sa dove va", "codice di TAB_NAZ");
        Row("of nobody", "qualcosa", "altro", "non si sa dove va", "testo libero, al massimo 100 caratteri");
    }
    void lists() {
        QFETCH(QString, table);
        QFETCH(QString, field);
        QFETCH(QString, feeds);
        codes::CodeLists lists;
        const codes::CodeList& list = lists.Of(table, field);
        QTEST(codes::KindText(list), "kind");
        QVERIFY2(feeds.isEmpty() ? list.feeds.size() > 1 : codes::FeedsText(list).startsWith(feeds),
                 qPrintable(codes::FeedsText(list)));
    }

    void suggestions_data() {
        Columns<QString, QString, QString, QStringList>("field", "oldCode", "description", "expected");
        Row("another list has it", "pagv", "zz01", "", QStringList("RD: già dato a anagrafe.pag"));
        Row("made from it", "pag", "x7", "", QStringList("B9: importato da questo codice"));
        Row("same code first", "pag", "rd", "Contrassegno",
            QStringList{"RD: codice uguale", "012: descrizione uguale"});
        Row("zeros in front", "pag", "12", "", QStringList("012: codice uguale, a parte gli zeri iniziali"));
        Row("same description", "pag", "1", "RIMESSA-DIRETTA", QStringList("RD: descrizione uguale"));
        Row("the code is the description", "pag", "Rimessa diretta", "", QStringList("RD: descrizione uguale"));
        Row("days of the instalments", "pag", "5", "Ri.Ba. 30-60", QStringList("R36: stessi giorni: 30, 60"));
        Row("days of a description", "pag", "6", "BB 90", QStringList("B9: stessi giorni: 90"));
        Row("near description", "pag", "7", "Rimesa diretta", QStringList("RD: descrizione simile"));
        Row("rate", "aliva", "9", "Aliquota agevolata 5%", QStringList("005: stessa aliquota: 5"));
        Row("two numbers are no rate", "aliva", "9", "art. 4 c. 22", QStringList());
        Row("nothing like it", "pag", "Q", "Assegno circolare", QStringList());
    }
    void suggestions() {
        QFETCH(QString, field);
        QFETCH(QString, oldCode);
        QFETCH(QString, description);
        Coded test;
        test.Wait("anagrafe", "pag", "ZZ01", "RD");
        test.Wait("anagrafe", "classe", "ZZ01", "ALTRO"); // of another table
        Worklist worklist(test.Get(), nullptr);
        const Code code{.table = field == "pagv" ? "ARCLFR" : "anagrafe",
                        .field = field == "pagv" ? "PAGCLFOR" : field,
                        .oldCode = oldCode,
                        .description = description};
        QStringList found;
        for (const codes::Suggestion& each : codes::Suggester(worklist).For(code)) {
            found.append(each.code + ": " + each.reason);
        }
        QTEST(found, "expected");
    }

    void refusals_data() {
        Columns<codes::Change, QString>("change", "told");
        Row("one that Quadrix lacks", Pag("ZZ99", "RDD"), "'RDD' non è in TAB_MOP: forse 'RD' (Rimessa diretta)?");
        codes::Change make = Pag("ZZ99", "NU");
        make.isMade = true;
        Row("made without words", make, "per creare 'NU' in TAB_MOP serve anche la descrizione");
        make.newCode = "UNCODICELUNGO";
        make.description = "Nuovo";
        Row("longer than the column", make, "'UNCODICELUNGO' ha 13 caratteri, CON_TRO.COMOP");
        make = {.table = "ARCLFR",
                .field = "ESECLFOR",
                .oldCode = "8",
                .newCode = "N9",
                .isMade = true,
                .description = "Es."};
        Row("a table of more than words", make, "in TAB_IVA un codice non si crea da qui");
        Row("free, but too long",
            codes::Change{.table = "anagrafe", .field = "classe", .oldCode = "1", .newCode = "12345678901"},
            "CON_TRO.COCCC ne tiene 10");
        Row("no code of the source", Pag("", "RD"), "vuoto");
        Row("a list that nobody asks for",
            codes::Change{.table = "anagrafe", .field = "pga", .oldCode = "1", .newCode = "RD"},
            "nessuna origine chiede i codici di 'anagrafe.pga': forse 'anagrafe.pag'");
        Row("whose a code is, as imports keep it",
            codes::Change{.table = "X01_CON_TRO", .field = "COCGE", .oldCode = "1", .newCode = "000002"},
            "'X01_CON_TRO.COCGE' non è da tradurre: è un elenco");
    }
    void refusals() {
        QFETCH(codes::Change, change);
        QFETCH(QString, told);
        Coded test;
        Worklist worklist(test.Get(), nullptr);
        // The first one would be right, and is not written either.
        const QString refusal = Refusal([&] { codes::Save(worklist, {Pag("ZZ99", "rd"), change}); });
        QVERIFY2(refusal.contains(told), qPrintable(refusal));
        QCOMPARE(test.Translations(), QStringList("ZZ99|"));
        QVERIFY(test.Get().Translations.isEmpty());
        QCOMPARE(test.Value("SELECT COUNT(*) FROM TAB_MOP"), QString("4"));
    }

    void saves() {
        Coded test;
        test.Wait("anagrafe", "pag", "A1", "B9");
        test.Wait("anagrafe", "pag", "A2", "B9");
        Worklist worklist(test.Get(), nullptr);
        codes::Change make = Pag("N1", "nuovo");
        make.isMade = true;
        make.description = "Vista fattura";
        codes::Change same = make;
        same.oldCode = "N2";
        const codes::Saved saved =
            codes::Save(worklist, {Pag("ZZ99", "rd"), Pag("A1", ""), Pag("A2", "B9"), make, same});
        QCOMPARE(saved.Text(), QString("Codici cambiati: 4; rimasti com'erano: 1; creati: TAB_MOP.NUOVO"));
        QCOMPARE(test.Translations(), QStringList({"ZZ99|RD", "A1|", "A2|B9", "N1|NUOVO", "N2|NUOVO"}));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM SYS_IMP WHERE USINS IS NOT NULL"), QString("0")); // somebody's word
        QCOMPARE(test.Rows("SELECT MPDES, MPEXT, USINS FROM TAB_MOP WHERE CDMOP = 'NUOVO'"),
                 QStringList("Vista fattura|N1|SYSTEM_IMPORT"));
        QCOMPARE(modImport::GetNewCode(test.Get(), "anagrafe", "pag", "ZZ99", false), QString("RD"));
        QCOMPARE(worklist.Find("anagrafe", "pag", "N1")->newCode, QString("NUOVO"));

        test.Execute("UPDATE SYS_IMP SET TBNEW = 'R36' WHERE TBOLD = 'A1'"); // somebody else
        const QString refusal = Refusal([&] { codes::Save(worklist, {Pag("ZZ99", "B9"), Pag("A1", "012")}); });
        QVERIFY2(refusal.endsWith(": intanto qualcuno gli ha dato il codice 'R36': rivedere la scelta e ripetere"),
                 qPrintable(refusal));
        QCOMPARE(test.Translations().mid(0, 2), QStringList({"ZZ99|RD", "A1|R36"}));
        QCOMPARE(modImport::GetNewCode(test.Get(), "anagrafe", "pag", "ZZ99", false), QString("RD"));
    }

    void roundTrip_data() {
        Columns<QString>("name");
        Row("workbook", "codici.xlsx");
        Row("texts", "codici.csv");
    }
    void roundTrip() {
        QFETCH(QString, name);
        Coded test;
        const QStringList odd{"007", "1E5", "3-4", "=A1+1", "'=x", "-5", "con blank ", "a;b\"c", "perché €", "à\nb"};
        for (const QString& code : odd) {
            test.Wait("anagrafe", "pag", code, "RD");
        }
        test.AddCompany("X02", "Prova Due");
        test.Wait("X02_CON_TRO", "COCGE", "C1", "000001"); // kept by imports, and nobody's to translate
        test.Wait("X01_ART_ICO", "MODULO", "modImport_Gescom", "modImport_Gescom");
        Worklist worklist(test.Get(), nullptr);
        const QString path = test.Folder.filePath(name);
        codes::WriteFile(worklist, worklist.Codes(), path);
        const codes::FilePlan plan = codes::ReadFile(worklist, path);
        QCOMPARE(plan.mistakes, QStringList());
        QVERIFY(plan.changes.empty());
        QCOMPARE(plan.unchanged, odd.size());
        QCOMPARE(plan.leftOpen, 1);
    }

    /// Columns in another order, one that is not known, and every mistake with its row and column.
    void namesEveryMistake() {
        Coded test;
        test.Wait("anagrafe", "pag", "A1");
        test.Wait("anagrafe", "pag", "A2");
        Worklist worklist(test.Get(), nullptr);
        const QString path = test.Folder.filePath("codici.csv");
        WriteFile(path, "Nuovo codice;Codice origine;Campo;Tabella;Nota;Crea (S);Descrizione\r\n"
                        "rd;ZZ99;pag;anagrafe;va bene;;\r\n"
                        "RDD;A1;pag;anagrafe;;;\r\n"
                        "RD;ZZ99;pag;anagrafe;;;\r\n"
                        "RD;A9;pag;anagrafe;;;\r\n"
                        ";A2;pag;anagrafe;;forse;\r\n"
                        "\r\n"
                        "NU;A2;pag;anagrafe;;s;\r\n");
        const codes::FilePlan plan = codes::ReadFile(worklist, path);
        QCOMPARE(plan.mistakes,
                 QStringList({"Riga 3, colonna 'Nuovo codice': 'RDD' non è in TAB_MOP: forse 'RD' (Rimessa diretta)?",
                              "Riga 4, colonna 'Codice origine': 'ZZ99' sta già alla riga 2",
                              "Riga 5, colonna 'Codice origine': 'A9' non è tra i codici di anagrafe.pag",
                              "Riga 6, colonna 'Crea (S)': 'forse' non è S né N",
                              "Riga 8, colonna 'Codice origine': 'A2' sta già alla riga 6"}));
        QCOMPARE(plan.changes.size(), size_t(1));

        WriteFile(path, "Tabella;Campo;Codice origine\r\nanagrafe;pag;ZZ99\r\n");
        const QString refusal = Refusal([&] { codes::ReadFile(worklist, path); });
        QVERIFY2(refusal.endsWith("manca la colonna 'Nuovo codice'"), qPrintable(refusal));
    }

    /// A counterparty that was imported without its payment term gets it; one that has been given one since keeps that.
    void appliesToRowsThatAreThere() {
        TestTarget test;
        examples::Options options;
        options.rows = 40;
        options.folder = test.Folder.filePath("arca");
        options.company = "X01";
        examples::Make("arca2000", options);
        test.Db().ExecuteScript(QString::fromUtf8(ReadFile(options.folder + "/quadrix.sql")));
        test.Get().Config.SetAppConfig("IMPORT", "Databasename", options.folder);
        const QString term = "TBNAM = 'anagrafe' AND TBFLD = 'pag'";
        const QStringList given = test.Rows("SELECT TBOLD, TBNEW FROM SYS_IMP WHERE " + term);
        test.Execute("INSERT INTO TAB_MOP (CDMOP, MPDES) SELECT DISTINCT TBNEW, TBNEW FROM SYS_IMP WHERE " + term +
                     " AND NOT EXISTS (SELECT 1 FROM TAB_MOP WHERE CDMOP = TBNEW)");
        test.Execute("UPDATE SYS_IMP SET TBNEW = '' WHERE " + term);
        test.Person.Otherwise = false;
        ImportRequest request;
        request.choice = {"Prova Uno S.r.l.", {}, registry::Find("Arca 2000"), ErrorAction::Ignore};
        request.confirmed = true;
        request.reset = false;
        QCOMPARE(RunImport(test.Get(), request), FlowOutcome::Done);
        const auto without = [&test] {
            return test.Db().ExecuteCommand("SELECT COUNT(*) FROM X01_CON_TRO WHERE COALESCE(COMOP, '') = '' AND "
                                            "COALESCE(COMOA, '') = ''");
        };
        const qint64 before = without();

        Worklist worklist(test.Get(), request.choice.origin);
        QVERIFY(codes::FindRowsToRepeat(worklist).empty()); // none has been translated yet
        std::vector<codes::Change> changes;
        for (const QString& each : given) {
            changes.push_back(Pag(each.section('|', 0, 0), each.section('|', 1)));
        }
        const codes::Change late = changes.back(); // of all but one at first
        changes.pop_back();
        const auto waitingForLate = [&] { return worklist.Find("anagrafe", "pag", late.oldCode)->waiting->rows; };
        const qint64 waiting = waitingForLate();
        codes::Save(worklist, changes);
        const std::vector<codes::RowsToRepeat> rows = codes::FindRowsToRepeat(worklist);
        QCOMPARE(rows.size(), size_t(1));
        QVERIFY(rows.front().Count() > 10);
        const QString party = test.Value("SELECT MIN(CDCON) FROM X01_CON_TRO WHERE COCLI = 1");
        test.Execute("UPDATE X01_CON_TRO SET COMOP = 'MANO' WHERE CDCON = '" + party + "'");

        const codes::Preview preview = codes::PreviewOf(test.Get(), rows);
        QVERIFY(preview.IsWhole());
        QCOMPARE(without(), before - 1); // a trial
        const QString cell =
            test.Value("SELECT MIN(CDCON) FROM X01_CON_TRO WHERE COALESCE(COMOP, '') = '' AND COCLI = 1");
        test.Get().Results.clear();
        QCOMPARE(codes::Repeat(test.Get(), rows.front()), FlowOutcome::Done);
        QCOMPARE(qint64(preview.cells.size()),
                 before - 1 - without()); // each has a term either as customer or supplier
        QVERIFY(std::all_of(preview.cells.begin(), preview.cells.end(), [](const codes::CellChange& each) {
            return each.table == "CON_TRO" && (each.column == "COMOP" || each.column == "COMOA") &&
                   each.before.isEmpty() && !each.after.isEmpty();
        }));
        QVERIFY(std::any_of(preview.cells.begin(), preview.cells.end(),
                            [&cell](const codes::CellChange& each) { return each.row.startsWith(cell); }));
        const RunResult& result = test.Get().Results.last();
        QCOMPARE(result.inserted, 0);
        QVERIFY2(without() < before / 2, qPrintable(QString::number(without())));
        QCOMPARE(test.Value("SELECT COMOP FROM X01_CON_TRO WHERE CDCON = '" + party + "'"), QString("MANO"));
        QVERIFY(codes::FindRowsToRepeat(worklist).empty());
        worklist.Refresh();
        QCOMPARE(waitingForLate(), waiting);
    }

    void appliedLateIsAsAppliedEarly_data() {
        Columns<QString, QString, QString, QString>("example", "list", "field", "rows");
        Row("of heads, with linked rows", "metodo", "ANAGRAFICACF", "PORTO",
            "SELECT H.DTNUM, H.DTPOR, R.DRNUM, R.DRORI FROM X01_DOC_VEN H JOIN X01_DOC_VER R ON R.IDTES = H.RECORD_ID "
            "ORDER BY R.RECORD_ID");
        Row("of rows behind their head", "metodo", "RIGHEDOCUMENTI", "CODDEPOSITO",
            "SELECT IDTES, DRNUM, DRMAG, DRORI FROM X01_DOC_VER ORDER BY RECORD_ID");
        Row("warehouse of balances", "adhoc", "SALDIART", "SLCODMAG",
            "SELECT M.MMMAG, R.MRMAG, R.MRART, R.MRQTA FROM X01_MOV_MAR R JOIN X01_MOV_MAG M ON M.RECORD_ID = R.MRTES "
            "WHERE M.MMINV = 1 ORDER BY R.MRMAG, R.MRART, R.MRQTA");
    }
    /// Rows that waited for a code are in the end what they were at once with it, and each is found again.
    void appliedLateIsAsAppliedEarly() {
        QFETCH(QString, example);
        QFETCH(QString, list);
        QFETCH(QString, field);
        QFETCH(QString, rows);
        const QString deposit = "UPDATE SYS_IMP SET TBNEW = '002' WHERE TBFLD = 'CODDEPOSITO'"; // not the usual one
        TestTarget early;
        const examples::Example& source = MakeExample(early, example);
        early.Execute(deposit);
        Import(early, source);
        TestTarget late;
        MakeExample(late, example);
        late.Execute(deposit);
        const QStringList given = ImportBeforeCodes(late, source, list, field);
        QVERIFY(!given.isEmpty() && late.Rows(rows) != early.Rows(rows));
        Worklist worklist(late.Get(), registry::Find(source.origin));
        late.Get().Results.clear();
        for (const codes::RowsToRepeat& each : codes::FindRowsToRepeat(worklist)) {
            QCOMPARE(codes::Repeat(late.Get(), each), FlowOutcome::Done);
        }
        QCOMPARE(late.Rows(rows), early.Rows(rows));
        for (const RunResult& result : late.Get().Results) {
            QVERIFY(std::none_of(result.notes.kinds.begin(), result.notes.kinds.end(),
                                 [](const auto& kind) { return kind.name.startsWith("RIGA CHE"); }));
        }
    }

    void whatIsGoneStaysGone_data() {
        Columns<QString, QString, QString, QString>("example", "list", "field", "tables");
        Row("counterparties", "arcaevolution", "CF", "Cd_PG", "CON_TRO,CON_SED,CON_RIF");
        Row("articles", "metodo", "ANAGRAFICAARTICOLI", "GRUPPO", "ART_ICO");
        Row("documents", "metodo", "ANAGRAFICACF", "PORTO", "DOC_VEN,DOC_VER,DOC_VED,DOC_ACQ,DOC_ACR,DOC_ACD");
        Row("balances", "adhoc", "SALDIART", "SLCODMAG", "MOV_MAG,MOV_MAR");
        Row("orders with bills", "lantek24", "MMNN_PPOO", "OprRef", "ORD_PRO,ORD_COM,ORD_FAS,DIS_BAS,DIS_COM,DIS_FAS");
    }
    /// Giving codes to rows that somebody has deleted since does not import them.
    void whatIsGoneStaysGone() {
        QFETCH(QString, tables);
        QFETCH(QString, list);
        QFETCH(QString, field);
        QFETCH(QString, example);
        TestTarget test;
        const examples::Example& source = MakeExample(test, example);
        QVERIFY(!ImportBeforeCodes(test, source, list, field).isEmpty());
        for (const QString& table : tables.split(',')) {
            test.Execute("DELETE FROM X01_" + table);
        }
        Worklist worklist(test.Get(), nullptr);
        test.Get().Results.clear();
        const auto waiting = codes::FindRowsToRepeat(worklist);
        QVERIFY(!waiting.empty());
        for (const codes::RowsToRepeat& each : waiting) {
            QCOMPARE(codes::Repeat(test.Get(), each), FlowOutcome::Done);
        }
        qint64 gone = 0;
        for (const RunResult& result : test.Get().Results) {
            QCOMPARE(result.inserted + result.givenUpCount, 0);
            gone += result.skippedBy.value("in Quadrix non c'è più");
        }
        QVERIFY(gone > 0);
        for (const QString& table : tables.split(',')) {
            QCOMPARE(test.Value("SELECT COUNT(*) FROM X01_" + table), QString("0"));
        }
    }

    /// Of a press with two procedures: a carrier gets its code by its own, and no row of that one waits.
    void rowsAreOfTheirProcedure() {
        TestTarget test;
        const examples::Example& example = MakeExample(test, "arcaevolution");
        Import(test, example);
        test.Execute("UPDATE SYS_IMP SET TBNEW = '000001' WHERE TBNAM = 'CF' AND TBFLD = 'Cd_DOVettore'");
        Worklist worklist(test.Get(), registry::Find(example.origin));
        const std::vector<codes::RowsToRepeat> all = codes::FindRowsToRepeat(worklist);
        QCOMPARE(all.size(), size_t(1));
        QCOMPARE(all.front().rows.keys(), QStringList{"ImportContropartiArcaEvolution"});
        const QStringList names = all.front().rows.first();
        QCOMPARE(names.filter("tabella 'CF'"), names);
    }
};

QUADRIX_TEST(TestCodes)
#include "test_codes.moc"
