#pragma once

#include <QString>

#include <vector>

namespace history {

/// Numbers of rows (RECORD_ID), as spans of numbers that follow each other.
class RowNumbers {
public:
    RowNumbers() = default;
    /// Those of `Text`, or of several of them with a blank between.
    explicit RowNumbers(const QString& text);

    /// Adds the next one; they come in their order.
    void Add(qint64 number);
    bool IsEmpty() const { return m_spans.empty(); }
    bool Contains(qint64 number) const;
    /// "1-5 9"; empty, and not null, without any
    QString Text() const;

private:
    struct Span {
        qint64 first;
        qint64 last;
    };
    std::vector<Span> m_spans; ///< in their order, apart from each other
};

} // namespace history
