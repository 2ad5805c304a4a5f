#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line WarehouseLines[] = {
    CompanyTable("MAG_AZZ", "CDMAG"),
    Text("CDMAG", 10),
    Words("MADES", 100).Indexed().Essential(),
    Words("MAIND", 100),
    Text("MANRC", 10),
    Text("MACAP", 10),
    Words("MACIT", 60),
    Text("MAPRO", 5),

    CompanyTable("UBI_MAG", "CDMAG CDUBI"),
    Code("CDMAG", "MAG_AZZ"),
    Text("CDUBI", 30).Indexed(),
    Words("UBDES", 100).Essential(),
    Text("UBARE", 30),
    Text("UBCAT", 30),
    Text("UBSTB", 30),
    Text("UBCOR", 30),
    Text("UBPOS", 30),
    Text("UBCEL", 30),
    Flag("UBUDC"),
    Number("UBDMX"),
    Number("UBDMY"),
    Number("UBDMZ"),
    Number("UBVOL"),
    Number("UBPES"),

    CompanyTable("UBI_ART", "CDART CDUBI"),
    Code("CDART", "ART_ICO"),
    Code("CDUBI", "UBI_MAG", "CDUBI"),
    Code("UAMAG", "MAG_AZZ"),
    Flag("UADEF"),

    CompanyTable("UDC_MAG", "CDUDC"),
    Text("CDUDC", 30),
    Code("CDUBI", "UBI_MAG", "CDUBI"),
    Words("UDDES", 100).Essential(),
    Text("UDTIP", 10),
    Text("UDODL", 30),

    // only emptied
    CompanyTable("UDC_ART"),
    CompanyTable("UDC_MOV"),
    CompanyTable("UBI_MOV"),
    CompanyTable("UBI_MOA"),
    CompanyTable("VAL_MAG"),
    CompanyTable("VAL_MAR"),
};

constexpr Line StockMovementsLines[] = {
    CompanyTable("MOV_MAG", "MMANN MMNUM"),
    Whole("MMANN"),
    Large("MMNUM"),
    Day("MMDAT").Essential(),
    Code("MMMAG", "MAG_AZZ"),
    Text("MMTPM", 10),
    Text("MMSTA", 5),
    Text("MMCAM", 10),
    Text("MMESR", 10),
    Flag("MMINV"),
    Code("MMUBI", "UBI_MAG", "CDUBI"),
    Flag("MMLAM"),

    CompanyTable("MOV_MAR"),
    Link("MRTES"),
    Whole("MRNUM"),
    Code("MRART", "ART_ICO").Indexed().Essential(),
    Words("MRDES", 255),
    Code("MRUMS", "TAB_UMS"),
    Number("MRQTA").Essential(),
    Number("MRQTI"),
    Number("MRPRZ"),
    Number("MRVAL"),
    Number("MRVAI"),
    Number("MRVAM"),
    Code("MRMAG", "MAG_AZZ"),
    Code("MRUBI", "UBI_MAG", "CDUBI"),
    Text("MRTPM", 10),
    Text("MRSTA", 5),
    Text("MRCAM", 10),
    Code("MRFMT", "ART_FMT", "CDFMT"),
    Code("MRIDF", "ART_FMT", "LMIDF"),
    Text("MRLMC", 50),
    Text("MRLMF", 50),
    Number("MRLMX"),
    Number("MRLMY"),
    Code("MRSFR", "ART_FMT", "LMSFR"),
    Text("MRLFI", 50),
    Text("MRCTB", 50),
    Text("MRCID", 50),
    Text("MRRIL", 50),

    CompanyTable("MOV_MAX"),
    Link("IDROW"),
    Text("MXCOD", 50),
    Whole("MXPOS"),
    Number("MXQTA").Essential(),
    Text("MXTPD", 5),
    Code("MXUDC", "UDC_MAG"),

    // only emptied
    CompanyTable("MOV_LOG"),
    CompanyTable("MOV_COR"),
    CompanyTable("MOV_CON"),
    CompanyTable("SCA_MOV"),
};

} // namespace

std::span<const Line> Warehouse() { return WarehouseLines; }
std::span<const Line> StockMovements() { return StockMovementsLines; }

} // namespace schema
