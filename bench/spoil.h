#pragma once

#include <string>

/// Writes what is no number into a column of one row in so many of a dBase table. Raises `std::runtime_error`.
void SpoilRows(const std::string& table, const std::string& column, int oneIn);
