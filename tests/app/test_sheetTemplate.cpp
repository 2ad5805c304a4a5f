#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/inspect.h"
#include "app/template/sheetTemplate.h"
#include "sources/tableFile.h"
#include "sources/workbook/Package.h"
#include "tests/support/errorOf.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using contract::Button;
using sources::TableOfFile;

namespace {

/// A company with an agent, a price list and two payment terms.
class TemplateCompany : public TestTarget {
public:
    TemplateCompany() {
        Execute("INSERT INTO TAB_MOP (CDMOP, MPDES) VALUES ('007', 'Rimessa diretta'), ('RB30', 'Ri.Ba. 30 gg')");
        Execute("INSERT INTO X01_AGE_NTI (CDAGE, AGDES) VALUES ('A1', 'Bianchi')");
        Execute("INSERT INTO X01_LIS_TES (CDLIS, LTDES, LTTIP) VALUES ('BASE', 'Listino base', 'V')");
    }
    QString Path() const { return Folder.filePath("modello.xlsx"); }
    QString Part(const QString& name) const {
        return QString::fromUtf8(sources::Package(Path()).Open(name)->readAll());
    }
};

/// What somebody makes of a template: its rows with one value changed, or a row more.
void FillIn(const QString& path, const std::function<void(TableOfFile&)>& change) {
    TableOfFile table = sources::ReadTable(path);
    change(table);
    QFile::remove(path); // a table of other columns is not written over
    const auto file = sources::TableWriter::Create(path, "CLIENTI", table.columns);
    for (const TableOfFile::Row& row : table.rows) {
        file->AddRow(QVector<QVariant>(row.values.begin(), row.values.end()));
    }
    file->Close();
}

} // namespace

/// Workbooks to be filled in for the origin "Excel".
class TestSheetTemplate : public QObject {
    Q_OBJECT

private slots:
    void comesBackEqual_data() {
        Columns<Button, bool, QString, QString, QString>("button", "hasCompany", "procedure", "query", "row");
        const QString parties = "SELECT COCGE, CORAS, COIND, CONRC, COCAP, COPRO, CONAZ, COIVA, COFIS, COMOP, COABI, "
                                "COCOC, COIBA, COSC1, COAGE, COLSC, COVAL, COCLI, COFOR FROM X01_CON_TRO";
        const QString party = "ESEMPIO-1|Esempio S.r.l. (da sovrascrivere)|Via Roma|12/a|00184|RM|ITA|12345678903|"
                              "12345678903|%1|05428|000000123456|IT60X0542811101000000123456|10|%2|%3|EUR|true|false";
        Row("a party", Button::Cli, true, "ImportClientiExcel", parties, party.arg("007", "A1", "BASE"));
        Row("a party, no codes", Button::Cli, false, "ImportClientiExcel", parties, party.arg("NULL", "NULL", "NULL"));
        const QString numbers = "SELECT NRDES, NRNUM FROM X01_NUM_TEL WHERE NRDES LIKE 'Fax%'";
        Row("its fax", Button::Cli, true, "ImportClientiExcel", numbers, "Fax (uff.)|061234568");
        const QString articles = "SELECT CDART, ARDES, ARUMS, ARIVA, ARCOS, ARPRZ, ARRIC, ARPSN, ARPSL, ARSMN, ARLOR, "
                                 "ARGGA, ARNOT FROM X01_ART_ICO";
        const QString article = "ESEMPIO-1|Articolo di esempio (da sovrascrivere)|NR|022|10|15.5|55|1.2|1.35|5|20|7|"
                                "Riga di esempio: sovrascriverla o cancellarla";
        Row("an article", Button::Art, true, "ImportArticoliExcel", articles, article);
        Row("an article, no codes", Button::Art, false, "ImportArticoliExcel", articles, article);
    }
    void comesBackEqual() {
        QFETCH(Button, button);
        QFETCH(bool, hasCompany);
        QFETCH(QString, procedure);
        QFETCH(QString, query);
        QFETCH(QString, row);
        TemplateCompany company;
        sheetTemplate::Write(hasCompany ? &company.Get() : nullptr, button, company.Path());
        company.Person.Files = {company.Path()};
        const contract::Origin& excel = *registry::Find("Excel");
        QCOMPARE(ConnectSource(company.Get(), excel), SourceOutcome::Opened);
        const RunResult& result = RunProcedure(company.Get(), excel, procedure);
        QCOMPARE(result.sourceRows, 1);
        QVERIFY2(result.inserted == 1, qPrintable(result.givenUp.value(0).reason + result.errors.join(' ')));
        QCOMPARE(company.Rows(query), QStringList(row));
        QCOMPARE(company.Rows("SELECT TBFLD, TBOLD FROM SYS_IMP WHERE TBFLD <> 'MODULO'").join(u'\n'), QString());
        for (const char* trouble : {"SCONOSCIUTA", "NON TROVAT", "MANCANO", "COLONNE"}) {
            QVERIFY2(!company.Log().contains(trouble), company.Log().constData());
        }
    }

    /// Codes are offered where they are translated, with their descriptions; notes tell what the schema does.
    void offersTheCodesOfTheCompany() {
        TemplateCompany company;
        const sheetTemplate::Written written = sheetTemplate::Write(&company.Get(), Button::Cli, company.Path());
        QCOMPARE(written.sheet, "CLIENTI");
        QVERIFY(written.lists.contains("Modi di pagamento"));
        const QString sheet = company.Part("xl/worksheets/sheet1.xml");
        const qsizetype place = written.lists.indexOf("Modi di pagamento") * 3;
        const QString cells = QString("Codici!$%1$2:$%1$3").arg(QChar(u'A' + static_cast<char16_t>(place)));
        QVERIFY2(sheet.contains("<formula1>" + cells + "</formula1>"), qPrintable(sheet));
        QCOMPARE(sheet.count("<formula1>"), 7); // country, payment, agent, price list, currency; customer, supplier
        QCOMPARE(sheet.count("<formula1>\"1,0\"</formula1>"), 2);
        const QString texts = company.Part("xl/sharedStrings.xml");
        QVERIFY(texts.contains("Rimessa diretta") && texts.contains("RB30"));
        const QString notes = company.Part("xl/comments1.xml");
        for (const char* note :
             {"Ragione sociale.", "Testo, al massimo 60 caratteri.", "Necessaria", "Sì o no: 1 o 0.",
              "Codice di Modi di pagamento (TAB_MOP), al massimo 10 caratteri.", "Testo, al massimo 255 caratteri."}) {
            QVERIFY2(notes.contains(QString::fromUtf8(note)), note);
        }
        sheetTemplate::Write(nullptr, Button::Cli, company.Path());
        QVERIFY(!company.Part("xl/worksheets/sheet1.xml").contains("<formula1>Codici"));
    }

    void keepsWhatIsNotItsOwn_data() {
        using Change = std::function<void(TableOfFile&)>;
        Columns<Change, bool>("change", "isWrittenOver");
        Row("nobody's hand", Change([](TableOfFile&) {}), true);
        Row("without the example", Change([](TableOfFile& table) { table.rows.pop_back(); }), true);
        Row("a row more", Change([](TableOfFile& table) {
                table.rows.push_back(table.rows.back());
                table.rows.back().values[0] = "C1";
            }),
            false);
        Row("the example filled in", Change([](TableOfFile& table) { table.rows.back().values[1] = "Rossi"; }), false);
        Row("a header more", Change([](TableOfFile& table) {
                table.columns.append("COFID");
                table.rows.clear();
            }),
            false);
        Row("something else", Change([](TableOfFile& table) { table = {{}, {"Conto", "Saldo"}, {}}; }), false);
    }
    void keepsWhatIsNotItsOwn() {
        QFETCH(std::function<void(TableOfFile&)>, change);
        QFETCH(bool, isWrittenOver);
        TemplateCompany company;
        const auto write = [&] { sheetTemplate::Write(nullptr, Button::Cli, company.Path()); };
        write();
        FillIn(company.Path(), change);
        const QByteArray before = ReadFile(company.Path());
        const auto error = ErrorOf<ImportError>(write);
        QCOMPARE(error && error->Message().contains("non viene sovrascritto"), !isWrittenOver);
        QCOMPARE(ReadFile(company.Path()) == before, !isWrittenOver);
    }

    /// A sheet with names of its own needs no captions, and ends as the template does; messages tell its names.
    void takesASheetOfOnesOwn_data() {
        Columns<QString>("layout");
        Row("the first sheet", "[COLONNE]\n");
        Row("one that is named", "[TABELLE]\nCLIENTI=Anagrafica\n[COLONNE]\n");
    }
    void takesASheetOfOnesOwn() {
        QFETCH(const QString, layout);
        TemplateCompany company;
        const auto file = sources::TableWriter::Create(
            company.Path(), "Anagrafica",
            {"Codice cliente", "Nome", "Sconto", "COBIC", "Nota", "CORA2", "COIVA", "COFIS"});
        for (const QVector<QVariant>& row : {QVector<QVariant>{"M1", "Rossi", {}, "BCITITMM", "x", {}, {}, {}},
                                             {"M2", "Bianchi", "x", {}, {}, {}, {}, {}},
                                             {"M3", "Verdi", 5, {}, {}, {}, {}, {}},
                                             {{}, "Totale", 5, {}, {}, {}, {}, {}},
                                             {"M4", "Neri", {}, {}, {}, {}, {}, {}}}) {
            file->AddRow(row);
        }
        file->Close();
        QDir().mkpath(company.Folder.filePath("Tracciati"));
        WriteFile(company.Folder.filePath("Tracciati/Excel.ini"),
                  (layout + "CLIENTI.COCGE=Codice cliente\nCLIENTI.CORAS=Nome\nCLIENTI.COSC1=Sconto\n").toUtf8());
        company.Person.Files = {company.Path(), company.Path()};
        company.Get().Errors.Action = ErrorAction::Ignore;
        const contract::Origin& excel = *registry::Find("Excel");
        QVERIFY(inspection::OpenToLook(company.Get(), excel));
        const inspection::Inspection looked = inspection::Inspect(company.Get(), excel);
        QVERIFY2(inspection::IsComplete(looked) && looked.tables.size() == 1, "articles are none of this sheet");
        QCOMPARE(looked.tables[0].rows, 3);
        QVERIFY(looked.tables[0].Own("COBIC")->isFurther && !looked.tables[0].Own("Nota")->isFurther);
        QCOMPARE(ConnectSource(company.Get(), excel), SourceOutcome::Opened);
        const RunResult& result = RunProcedure(company.Get(), excel, "ImportClientiExcel");
        QCOMPARE(company.Rows("SELECT COCGE, COBIC FROM X01_CON_TRO ORDER BY COCGE"),
                 (QStringList{"M1|BCITITMM", "M3|"}));
        QVERIFY2(result.givenUp.value(0).reason.endsWith("; nella sorgente COSC1 si chiama 'Sconto'"),
                 qPrintable(result.givenUp.value(0).reason));
        QVERIFY2(company.Log().contains("RIGHE OLTRE LA FINE") && !company.Log().contains("RIGA SOPRA I DATI"),
                 company.Log().constData());
    }

    void refusesOtherNames() {
        TemplateCompany company;
        const auto refusal = [&](const QString& name) {
            const QString path = company.Folder.filePath(name);
            const auto error = ErrorOf<ImportError>([&] { sheetTemplate::Write(nullptr, Button::Art, path); });
            return error ? error->Message() : QString();
        };
        QVERIFY(refusal("modello.xls").contains("il nome deve finire in .xlsx"));
        QVERIFY(refusal("manca/modello.xlsx").contains("manca/modello.xlsx"));
        QCOMPARE(sheetTemplate::ButtonsOf(*registry::Find("Scala")).size(), 0U);
    }
};

QUADRIX_TEST(TestSheetTemplate)
#include "test_sheetTemplate.moc"
