#pragma once

#include "adapters/contract/run/Origin.h"

namespace modImport_Excel {

/// The origin "Excel".
const contract::Origin& Entry();

/// A sheet as the procedure behind a button reads it.
struct Sheet {
    QString name;   ///< "CLIENTI"
    QString target; ///< table of the record that a row is, its bare name
    /// Headers that the procedure knows without looking into the sheet, each once: that of the code first, the others
    /// in the order in which it reads them.
    QStringList headers;
    const contract::Procedure* procedure = nullptr;
};

/// The sheets of all buttons that have one, in the order of the buttons.
std::vector<Sheet> Sheets();

/// Kind of value of a column of Quadrix, as the dictionary SYS_SYS_COL tells it; `DataType::VarChar` for a column that
/// it does not have. Raises `SqlError`. @param table bare name
DataType GetDataTypeFromSysSys(Session& session, const QString& table, const QString& column);

} // namespace modImport_Excel
