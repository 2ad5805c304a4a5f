#include "core/amounts.h"

#include <QString>

#include <cmath>

double RoundedTo(double number, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = number * scale;
    if (scaled == std::floor(scaled)) {
        return number;
    }
    return std::round(QString::number(scaled, 'g', 15).toDouble()) / scale;
}

double MarkUpOf(double price, double cost) {
    constexpr int decimals = 2;
    return price == 0 || cost == 0 ? 0 : RoundedTo((price - cost) / cost * 100, decimals);
}
