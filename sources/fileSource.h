#pragma once

#include "sql/engine.h"

/// Databases that this program reads from files itself, without a vendor's driver.
namespace sources {

/// Opens the files that the settings name:
/// - a folder of dBase/FoxPro tables: "Driver={Microsoft Visual FoxPro Driver};Data Source=FOLDER", a dBase driver, the
///   provider VFPOLEDB, or that of Jet with the extended properties "dBASE IV";
/// - a folder of text files: "Driver={Microsoft Text Driver (*.txt; *.csv)};DBQ=FOLDER", or Jet with "text";
/// - a workbook: "Driver={Microsoft Excel Driver (*.xls, *.xlsx)};DBQ=FILE", Jet with "Excel 8.0", any other string
///   whose file ends in .xls, .xlsx or .xlsm;
/// - an Access file: "Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=FILE", the providers Microsoft.Jet.OLEDB
/// and
///   Microsoft.ACE.OLEDB, any other string, DSN or database name that ends in .mdb or .accdb.
/// Null when the settings name something else. Raises `ImportError` naming the file.
std::unique_ptr<Engine> OpenFileSource(const ConnectionSettings& settings);

} // namespace sources
