#pragma once

#include "sql/libraries.h"

namespace sources {

/// The libraries that read foreign files.
QVector<Library> SourceLibraries();

} // namespace sources
