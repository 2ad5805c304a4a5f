#pragma once

#include <QtGlobal>

/// A sum of amounts that is exact to a millionth, whatever the order and the number of what is added: two sums of the
/// same amounts are equal.
class ExactSum {
public:
    /// Adds an amount; one that is no number, or is beyond what is exact (9e15), makes the sum differ from any other.
    void Add(double amount);
    /// The sum as a number, for showing it.
    double Value() const { return static_cast<double>(m_whole) + static_cast<double>(m_millionths) / Millionths; }
    bool operator==(const ExactSum& other) const {
        return m_isExact && other.m_isExact && m_whole == other.m_whole && m_millionths == other.m_millionths;
    }

private:
    static constexpr qint64 Millionths = 1'000'000;

    qint64 m_whole = 0;
    qint64 m_millionths = 0; ///< from 0 to below one
    bool m_isExact = true;
};
