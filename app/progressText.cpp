#include "app/progressText.h"

#include "core/italianText.h"

#include <cmath>

namespace {

constexpr double Window = 10;         ///< seconds that the rate looks back
constexpr double ShortestKnown = 0.5; ///< seconds under which no rate is told
constexpr double FewPerSecond = 10;   ///< under it the rate is told with a decimal
constexpr qint64 Minute = 60;
constexpr qint64 Hour = 3600;

QString Number(double number, int decimals = 0) { return italian::Locale().toString(number, 'f', decimals); }

} // namespace

void RateMeter::Add(double seconds, double count) {
    if (!m_samples.empty() && count < m_samples.back().count) {
        m_samples.clear();
    }
    m_samples.push_back({seconds, count});
    while (m_samples.size() > 2 && seconds - m_samples.front().seconds > Window) {
        m_samples.pop_front();
    }
}

double RateMeter::PerSecond() const {
    if (m_samples.empty()) {
        return 0;
    }
    const double seconds = m_samples.back().seconds - m_samples.front().seconds;
    return seconds < ShortestKnown ? 0 : (m_samples.back().count - m_samples.front().count) / seconds;
}

QString DoneText(double done, double total) {
    return total <= 0 ? QString() : QString(Number(std::floor(done)) + " di " + Number(std::floor(total)));
}

QString RateText(double perSecond) {
    if (perSecond <= 0) {
        return {};
    }
    return QString(Number(perSecond, perSecond < FewPerSecond ? 1 : 0) + " al secondo");
}

QString TimeLeftText(double left, double perSecond) {
    return perSecond <= 0 ? QString() : QString("ancora " + DurationText(std::max(0.0, left) / perSecond));
}

QString DurationText(double seconds) {
    const auto whole = static_cast<qint64>(std::ceil(seconds));
    const auto two = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    if (whole < Minute) {
        return QStringLiteral("%1 s").arg(whole);
    }
    if (whole < Hour) {
        return QStringLiteral("%1 min %2 s").arg(QString::number(whole / Minute), two(whole % Minute));
    }
    return QStringLiteral("%1 h %2 min").arg(QString::number(whole / Hour), two(whole % Hour / Minute));
}
