#include "core/schemaLines.h"

namespace schema {

namespace {

/// The ...EXT columns keep the code that the source system had.
constexpr Line BaseTablesLines[] = {
    SharedTable("TAB_IVA", "CDIVA"),
    Text("CDIVA", 10),
    Words("IVDES", 100).Essential(),
    Number("IVALI"),
    Number("IVIND"),
    Number("IVAGE"),
    Flag("IVESP"),
    Flag("IVBOL"),
    Flag("IVPLA"),
    Flag("IVPRO"),
    Text("IVEXT", 50).Indexed(),

    SharedTable("TAB_MOP", "CDMOP"),
    Text("CDMOP", 10),
    Words("MPDES", 100).Essential(),
    Whole("MPRAT"),
    Number("MPSCM"),
    Number("MPSPI"),
    Text("MPEXT", 50).Indexed(),

    SharedTable("TAB_MPR", "CDMOP NRRAT"),
    Code("CDMOP", "TAB_MOP"),
    Whole("NRRAT"),
    Code("MPTIP", "TAB_MPT"),
    Whole("MPGGF"),
    Whole("MPGGS"),
    Text("MPINI", 5),
    Number("MPPER"),
    Number("MPIVA"),
    Number("MPNET"),
    Number("MPSPE"),
    Number("MPIGM"),

    SharedTable("TAB_MPT", "CDMPT"),
    Text("CDMPT", 10),
    Words("PTDES", 100).Essential(),
    Text("PTCAT", 10),
    Text("PTCNT", 20),
    Text("PTEXT", 50).Indexed(),

    SharedTable("TAB_NAZ", "CDNAZ"),
    Text("CDNAZ", 3),
    Words("NADES", 100).Essential(),
    Text("NAEXT", 50).Indexed(),

    SharedTable("TAB_LNG", "CDLNG"),
    Text("CDLNG", 3),
    Words("LNDES", 100).Essential(),
    Text("LNEXT", 50).Indexed(),

    SharedTable("TAB_UMS", "CDUMS"),
    Text("CDUMS", 10),
    Words("UMDES", 100).Essential(),
    Text("UMEXT", 50).Indexed(),

    SharedTable("TAB_VAL", "CDVAL"),
    Text("CDVAL", 3),
    Words("VADES", 100).Essential(),
    Text("VAEXT", 50).Indexed(),

    SharedTable("TAB_MAT", "CDMAT"),
    Text("CDMAT", 50),
    Words("MADES", 100).Essential(),
    Text("MAEXT", 50).Indexed(),

    SharedTable("TAB_PRF", "CDPRF"),
    Text("CDPRF", 20),
    Words("PRDES", 100).Essential(),
    Number("PRDMZ"),
    Number("PRLAA"),
    Number("PRLAB"),
    Number("PRLAT"),
    Text("PREXT", 50).Indexed(),

    SharedTable("TAB_ABI", "CDABI"),
    Text("CDABI", 5),
    Words("ABDES", 100).Essential(),

    SharedTable("TAB_CAB", "CDABI CDCAB"),
    Code("CDABI", "TAB_ABI"),
    Text("CDCAB", 5),
    Words("CADES", 100).Essential(),
};

} // namespace

std::span<const Line> BaseTables() { return BaseTablesLines; }

} // namespace schema
