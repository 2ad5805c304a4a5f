#pragma once

#include <string>
#include <vector>

/// Runs every statement of a trace through the bare SQLite library, with the settings that the program opens its
/// databases with, and reads every row of every query. Returns the number of statements. Raises `std::runtime_error`
/// with the statement that failed.
long Replay(const std::string& database, const std::string& trace);

/// Rows of each table of a SQLite database, by the names of the tables. Raises `std::runtime_error`.
std::vector<long> RowCounts(const std::string& database);
