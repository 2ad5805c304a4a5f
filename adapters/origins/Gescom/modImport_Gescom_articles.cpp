// Articles and price lists of Gescom: ARTICOLI holds a row for each article, LISTINI one for each price, which holds up
// to QTLISTIN, blank or 0 for any quantity.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliGescom"},
        .source = {.table = ArticoliTable, .key = "CDARTICO", .order = "CDARTICO"},
        .code = {"CDARTICO", Article()},
        .description = "DSARTICO",
        .lines =
            {
                {"ARDE2", "D2ARTICO", First(100)},
                {"ARNOT", "NTARTICO", Text()},
                {"ARCLA", "TPARTICO", Choice({{"P", "PF"}, {"S", "SL"}}, "CM")},
                {"ARFAM", "FMARTICO", Translated(ArticoliTable, "FMARTICO")},
                {"ARANN", "ANARTICO", Is("S")},
                {"ARUMS", "UMARTICO", TranslatedOrUpper(ArticoliTable, "UMARTICO", schema::defaults::Unit)},
                {"ARUM2", "U2ARTICO", TranslatedOrUpper(ArticoliTable, "UMARTICO", "")},
                {"ARCOE", "FCARTICO", NotZero()},
                {"ARIVA", "IVARTICO", VatCode(ArticoliTable, "IVARTICO")},
                {"ARSMN", "SMARTICO", RoundedTo(6)},
                {"ARLOR", "LRARTICO", RoundedTo(6)},
                {"ARGGA", "GGARTICO", RoundedTo(0)},
                {"ARPSN", "PSARTICO", RoundedTo(3)},
                {"ARCOS", "CSARTICO, CUARTICO", FirstNotZero()},
                {"ARPRZ", "PVARTICO", RoundedTo(6)},
                {"ARRIC", "PVARTICO, CSARTICO, CUARTICO", MarkUp()},
                {"ARSCO", "S1ARTICO", RoundedTo(2)},
            },
        .suppliers = {{
            .supplier = {"FOARTICO", KnownSupplier()},
            .ownCode = "CFARTICO",
            .price = {"CSARTICO, CUARTICO", FirstNotZero()},
            .leadDays = "GGARTICO",
            .lot = "LRARTICO",
        }},
        .location = "UBARTICO",
    };
}

PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniGescom"},
        .source = {.table = "LISTINI",
                   .key = "CDLISTIN",
                   .order = "CDLISTIN, ARLISTIN, DILISTIN",
                   .naming = "CDLISTIN, ARLISTIN"},
        .article = {"ARLISTIN", Article()},
        .prices = {{
            .list = "CDLISTIN",
            .direction = "TPLISTIN",
            .description = "DSLISTIN",
            .from = "DILISTIN",
            .to = "DFLISTIN",
            .scales = {{.quantity = "QTLISTIN", .price = "PRLISTIN", .discounts = {"S1LISTIN", "S2LISTIN"}}},
        }},
    };
}

} // namespace modImport_Gescom
