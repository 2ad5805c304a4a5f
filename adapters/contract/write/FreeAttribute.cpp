#include "adapters/contract/write/FreeAttribute.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "sql/codeAsked.h"

namespace contract {

namespace {

const QString AttributeTable = QStringLiteral("FLD_VAL");

} // namespace

std::vector<TableNeed> FreeAttributeNeeds() {
    return {{AttributeTable, {"FLTAB", "FLKEY", "FLFLD", "FLVAL", "FLDEF"}}};
}

Emptying FreeAttributeEmptying(const QString& table) {
    return {{.table = AttributeTable, .way = Emptied::Way::Delete, .where = QStringLiteral("FLTAB = '%1'").arg(table)}};
}

void WriteFreeAttribute(ImportRun& run, const FreeAttribute& attribute) {
    if (attribute.value.isEmpty()) {
        return;
    }
    Session& session = run.GetSession();
    const qint64 known = IdOfCode(session.Quadrix, AttributeTable,
                                  Equals(session, "FLTAB", attribute.table) + QStringLiteral(" AND ") +
                                      Equals(session, "FLKEY", attribute.key) + QStringLiteral(" AND ") +
                                      Equals(session, "FLFLD", attribute.name),
                                  "FLFLD", attribute.name);
    TargetRow row(run, AttributeTable);
    row.Set("FLTAB", attribute.table);
    row.Set("FLKEY", attribute.key);
    row.Set("FLFLD", attribute.name);
    row.Set("FLVAL", attribute.value);
    row.Set("FLDEF", attribute.description);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
    }
}

} // namespace contract
