#include "sql/sqliteStatements.h"

#include "sql/sqliteError.h"

#include <sqlite3.h>

#include <cstring>
#include <utility>

namespace {

constexpr qsizetype KeptStatements = 128;
constexpr qsizetype MostValues = 500;
constexpr qsizetype LongestInteger = 18; ///< digits that fit 64 bits whatever they are

bool IsNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Walks through a statement and takes its values out; what stands between them is copied in one piece.
class Splitter {
public:
    explicit Splitter(const QByteArray& text)
        : m_text(text),
          m_begin(text.constData()),
          m_end(text.constData() + text.size()),
          m_at(m_begin),
          m_copied(m_begin) {
        m_result.shape.reserve(text.size());
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
        QByteArray bytes;
        const char* from = m_at + 1;
        for (;;) {
            const auto* close = static_cast<const char*>(std::memchr(from, '\'', static_cast<size_t>(m_end - from)));
            if (close == nullptr) {
                Pass(m_end); // an open literal: the database names the error
                return;
            }
            const bool isDoubled = close + 1 < m_end && close[1] == '\'';
            bytes.append(from, close - from + (isDoubled ? 1 : 0));
            from = close + (isDoubled ? 2 : 1);
            if (!isDoubled) {
                break;
            }
        }
        Take({true, bytes}, from);
    }

    void TakeNumber() {
        const char* end = m_at;
        while (end < m_end && (IsNamePart(*end) || *end == '.')) {
            ++end;
        }
        const QByteArray digits(m_at, end - m_at);
        bool isNumber = false;
        digits.toDouble(&isNumber);
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
    const QByteArray start = statement.left(64).trimmed().left(6).toUpper();
    return start == "SELECT" || start == "INSERT" || start == "UPDATE" || start == "DELETE";
}

void Bind(sqlite3_stmt* statement, const QVector<StatementShape::Value>& values) {
    int index = 0;
    for (const StatementShape::Value& value : values) {
        ++index;
        if (value.isText) {
            sqlite3_bind_text64(statement, index, value.bytes.constData(),
                                static_cast<sqlite3_uint64>(value.bytes.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
            continue;
        }
        bool isInteger = false;
        const qlonglong integer = value.bytes.toLongLong(&isInteger);
        if (isInteger && value.bytes.size() <= LongestInteger) {
            sqlite3_bind_int64(statement, index, integer);
        } else {
            sqlite3_bind_double(statement, index, value.bytes.toDouble());
        }
    }
}

} // namespace

StatementShape StatementShape::Of(const QByteArray& statement) {
    if (!TakesValues(statement)) {
        return {statement, {}};
    }
    StatementShape split = Splitter(statement).Split();
    return split.values.size() > MostValues ? StatementShape{statement, {}} : split;
}

void GiveBackStatement::operator()(sqlite3_stmt* statement) const noexcept { home->GiveBack(shape, statement); }

SqliteStatement SqliteStatements::Prepare(const QString& statement) {
    const QByteArray text = statement.toUtf8();
    StatementShape split = StatementShape::Of(text);
    sqlite3_stmt* handle = m_idle.take(split.shape);
    if (handle == nullptr) {
        handle = Compile(split.shape, statement);
    }
    if (handle == nullptr) {
        return {nullptr, {shared_from_this(), {}}};
    }
    SqliteStatement prepared(handle, {shared_from_this(), split.values.isEmpty() ? QByteArray() : split.shape});
    Bind(handle, split.values);
    return prepared;
}

void SqliteStatements::GiveBack(const QByteArray& shape, sqlite3_stmt* statement) noexcept {
    if (shape.isEmpty() || m_idle.contains(shape)) {
        sqlite3_finalize(statement);
        return;
    }
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    if (m_idle.size() >= KeptStatements) {
        Clear();
    }
    m_idle.insert(shape, statement);
}

void SqliteStatements::Clear() noexcept {
    for (sqlite3_stmt* statement : std::as_const(m_idle)) {
        sqlite3_finalize(statement);
    }
    m_idle.clear();
}

sqlite3_stmt* SqliteStatements::Compile(const QByteArray& text, const QString& statement) {
    sqlite3_stmt* handle = nullptr;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(m_database, text.constData(), static_cast<int>(text.size()) + 1, &handle, &rest) !=
        SQLITE_OK) {
        throw SqliteErrorOf(m_database, statement);
    }
    if (rest != nullptr && HasMore(rest)) {
        sqlite3_finalize(handle);
        throw SqlError(statement, QStringLiteral("più istruzioni in un solo testo"), QStringLiteral("SQLITE_MISUSE"));
    }
    return handle;
}

/// Whether another statement follows, so that it is not lost silently.
bool SqliteStatements::HasMore(const char* rest) const {
    while (*rest == ' ' || *rest == '\r' || *rest == '\n' || *rest == '\t' || *rest == ';') {
        ++rest;
    }
    if (*rest == '\0') {
        return false;
    }
    sqlite3_stmt* handle = nullptr;
    const int code = sqlite3_prepare_v2(m_database, rest, -1, &handle, nullptr);
    sqlite3_finalize(handle);
    return code != SQLITE_OK || handle != nullptr;
}
