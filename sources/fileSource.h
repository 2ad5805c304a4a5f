#pragma once

#include "sql/engine.h"

/// Databases that this program reads from files itself, without a vendor's driver.
namespace sources {

/// Opens the files that a connection string names: "Driver={Microsoft Visual FoxPro Driver};Data Source=FOLDER" (or a
/// dBase driver, or the provider VFPOLEDB) opens a folder of dBase/FoxPro tables, "Driver={Microsoft Text Driver
/// (*.txt;
/// *.csv)};DBQ=FOLDER" one of text files. Null when the settings name something
/// else. Raises `ImportError` naming the file.
std::unique_ptr<Engine> OpenFileSource(const ConnectionSettings& settings);

} // namespace sources
