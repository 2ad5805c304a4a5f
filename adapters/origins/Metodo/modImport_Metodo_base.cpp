// Base tables of Metodo: our banks, the chart of accounts in ledgers and generic accounts, payment terms with their
// instalments and payment types. BASECALC of an instalment and the notes of ledgers are not read: what the former means
// is not known, the latter have no place.

#include "adapters/origins/Metodo/modImport_Metodo.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Metodo {

Procedure ImportBanche() {
    const Banks banks{
        .frame = {.module = Module, .procedure = "ImportBanche"},
        .source = {.table = "ANAGRAFICABANCHE", .key = "CODBANCA", .order = "CODBANCA"},
        .code = "CODBANCA",
        .iban = {"CODICEIBAN", WithoutBlanks()},
        .lines =
            {
                {"BADES", "DSCBANCA", Text()},
                {"BAABI", "ABI", NotBlank(Digits(5))},
                {"BACAB", "CAB", NotBlank(Digits(5))},
                {"BACIN", "CIN", Text()},
                {"BACCO", "CONTOCORRENTE", Text()},
                {"BABIC", "CODICEBIC", Text()},
                {"BASIA", "CODICESIA", Text()},
                {"BANAZ", "CODNAZIONE", Or(Coded("NAZIONE"), schema::defaults::Country)},
                {"BAVAL", "", Constant(schema::defaults::Currency)},
            },
        .empties = DeletedImports("BAN_CHE"),
    };
    return ProcedureOf(Button::Disegni, banks);
}

Procedure ImportPianoContiMetodo() {
    const Rule nature = Or(Translated("TABMASTRI", "CODICE"), "GE");
    const Accounts chart{
        .frame = {.module = Module, .procedure = "ImportPianoContiMetodo"},
        .accounts =
            {
                .source = {.table = "ANAGRAFICAGENERICI", .key = "CODCONTO", .order = "CODCONTO"},
                .target = "CON_CON",
                .code = "CODCONTO",
                .lines =
                    {
                        {"CCDES", "DSCCONTO1", Text()},
                        {"CCMAS", "CODMASTRO", Text()},
                        {"CCNAT", "CODMASTRO", nature},
                        {"CCLIV", "", Constant(2)},
                    },
            },
        .ledgers =
            BaseTable{
                .source = {.table = "TABMASTRI", .key = "CODICE", .order = "CODICE"},
                .target = "MAS_TRI",
                .code = "CODICE",
                .lines =
                    {
                        {"MCDES", "DESCRIZIONE", Text()},
                        {"MCTIP", "TIPO", Text()},
                        {"MCBIL", "TIPO", Choice({{"A", "SP"}, {"P", "SP"}, {"E", "CE"}}, "")},
                        {"MCLIV", "", Constant(1)},
                    },
            },
    };
    return ProcedureOf(Button::Piano, chart);
}

Procedure ImportModalitaPagamentoMetodo() {
    const PaymentTerms terms{
        .frame = {.module = Module,
                  .procedure = "ImportModalitaPagamentoMetodo",
                  .announcement = "Inizio importazione Modalità di Pagamento",
                  .step = "Modalità di pagamento",
                  .completion = "Modalità di Pagamento importate correttamente!"},
        .source = {.table = "TABPAGAMENTI", .key = "CODICE", .order = "CODICE"},
        .code = "CODICE",
        .lines =
            {
                {"MPDES", "DESCRIZIONE", Text()},
                {"MPRAT", "NUMERORATE", RoundedTo(0)},
                {"MPSCM", "SCONTO", LeadingNumber()},
            },
        .instalments = {{
            .rows = {.table = "TABRATEPAG", .on = {{"CODICE"}}, .order = "CODICE, NUMERO"},
            .type = {"TIPOPAG", NotZeroCode(Text())},
            .days = "GIORNI",
            .fixedDay = {"GIORNOFISSO", NotZero()},
            .start = {"FINEMESE", Choice({{"1", "FM"}}, "DF")},
            .percent = "PRCIMP",
        }},
    };
    const BaseTable types{
        .frame = {.step = "Tipi di pagamento"},
        .source = {.table = "TIPIEFFETTI", .key = "EFFETTO", .order = "EFFETTO"},
        .target = "TAB_MPT",
        .code = "EFFETTO",
        .lines = {{"PTDES", "DESCRIZIONE", Text()}, {"PTCAT", "TIPO", Text()}},
        .empties = DeletedImports("TAB_MPT"),
    };
    return ProcedureOf(Button::Saldi, FrameOf(terms), {PartOf(types), PartOf(terms)});
}

} // namespace modImport_Metodo
