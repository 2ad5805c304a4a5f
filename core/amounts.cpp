#include "core/amounts.h"

#include <QString>

#include <cmath>

double RoundedTo(double number, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = number * scale;
    constexpr double digits = 9007199254740992; // 2^53: beyond it there are no decimals
    if (std::abs(scaled) >= digits) {
        return number;
    }
    if (scaled == std::floor(scaled)) {
        return scaled / scale; // "number" itself may be a little off, as 7 * 0.1 is
    }
    return std::round(QString::number(scaled, 'g', 15).toDouble()) / scale;
}

double MarkUpOf(double price, double cost) {
    constexpr int decimals = 2;
    return price == 0 || cost == 0 ? 0 : RoundedTo((price - cost) / cost * 100, decimals);
}
