#pragma once

#include <QString>

namespace contract {

/// Where a text can be cut at a length without halving a character that takes two units: there, or one before.
inline qsizetype CutAt(const QString& text, qsizetype length) {
    const bool halves =
        length > 0 && length < text.size() && text.at(length - 1).isHighSurrogate() && text.at(length).isLowSurrogate();
    return halves ? length - 1 : length;
}

/// The first `length` characters (UTF-16 units, as columns count them); one less where the last would be half of one.
inline QString FirstOf(const QString& text, qsizetype length) { return text.left(CutAt(text, length)); }
/// What `FirstOf` leaves of a text.
inline QString RestOf(const QString& text, qsizetype length) { return text.mid(CutAt(text, length)); }

} // namespace contract
