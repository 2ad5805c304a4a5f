#pragma once

#include <QString>

/// Workbooks with as many rows as wanted under a header, of `WorkbookColumns` columns as an ERP hands them out: two of
/// texts that are in each row another one, ten of texts that return, dates, codes with zeros in front, numbers.
constexpr int WorkbookColumns = 40;
constexpr long MostRowsOfXls = 65'535; ///< that fit under the header

/// Writes one. @param path its ending tells the format: .xlsx, .ods, .xls. Raises `std::runtime_error`.
void WriteWorkbook(const QString& path, long rows);
