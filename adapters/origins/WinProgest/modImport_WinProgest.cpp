// WinProgest: a folder of data files, or the same tables on SQL Server, as the operator answers. Articles, bills,
// documents, promotions, article codes, drawings; the link of document rows to those they come from.
// NFTDIS, NFCODIS and the head tables of the documents are known from installations; all other tables and columns are
// this system's own reading. Bills, promotions and documents stand in files of their own.
// Known gaps: PRO_MOR has no column for the article of a discount (logged); counterparties are not imported.

#include "adapters/origins/WinProgest/modImport_WinProgest.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/supplierNote.h"
#include "adapters/contract/write/ArticleRemains.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/Document.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"
#include "core/wholeSettings.h"
#include "sql/mod_ovTools.h"

#include <QFileInfo>

using namespace contract;
using namespace contract::rules;

namespace modImport_WinProgest {

const contract::Origin& Entry();

// --- Source tables ------------------------------------------------------------------------------------------------

namespace {

const QString Codifiche = QStringLiteral("CODIFICHE");

// --- Mappings -----------------------------------------------------------------------------------------------------

const Mapping& CodificheMapping() {
    static const Mapping mapping{
        "ART_COD",
        Codifiche,
        {
            {"CDART", "CODART", Code()},
            {"CDCOD", "CODALT", Text()},
            {"CODES", "DESCR", Text()},
        },
    };
    return mapping;
}

} // namespace

// --- Counterparties -----------------------------------------------------------------------------------------------

QString RequireCounterparty(Session& session, const QString& sourceCode, bool supplier) {
    return FoundParty(PartyOrSurvivor(session, sourceCode, supplier), sourceCode, RoleText(!supplier));
}

QString CodeOf(const SourceRow& row, const QString& column) {
    if (row.IsBlank(column)) {
        throw ImportError(QStringLiteral("colonna '%1': il codice manca").arg(column));
    }
    return row.Text(column);
}

TableNeed CounterpartyNeed() { return LookedUp("CON_TRO", {"CDCON", "COCGE", "COFGE", "CORAS"}); }

namespace {

// --- Articles -----------------------------------------------------------------------------------------------------

/// A supplier is found as those of the bills are; one that is not there leaves the article without it.
Rule Supplier() {
    return {"CDCON della riga di CON_TRO di cui è COFGE, o di quella in cui è stata unita, SYS_IMP "
            "(UNIFICATI, F-CODICECF); se manca va nel log",
            [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                const QString supplier = code.isEmpty() ? code : PartyOrSurvivor(input.session, code, true);
                if (supplier.isEmpty() && !code.isEmpty()) {
                    modImport::LogNote(
                        input.session,
                        QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(input.session.Errors.RowKey(), code));
                }
                return supplier;
            }};
}

contract::Articles ArticoliWinProgest() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportArticoliWinProgest",
                  .announcement = "Inizio importazione Articoli da WinProgest"},
        .source = {.table = Articoli, .key = "CODART", .order = "CODART"},
        .code = {"CODART", Article()},
        .description = "DESCR",
        .lines = {{"ARDE2", "DESCR2", Text()},
                  {"ARNOT", "NOTE", Text()},
                  {"ARCLA", "TIPO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                  {"ARFAM", "GRUPPO, SOTGRU", Translated(Articoli, "GRUPPO")},
                  {"ARANN", "ANNULL", Flag()},
                  {"ARDIS", "DISEGNO", Text()},
                  {"ARUMS", "UM", TranslatedOrUpper(Articoli, "UM", schema::defaults::Unit)},
                  {"ARUM2", "UM2", TranslatedOrUpper(Articoli, "UM", "")},
                  {"ARCOE", "FATCON", NotZero()},
                  {"ARIVA", "IVA", VatCode(Articoli, "IVA")},
                  {"ARSMN", "SCOMIN", RoundedTo(6)},
                  {"ARLOR", "LOTRIO", RoundedTo(6)},
                  {"ARGGA", "GGRIO", RoundedTo(0)},
                  {"ARPSN", "PESO", RoundedTo(3)},
                  {"ARCOS", "ULTCOS, COSTO", FirstNotZero()},
                  {"ARPRZ", "PRZVEN", RoundedTo(6)},
                  {"ARRIC", "PRZVEN, ULTCOS, COSTO", MarkUp()},
                  {"ARSCO", "SCO1", RoundedTo(2)},
                  {"ARSC2", "SCO2", RoundedTo(2)},
                  {"ARSC3", "SCO3", RoundedTo(2)}},
        .suppliers = {{.supplier = {"CODFOR", Supplier()},
                       .price = {"ULTCOS, COSTO", FirstNotZero()},
                       .leadDays = "GGRIO",
                       .lot = "LOTRIO"}},
        .further = {{}, {}, {CounterpartyNeed()}},
    };
}

// --- Article codes ------------------------------------------------------------------------------------------------

/// The counterparty that uses the code; empty for a code of the company's own.
QString OwnerOfCode(ImportRun& run, const SourceRow& row) {
    if (row.IsBlank("CODCLF")) {
        return {};
    }
    const QString kind = row.Text("TIPCLF").toUpper();
    if (kind != "C" && kind != "F") {
        throw ImportError(QStringLiteral("colonna 'TIPCLF': '%1' non è né C né F").arg(row.Text("TIPCLF")));
    }
    try {
        return RequireCounterparty(run.GetSession(), row.Text("CODCLF"), kind == "F");
    } catch (ImportError& error) {
        error.AddContext("colonna 'CODCLF'");
        throw;
    }
}

class CodeImporter final : public Importer {
public:
    explicit CodeImporter(ImportRun& run)
        : Importer(run),
          m_remains(run) {}

    void Begin() override {
        m_remains.Begin({.internalCodes = true, .counterpartyCodes = true, .ofAllArticles = true});
    }
    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_remains.Close();
        return true;
    }

private:
    RowOutcome Write(const SourceRow& row, const Facts& facts);

    ArticleRemains m_remains;
};

RowOutcome CodeImporter::Row(const SourceRow& row) {
    const Facts facts{ArticleWriter(Run()).CodeOf(Articoli, "CODART", row.Text("CODART"))};
    m_remains.RowBegins(facts.code);
    const RowOutcome outcome = IsImported(Run(), facts.code) ? Write(row, facts) : Run().Skip(ArticleMissing);
    m_remains.RowEnds(facts.code);
    return outcome;
}

RowOutcome CodeImporter::Write(const SourceRow& row, const Facts& facts) {
    Session& session = GetSession();
    const QString code = CodeOf(row, "CODALT");
    const QString owner = OwnerOfCode(Run(), row);
    TargetRow target(Run(), "ART_COD");
    CodificheMapping().Apply(target, session, row, facts);
    target.Set("COTIP", owner.isEmpty() ? "I" : "C");
    if (!owner.isEmpty()) {
        target.Set("COTPC", "PER");
        target.Set("COCON", owner);
    }
    m_remains.Shows(facts.code, code, owner);
    // The same code may be used by several counterparties.
    const QString same = Equals(session, "CDART", facts.code) + " AND " + Equals(session, "CDCOD", code) + " AND " +
                         (owner.isEmpty() ? Equals(session, "COTIP", "I") : Equals(session, "COCON", owner));
    const qint64 known = IdWhere(session, "ART_COD", same);
    if (known != 0) {
        target.Update("WHERE " + Equals("RECORD_ID", known));
        return RowOutcome::Updated;
    }
    target.Insert();
    return RowOutcome::Inserted;
}

Procedure CodificheProcedure() {
    return ProcedureOf(
        Button::Piano,
        {.module = Module,
         .procedure = "ImportCodificheWinProgest",
         .announcement = "Inizio importazione Codifiche Articoli da WinProgest",
         .errors = "Errore: ",
         .completion = "Codifiche articoli importate correttamente!"},
        {{.step = "Codifiche Articoli",
          .source = {.table = Codifiche, .key = "CODART", .order = "CODART, CODALT", .naming = "CODALT"},
          .needs = {{&CodificheMapping()},
                    {{Codifiche, {"CODCLF", "TIPCLF"}}},
                    {{"ART_COD", {"COTIP", "COTPC", "COCON"}}, {"ART_ICO", {"CDART"}}, CounterpartyNeed()}},
          .empties = Truncated({"ART_COD"}),
          .make = [](ImportRun& run, const QString&) { return std::make_unique<CodeImporter>(run); }}});
}

// --- Drawings -----------------------------------------------------------------------------------------------------

QString FolderOfDrawings(Session& session) {
    const QString folder = AttachmentFolder(session);
    if (folder.isEmpty()) {
        throw ImportError("impostazione SourcePathAttachArticoli della sezione IMPORT: manca la cartella dei disegni");
    }
    return folder;
}

class DrawingImporter final : public Importer {
public:
    explicit DrawingImporter(ImportRun& run)
        : Importer(run),
          m_folder(FolderOfDrawings(run.GetSession())),
          m_writer(run) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_writer.TellLeft("ART_ICO");
        return true;
    }

private:
    QString m_folder;
    AttachmentWriter m_writer;
};

RowOutcome DrawingImporter::Row(const SourceRow& row) {
    const QString article = ArticleWriter(Run()).CodeOf(Articoli, "CODART", row.Text("CODART"));
    if (!IsImported(Run(), article)) {
        return Run().Skip(ArticleMissing);
    }
    const RowOutcome outcome = m_writer.Write({"ART_ICO", article, PathIn(m_folder, row.Text("DISEGNO")), m_folder});
    if (outcome != RowOutcome::Skipped) {
        TargetRow target(Run(), "ART_ICO");
        target.Set("ARATT", true);
        target.Update("WHERE " + Equals(GetSession(), "CDART", article));
    }
    return outcome;
}

Procedure DisegniProcedure() {
    Needs needs{{}, {}, AttachmentNeeds()};
    needs.writes.push_back({"ART_ICO", {"CDART", "ARATT"}});
    return ProcedureOf(
        Button::Disegni,
        {.module = Module,
         .procedure = "ImportDisegniWinProgest",
         .announcement = "Inizio importazione Disegni da WinProgest",
         .completion = "Disegni importati correttamente!"},
        {{.step = "Disegni",
          .source = {.table = Articoli, .key = "CODART", .order = "CODART", .where = "DISEGNO > ''"},
          .needs = needs,
          .empties = AttachmentEmptying("ART_ICO"),
          .make = [](ImportRun& run, const QString&) { return std::make_unique<DrawingImporter>(run); }}});
}

// --- Source and entry ---------------------------------------------------------------------------------------------

/// The data files are the tables of the folder Databasename where that is a folder, else those of an ODBC data source.
bool PrepareFiles(Session& session, ovConnection& source) {
    if (!QFileInfo(sourceSettings::DatabasePath(session)).isDir()) {
        return sourceSettings::DataSource("WINPROGEST")(session, source);
    }
    sourceSettings::FoxProFolder()(session, source);
    source.ProviderType = Provider::SqlServer; // dates in conditions are written as this program reads them
    source.LookupColumns = QStringList{"NFCODIS.PADRE", "PROMOR.CODPRO"};
    for (const char* rows : {"CORPOFF", "CORPIMP", "CORPBO", "CORPFT", "CORPFP", "CORPORF"}) {
        source.LookupColumns.append(QString(rows) + ".NUMDOC");
    }
    return true;
}

const QString OnFilesQuestion = QStringLiteral("Mi collego a WinProgest sui file di dati?\n[SI] file\n[NO] SQLServer");

bool PrepareSource(Session& session, ovConnection& source) {
    switch (session.Person.Ask(OnFilesQuestion)) {
    case Answer::Yes:
        return PrepareFiles(session, source);
    case Answer::No:
        return sourceSettings::Server("WINPROGEST")(session, source);
    case Answer::GivenUp:
        break;
    }
    return false;
}

Procedure Riallinea() {
    Procedure procedure{
        Button::Cli,
        "RiallineaDRORIWinProgest",
        RiallineaDRORIWinProgest,
        RiallineaNeeds(),
        {},
        {{"Riallineare Ordini?"}, {"Riallineare DDT?"}, {"Riallineare Fatture?"}, {"Riallineare Fatture Pro Forma?"}}};
    procedure.asksReset = false;
    return procedure;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "WinProgest",
        Module,
        {"FoxPro o SQL Server", PrepareSource, {{OnFilesQuestion}}},
        Buttons("YYYYYYYY", {{Button::Cli, "Riallinea DRORI"},
                             {Button::Saldi, "Importa Promozioni"},
                             {Button::Piano, "Importa Codifiche Art."}}),
        Shown::Keep,
        {
            Riallinea(),
            ProcedureOf(Button::Art, ArticoliWinProgest()),
            ProcedureOf(Button::Dis, DistinteWinProgest()),
            DocumentiWinProgest(Button::Doc), // as a whole: both buttons do the same
            DocumentiWinProgest(Button::Acq),
            Promozioni(),
            CodificheProcedure(),
            DisegniProcedure(),
        },
    };
    return origin;
}

} // namespace modImport_WinProgest
