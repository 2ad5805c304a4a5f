// Gescom: a database, GESCOM unless the setting Databasename names another. Counterparties with destinations, carriers;
// articles and price lists stand in modImport_Gescom_articles.cpp, bills in modImport_Gescom_bills.cpp, documents in
// modImport_Gescom_documents.cpp.
// ARCLFR with its codes, kinds and names is known from installations, as are RIEMOV, MOVMAG and arcfas as far as the
// documents read them. Everything else, tables and columns, is this system's own reading in their style: two letters
// and the table's name.
// Known gaps: contacts, banks other than the counterparty's own account.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/sourceSettings.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

const contract::Origin& Entry();

namespace {

// --- Counterparties -----------------------------------------------------------------------------------------------

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiGescom"},
        .source = {.table = Arclfr, .key = "CODCLFOR", .order = "FLAGCLFR, CODCLFOR"},
        .roles = ByLetter("FLAGCLFR", {.customer = {"C"}, .supplier = {"F"}}),
        .name = "RAGCLFOR, RA2CLFOR",
        .vatNumber = "IVACLFOR",
        .taxCode = "FISCLFOR",
        .lines =
            {
                {"CORAS", "RAGCLFOR", First(35)},
                {"CORA2", "RAGCLFOR, RA2CLFOR", SecondName(35)},
                {"COANN", "ANNCLFOR", Is("S")},
                ByRole("COSC1", "COSF1", "SC1CLFOR", RoundedTo(2)),
                ByRole("COSC2", "COSF2", "SC2CLFOR", RoundedTo(2)),
                {"COIND", "INDCLFOR", Text()},
                {"COCAP", "CAPCLFOR", Text()},
                {"COCIT", "LOCCLFOR", Text()},
                {"COPRO", "PROCLFOR", Text()},
                {"CONAZ", "NAZCLFOR", Country(Arclfr, "NAZCLFOR")},
                {"COZON", "ZONCLFOR", Translated(Arclfr, "ZONCLFOR")},
                {"COVAL", "VALCLFOR", Currency(Arclfr, "VALCLFOR")},
                {"COFIS", "FISCLFOR", NotBlank(Text())},
                {"COIVA", "IVACLFOR", NotBlank(Text())},
                {"COESE", "ESECLFOR", ExemptVat(Arclfr, "ESECLFOR")},
                ByRole("COMOP", "COMOA", "PAGCLFOR", Translated(Arclfr, "PAGCLFOR")),
                {"COABI", "ABICLFOR", NotBlank(Digits(5))},
                {"COCAB", "CABCLFOR", NotBlank(Digits(5))},
                {"COCOC", "CCOCLFOR", NotBlank(Text())},
                {"COCIN", "CINCLFOR", NotBlank(Text())},
                {"COIBA", "IBACLFOR", NotBlank(WithoutBlanks())},
                ByRole("COLSC", "COLSF", "LISCLFOR", Translated(Arclfr, "LISCLFOR")),
                {"COAGE", "AGECLFOR", Translated(Arclfr, "AGECLFOR")},
                {"CONOT", "NOTCLFOR", Text()},
            },
        .numbers = {"TELCLFOR", "TE2CLFOR", "FAXCLFOR", "CELCLFOR", "EMACLFOR", "WEBCLFOR"},
        .branches = {{
            .rows = {.table = "ARDEST", .on = {{"CODCLFOR"}, {"FLAGCLFR"}}, .order = "PRGDEST"},
            .lines = BranchLines("ARDEST", {.number = "PRGDEST",
                                            .name = "RAGDEST",
                                            .street = "INDDEST",
                                            .postCode = "CAPDEST",
                                            .town = "LOCDEST",
                                            .province = "PRODEST"}),
        }},
    };
}

/// Carriers follow the counterparties under the same button, which has emptied the tables: nothing is emptied here.
Counterparties Vettori() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportVettoriGescom",
                  .announcement = "Inizio importazione vettori",
                  .log = LogStart::Behind,
                  .step = "Vettori",
                  .completion = "Vettori importati correttamente!"},
        .source = {.table = "VETTORI", .key = "CDVETTOR", .order = "CDVETTOR"},
        .roles = Always({.carrier = true}),
        .name = "DSVETTOR",
        .vatNumber = "PIVETTOR",
        .lines =
            {
                {"CORAS", "DSVETTOR", First(35)},
                {"CORA2", "DSVETTOR", From(36)},
                {"COIND", "INVETTOR", Text()},
                {"COCAP", "CPVETTOR", Text()},
                {"COCIT", "LOVETTOR", Text()},
                {"COPRO", "PRVETTOR", Text()},
                {"COIVA", "PIVETTOR", NotBlank(Text())},
            },
        .numbers = {.office = "TEVETTOR"},
        .empties = false,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Gescom",
        Module,
        {"SQL Server", sourceSettings::Server("GESCOM")},
        Buttons("YYYYNNN-", {{Button::Dis, "Importa Distinte Base"}, {Button::Doc, "Importa DDT Consultazione"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti()),
            ProcedureOf(Button::Cli, Vettori()),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(Button::Doc, Documenti()),
            ProcedureOf(std::nullopt, Listini()),
        },
    };
    return origin;
}

} // namespace modImport_Gescom
