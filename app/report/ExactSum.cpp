#include "app/report/ExactSum.h"

#include <cmath>

void ExactSum::Add(double amount) {
    constexpr double most = 9e15; // above it a number holds no halves
    if (!(std::abs(amount) < most)) {
        m_isExact = false;
        return;
    }
    const double whole = std::floor(amount);
    m_millionths += std::llround((amount - whole) * Millionths);
    m_whole += static_cast<qint64>(whole) + m_millionths / Millionths;
    m_millionths %= Millionths;
}
