#pragma once

#include "sql/errors.h"

#include <QByteArrayView>

#include <vector>

namespace sources {

/// The texts that the cells of a workbook share, one behind the other in one piece of memory.
class TextTable {
public:
    /// Adds a text. @param utf8 in UTF-8. Raises `ImportError` when they are more than memory is meant for.
    void Add(QByteArrayView utf8) {
        constexpr size_t most = size_t(1) << 30;
        if (m_bytes.size() + static_cast<size_t>(utf8.size()) > most) {
            throw ImportError(QStringLiteral("i testi del file occupano più di 1 GiB: dividerlo in più file"));
        }
        m_bytes.insert(m_bytes.end(), utf8.begin(), utf8.end());
        m_ends.push_back(static_cast<quint32>(m_bytes.size()));
    }
    size_t Count() const { return m_ends.size(); }
    /// The text of that number, from 0, which must be there; valid until the next one is added.
    QByteArrayView At(size_t index) const {
        const size_t start = index == 0 ? 0 : m_ends.at(index - 1);
        return {m_bytes.data() + start, static_cast<qsizetype>(m_ends.at(index) - start)};
    }

private:
    std::vector<char> m_bytes;
    std::vector<quint32> m_ends;
};

} // namespace sources
