#pragma once

#include <string>

/// Imports every example twice, of so many rows and of ten times as many, and prints processor seconds, their growth
/// and the memory of each import. Returns false when one grows more than eleven times.
/// @param build holds the programs @param folder is emptied and filled
bool MeasureOrigins(const std::string& build, const std::string& folder, long rows);
