#pragma once

#include "adapters/contract/write/Bill.h"

namespace contract {

namespace cam {

/// What the cost of a product is made of; the materials among it are the components of its bill.
inline const QString Costs = QStringLiteral("MMNN_PPOO_00000300");
inline const QString IsMaterial = QStringLiteral("CType = 100");
/// Operations count from one.
inline constexpr int OperationStep = 1;

} // namespace cam

/// What the bill of a product reads and writes.
const Needs& CamBillNeeds();

/// Writes the bill of a product of the CAM database that is the source, with its phases and components. A product whose
/// article is not there is logged and skipped. Raises as the writer does. @param product a row with PrdRef
RowOutcome qdxImportDistintaFromLantek24(ImportRun& run, BillWriter& writer, const SourceRow& product);

/// Writes into the bill begun last what the CAM knows of a product: its operations as phases, and the materials among
/// what its cost is made of as components, consumed by the first phase; a material without a product of its own is the
/// sheet of the product's material and thickness. A component whose article is not there is logged and left out.
/// Raises as the writer does.
void qdxMakeDistintaFromCAM(ImportRun& run, BillWriter& writer, const SourceRow& product);

} // namespace contract
