#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line ArticlesLines[] = {
    CompanyTable("ART_ICO", "CDART"),
    // identity
    Text("CDART", 50),
    Text("CDEXT", 50).Indexed().Essential(),
    Text("IDEST", 50).Indexed().Essential(),
    Flag("ARANN"),
    Day("ARINV"),
    // descriptions
    Words("ARDES", 100).Translated().Essential(),
    Words("ARDE2", 100),
    Words("ARDEC", 255).Translated(),
    Words("ARCDR", 100),
    Words("ARSD2", 160),
    Notes("ARNOT"),
    Text("AROBS", 255),
    // classification
    Text("ARCLA", 10),
    Text("ARTIP", 10),
    Code("ARFAM", "FAM_PRO"),
    Code("ARMAT", "TAB_MAT"),
    Text("ARTPG", 10),
    Flag("ARLAM"),
    Code("ARCLI", "CON_TRO").Indexed(),
    Code("ARPRF", "TAB_PRF"),
    Flag("ARTUB"),
    Text("ARREV", 20),
    Text("ARVER", 20),
    Text("ARPRY", 10),
    Flag("ARATT"),
    Text("ARDIS", 255),
    // the bill that it heads
    Code("ARDBA", "ART_ICO"),
    Whole("ARDRV"),
    Whole("ARDRI"),
    // units and VAT
    Code("ARUMS", "TAB_UMS"),
    Code("ARUM2", "TAB_UMS"),
    Code("ARUMP", "TAB_UMS"),
    Code("ARUMV", "TAB_UMS"),
    Number("ARCOE"),
    Code("ARIVA", "TAB_IVA"),
    Text("ARCAC", 20),
    // quantities and planning
    Flag("ARMAG"),
    Code("ARMAD", "MAG_AZZ"),
    Number("ARSMN"),
    Number("ARSMX"),
    Number("ARPUR"),
    Number("ARQMR"),
    Number("ARLOR"),
    Number("ARGGA"),
    Number("ARCOP"), // how many stock units a purchase unit has: a factor, where a flag could only say 1
    Number("ARCPL"), // as ARCOP
    // dimensions and weights
    Number("ARDMX"),
    Number("ARDMY"),
    Number("ARDMZ"),
    Number("ARVOL"),
    Number("ARPSN"),
    Number("ARPSL"),
    // costs and prices
    Number("ARCOS"),
    Number("ARPRZ"),
    Number("ARRIC"),
    Number("ARSCO"),
    Number("ARSC2"),
    Number("ARSC3"),
    Number("ARSAQ"),
    Day("ARDUC"),
    Day("ARDUP"),

    CompanyTable("ART_FOR", "CDART CDCON"),
    Code("CDART", "ART_ICO"),
    Code("CDCON", "CON_TRO").Indexed(),
    Flag("AFABI"),
    Number("AFGGR"),
    Number("AFLOR"),
    Number("AFQTR"),
    Number("ARPRZ"),
    Number("ARPSN"),
    Number("ARPSL"),
    Flag("ARMAG"),
    Code("ARMAD", "MAG_AZZ"),
    Text("ARTPG", 10),

    CompanyTable("ART_COD", "CDART CDCOD"),
    Code("CDART", "ART_ICO"),
    Text("CDCOD", 50).Foreign().Indexed(),
    Words("CODES", 100),
    Words("CODE2", 100),
    Text("COTIP", 5),
    Text("COTPC", 5),
    Code("COCON", "CON_TRO").Indexed(),

    CompanyTable("ART_FMT", "CDART CDFMT"),
    Code("CDART", "ART_ICO"),
    Text("CDFMT", 50).Indexed(),
    Words("LMDES", 100),
    Number("LMDMX"),
    Number("LMDMY"),
    Number("LMPES"),
    Number("LMPSR"),
    Number("LMVOL"),
    Text("LMCOL", 50),
    Number("LMCOE"),
    Text("LMIDF", 50).Indexed(),
    Text("LMSFR", 50).Indexed(), // code of the offcut, empty for a whole sheet: offcuts are found again by it
    Text("LMEXT", 50).Indexed(),
    Text("LMOLD", 50).Indexed(),
    Flag("LMATT"),
    Flag("LMANN"),
    Notes("LMNOT"),

    CompanyTable("ART_SAL", "CDART CDMAG"),
    Code("CDART", "ART_ICO"),
    Code("CDMAG", "MAG_AZZ"),

    CompanyTable("ART_MAG", "CDART CDMAG"),
    Code("CDART", "ART_ICO"),
    Code("CDMAG", "MAG_AZZ"),

    CompanyTable("ART_KIT"),
    Code("CDART", "ART_ICO").Indexed(),

    CompanyTable("ART_DET"),
    Code("CDART", "ART_ICO").Indexed(),

    // quality checks
    CompanyTable("ANA_CHR", "CDCHR"),
    Text("CDCHR", 20),
    Words("CHDES", 100).Essential(),
    Code("CHUMS", "TAB_UMS"),
    Text("CHTIP", 5),

    CompanyTable("CHK_LST"),
    Code("CDART", "ART_ICO").Indexed(),
    Whole("CKSEQ"),
    Text("CKFAS", 20),
    Code("CDCHR", "ANA_CHR"),
    Text("CKVAL", 50),
    Number("CKMIN"),
    Number("CKMAX"),
    Notes("CKNOT"),
};

} // namespace

std::span<const Line> Articles() { return ArticlesLines; }

} // namespace schema
