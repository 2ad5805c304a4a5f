// Base tables of Metodo: our banks, the chart of accounts in ledgers and generic accounts, payment terms with their
// instalments and payment types, letters of intent. BASECALC of an instalment and the notes of ledgers are not read:
// what the former means is not known, the latter have no place.

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
                {"BANAZ", "CODNAZIONE", NationOf()},
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
                        {"MCBIL", "TIPO", BalanceSection("E")},
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
            .type = {"TIPOPAG", Or(NotZeroCode(Text()), QVariant())},
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

/// A letter that is revoked ends that day.
BaseTable LettereIntento() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMetodo", .step = "Lettere d'intento"},
        .source = {.table = "DICHIARAZIONEINTENTO",
                   .key = "PROGRESSIVO",
                   .order = "ESERCIZIO, PROGRESSIVO",
                   .naming = "ESERCIZIO, PROGRESSIVO"},
        .target = "DIC_INT",
        .lines =
            {
                {"DITIP", "TIPODICHIARAZIONE", Text()},
                {"DIANN", "ESERCIZIO", RoundedTo(0)},
                {"DINUM", "NRDICHIARAZIONE", Text()},
                {"DIPRG", "PROGRESSIVO", RoundedTo(0)},
                {"DICON", "CODCLIFOR", PartyByMark("F")},
                {"DIVAL", "PERIODODA", Day()},
                {"DIVDA", "DATAREVOCA, PERIODOA", FirstNotBlank(Day())},
                {"DIVIM", "IMPORTOPERIODOEURO", RoundedTo(2)},
                {"DIDLI", "DATAEMISSIONE", Day()},
                {"DINLI", "NRDICHRICEVUTA", Text()},
                {"DIDRT", "DATAREGISTRAZIONE", Day()},
                {"DIPRT", "NRPROTOCOLLO1", Text()},
            },
        .empties = DeletedImports("DIC_INT"),
        .keys = {"DICON", "DIANN", "DIPRG"},
    };
}

} // namespace modImport_Metodo
