#pragma once

#include <QStringList>

namespace cli {

/// The whole program: runs the command of a command line (the program's name first) and returns its exit code: 0 done,
/// 1 failed, 2 wrong usage, 3 cancelled.
int Run(const QStringList& arguments);

} // namespace cli
