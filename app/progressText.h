#pragma once

#include <QString>

#include <deque>

/// How fast a count grows, over the last ten seconds: a pause (a question to the operator) is soon forgotten.
class RateMeter {
public:
    /// Takes in the count at a moment. A smaller count than before starts afresh.
    /// @param seconds since any fixed moment, never falling
    void Add(double seconds, double count);
    /// Units per second; 0 while less than half a second is known.
    double PerSecond() const;

private:
    struct Sample {
        double seconds;
        double count;
    };
    std::deque<Sample> m_samples;
};

/// "1.234 di 10.000"
QString DoneText(double done, double total);
/// "620 al secondo", "4,2 al secondo"; empty when the rate is not known yet.
QString RateText(double perSecond);
/// "ancora 2 min 10 s"; empty while the rate is not known.
/// @param left units still to do
QString TimeLeftText(double left, double perSecond);
/// "45 s", "2 min 10 s", "1 h 05 min"
QString DurationText(double seconds);
