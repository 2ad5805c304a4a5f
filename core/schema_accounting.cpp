#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line AccountingLines[] = {
    CompanyTable("PIA_CON", "CDCNT"),
    Text("CDCNT", 20),
    Words("PCDES", 100).Essential(),
    Code("PCMAS", "PIA_CON"),
    Text("PCNAT", 5),
    Text("PCTIP", 5),
    Text("PCBIL", 5),
    Whole("PCLEV"),
    Text("PCPTH", 255), // the ledgers above the account, from the top, with "\" between
    Text("PCRAG", 20),
    Flag("PCDET"),

    CompanyTable("MAS_TRI", "CDMAS"),
    Text("CDMAS", 20),
    Words("MCDES", 100).Essential(),
    Text("MCTIP", 5),
    Text("MCBIL", 5),
    Whole("MCLIV"),
    Text("MCRAG", 20),

    CompanyTable("CON_CON", "CDCNT"),
    Text("CDCNT", 20),
    Words("CCDES", 100).Essential(),
    Code("CCMAS", "MAS_TRI"),
    Text("CCNAT", 5),
    Whole("CCLIV"),
    Text("CCEXT", 50).Indexed(),
};

} // namespace

std::span<const Line> Accounting() { return AccountingLines; }

} // namespace schema
