// WinProgest: a folder of data files, or the same tables on SQL Server, as the operator answers. Articles, bills,
// documents, promotions, article codes, drawings; the link of document rows to those they come from.
// NFTDIS, NFCODIS and the head tables of the documents are known from installations; all other tables and columns are
// this system's own reading. Bills and documents stand in files of their own.
// Known gaps: PRO_MOR has no column for the article of a discount (logged); counterparties are not imported.

#include "adapters/origins/WinProgest/modImport_WinProgest.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/supplierNote.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/BaseTable.h"
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

const QString Promo = QStringLiteral("PROMO");
const QString Promor = QStringLiteral("PROMOR");
const QString Codifiche = QStringLiteral("CODIFICHE");

// --- Mappings -----------------------------------------------------------------------------------------------------

Rule Customer() {
    return {
        "CDCON della riga di CON_TRO di cui è COCGE, o di quella in cui è stata unita, SYS_IMP (UNIFICATI, C-CODICECF)",
        [](const RuleInput& input) { return RuleValue(RequireCounterparty(input.session, input.Text(), false)); }};
}

/// Whether today lies in a promotion's days; a blank end is open.
Rule ValidToday() {
    return {"vero se il giorno dell'importazione sta fra le due; una vuota non limita",
            [](const RuleInput& input) -> RuleValue {
                const QDate today = input.session.UserManager.DataElaborazione;
                const auto day = [&input](qsizetype column, const QDate& open) {
                    const QVariant value = DateOf(input.row, input.columns.at(column));
                    return value.isNull() ? open : value.toDate();
                };
                return day(0, today) <= today && today <= day(1, today);
            }};
}

const Mapping& Promozioni() {
    static const Mapping mapping{
        "PRO_MOZ",
        Promo,
        {
            {"CDPRM", "CODPRO", Code()},
            {"PMDES", "DESCR", Text()},
            {"PMTIP", "TIPO", Text()},
            {"PMCON", "CODCLI", NotBlank(Customer())},
            {"PMVLD", "DATINI, DATFIN", ValidToday()},
        },
    };
    return mapping;
}

const Mapping& RighePromozione() {
    static const Mapping mapping{
        "PRO_MOR",
        Promor,
        {
            {"CDPRM", "CODPRO", Code()},
            {"PRSC1", "SCO1", RoundedTo(2)},
            {"PRSC2", "SCO2", RoundedTo(2)},
            {"PRSC3", "SCO3", RoundedTo(2)},
            {"PRVLD", "", Constant(true)},
        },
    };
    return mapping;
}

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

TableNeed CounterpartyNeed() { return LookedUp("CON_TRO", {"CDCON", "COCGE", "COFGE", "CORAS"}); }

namespace {

/// The code of a row. Raises `ImportError` when it is blank.
QString CodeOf(const SourceRow& row, const QString& column) {
    if (row.IsBlank(column)) {
        throw ImportError(QStringLiteral("colonna '%1': il codice manca").arg(column));
    }
    return row.Text(column);
}

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

// --- Promotions ---------------------------------------------------------------------------------------------------

/// RECORD_IDs of the rows that a promotion has, in the order in which they were written.
std::vector<qint64> RowsOfPromotion(ImportRun& run, const QString& code) {
    std::vector<qint64> rows;
    Recordset found =
        run.GetSession().Quadrix.ExecuteWC("SELECT RECORD_ID FROM " + run.FullName("PRO_MOR") + " WHERE " +
                                           Equals(run.GetSession(), "CDPRM", code) + " ORDER BY RECORD_ID");
    for (; !found.Eof(); found.MoveNext()) {
        rows.push_back(found.Fields(0).Value().toLongLong());
    }
    return rows;
}

RowOutcome ImportPromozione(ImportRun& run, const SourceRow& row) {
    const Facts facts{CodeOf(row, "CODPRO")};
    const RowOutcome outcome = WriteByCode(run, Promozioni(), row, facts);
    // The rows have no key of their own: the first in the source is the first here.
    const std::vector<qint64> known = RowsOfPromotion(run, facts.code);
    size_t next = 0;
    ForEachChild(
        run.GetSession(), "SELECT * FROM PROMOR\rWHERE CODPRO = " + run.Quoted(facts.code) + "\rORDER BY CODART",
        Promor, "CODART", [&](const SourceRow& discount) {
            TargetRow target(run, "PRO_MOR");
            RighePromozione().Apply(target, run.GetSession(), discount, facts);
            if (next < known.size()) {
                target.Update("WHERE " + Equals("RECORD_ID", known[next++]));
            } else {
                target.Insert();
            }
            if (!discount.IsBlank("CODART")) {
                run.Log(QStringLiteral("ARTICOLO DELLA PROMOZIONE NON RIPORTATO: promozione '%1', articolo '%2'")
                            .arg(facts.code, discount.Text("CODART")));
            }
        });
    return outcome;
}

Procedure PromozioniProcedure() {
    return ProcedureOf(Button::Saldi,
                       {.module = Module,
                        .procedure = "ImportPromozioniWinProgest",
                        .announcement = "Inizio importazione Promozioni da WinProgest",
                        .errors = "Errore: ",
                        .completion = "Promozioni importate correttamente!"},
                       {{.step = "Promozioni",
                         .source = {.table = Promo, .key = "CODPRO", .order = "CODPRO"},
                         .needs = {{&Promozioni(), &RighePromozione()}, {{Promor, {"CODART"}}}, {CounterpartyNeed()}},
                         .empties = Truncated({"PRO_MOZ", "PRO_MOR"}),
                         .make = Importing(ImportPromozione)}});
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

RowOutcome ImportCodifica(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const Facts facts{ArticleWriter(run).CodeOf(Articoli, "CODART", row.Text("CODART"))};
    if (!IsImported(run, facts.code)) {
        return run.Skip(ArticleMissing);
    }
    const QString code = CodeOf(row, "CODALT");
    const QString owner = OwnerOfCode(run, row);
    TargetRow target(run, "ART_COD");
    CodificheMapping().Apply(target, session, row, facts);
    target.Set("COTIP", owner.isEmpty() ? "I" : "C");
    if (!owner.isEmpty()) {
        target.Set("COTPC", "PER");
        target.Set("COCON", owner);
    }
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
          .make = Importing(ImportCodifica)}});
}

// --- Drawings -----------------------------------------------------------------------------------------------------

QString FolderOfDrawings(Session& session) {
    const QString folder = modMain::GetWholeConfig(session, "IMPORT", "SourcePathAttachArticoli", "");
    if (folder.isEmpty()) {
        throw ImportError("impostazione SourcePathAttachArticoli della sezione IMPORT: manca la cartella dei disegni");
    }
    return folder;
}

RowOutcome ImportDisegno(ImportRun& run, const SourceRow& row, const QString& folder) {
    Session& session = run.GetSession();
    const QString article = ArticleWriter(run).CodeOf(Articoli, "CODART", row.Text("CODART"));
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const RowOutcome outcome = WriteAttachment(run, {"ART_ICO", article, PathIn(folder, row.Text("DISEGNO")), folder});
    if (outcome != RowOutcome::Skipped) {
        TargetRow target(run, "ART_ICO");
        target.Set("ARATT", true);
        target.Update("WHERE " + Equals(session, "CDART", article));
    }
    return outcome;
}

Procedure DisegniProcedure() {
    Needs needs{{}, {}, AttachmentNeeds()};
    needs.writes.push_back({"ART_ICO", {"CDART", "ARATT"}});
    const auto make = [](ImportRun& run, const QString& singleCode) {
        const QString folder = FolderOfDrawings(run.GetSession());
        return Importing([folder](ImportRun& of, const SourceRow& row) { return ImportDisegno(of, row, folder); })(
            run, singleCode);
    };
    return ProcedureOf(Button::Disegni,
                       {.module = Module,
                        .procedure = "ImportDisegniWinProgest",
                        .announcement = "Inizio importazione Disegni da WinProgest",
                        .completion = "Disegni importati correttamente!"},
                       {{.step = "Disegni",
                         .source = {.table = Articoli, .key = "CODART", .order = "CODART", .where = "DISEGNO > ''"},
                         .needs = needs,
                         .empties = AttachmentEmptying("ART_ICO"),
                         .make = make}});
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
            PromozioniProcedure(),
            CodificheProcedure(),
            DisegniProcedure(),
        },
    };
    return origin;
}

} // namespace modImport_WinProgest
