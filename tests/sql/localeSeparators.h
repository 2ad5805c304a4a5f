#pragma once

#include "sql/mod_ovTools.h"

/// How some countries write numbers.
namespace localeSeparators {

inline const mod_ovTools::LocaleSeparators Italian{",", "."};
inline const mod_ovTools::LocaleSeparators English{".", ","};
inline const mod_ovTools::LocaleSeparators French{",", QString::fromUtf8("\xe2\x80\xaf")}; // a narrow blank

} // namespace localeSeparators
