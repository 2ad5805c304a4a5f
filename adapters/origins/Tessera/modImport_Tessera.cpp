// Tessera: a database, TESSERA unless the setting Databasename names another; user and password in Tessera_Username and
// Tessera_Password. Counterparties with destinations, articles with locations; bills stand in
// modImport_Tessera_bills.cpp, customer orders with production orders and purchase documents in
// modImport_Tessera_documents.cpp.
// OrdCliT with StatOrd and DisBasT are known from an installation. Everything else, tables and columns, is this
// system's own reading in their style; a name that differs is put right in the section "Source tables" or the mapping.
// Known gaps: contacts, price lists, stock.

#include "adapters/origins/Tessera/modImport_Tessera.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/origins/Solution/modImport_Solution.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Tessera {

const contract::Origin& Entry();
const contract::Origin& EntryWithSolution();

Rule GetCodContropartiTessera(const Rule& rule) { return Via(CliFor, "IdCliFor", "CodCliFor", rule); }

Rule GetCodPagamentoTessera(const Rule& rule) { return Via("Pagam", "IdPag", "CodPag", rule); }

Rule GetCodIvaTessera(const Rule& rule) { return Via("Iva", "IdIva", "CodIva", rule); }

namespace {

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiTessera"},
        .source = {.table = CliFor, .key = "CodCliFor", .order = "CodCliFor"},
        .roles = ByFlags({.customer = "FlgCli", .supplier = "FlgFor"}),
        .name = "RagSoc, RagSoc2",
        .vatNumber = "PartIva",
        .taxCode = "CodFis",
        .lines = {{"CORAS", "RagSoc", First(35)},
                  {"CORA2", "RagSoc, RagSoc2", SecondName(35)},
                  {"COANN", "FlgAnn", Flag()},
                  ByRole("COSC1", "COSF1", "Sconto1", RoundedTo(2)),
                  ByRole("COSC2", "COSF2", "Sconto2", RoundedTo(2)),
                  {"COIND", "Indir", Text()},
                  {"COCAP", "Cap", Text()},
                  {"COCIT", "Citta", Text()},
                  {"COPRO", "Prov", Text()},
                  {"CONAZ", "CodNaz", Country(CliFor, "CodNaz")},
                  {"COVAL", "CodVal", Currency(CliFor, "CodVal")},
                  {"COFIS", "CodFis", NotBlank(Text())},
                  {"COIVA", "PartIva", NotBlank(Text())},
                  {"COESE", "IdIva", Exemption(GetCodIvaTessera(TranslatedOrKnown("Iva", "CodIva", "TAB_IVA")))},
                  ByRole("COMOP", "COMOA", "IdPag", PaymentTerm()),
                  {"COABI", "Abi", NotBlank(Digits(5))},
                  {"COCAB", "Cab", NotBlank(Digits(5))},
                  {"COCOC", "ContoC", NotBlank(Text())},
                  {"COCIN", "Cin", NotBlank(Text())},
                  {"COIBA", "Iban", NotBlank(WithoutBlanks())},
                  ByRole("COLSC", "COLSF", "CodLis", Translated(CliFor, "CodLis")),
                  {"COAGE", "CodAge", Translated(CliFor, "CodAge")},
                  {"CONOT", "Note", Text()}},
        .numbers = {"Tel1", "Tel2", "Fax", "Cell", "EMail", "Web"},
        .branches = {{
            .rows = {.table = "CliForDest", .on = {{"IdCliFor"}}, .order = "Progr"},
            .lines = BranchLines("CliForDest", {.number = "Progr",
                                                .name = "RagSoc",
                                                .street = "Indir",
                                                .postCode = "Cap",
                                                .town = "Citta",
                                                .province = "Prov"}),
        }},
    };
}

// --- Articles -----------------------------------------------------------------------------------------------------

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliTessera"},
        .source = {.table = Artic, .key = "CodArt", .order = "CodArt"},
        .code = {"CodArt", Article()},
        .description = "DesArt",
        .lines = {{"CDEXT", "CodArt", First(50)},
                  {"IDEST", "IdArt", Text()},
                  {"ARDE2", "DesArt2", First(100)},
                  {"ARCLA", "TipArt", Choice({{"0", "PF"}, {"1", "SL"}, {"2", "CM"}, {"3", "LM"}}, "CM")},
                  {"ARFAM", "CodFam", Translated(Artic, "CodFam")},
                  {"ARLAM", "TipArt", Is("3")},
                  {"ARANN", "FlgAnn", Flag()},
                  {"ARDIS", "Disegno", Text()},
                  {"ARREV", "Rev", Text()},
                  {"ARUMS", "UniMis", UnitOr(schema::defaults::Unit)},
                  {"ARUM2", "UniMis2", UnitOr("")},
                  {"ARCOE", "FatConv", NotZero()},
                  {"ARIVA", "IdIva", GetCodIvaTessera(VatCode("Iva", "CodIva"))},
                  {"ARSMN", "ScoMin", RoundedTo(6)},
                  {"ARLOR", "LotRio", RoundedTo(6)},
                  {"ARGGA", "GgRio", RoundedTo(0)},
                  {"ARPSN", "PesoN", RoundedTo(3)},
                  {"ARPSL", "PesoL", RoundedTo(3)},
                  {"ARCOS", "CosStd, CosUlt", FirstNotZero()},
                  {"ARPRZ", "PrzVen", RoundedTo(6)},
                  {"ARRIC", "PrzVen, CosStd, CosUlt", MarkUp()}},
        .suppliers = {{
            .supplier = {"IdFor", GetCodContropartiTessera(KnownSupplier())},
            .ownCode = "CodArtFor",
            .price = {"CosStd, CosUlt", FirstNotZero()},
            .leadDays = "GgRio",
            .lot = "LotRio",
        }},
        .location = "CodUbi",
    };
}

// --- Bills --------------------------------------------------------------------------------------------------------

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteTessera",
                  .announcement = "Inizio importazione Distinte Base da Tessera",
                  .completion = "Distinte Base Tessera importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = "DisBasT", .key = "CodArt", .order = "CodArt, Rev", .naming = "CodArt, Rev"},
        .article = {"CodArt", Article()},
        .sourceKey = "IdDisBas",
        .revision = {"Rev", RevisionNumber()},
        .active = {"FlgAtt", Flag()},
        .note = "Note",
        .components = {.rows = {.table = "DisBasR",
                                .on = {{"IdDisBas"}},
                                .order = "NumRig",
                                .naming = "IdDisBas, NumRig, CodArt"},
                       .article = {"CodArt", Article()},
                       .quantity = "Qta",
                       .note = "Note",
                       .position = "NumRig",
                       .phase = "NumFas"},
        .phases =
            BillPhases{
                .rows = {.table = "DisBasF", .on = {{"IdDisBas"}}, .order = "NumFas", .naming = "IdDisBas, NumFas"},
                .key = "NumFas",
                .number = "NumFas",
                .work = {"CodLav", Work(Lavorazioni, "CodLav")},
                .setUpTime = "TemAtt",
                .unitTime = "TemUni",
                .cost = "CosOra",
                .supplier = {"IdFor", GetCodContropartiTessera(KnownSupplier())}},
    };
}

// --- Entry --------------------------------------------------------------------------------------------------------

const SourceSpec& Source() {
    static const SourceSpec source{
        "SQL Server", sourceSettings::Server("TESSERA", {"IMPORT", "0", "Tessera_Username", "Tessera_Password"})};
    return source;
}

Procedure OfSolution(const Procedure& procedure) { return OverSourceOf(modImport_Solution::Entry(), procedure); }

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Tessera",
        Module,
        Source(),
        Buttons("YYYYNNN-"),
        Shown::Keep,
        {ProcedureOf(Button::Cli, Controparti()), ProcedureOf(Button::Art, Articoli()),
         ProcedureOf(Button::Dis, Distinte()), ProcedureOf(Button::Doc, OrdCli()),
         // The list hides the button of purchases for this origin: it is reached by its name.
         ProcedureOf(std::nullopt, DocAcq())},
    };
    return origin;
}

/// Tessera where Solution keeps the accounts: the counterparties are Solution's, whose codes those of Tessera's
/// documents are, and so are the documents behind the orders of customers.
const Origin& EntryWithSolution() {
    static const Origin origin{
        "Tessera + Solution",
        Module,
        Source(),
        Buttons("YYYYY---"),
        Shown::Keep,
        {OfSolution(modImport_Solution::ImportContropartiSolution()), ProcedureOf(Button::Art, Articoli()),
         ProcedureOf(Button::Dis, Distinte()), ProcedureOf(Button::Doc, OrdCli()),
         OfSolution(modImport_Solution::ImportDocumentiSolution()), ProcedureOf(Button::Acq, DocAcq())},
    };
    return origin;
}

} // namespace modImport_Tessera
