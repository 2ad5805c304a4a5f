#include "sources/spoiltCodes.h"

#include <algorithm>
#include <cmath>

namespace sources::spoiltCodes {

namespace {

const QString Kind = QStringLiteral("CIFRE PERSE");

bool AreDigits(QByteArrayView text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// "8,01234E+12", "8E+12".
bool IsScientific(QByteArrayView text) {
    const qsizetype power = text.indexOf("E+");
    if (power < 1 || !AreDigits(text.sliced(power + 2)) || !AreDigits(text.first(1))) {
        return false;
    }
    const QByteArrayView decimals = text.sliced(1, power - 1);
    return decimals.isEmpty() || ((decimals[0] == ',' || decimals[0] == '.') && AreDigits(decimals.sliced(1)));
}

} // namespace

void Look(QByteArrayView text, const QString& column, qint64 row, Oddities& oddities) {
    if (IsScientific(text.trimmed())) {
        oddities.Add(
            Kind, column, row,
            QStringLiteral("'%1' è un numero abbreviato: se era un codice, un foglio di calcolo ne ha tolto le "
                           "ultime cifre; riprenderlo dal programma di origine")
                .arg(QString::fromUtf8(text.trimmed())));
    }
}

void Look(double number, const QString& column, qint64 row, Oddities& oddities) {
    constexpr double mostKept = 1e15;
    if (std::abs(number) >= mostKept) {
        oddities.Add(
            Kind, column, row,
            QStringLiteral("'%1' ha più delle 15 cifre che un foglio di calcolo tiene: se è un codice, le ultime "
                           "sono perse; riprenderlo dal programma di origine, come testo")
                .arg(number, 0, 'f', 0));
    }
}

} // namespace sources::spoiltCodes
