#include "app/history/RowNumbers.h"

#include <QStringList>

#include <algorithm>

namespace history {

RowNumbers::RowNumbers(const QString& text) {
    std::vector<Span> spans;
    for (const QString& part : text.split(u' ', Qt::SkipEmptyParts)) {
        const qint64 first = part.section(u'-', 0, 0).toLongLong();
        spans.push_back({first, part.contains(u'-') ? part.section(u'-', 1).toLongLong() : first});
    }
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.first < b.first; });
    for (const Span& span : spans) {
        if (!m_spans.empty() && span.first <= m_spans.back().last + 1) {
            m_spans.back().last = std::max(m_spans.back().last, span.last);
        } else {
            m_spans.push_back(span);
        }
    }
}

void RowNumbers::Add(qint64 number) {
    if (!m_spans.empty() && number == m_spans.back().last + 1) {
        m_spans.back().last = number;
    } else {
        m_spans.push_back({number, number});
    }
}

bool RowNumbers::Contains(qint64 number) const {
    const auto behind = std::upper_bound(m_spans.begin(), m_spans.end(), number,
                                         [](qint64 value, const Span& span) { return value < span.first; });
    return behind != m_spans.begin() && number <= std::prev(behind)->last;
}

QString RowNumbers::Text() const {
    QStringList parts;
    for (const Span& span : m_spans) {
        parts.append(span.first == span.last ? QString::number(span.first)
                                             : QStringLiteral("%1-%2").arg(span.first).arg(span.last));
    }
    return parts.isEmpty() ? QStringLiteral("") : parts.join(u' ');
}

} // namespace history
