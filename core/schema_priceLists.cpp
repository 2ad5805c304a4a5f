#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line PriceListsLines[] = {
    CompanyTable("LIS_TES", "CDLIS LTTIP"), // a sales list and a purchase list may bear the same code
    Text("CDLIS", 20),
    Words("LTDES", 100).Essential(),
    Text("LTTIP", 5),
    Text("LTTYP", 5),
    Code("LTVAL", "TAB_VAL"),
    Day("LTINV"),

    CompanyTable("LIS_ART", "CDLIS CDART"),
    Link("IDTES"),
    Code("CDLIS", "LIS_TES", "CDLIS"),
    Code("CDART", "ART_ICO").Indexed(),
    Day("LAINV"),
    Day("LAFIV"),
    Notes("LANOT"),

    CompanyTable("LIS_ARS"),
    Link("IDLSD"),
    Number("SCQTA").Essential(),
    Number("SCPRZ").Essential(),
    Number("SCSCO"),
    Number("SCSC2"),
    Number("SCSC3"),

    CompanyTable("LIS_LAV", "CDART CDFOR"),
    Code("CDLAV", "LAV_ORA").Indexed(),
    Code("CDART", "ART_ICO"),
    Code("CDFOR", "CON_TRO").Indexed(),
    Text("LLTYP", 5),
    Code("LLVAL", "TAB_VAL"),
    Day("LLINV"),
    Day("LLFIV"),

    CompanyTable("LIS_LAS"),
    Link("IDLSD"),
    Number("SCQTA").Essential(),
    Number("SCCOS"),
    Number("SCSCO"),
    Number("SCSC2"),
    Number("SCSC3"),

    CompanyTable("PRO_MOZ", "CDPRM"),
    Text("CDPRM", 20),
    Words("PMDES", 100).Essential(),
    Text("PMTIP", 5),
    Text("PMTYP", 5),
    Code("PMCON", "CON_TRO").Indexed(),
    Flag("PMVLD"),

    CompanyTable("PRO_MOR"),
    Code("CDPRM", "PRO_MOZ").Indexed().Essential(),
    Number("PRSC1"),
    Number("PRSC2"),
    Number("PRSC3"),
    Flag("PRVLD"),

    CompanyTable("STO_PRZ", "CDART STDAT"),
    Code("CDART", "ART_ICO"),
    Day("STDAT"),
    Number("STPRZ").Essential(),
    Number("STCOS"),
    Number("STSC1"),
    Number("STSC2"),
    Number("STSC3"),
    Text("STNOT", 255),

    CompanyTable("STO_COS", "CDART STDAT").Like("STO_PRZ"),

    // conditions of a counterparty
    CompanyTable("LIS_CTL"),
    Code("CDCON", "CON_TRO").Indexed(),
    CompanyTable("LIS_CLS"),
    Code("CDCON", "CON_TRO").Indexed(),
    CompanyTable("LIS_CLV"),
    Code("CDCON", "CON_TRO").Indexed(),
};

} // namespace

std::span<const Line> PriceLists() { return PriceListsLines; }

} // namespace schema
