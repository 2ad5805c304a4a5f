#pragma once

#include "tests/adapters/Rehearsal.h"

/// Runs the line of a rehearsal over its source without this or that column. A run that lacks one ends before anything
/// is written and names it, or leaves the same rows, but for the values that came from the column.
/// @return what is wrong, with the columns; empty when nothing is
QString WrongWithoutColumns(Rehearsal& stage);
