// Borgo, one customer's own database: SQL Server, BORGO unless the setting Databasename names another.
// Counterparties, articles with the formats of sheets, and bills stand here, orders in modImport_Borgo_documents.cpp,
// the recoding of sheets in modImport_Borgo_recoding.cpp. Nothing is published: every table and column is this system's
// own reading, fitted to an installation by "Tracciati/Borgo.ini". Counterparties have no button: they come with the
// articles where Quadrix has none yet, else by their name. Times are minutes, weights kilograms.
// Known gaps: branches and contacts, stock, price lists.

#include "adapters/origins/Borgo/modImport_Borgo.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/SheetFormat.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Borgo {

const contract::Origin& Entry();

namespace {

const QString DistinteTable = QStringLiteral("Distinte");
const QString Formati = QStringLiteral("Formati");

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiBorgo"},
        .source = {.table = Anagrafica, .key = "Codice", .order = "Codice"},
        .roles = ByLetter("Tipo", {.customer = {"C"}, .supplier = {"F"}, .both = {"E"}}),
        .name = "RagSoc, RagSoc2",
        .vatNumber = "PIva",
        .taxCode = "CFisc",
        .lines = PartyLines(Anagrafica, {.name = "RagSoc",
                                         .name2 = "RagSoc2",
                                         .street = "Indirizzo",
                                         .postCode = "Cap",
                                         .town = "Citta",
                                         .province = "Prov",
                                         .country = "Nazione",
                                         .vatNumber = "PIva",
                                         .taxCode = "CFisc",
                                         .payment = "CodPag",
                                         .abi = "Abi",
                                         .cab = "Cab",
                                         .account = "CC",
                                         .iban = "Iban",
                                         .discount1 = "Sconto1",
                                         .discount2 = "Sconto2",
                                         .agent = "CodAgente",
                                         .list = "CodListino",
                                         .currency = "CodValuta",
                                         .exemption = "CodIva",
                                         .isCancelled = "Annullato",
                                         .note = "Note"}),
        .numbers = {.office = "Tel", .office2 = "Tel2", .fax = "Fax", .mobile = "Cell", .mail = "Email", .web = "Web"},
    };
}

/// Articles name suppliers: where Quadrix has no counterparty at all, they come first. What is given up there is made
/// up for by the import of the counterparties alone.
ImportPart PartiesWhereThereAreNone() {
    Counterparties parties = Controparti();
    parties.empties = false;
    parties.source.told = [](ImportRun& run) {
        const bool hasSome = IdWhere(run.GetSession(), "CON_TRO", "RECORD_ID > 0") != 0;
        return hasSome || run.IsSingle() ? QStringLiteral("1 = 0") : QString();
    };
    return PartOf(parties);
}

// --- Articles -----------------------------------------------------------------------------------------------------

/// A sheet is one whatever class the source gives it.
Rule ArticleClass() {
    Rule rule{
        QStringLiteral("\"LM\" per una lamiera (prima colonna), altrimenti la classe, \"CM\" se è vuota"),
        [isSheet = Flag().apply](const RuleInput& input) {
            const QString own = input.row.Text(input.columns.last());
            const bool sheet = isSheet({input.session, input.row, {input.columns.first()}, input.facts})->toBool();
            return RuleValue(sheet ? QStringLiteral("LM") : own.isEmpty() ? QStringLiteral("CM") : own);
        }};
    return WithDefault(Needing(2, std::move(rule)));
}

Articles ArticoliOf() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliBorgo"},
        .source = {.table = Articoli, .key = "CodArt", .order = "CodArt"},
        .code = {"CodArt", Article()},
        .description = "Descr",
        .lines =
            {
                {"CDEXT", "CodArt", Text()},
                {"IDEST", "IdArt", Text()},
                {"ARDE2", "Descr2", First(100)},
                {"ARUMS", "Um", ArticleUnit(schema::defaults::Unit)},
                {"ARUM2", "Um2", ArticleUnit("")},
                {"ARCOE", "Coeff", NotZero()},
                {"ARIVA", "CodIva", VatCode(Articoli, "CodIva")},
                {"ARCLA", "Lamiera, Classe", ArticleClass()},
                {"ARLAM", "Lamiera", Flag()},
                {"ARFAM", "Famiglia", TranslatedOrKnown(Articoli, "Famiglia", "FAM_PRO")},
                {"ARMAT", "Materiale", TranslatedOrKnown(Articoli, "Materiale", "TAB_MAT")},
                {"ARDMX", "Lung", RoundedTo(6)},
                {"ARDMY", "Larg", RoundedTo(6)},
                {"ARDMZ", "Spess", RoundedTo(6)},
                {"ARPSN", "Peso", RoundedTo(3)},
                {"ARCOS", "Costo", RoundedTo(6)},
                {"ARPRZ", "Prezzo", RoundedTo(6)},
                {"ARSMN", "ScortaMin", RoundedTo(6)},
                {"ARLOR", "Lotto", RoundedTo(6)},
                {"ARGGA", "GgCons", RoundedTo(0)},
                {"ARDIS", "Disegno", Text()},
                {"ARREV", "Rev", Text()},
                {"ARNOT", "Note", Text()},
                {"ARANN", "Annullato", Flag()},
            },
        .suppliers = {{.supplier = {"CodForn", KnownSupplier()},
                       .ownCode = "CodArtForn",
                       .price = "Costo",
                       .leadDays = "GgCons",
                       .lot = "Lotto"}},
        .empties = ArticleEmptying() + Truncated({"ART_FMT"}),
        .more = SetMarkUp,
        .further = {{}, {}, {{"ART_ICO", {"ARRIC"}}, {"ART_FMT", {"CDART"}}}},
    };
}

// --- Formats ------------------------------------------------------------------------------------------------------

RowOutcome ImportFormato(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString article = Field("CodArt", Article()).Text(session, row);
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    const bool isActive = row.IsBlank("Attivo") || Field("Attivo", Flag()).Value(session, row).toBool();
    return WriteSheetFormat(run, {.article = article,
                                  .code = Field("CodFormato").RequiredText(session, row),
                                  .length = NumberOf(row, "Lung"),
                                  .width = NumberOf(row, "Larg"),
                                  .weight = NumberOf(row, "Peso"),
                                  .density = NumberOf(row, "PesoSpec"),
                                  .description = row.Text("Descr"),
                                  .isActive = isActive});
}

/// The density of a format is that of its article.
ImportPart Formats() {
    return {.step = "Formati",
            .source = {.table = Formati,
                       .key = "CodArt",
                       .order = "CodArt, CodFormato",
                       .naming = "CodArt, CodFormato",
                       .joins = {{.table = Articoli, .on = {{"CodArt"}}, .columns = {"PesoSpec"}}}},
            .needs = {{},
                      {{Formati, {"CodArt", "CodFormato"}, {"Descr", "Lung", "Larg", "Peso", "Attivo"}}},
                      SheetFormatNeeds() + std::vector<TableNeed>{{"ART_ICO", {"CDART", "ARDMZ"}}}},
            .make = Importing(ImportFormato)};
}

Procedure ImportArticoliBorgo() {
    return ProcedureOf(Button::Art, FrameOf(ArticoliOf()),
                       {PartiesWhereThereAreNone(), PartOf(ArticoliOf()), Formats()});
}

// --- Bills --------------------------------------------------------------------------------------------------------

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteBorgo",
                  .announcement = "Inizio importazione Distinte Base da Borgo",
                  .completion = "Distinte Base Borgo importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = DistinteTable, .key = "CodPadre", .order = "CodPadre", .distinct = true},
        .article = {"CodPadre", Article()},
        .components =
            {
                .rows = {.table = DistinteTable, .on = {{"CodPadre"}}, .order = "Pos", .naming = "CodPadre, Pos"},
                .article = {"CodFiglio", Article()},
                .quantity = "Qta",
                .note = "Note",
                .position = "Pos",
                .phase = "Fase",
                .lines = {{"DCDMX", "Lung", RoundedTo(6)}, {"DCDMY", "Larg", RoundedTo(6)}},
            },
        .phases =
            BillPhases{
                .rows = {.table = "Cicli", .on = {{"CodArt", "CodPadre"}}, .order = "Fase", .naming = "CodArt, Fase"},
                .key = "Fase",
                .number = "Fase",
                .work = {"CodLav", Or(Translated("Lavorazioni", "CodLav"), schema::defaults::GenericWork)},
                .setUpTime = "TSet",
                .unitTime = "TUnit",
                .supplier = {"CodForn", KnownSupplier()},
            },
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Borgo",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("BORGO"), .names = Naming::OurReading},
        Buttons("NYYYYNYN", {{Button::Doc, "Importa Ordini Vendita"},
                             {Button::Acq, "Importa Ordini Acquisto"},
                             {Button::Piano, "Ricodifica Articoli Lamiera"}}),
        Shown::Keep,
        {
            ProcedureOf(std::nullopt, Controparti()),
            ImportArticoliBorgo(),
            ProcedureOf(Button::Dis, Distinte()),
            ImportOrdiniVenditaBorgo(),
            ImportOrdiniAcquistoBorgo(),
            RicodificaArticoliLamieraBorgo(),
        },
    };
    return origin;
}

} // namespace modImport_Borgo
