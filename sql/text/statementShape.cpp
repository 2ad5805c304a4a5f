#include "sql/text/statementShape.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr qsizetype MostValues = 500;

bool IsNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

constexpr const char* Verbs[] = {"SELECT", "INSERT", "UPDATE", "DELETE"};

/// Walks through a statement and takes its values out; what stands between them is copied in one piece.
class Splitter {
public:
    explicit Splitter(const QByteArray& text)
        : m_text(text),
          m_begin(text.constData()),
          m_end(text.constData() + text.size()),
          m_at(m_begin),
          m_copied(m_begin) {
        constexpr qsizetype usualValues = 16;
        m_result.text = text;
        m_result.shape.reserve(text.size());
        m_result.values.reserve(usualValues);
    }

    StatementShape Split() {
        while (m_at < m_end) {
            Step();
        }
        CopyUpTo(m_end);
        return std::move(m_result);
    }

private:
    char Next() const { return m_at + 1 < m_end ? m_at[1] : '\0'; }

    void Step() {
        const char c = *m_at;
        if (IsDigit(c) && IsValuePlace()) {
            TakeNumber();
        } else if (IsNamePart(c)) {
            PassName();
        } else if (c == '\'') {
            TakeText();
        } else if (c == '"' || c == '`' || c == '[') {
            Pass(Find(c == '[' ? "]" : (c == '"' ? "\"" : "`"), m_at + 1));
        } else if (c == '-' && Next() == '-') {
            Pass(Find("\n", m_at));
        } else if (c == '/' && Next() == '*') {
            Pass(Find("*/", m_at + 2));
        } else {
            const bool isSign = (c == '-' || c == '+') && IsValuePlace();
            if (c > ' ' && !isSign) {
                m_before = c;
            }
            ++m_at;
        }
    }

    /// Numbers elsewhere may be positions ("ORDER BY 1"), which are no values.
    bool IsValuePlace() const { return m_before == '=' || (m_inValues && (m_before == '(' || m_before == ',')); }

    /// Just behind a text that is looked for; the end when it is not there.
    const char* Find(const char* what, const char* from) const {
        const qsizetype found = m_text.indexOf(what, from - m_begin);
        return found < 0 ? m_end : m_begin + found + static_cast<qsizetype>(qstrlen(what));
    }

    void Pass(const char* end) {
        m_at = end;
        m_before = 'x';
    }

    void PassName() {
        const char* end = m_at;
        while (end < m_end && IsNamePart(*end)) {
            ++end;
        }
        constexpr qsizetype valuesLength = 6;
        // x'00' is a value of bytes: what follows the name is part of it.
        if (end < m_end && *end == '\'') {
            end = Find("'", end + 1);
        } else if (end - m_at == valuesLength && qstrnicmp(m_at, "VALUES", valuesLength) == 0) {
            m_inValues = true;
        }
        Pass(end);
    }

    void TakeText() {
        QByteArray doubled; ///< what stands before a doubled quote
        const char* from = m_at + 1;
        for (;;) {
            const auto* close = static_cast<const char*>(std::memchr(from, '\'', static_cast<size_t>(m_end - from)));
            if (close == nullptr) {
                Pass(m_end); // an open literal: the database names the error
                return;
            }
            if (close + 1 == m_end || close[1] != '\'') {
                const QByteArray rest = Part(from, close);
                Take({true, doubled.isEmpty() ? rest : doubled + rest}, close + 1);
                return;
            }
            doubled.append(from, close + 1 - from);
            from = close + 2;
        }
    }

    /// A piece of the statement, which the result holds.
    static QByteArray Part(const char* from, const char* end) { return QByteArray::fromRawData(from, end - from); }

    void TakeNumber() {
        const char* end = m_at;
        while (end < m_end && (IsNamePart(*end) || *end == '.')) {
            ++end;
        }
        const QByteArray digits = Part(m_at, end);
        bool isNumber = std::all_of(m_at, end, IsDigit);
        if (!isNumber) {
            digits.toDouble(&isNumber);
        }
        if (isNumber) {
            Take({false, digits}, end);
        } else {
            Pass(end);
        }
    }

    void Take(StatementShape::Value value, const char* end) {
        CopyUpTo(m_at);
        m_copied = end;
        m_result.values.append(std::move(value));
        m_result.shape += '?';
        Pass(end);
    }

    void CopyUpTo(const char* end) { m_result.shape.append(m_copied, end - m_copied); }

    const QByteArray& m_text;
    const char* m_begin;
    const char* m_end;
    const char* m_at;
    const char* m_copied; ///< what stands before it is in the shape
    StatementShape m_result;
    char m_before = '\0'; ///< last character that is no blank; 'x' behind names and values
    bool m_inValues = false;
};

bool TakesValues(const QByteArray& statement) {
    constexpr qsizetype lead = 64;
    constexpr qsizetype verb = 6;
    const QByteArray start = QByteArray::fromRawData(statement.constData(), std::min(statement.size(), lead)).trimmed();
    return std::any_of(std::begin(Verbs), std::end(Verbs),
                       [&start](const char* word) { return qstrnicmp(start.constData(), word, verb) == 0; });
}

} // namespace

StatementShape StatementShape::Of(const QByteArray& statement) {
    if (!TakesValues(statement)) {
        return {statement, statement, {}, false};
    }
    StatementShape split = Splitter(statement).Split();
    if (split.values.size() > MostValues) {
        return {statement, statement, {}, false};
    }
    split.isCommon = true;
    return split;
}
