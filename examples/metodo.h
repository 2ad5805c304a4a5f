#pragma once

#include "examples/describedRules.h"

/// What the files of the example of Metodo share.
namespace examples::metodo {

using namespace described;

inline constexpr qint64 Years = 2; ///< that counterparties and articles have data of
inline constexpr qint64 Lists = 2;

/// A letter and a number in six characters.
inline Rule LetterCode(const QString& letter) {
    return [letter](const Place& place) {
        constexpr qsizetype digits = 6;
        return QVariant(letter + QString::number(place.row + 1).rightJustified(digits));
    };
}
inline Rule CustomerCode() { return LetterCode("C"); }
inline Rule SupplierCode() { return LetterCode("F"); }
inline Rule Year() { return Each({2023, 2024}); }
inline Rule Term() { return OneOf({"RB30", "RB36", "BON"}); }
inline Rule No() { return Fixed(0); }

QVector<Table> ArticleTables();
QVector<Table> DocumentTables();

} // namespace examples::metodo
