#pragma once

#include <string>

/// Imports the documents of Gescom from a source with the names that the module knows, and from one whose tables and
/// columns are called otherwise and are told by a layout file; in turn, several times. Prints the processor seconds of
/// both, and returns false when the second takes more than a twentieth more.
/// @param build holds the programs @param folder is emptied and filled
bool MeasureLayout(const std::string& build, const std::string& folder, long rows);
