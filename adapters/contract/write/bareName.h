#pragma once

#include <QString>

namespace contract {

/// A name or street without what is written now so, now otherwise: blanks, punctuation, case.
inline QString BareName(QString name) {
    return name.removeIf([](QChar c) { return !c.isLetterOrNumber(); }).toUpper();
}

} // namespace contract
