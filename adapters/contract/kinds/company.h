#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// The rows of one company, in a source that holds several.
struct CompanyOfSource {
    QString table;   ///< that has a row of each company
    QString column;  ///< its code
    QString setting; ///< of section IMPORT, that tells the company
    QString usual;   ///< without the setting
};

/// The condition on the rows of the company that the setting tells, for `SourceTable::told`. Raises `ImportError` with
/// the companies that the source has when this one is not among them.
/// @param column as the statement names it, e.g. "T.ID_AZIENDA"
std::function<QString(ImportRun&)> RowsOfCompany(const CompanyOfSource& company, const QString& column);

} // namespace contract
