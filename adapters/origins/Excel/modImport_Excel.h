#pragma once

#include "core/Session.h"

namespace modImport_Excel {

/// Kind of value of a column of Quadrix, as the dictionary SYS_SYS_COL tells it; `DataType::VarChar` for a column that
/// it does not have. Raises `SqlError`. @param table bare name
DataType GetDataTypeFromSysSys(Session& session, const QString& table, const QString& column);

} // namespace modImport_Excel
