#include "core/amounts.h"

#include <QString>

#include <array>
#include <charconv>
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
    constexpr double allKnown = 1e14; // all digits known stand in front of the decimals: halves go away from 0 as below
    if (std::abs(scaled) >= allKnown && std::abs(scaled) < allKnown * 10) {
        return std::round(scaled) / scale;
    }
    constexpr int known = 15; // digits that a number keeps of how it was written
    std::array<char, 32> text{};
    const char* end =
        std::to_chars(text.data(), text.data() + text.size(), scaled, std::chars_format::scientific, known - 1).ptr;
    double written = 0;
    std::from_chars(text.data(), end, written);
    return std::round(written) / scale;
}

double MarkUpOf(double price, double cost) {
    constexpr int decimals = 2;
    return price == 0 || cost == 0 ? 0 : RoundedTo((price - cost) / cost * 100, decimals);
}
