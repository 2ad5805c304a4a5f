#pragma once

#include "adapters/contract/run/Origin.h"

namespace modImport_Punta {

inline const QString Module = QStringLiteral("modImport_Punta");

/// The contact persons of a workbook, behind the button of the counterparties.
contract::Procedure ImportRiferimentiPuntaExcel();
/// The origin whose source that workbook is.
const contract::Origin& EntryOfWorkbook();

} // namespace modImport_Punta
