// Documents of Mexal, sales and purchases alike: DOC_TES holds the heads, DOC_RIG the rows; sign, series, number and
// account tell the documents apart, and the date those of different years.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/map/lookups.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Mexal {

namespace {

/// A day of digits, "gmmaaaa"; blank is none.
Rule DayOfNumber() {
    return {"giorno scritto gMMaaaa, senza zero davanti", [](const RuleInput& input) -> RuleValue {
                const auto day = DayOfDigits(input.Text());
                if (!day) {
                    throw ImportError(QStringLiteral("'%1' non è una data gmmaaaa").arg(input.Text()));
                }
                return QVariant(*day);
            }};
}

/// The counterparty of a document.
Rule Counterparty() {
    return {
        "tradotto con SYS_IMP (CON_TRO, CDCON), altrimenti la controparte importata da quel codice; riga abbandonata "
        "se manca",
        [](const RuleInput& input) -> RuleValue {
            const bool customer = input.facts.roles.customer;
            return FoundParty(GetControparteMexal(input.session, input.Text(), customer), input.Text(),
                              RoleText(customer));
        }};
}

/// What a sign becomes. Each has a cause of its own, as each counts from one; the causes are none of other origins,
/// whose orders may stand in the same company.
std::vector<DocumentKind> Kinds() {
    return {
        {.marks = {"OC"}, .cause = "ORDCM", .type = "ORD", .family = Sales},
        {.marks = {"BC"}, .cause = "DDTCM", .type = "DDT", .family = Sales, .isOpen = false},
        {.marks = {"FT"}, .cause = "FATCM", .type = "FAT", .family = Sales, .isOpen = false},
        {.marks = {"PR"}, .cause = "OFFCM", .type = "OFF", .family = Sales},
        {.marks = {"OF"}, .cause = "ORDFM", .type = "ORD", .family = Purchases},
        {.marks = {"BF"}, .cause = "DDTFM", .type = "DDT", .family = Purchases, .isOpen = false},
        {.marks = {"FF"}, .cause = "FATFM", .type = "FAT", .family = Purchases, .isOpen = false},
    };
}

} // namespace

Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiMEX",
                  .announcement = "Inizio importazione Documenti da Mexal",
                  .completion = "Documenti Mexal importati correttamente: %1"},
        .source = {.table = "DOC_TES",
                   .key = "[_MMNUM]",
                   .order = "[_MMSIG], [_MMSER], [_MMNUM], [_MMCLI], [_MMDAT], [_MMRIG]",
                   .where = "(T.[_MMSIG] IS NULL OR T.[_MMSIG] NOT IN ('MF', 'MA'))", // MF, MA: stock movements
                   .naming = "_MMSIG, _MMSER, _MMNUM, _MMRIG",
                   .group = {"_MMSIG", "_MMSER", "_MMNUM", "_MMCLI", "_MMDAT"}},
        .rows =
            {.table = "DOC_RIG",
             .on = {{"[_MMSIG]"}, {.column = "[_MMSER]", .tiesNulls = true}, {"[_MMNUM]"}, {"[_MMCLI]"}, {"[_MMDAT]"}},
             .order = "[_MMRIG]",
             .where = "(J1.[_MMSIG] IS NULL OR J1.[_MMSIG] NOT IN ('MF', 'MA'))"},
        .kinds = Kinds(),
        .kind = "_MMSIG",
        .head =
            {
                .number = "_MMNUM",
                .day = {"_MMDAT", DayOfNumber()},
                .series = "_MMSER",
                .counterparty = {"_MMCLI", Counterparty()},
                .lines =
                    {
                        {"DTRIC", "_MMRIF", Text()},
                        {"DTNOT", "_MMNOT", Text()},
                        {"DTMOP", "_MMPAG", Translated(PiaCon, "_PCPAG")},
                        {"DTVAL", "_MMVAL", NumberedCurrency()},
                    },
                .countedByParty = true,
            },
        .row =
            {
                .number = "_MMRIG",
                .article = {"_MMART", Article()},
                .description = "_MMDES",
                .quantity = "_MMQTA",
                .delivered = "_MMEVA",
                .price = "_MMPRZ",
                .discounts = DiscountFields("_MMSCO"),
                .vatCode = {"_MMALI", NotBlank(VatCode(ArtMag, "_ARIVA"))},
                .lines = {{"DRCOR", "_MMSCA", NotBlank(DayOfNumber())}},
            },
        .sinceCondition = EveryRow,
    };
}

} // namespace modImport_Mexal
