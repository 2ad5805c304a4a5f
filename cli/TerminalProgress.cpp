#include "cli/TerminalProgress.h"

namespace {
constexpr double DrawEvery = 0.1; ///< seconds between two drawings
constexpr double PrintEvery = 10; ///< seconds between two lines where nothing can be drawn over
constexpr int BarWidth = 24;      ///< characters
} // namespace

TerminalProgress::~TerminalProgress() {
    if (m_streams.draw) {
        m_streams.draw({});
    }
    if (!Caption().isEmpty() && Value() > 0 && (m_streams.draw || m_shownValue != Value())) {
        m_streams.print(Caption() + u' ' + DoneText(static_cast<double>(Value()), static_cast<double>(Max())));
    }
}

void TerminalProgress::Refresh() {
    if (Caption().isEmpty()) {
        return;
    }
    const double now = m_person.WorkedSeconds();
    if (m_shownAt < 0) {
        m_shownAt = now;
        m_meter.Add(now, 0);
    }
    if (now - m_shownAt >= (m_streams.draw ? DrawEvery : PrintEvery)) {
        m_meter.Add(now, static_cast<double>(Value()));
        m_shownAt = now;
        m_shownValue = Value();
        Show();
    }
}

QString TerminalProgress::Bar() const {
    const float part = Max() > 0 ? std::clamp(Value() / Max(), 0.0F, 1.0F) : 0.0F;
    const auto filled = static_cast<qsizetype>(part * BarWidth);
    return u'[' + QString(filled, u'#') + QString(BarWidth - filled, u'-') + u']';
}

QString TerminalProgress::Line() const {
    const auto done = static_cast<double>(Value());
    const auto total = static_cast<double>(Max());
    QStringList parts{DoneText(done, total)};
    const double rate = m_meter.PerSecond();
    for (const QString& part : {RateText(rate), TimeLeftText(total - done, rate)}) {
        if (!part.isEmpty()) {
            parts.append(part);
        }
    }
    return parts.join(", ");
}

void TerminalProgress::Show() {
    if (m_streams.draw) {
        m_streams.draw(Caption() + u' ' + Bar() + u' ' + Line());
    } else {
        m_streams.print(Caption() + u' ' + Line());
    }
}
