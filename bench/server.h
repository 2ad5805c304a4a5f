#pragma once

#include <string>

/// Measures the import of so many counterparties into MariaDB, over its own client and over ODBC, against the same
/// statements sent by the plain C client in one connection, and prints the figures. The server is that of
/// QUADRIX_TEST_MARIADB, its process that of QUADRIX_BENCH_SERVER.
/// @param examples the program that makes the example; `folder` is emptied and filled
/// Returns false when a limit is not kept. Raises `std::runtime_error`.
bool MeasureServer(const std::string& examples, const std::string& folder, long rows);
