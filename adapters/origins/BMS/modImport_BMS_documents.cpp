// Orders of BMS: LGORDTES and LGORDRIG hold those of customers (OC), to suppliers (OF) and to subcontractors (OL).
// Behind both buttons the operator is asked which are meant.

#include "adapters/origins/BMS/modImport_BMS.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_BMS {

namespace {

/// A payment term is translated as that of the counterparty is.
Rule PaymentTerm() {
    return {"di un cliente tradotto con SYS_IMP (ANCLIENT, COD_PAGAM), di un fornitore con SYS_IMP (ANFORNIT, "
            "COD_PAGAM), i codici che mancano vi si annotano",
            [ofCustomer = Translated(Clienti, "COD_PAGAM").apply,
             ofSupplier = Translated(Fornitori, "COD_PAGAM").apply](const RuleInput& input) {
                return input.facts.roles.customer ? ofCustomer(input) : ofSupplier(input);
            }};
}

} // namespace

Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiBMS",
                  .announcement = "Inizio importazione Documenti da BMS",
                  .completion = "Documenti BMS importati correttamente: %1",
                  .confirmation = "Importare i documenti?"},
        .source = {.table = "LGORDTES",
                   .key = "NUMERO",
                   .order = "TIPO_DOC, ANNO, NUMERO, NUM_RIGA",
                   .naming = "TIPO_DOC, ANNO, NUMERO, NUM_RIGA",
                   .group = {"TIPO_DOC", "ANNO", "NUMERO"}},
        .rows = {.table = "LGORDRIG", .on = {{"ID_ORDINE"}}, .order = "NUM_RIGA"},
        .kinds = {{.marks = {"OC"}, .cause = "ORDCL", .type = "ORD", .family = Sales},
                  {.marks = {"OF"}, .cause = "ORDFO", .type = "ORD", .family = Purchases},
                  {.marks = {"OL"}, .cause = "ORDLA", .type = "ORD", .family = WorkAccount}},
        .kind = "TIPO_DOC",
        .head =
            {
                .number = "NUMERO",
                .day = "DT_DOC",
                .year = "ANNO",
                .counterparty = {"COD_SOGG", PartyOf()},
                .lines = {{"DTRIC", "RIF_CLI", Text()},
                          {"DTRID", "DT_RIF", Day()},
                          {"DTMOP", "COD_PAGAM", PaymentTerm()},
                          {"DTVAL", "COD_VALUTA", Currency(Clienti, "COD_VALUTA")},
                          {"DTNOT", "NOTE", Text()}},
            },
        .row =
            {
                .number = "NUM_RIGA",
                .article = {"COD_ARTICOLO", Article()},
                .description = "DESCR",
                .unit = {"UM", Unit(Artmag, "UM_BASE", "")},
                .quantity = "QTA",
                .delivered = "QTA_EVASA",
                .price = "PREZZO",
                .discounts = {"SCONTO1", "SCONTO2"},
                .vatCode = {"COD_IVA", NotBlank(VatCode(Artmag, "COD_IVA"))},
                .lines = {{"DRCOR", "DT_CONS", Day()}},
            },
        .which = Which::Asked,
        .imported = Imported::Asked,
    };
}

} // namespace modImport_BMS
