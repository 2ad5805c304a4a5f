#pragma once

#include <QtGlobal>

#include <cstddef>

namespace examples {

/// Numbers that look random and are the same for the same seed on every machine and library.
class Random {
public:
    /// A stream of its own for each row of each table: what one row draws does not move the others.
    explicit Random(quint64 seed, quint64 stream = 0, quint64 row = 0)
        : m_state(seed * 0x9e3779b97f4a7c15U ^ Mixed(stream + 1) ^ Mixed(row * 0x2545f4914f6cdd1dU + 77)) {}

    quint64 Next() {
        m_state += 0x9e3779b97f4a7c15U;
        return Mixed(m_state);
    }
    /// From 0 to count - 1.
    qint64 Below(qint64 count) { return static_cast<qint64>((Next() >> 11) % static_cast<quint64>(count)); }
    /// From first to last, both included.
    qint64 Between(qint64 first, qint64 last) { return first + Below(last - first + 1); }
    /// True in so many cases of a hundred.
    bool Chance(int percent) { return Below(100) < percent; }
    /// One of the elements of an array or container.
    template<class List>
    const auto& Pick(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<qint64>(std::size(list))))];
    }
    /// An amount between two bounds, to so many decimals.
    double Amount(double from, double to, int decimals) {
        double unit = 1;
        for (int i = 0; i < decimals; ++i) {
            unit *= 10;
        }
        return static_cast<double>(Between(static_cast<qint64>(from * unit), static_cast<qint64>(to * unit))) / unit;
    }

private:
    /// Spreads every bit of a number over the whole of another (the finisher of SplitMix64).
    static quint64 Mixed(quint64 value) {
        value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
        value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
        return value ^ (value >> 31);
    }

    quint64 m_state;
};

} // namespace examples
