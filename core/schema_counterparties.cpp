#include "core/schemaLines.h"

namespace schema {

std::span<const Line> Counterparties() {
    static constexpr Line Lines[] = {
        CompanyTable("CON_TRO", "CDCON"),
        Text("CDCON", 6),
    };
    return Lines;
}

} // namespace schema
