#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line BillsOfMaterialsLines[] = {
    CompanyTable("DIS_BAS", "DBART DBREV"),
    Code("DBART", "ART_ICO"),
    Whole("DBREV"),
    Flag("DBMAN"),
    Flag("DBANN"),
    Day("DBINV"),
    Flag("DBACT"),
    Flag("DBATT"),
    Flag("DBCPL"),
    Notes("DBNOT"),
    Notes("DBNOL"),
    Notes("DBNOC"),
    Notes("DBNOR"),
    Text("DBOBS", 255),
    Text("DBPRY", 10),
    Whole("DBREI"),
    Text("DBSED", 10),
    Text("IDOLD", 50).Indexed(),

    CompanyTable("DIS_COM"),
    Link("IDDIS"),
    Link("IDDBL"),
    Link("IDDBF"),
    Code("DCART", "ART_ICO").Indexed().Essential(),
    Number("DCQTA").Essential(),
    Number("DCCOE"),
    Whole("DCPOS"),
    Number("DCDMX"),
    Number("DCDMY"),
    Number("DCCOS"),
    Number("DCPRZ"),
    Number("DCRIC"),
    Flag("DCCTL"),
    Flag("DCCHK"),
    Notes("DCNOT"),

    CompanyTable("DIS_FAS"),
    Link("IDDIS"),
    Whole("DLSEQ"),
    Code("DLLAV", "LAV_ORA"),
    Code("DLMAC", "MAC_CHI"),
    Number("DLTAP"),
    Number("DLTUP"),
    Whole("DLTMP"),
    Flag("DLACT"),
    Number("DLNUP"),
    Number("DLCOS"),
    Number("DLPRZ"),
    Number("DLRIC"),
    Code("DLFOR", "CON_TRO").Indexed(),
    Text("DLICO", 255),
    Notes("DLNOT"),

    CompanyTable("DIS_COP"),
    Link("IDCOM"),
    Text("CDPAR", 20),
    Text("CPVAL", 255),
    Whole("NLATI"),

    CompanyTable("DIS_FAP"),
    Link("IDFAS"),
    Text("CDPAR", 20),
    Text("FPVAL", 255),
    Whole("NLATI"),
};

constexpr Line ProductionLines[] = {
    CompanyTable("LAV_ORA", "CDLAV"),
    Text("CDLAV", 20),
    Words("LVDES", 100).Essential(),

    CompanyTable("MAC_CHI", "CDMAC"),
    Text("CDMAC", 20),
    Words("MCDES", 100).Essential(),

    CompanyTable("TIP_PRO", "CDTIP"),
    Text("CDTIP", 20),
    Words("TPDES", 100).Essential(),

    CompanyTable("FAM_PRO", "CDFAM"),
    Text("CDFAM", 20),
    Words("FPDES", 100).Essential(),

    CompanyTable("ORD_PRO"),
    Day("OPDAT"),
    Day("OPDTC"),
    Number("OPQTA").Essential(),
    Text("OPSTA", 5),
    Text("OPTPD", 5),
    Link("OPIDD"),
    Number("OPCFM"),

    CompanyTable("ORD_COM"),
    Link("IDORD"),
    Code("OCART", "ART_ICO").Indexed().Essential(),
    Words("OCDES", 255),
    Number("OCQTA").Essential(),
    Number("OCQTU"),
    Code("OCUMP", "TAB_UMS"),
    Whole("OCPOS"),
    Whole("OCSEQ"),
    Number("OCCOE"),
    Flag("OCCTL"),
    Number("OCASS"),
    Number("OCCFM"),

    CompanyTable("ORD_FAS"),
    Link("IDOPR"),
    Whole("FLSEQ"),
    Code("FLLAV", "LAV_ORA"),
    Number("FLQTA"),
    Number("FLQTM"),
    Text("FLSTA", 5),
    Text("FLTIP", 5),
    Flag("FLACT"),
    Number("FLASS"),
    Number("FLCFM"),
    Number("FLCOE"),

    // only emptied
    CompanyTable("ORD_COP"),
    CompanyTable("ORD_FAP"),
    CompanyTable("ORD_REV"),
    CompanyTable("RIL_PRE"),
    CompanyTable("RIL_PRS"),
    CompanyTable("RIL_TEM"),
    CompanyTable("RIL_TER"),
    CompanyTable("RAG_LAV"),
    CompanyTable("RAG_LAR"),
    CompanyTable("PRE_VEN"),
    CompanyTable("PRE_COM"),
    CompanyTable("PRE_FAS"),
    SharedTable("GEN_ART_ICO"),
    SharedTable("GEN_DIS_BAS"),
    SharedTable("GEN_DIS_COM"),
    SharedTable("GEN_DIS_FAS"),
};

} // namespace

std::span<const Line> BillsOfMaterials() { return BillsOfMaterialsLines; }
std::span<const Line> Production() { return ProductionLines; }

} // namespace schema
