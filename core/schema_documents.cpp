#include "core/schemaLines.h"

namespace schema {

namespace {

/// The four families have the same columns.
constexpr Line DocumentsLines[] = {
    CompanyTable("CAU_DOC", "CDCAT CDCAD"),
    Text("CDCAT", 10),
    Text("CDCAD", 10).Indexed(),
    Text("CDTIP", 10),
    Text("CDSER", 10),
    Code("CDMAG", "MAG_AZZ"),
    Text("CDMOV", 10),
    Text("CDCAM", 10),
    Text("CDTPM", 10),
    Text("CDTPC", 10),

    CompanyTable("DOC_VEN", "DTNUM DTCAU DTANN"),
    // identity
    Text("DTTPD", 5).Indexed(),
    Text("DTSER", 10),
    Whole("DTANN"),
    Large("DTNUM"),
    Day("DTDAT").Essential(),
    Code("DTCAU", "CAU_DOC", "CDCAD"),
    Text("DTSTA", 5),
    Flag("DTANL"),
    Text("DTESR", 10),
    // counterparty and destination
    Code("DTCON", "CON_TRO").Indexed(),
    Words("DTRAS", 160),
    Words("DTIND", 100),
    Words("COIND", 100),
    Text("CONRC", 10),
    Text("COCAP", 10),
    Words("COCIT", 60),
    Text("COPRO", 5),
    Words("DTRSS", 160),
    Words("DTVIA", 100),
    Text("DTCAP", 10),
    Words("DTCIT", 60),
    Text("DTPRO", 5),
    // conditions
    Code("DTMAG", "MAG_AZZ"),
    Text("DTCAM", 10),
    Text("DTTPM", 10),
    Code("DTMOP", "TAB_MOP"),
    Code("DTVAL", "TAB_VAL"),
    Number("DTCMB"),
    Text("DTRIC", 60),
    Day("DTRID"),
    Day("DTCOR"),
    Day("DTCOC"),
    Text("DTPOR", 30),
    Day("DTSCA"),
    // totals
    Number("DTIMP"),
    Number("DTIVA"),
    Number("DTMER"),
    Number("DTTOT"),
    Number("DTSCO"),
    Number("DTSCI"),
    Number("DTSCT"),
    Number("DTOMA"),
    Number("DTSIM"),
    Number("DTSTR"),
    Notes("DTNOT"),
    Notes("DTNOS"),

    CompanyTable("DOC_VER"),
    Link("IDTES"),
    Link("DRORI"),
    Whole("DRNUM"),
    Text("DRTIP", 5),
    Code("DRART", "ART_ICO").Indexed().Essential(),
    Words("DRDES", 255),
    Words("DRDE2", 255),
    // quantities
    Code("DRUMS", "TAB_UMS"),
    Code("DRUM2", "TAB_UMS"),
    Number("DRQTR").Essential(),
    Number("DRQT2"),
    Number("DRQTE"),
    Number("DRQTD"),
    Number("DRQTP"),
    Number("DREVA"),
    Number("DRRPS"),
    // prices
    Number("DRPRZ"),
    Number("DRPR2"),
    Number("DRPRA"),
    Number("DRSCO"),
    Number("DRSC2"),
    Number("DRSC3"),
    Number("DRTOT"),
    Number("DRTTA"),
    Code("DRIVA", "TAB_IVA"),
    // delivery and stock
    Code("DRMAG", "MAG_AZZ"),
    Text("DRTPM", 10),
    Text("DRCAM", 10),
    Day("DRCON"),
    Day("DRCOR"),
    Day("DRCOC"),
    Text("DRSTA", 5),
    Flag("IMPEG"),
    Notes("DRNOT"),
    Notes("DRNOI"),
    // work phase
    Code("DRLAV", "LAV_ORA"),
    Text("DRLDS", 100),
    Whole("DRSEQ"),
    // sheet format
    Flag("DRLAM"),
    Number("DRLMX"),
    Number("DRLMY"),
    Code("DRFMT", "ART_FMT", "CDFMT"),

    CompanyTable("DOC_VED"),
    Link("IDTES"),
    CompanyTable("DOC_VEX"),
    Link("IDTES"),

    CompanyTable("DOC_ACQ", "DTNUM DTCAU DTANN").Like("DOC_VEN"),
    CompanyTable("DOC_ACR").Like("DOC_VER"),
    CompanyTable("DOC_ACD").Like("DOC_VED"),
    CompanyTable("DOC_ACX").Like("DOC_VEX"),

    CompanyTable("DOC_CTL", "DTNUM DTCAU DTANN").Like("DOC_VEN"),
    CompanyTable("DOC_CTR").Like("DOC_VER"),
    CompanyTable("DOC_CTD").Like("DOC_VED"),
    CompanyTable("DOC_CTX").Like("DOC_VEX"),

    CompanyTable("DOC_ICO", "DTNUM DTCAU DTANN").Like("DOC_VEN"),
    CompanyTable("DOC_ICR").Like("DOC_VER"),
    CompanyTable("DOC_ICD").Like("DOC_VED"),
    CompanyTable("DOC_ICX").Like("DOC_VEX"),
};

} // namespace

std::span<const Line> Documents() { return DocumentsLines; }

} // namespace schema
