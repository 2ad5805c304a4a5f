#pragma once

#include <QString>

namespace sources {

/// The file of a path, its name in whatever case; empty when there is none.
QString FindFile(const QString& path);

} // namespace sources
