#include "adapters/contract/run/Account.h"
#include "adapters/registry.h"
#include "app/check.h"
#include "app/importFlow.h"
#include "app/report/html.h"
#include "app/report/json.h"
#include "app/report/makeProof.h"
#include "app/report/verdict.h"
#include "app/sequence.h"
#include "examples/examples.h"
#include "tests/app/gescom.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QDir>
#include <QJsonDocument>
#include <QTest>

using namespace proof;

namespace {

/// A company into which the counterparties, articles and documents of an example have been imported.
class Migrated : public TestTarget {
public:
    /// @param change statement on the source, before the imports; may be empty
    explicit Migrated(const QString& change = {}, On engine = On::Embedded)
        : TestTarget(engine) {
        examples::Options options;
        options.rows = 12;
        options.folder = Folder.filePath("gescom");
        options.company = "X01";
        examples::Make("gescom", options);
        Db().ExecuteScript(QString::fromUtf8(ReadFile(Folder.filePath("gescom/quadrix.sql"))));
        Get().Config.SetAppConfig("IMPORT", "Databasename", "gescom/gescom.db");
        Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2000");
        if (!change.isEmpty()) {
            ovConnection source;
            OpenEmbedded(source, Folder.filePath("gescom/gescom.db")).Execute(change);
        }
        Person.Otherwise = true;
        for (const Wanted& each : AllOf(Gescom())) {
            Import(each.button);
        }
    }

    void Import(contract::Button button) {
        ImportRequest request;
        request.choice = Chosen();
        request.button = button;
        request.reset = false;
        RunImport(Get(), request);
    }

    static Choice Chosen() { return {"Prova Uno S.r.l.", {}, &Gescom(), ErrorAction::Ignore}; }
    Proof Compared(const std::vector<Wanted>& wanted = AllOf(Gescom())) { return *Make(Get(), Chosen(), wanted); }
};

/// "value DOC_VEN DDT 1 2024 DTTOT 10 20", one for each difference.
QStringList Differences(const Proof& proof) {
    QStringList texts;
    for (const Kind& kind : proof.kinds) {
        for (const TableFigures& table : kind.tables) {
            for (const Difference& each : table.differences) {
                static const QStringList kinds{"value", "missing", "surplus"};
                QStringList parts{
                    kinds.at(static_cast<int>(each.kind)), each.table, each.row, each.column, each.source, each.target};
                parts.removeAll(QString());
                texts.append(parts.join(' '));
            }
        }
    }
    return texts;
}

const TableFigures& Figures(const Proof& proof, const QString& table) {
    for (const Kind& kind : proof.kinds) {
        for (const TableFigures& figures : kind.tables) {
            if (figures.table == table) {
                return figures;
            }
        }
    }
    throw ImportError(table);
}

} // namespace

/// What source and Quadrix have in common, and what they have not.
class TestReport : public QObject {
    Q_OBJECT

private slots:
    /// Everything is found again, by both sides' own figures; nothing is written, not even into the log.
    void AgreesAfterAnImport_data() {
        Columns<TestTarget::On>("engine");
        Row("embedded", TestTarget::On::Embedded);
        if (TestTarget::HasMariaDb()) {
            Row("MariaDB", TestTarget::On::MariaDb);
        }
    }
    void AgreesAfterAnImport() {
        QFETCH(const TestTarget::On, engine);
        Migrated target({}, engine);
        const QByteArray log = target.Log();
        const QStringList before = target.Rows("SELECT * FROM X01_DOC_VEN ORDER BY RECORD_ID");
        const qsizetype results = target.Get().Results.size();
        target.Person.Events.clear();
        target.Get().Now = [] { return QDateTime(QDate(2024, 11, 30), QTime(8, 0)); }; // some columns tell the day
        const Proof proof = target.Compared();
        QCOMPARE(Differences(proof), QStringList());
        QVERIFY(VerdictOf(FindingsOf(proof)).light != Light::Red);
        for (const char* table : {"CON_TRO", "ART_ICO", "DOC_VEN", "DOC_VER"}) {
            const TableFigures& figures = Figures(proof, table);
            QCOMPARE(QString::number(figures.equal), target.Value(QString("SELECT COUNT(*) FROM X01_") + table));
            QVERIFY(figures.equal > 0);
            QCOMPARE(figures.OfSource(), figures.equal);
        }
        double total = 0;
        for (const Total& each : Figures(proof, "DOC_VEN").totals) {
            QVERIFY(each.Agrees());
            total += each.amounts.back().target.Value();
        }
        QCOMPARE(total, target.Value("SELECT SUM(DTTOT) FROM X01_DOC_VEN").toDouble());
        QCOMPARE(target.Rows("SELECT * FROM X01_DOC_VEN ORDER BY RECORD_ID"), before);
        QCOMPARE(target.Log(), log);
        QCOMPARE(target.Get().Results.size(), results);
        QVERIFY2(target.Person.Events.filter("[").isEmpty(), qPrintable(target.Person.Events.join('\n')));
        QCOMPARE(Digest(target.Compared()), Digest(proof));
    }

    /// A row that an import writes as it stands there is compared, also where nothing tells that from a row left alone:
    /// articles know the day on which they were changed, and not the time.
    void ComparesWhatStaysAsItIs() {
        Migrated target;
        target.Import(contract::Button::Art);
        const Proof proof = target.Compared({{contract::Button::Art}});
        QCOMPARE(Differences(proof), QStringList());
        const TableFigures& figures = Figures(proof, "ART_ICO");
        QCOMPARE(QString::number(figures.equal), target.Value("SELECT COUNT(*) FROM X01_ART_ICO"));
        QCOMPARE(figures.kept, 0);
        QCOMPARE(figures.totals.at(0).amounts.at(0).target.Value(),
                 target.Value("SELECT SUM(ARCOS) FROM X01_ART_ICO").toDouble());
        QVERIFY2(VerdictOf(FindingsOf(proof)).reason.contains("concord"), "no row was compared");
    }

    /// Where columns take less than they should, the trial of the proof reads back what they have kept.
    void TellsColumnsThatTakeLess() {
        SKIP_WITHOUT(MariaDbServer())
        Migrated target({}, TestTarget::On::MariaDb);
        const auto checked = [&] {
            const auto procedures = ::ProceduresOf(Gescom(), contract::Button::Art);
            return check::Lines(check::Run(target.Get(), Migrated::Chosen(), procedures)->front(), "art").join(' ');
        };
        QCOMPARE(checked(), QString("art: c'è tutto"));
        target.Execute("DELETE X01_ART_ICO");
        target.Execute("ALTER TABLE X01_ART_ICO MODIFY ARPRZ DECIMAL(12,2), MODIFY ARDES VARCHAR(4)");
        QVERIFY2(checked().contains("X01_ART_ICO.ARPRZ decimal(12,2)"), qPrintable(checked()));
        target.Import(contract::Button::Art);
        QVERIFY(
            QString::fromLatin1(target.Log()).contains("COLONNE DI QUADRIX CON MENO CIFRE: X01_ART_ICO.ARPRZ decimal"));
        QVERIFY(target.Get().Results.last().givenUp.value(0).reason.contains(" caratteri, ART_ICO.ARDES ne tiene 4"));
        const Proof proof = target.Compared({{contract::Button::Art}});
        QVERIFY(VerdictOf(FindingsOf(proof)).reason.contains("tengono meno cifre"));
        target.Execute("ALTER TABLE X01_ART_ICO ADD EXTRA INT NOT NULL");
        QVERIFY(checked().startsWith("art: si può importare") && checked().contains("X01_ART_ICO.EXTRA int"));
    }

    /// What is never read of the source, by the day of the settings or a condition of the layout, is told wherever
    /// somebody looks whether all has arrived.
    void TellsWhatIsNotRead() {
        Migrated target;
        ovConnection source;
        const qint64 rows = OpenEmbedded(source, target.Folder.filePath("gescom/gescom.db"))
                                .ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM RIEMOV WHERE RGRIEMOV > 1"));
        QVERIFY(rows > 0);
        target.Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/03/2100");
        QDir(target.Folder.path()).mkpath("Tracciati");
        WriteFile(target.Folder.filePath("Tracciati/Gescom.ini"), "[FILTRI]\nRIEMOV=RGRIEMOV > 1\n");
        target.Import(contract::Button::Doc);
        const QStringList told{
            "Filtro del tracciato: della tabella 'RIEMOV' si leggono le righe con RGRIEMOV > 1",
            QString("Documenti dal 01/01/2100 (anno di DOC_DateStart), righe più vecchie non lette: %1").arg(rows)};
        QCOMPARE(target.Get().Results.last().details, told);
        const Proof proof = target.Compared({{contract::Button::Doc}});
        const QString firstPage = Html(proof).section("class=\"kind", 0, 0);
        const QByteArray json = QJsonDocument(Json(proof)).toJson();
        for (const QString& line : told) {
            QVERIFY2(QString::fromLatin1(target.Log()).contains(line), target.Log().constData());
            QVERIFY2(firstPage.contains(line.toHtmlEscaped()), qPrintable(firstPage));
            QVERIFY(QString::fromUtf8(json).contains(line));
        }
    }

    /// Rows that a sequence has left out by its own first day are not missing, whatever the setting says.
    void TakesTheDayOfTheSequence() {
        Migrated target;
        Session& session = target.Get();
        target.Import(contract::Button::Doc);
        const QString last = target.Value("SELECT MAX(DTDAT) FROM X01_DOC_VEN").left(8);
        const QDate day = QDate::fromString(last, "yyyyMMdd");
        QVERIFY2(day.isValid(), qPrintable(last));
        for (const char* table : {"DOC_VER", "DOC_VEN"}) {
            target.Execute(QString("DELETE FROM X01_") + table);
        }
        QVERIFY(VerdictOf(FindingsOf(target.Compared({{contract::Button::Doc}}))).light == Light::Red);
        const auto setDay = [&](const QString& of) {
            ovConnection kept;
            OpenEmbedded(kept, target.Folder.filePath("Cronologia.sqlite"))
                .Execute("UPDATE runs SET options = '" + FirstDayOptions(day.addYears(1)).join(QString()) + "'" + of);
        };
        setDay(" WHERE id = (SELECT MAX(id) FROM runs WHERE trial = 0)"); // one before it has imported them
        QVERIFY(VerdictOf(FindingsOf(target.Compared({{contract::Button::Doc}}))).light == Light::Red);
        setDay({});
        const Proof proof = target.Compared({{contract::Button::Doc}});
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QVERIFY2(verdict.light != Light::Red, qPrintable(verdict.reason));
        QVERIFY(Html(proof).contains("anno di DateStart di Sequence.ini, esecuzione "));
        QVERIFY(!session.DocumentsFrom.isValid());
    }

    /// Whatever is done to Quadrix by hand is found and named, with both values.
    void NamesWhatDiffers_data() {
        Columns<QString, QString, QString>("change", "row", "told");
        Row("an amount", "UPDATE X01_DOC_VER SET DRPRZ = 1234.5 WHERE RECORD_ID = 1",
            "SELECT T.DTCAU, T.DTNUM, T.DTANN, '-', R.DRNUM, R.DRART FROM X01_DOC_VEN "
            "T "
            "JOIN X01_DOC_VER R ON R.IDTES = T.RECORD_ID WHERE R.RECORD_ID = 1",
            "value DOC_VER %1 DRPRZ * 1.234,5");
        Row("a total, which no column of the source gives", "UPDATE X01_DOC_VEN SET DTTOT = 99.99 WHERE RECORD_ID = 2",
            "SELECT DTCAU, DTNUM, DTANN FROM X01_DOC_VEN WHERE RECORD_ID = 2", "value DOC_VEN %1 DTTOT * 99,99");
        Row("a description", "UPDATE X01_ART_ICO SET ARDES = 'Altro' WHERE RECORD_ID = 3",
            "SELECT CDART, 'Altro' FROM X01_ART_ICO WHERE RECORD_ID = 3", "value ART_ICO %1 ARDES * Altro");
        Row("a name, which a second import leaves", "UPDATE X01_CON_TRO SET CORAS = 'Altro' WHERE RECORD_ID = 3",
            "SELECT CDCON, 'Altro' FROM X01_CON_TRO WHERE RECORD_ID = 3", "value CON_TRO %1 CORAS * Altro");
        Row("a carrier, whom SYS_IMP alone tells",
            "UPDATE X01_CON_TRO SET COCIT = 'Altro' WHERE RECORD_ID = (SELECT MAX(RECORD_ID) FROM X01_CON_TRO WHERE "
            "COVET = 1 AND COALESCE(COCGE, COFGE, '') = '')",
            "SELECT CDCON, CORAS FROM X01_CON_TRO WHERE COCIT = 'Altro'", "value CON_TRO %1 COCIT * Altro");
        Row("a row of a document", "DELETE FROM X01_DOC_VER WHERE RECORD_ID = 1",
            "SELECT T.DTCAU, T.DTNUM, T.DTANN, '-', R.DRNUM, R.DRART FROM X01_DOC_VEN "
            "T "
            "JOIN X01_DOC_VER R ON R.IDTES = T.RECORD_ID WHERE R.RECORD_ID = 1",
            "missing DOC_VER %1");
    }
    void NamesWhatDiffers() {
        QFETCH(const QString, change);
        QFETCH(const QString, row);
        QFETCH(const QString, told);
        Migrated target;
        const QString named = target.Rows(row).value(0).replace('|', ' ');
        QCOMPARE(target.Execute(change), 1);
        const Proof proof = target.Compared();
        const QStringList found = Differences(proof);
        const QString expected =
            QRegularExpression::escape(
                told.arg(change.contains("Altro") ? target.Rows(row).value(0).replace('|', ' ') : named))
                .replace("\\*", ".+");
        QVERIFY2(!found.filter(QRegularExpression('^' + expected + '$')).isEmpty(),
                 qPrintable(expected + "\n" + found.join('\n')));
        QCOMPARE(VerdictOf(FindingsOf(proof)).light, Light::Red);
        const QString page = Html(proof);
        QVERIFY(page.contains(named.toHtmlEscaped()) || page.contains("Altro"));
    }

    /// Of a counterparty that the source does not give as it stands there, what an import rewrites is compared alone,
    /// and the page says so.
    void TellsPartiesThatAreNotWrittenAnew_data() {
        Columns<QString, QString, Light>("change", "told", "light");
        Row("of somebody else", "UPDATE X01_CON_TRO SET USINS = 'ROSSI' WHERE RECORD_ID = 3",
            "1 controparte non si è confrontata in tutte le colonne", Light::Yellow);
        Row("of two that were merged",
            "UPDATE X01_CON_TRO SET COFGE = 'ZZ' WHERE RECORD_ID = (SELECT MIN(RECORD_ID) FROM X01_CON_TRO WHERE COCLI "
            "= "
            "1)",
            "1 controparte non si è confrontata in tutte le colonne", Light::Yellow);
        Row("the same with another discount",
            "UPDATE X01_CON_TRO SET COFGE = 'ZZ', COSC1 = 77 WHERE RECORD_ID = (SELECT MIN(RECORD_ID) FROM X01_CON_TRO "
            "WHERE COCLI = 1)",
            "1 riga di Quadrix ha valori diversi", Light::Red);
    }
    void TellsPartiesThatAreNotWrittenAnew() {
        QFETCH(const QString, change);
        QFETCH(const QString, told);
        QFETCH(const Light, light);
        Migrated target;
        QCOMPARE(target.Execute(change), 1);
        const Proof proof = target.Compared({{contract::Button::Cli}});
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QCOMPARE(verdict.light, light);
        QVERIFY2(verdict.reason.contains(told), qPrintable(verdict.reason));
        QCOMPARE(QString::number(Figures(proof, "CON_TRO").equal + 1),
                 target.Value("SELECT COUNT(*) FROM X01_CON_TRO"));
        const std::vector<Uncompared>& left = proof.kinds.front().uncompared;
        QVERIFY(std::any_of(left.begin(), left.end(),
                            [](const Uncompared& each) { return each.column == "CON_TRO.CORAS" && each.cells == 1; }));
    }

    /// By a code that two counterparties have in the source it cannot be told which row is whose.
    void TellsTwoOfOneCode() {
        Migrated target("UPDATE ARCLFR SET CODCLFOR = '000005' WHERE CODCLFOR = '000004' AND FLAGCLFR = 'C'");
        const Proof proof = target.Compared({{contract::Button::Cli}});
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QVERIFY2(verdict.reason.contains("2 controparti non si sono confrontate in tutte le colonne"),
                 qPrintable(verdict.reason + Differences(proof).join('\n')));
        QCOMPARE(verdict.light, Light::Yellow);
    }

    /// Telephones are not compared one by one: what a second import would tell of them is a reserve.
    void TellsTelephonesThatAreGone() {
        Migrated target;
        const auto judge = [&target] { return VerdictOf(FindingsOf(target.Compared({{contract::Button::Cli}}))); };
        const Verdict whole = judge();
        QVERIFY2(!whole.reason.contains("recapito"), qPrintable(whole.reason));
        QVERIFY(target.Execute("DELETE FROM X01_NUM_TEL WHERE RECORD_ID = (SELECT MIN(RECORD_ID) FROM X01_NUM_TEL "
                               "WHERE TBNAM = 'CON_TRO')") == 1);
        const Verdict verdict = judge();
        QVERIFY2(verdict.reason.contains("1 annotazione dice che un recapito"), qPrintable(verdict.reason));
        QCOMPARE(verdict.light, Light::Yellow);
    }

    /// Rows of others are no fault of the migration; what is gone from the source, or does not fit, is told.
    void TellsReserves_data() {
        Columns<QString, QString, QString>("source", "change", "told");
        Row("a row that does not fit", "UPDATE ARTICOLI SET PSARTICO = 'abc' WHERE ROWID = 2", "",
            "1 riga dell'origine non si può importare");
        Row("a row of somebody else", "", "INSERT INTO X01_ART_ICO (CDART, ARDES) VALUES ('A MANO', 'Di altri')", "");
        Row("a code without a translation", "UPDATE ARTICOLI SET IVARTICO = 'Q9' WHERE ROWID = 2", "", "traduzione");
    }
    void TellsReserves() {
        QFETCH(const QString, source);
        QFETCH(const QString, change);
        QFETCH(const QString, told);
        Migrated target(source);
        if (!change.isEmpty()) {
            target.Execute(change);
        }
        const Proof proof = target.Compared({{contract::Button::Art}});
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QVERIFY2(verdict.light != Light::Red, qPrintable(verdict.reason + Differences(proof).join('\n')));
        QVERIFY2(verdict.reason.contains(told), qPrintable(verdict.reason));
        QCOMPARE(Figures(proof, "ART_ICO").others, change.isEmpty() ? 0 : 1);
        if (told.startsWith('1')) {
            QVERIFY(Html(proof).contains("abc"));
        }
    }

    /// What each finding does to the light, alone; the worse one wins.
    void Judges_data() {
        Columns<std::function<void(Kind&)>, Light, QString>("change", "light", "told");
        const auto row = [](const char* name, const std::function<void(Kind&)>& change, Light light, const char* told) {
            Row(name, change, light, QString::fromUtf8(told));
        };
        row(
            "nothing", [](Kind&) {}, Light::Green, "10 righe di Quadrix confrontate");
        row(
            "a row too many", [](Kind& kind) { kind.tables[0].surplus = 1; }, Light::Red,
            "1 riga di Quadrix è di troppo");
        row(
            "interrupted", [](Kind& kind) { kind.steps[0].result.outcome = RunResult::Outcome::Cancelled; }, Light::Red,
            "interrotta dall'operatore");
        row(
            "rows unaccounted for", [](Kind& kind) { ++kind.steps[0].result.sourceRows; }, Light::Red, "non tornano");
        row(
            "a look-up", [](Kind& kind) { kind.steps[0].result.failedLookUps = 2; }, Light::Yellow, "2 ricerche");
        row(
            "documents left as they are",
            [](Kind& kind) {
                kind.steps[0].result.sourceRows += 3;
                kind.steps[0].result.skipped = 3;
                kind.steps[0].result.skippedBy = {{"documento già importato", 3}};
            },
            Light::Yellow, "3 righe già importate non si sono confrontate");
        row(
            "counterparties of which not all was compared", [](Kind& kind) { kind.partly = 2; }, Light::Yellow,
            "2 controparti non si sono confrontate in tutte le colonne");
        row(
            "articles that are wanting",
            [](Kind& kind) {
                RunResult& result = kind.steps[0].result;
                result.sourceRows += 4;
                result.skipped = 4;
                result.skippedBy = {{contract::ArticleMissing, 2}, {contract::PartyMissing, 1}, {"giacenza a zero", 1}};
                for (int note = 0; note < 3; ++note) {
                    result.notes.Add("ARTICOLO NON TROVATO: uno");
                }
            },
            Light::Yellow,
            "3 righe dell'origine sono rimaste fuori perché manca ciò che nominano e 1 annotazione dice che manca");
        row(
            "rows of a sheet that are not read",
            [](Kind& kind) { kind.steps[0].result.notes.Add("RIGHE OLTRE LA FINE: riga 5"); }, Light::Yellow,
            "il foglio ha righe che non si leggono");
        row(
            "no longer in the source",
            [](Kind& kind) { kind.steps[0].result.notes.Add("DOCUMENTI NON PIÙ NELL'ORIGINE: uno"); }, Light::Yellow,
            "l'origine non ha più");
        row(
            "nothing to compare",
            [](Kind& kind) {
                kind = {};
                kind.title = "Articoli";
            },
            Light::Yellow, "per: Articoli");
        row(
            "red before yellow",
            [](Kind& kind) {
                kind.tables[0].missing = 2;
                kind.steps[0].result.failedLookUps = 1;
            },
            Light::Red, "2 righe che l'origine dà mancano");
    }
    void Judges() {
        QFETCH(const std::function<void(Kind&)>, change);
        QFETCH(const Light, light);
        QFETCH(const QString, told);
        RunResult result;
        result.sourceRows = result.updated = 10;
        Kind kind;
        kind.title = "Articoli";
        kind.steps = {{"Articoli da Gescom", result}};
        kind.tables.emplace_back().table = "ART_ICO";
        kind.tables[0].equal = 10;
        change(kind);
        Proof proof;
        proof.kinds = {kind};
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QVERIFY2(verdict.reason.contains(told), qPrintable(verdict.reason));
        QCOMPARE(verdict.light, light);
    }

    /// Whatever texts the data hold, the page is one file that asks nothing of anybody.
    void IsWholeAndHarmless() {
        const QString hostile = "<script src='http://x'>&\"";
        TableFigures table;
        table.table = "ART_ICO";
        table.different = 1;
        table.differences = {{Difference::Kind::Value, "ART_ICO", hostile, hostile, "ARDES", hostile, {}}};
        table.samples = {{hostile, {{"ARDES", hostile, hostile}}}};
        Total& total = table.totals.emplace_back();
        total.group = hostile;
        total.sourceRows = 1;
        total.amounts = {{"ARPRZ", {}, {}}};
        total.amounts[0].source.Add(1234.5);
        RunResult result;
        result.sourceRows = result.givenUpCount = 1;
        result.givenUp = {{hostile, hostile}};
        result.skippedBy = {{hostile, 1}};
        result.notes.Add(hostile + ": " + hostile);
        result.untranslated = {hostile};
        result.untranslatedCount = 1;
        Proof proof;
        proof.companyName = proof.origin = proof.source = hostile;
        Kind& kind = proof.kinds.emplace_back();
        kind.title = hostile;
        kind.steps = {{hostile, result}};
        kind.tables = {table};
        proof.openCodes = {{hostile, hostile, hostile}};
        proof.openCodeCount = 1;
        const QString page = Html(proof).remove("xmlns=\"http://www.w3.org/2000/svg\"");
        QVERIFY(page.startsWith(FirstLine + '\n'));
        QVERIFY(page.count(hostile.toHtmlEscaped()) > 15);
        for (const char* foreign : {"<script", "<link", "<img", "href=", "url("}) {
            QVERIFY2(!QString(page).remove(hostile.toHtmlEscaped()).contains(QLatin1String(foreign)), foreign);
        }
        QVERIFY(page.contains("1.234,50") && page.contains("-1.234,50"));
    }

    /// A source that cannot be read proves nothing.
    void IsRedWithoutASource() {
        Migrated target;
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", "non-c-e/gescom.db");
        const Proof proof = target.Compared({{contract::Button::Art}});
        const Verdict verdict = VerdictOf(FindingsOf(proof));
        QCOMPARE(verdict.light, Light::Red);
        QVERIFY2(verdict.reason.contains("non-c-e"), qPrintable(verdict.reason));
    }

    /// Sums do not depend on the order, and a cent is never lost in a large one.
    void SumsExactly() {
        ExactSum up;
        ExactSum down;
        const QVector<double> amounts{1e12, 0.1, -0.3, 1234567.89, -1e12, 0.000001, 2.675};
        for (qsizetype i = 0; i < amounts.size(); ++i) {
            up.Add(amounts.at(i));
            down.Add(amounts.at(amounts.size() - 1 - i));
        }
        QVERIFY(up == down);
        QCOMPARE(QString::number(up.Value(), 'f', 6), QString("1234570.365001"));
        down.Add(0.01);
        QVERIFY(!(up == down));
    }
};

QUADRIX_TEST(TestReport)
#include "test_report.moc"
