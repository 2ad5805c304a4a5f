#pragma once

#include "app/progressText.h"
#include "cli/TerminalOperator.h"

/// Progress on a terminal: a bar with the rows done, the rate and the time left, or, where nothing can be drawn over,
/// a line now and then. The interrupt of the terminal is its cancel.
class TerminalProgress final : public Progress {
public:
    TerminalProgress(const TerminalStreams& streams, const Operator& person)
        : m_streams(streams),
          m_person(person) {}
    ~TerminalProgress() override;
    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;

    bool Cancel() const override { return m_streams.interrupted(); }

protected:
    void Refresh() override;

private:
    QString Line() const;
    QString Bar() const;
    void Show();

    const TerminalStreams& m_streams;
    const Operator& m_person;
    RateMeter m_meter;
    double m_shownAt = -1; ///< seconds; negative before the first time
    float m_shownValue = -1;
};
