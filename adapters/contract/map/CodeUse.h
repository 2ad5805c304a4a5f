#pragma once

#include <QString>

namespace contract {

/// Codes of a source that are translated through SYS_IMP, and the column of Quadrix that they go to.
struct CodeUse {
    QString list;           ///< TBNAM of their rows
    QString field;          ///< TBFLD
    QString codeTable = {}; ///< Quadrix table (bare name) whose codes they become; empty: the column tells
    QString table = {};     ///< that they are written to, its bare name
    QString column = {};
};

} // namespace contract
