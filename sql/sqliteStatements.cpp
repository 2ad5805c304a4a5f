#include "sql/sqliteStatements.h"

#include "sql/sqliteError.h"

#include <sqlite3.h>

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

/// Walks through a statement and takes its values out.
class Splitter {
public:
    explicit Splitter(const QByteArray& text)
        : m_text(text) {
        m_result.shape.reserve(text.size());
    }

    StatementShape Split() {
        while (m_at < m_text.size()) {
            Step();
        }
        return std::move(m_result);
    }

private:
    char Current() const { return m_text.at(m_at); }
    char Next() const { return m_at + 1 < m_text.size() ? m_text.at(m_at + 1) : '\0'; }

    void Step() {
        const char c = Current();
        if (c == '\'') {
            TakeText();
        } else if (c == '"' || c == '`' || c == '[') {
            CopyTo(m_text.indexOf(c == '[' ? ']' : c, m_at + 1), 1);
        } else if (c == '-' && Next() == '-') {
            CopyTo(m_text.indexOf('\n', m_at), 0);
        } else if (c == '/' && Next() == '*') {
            CopyTo(m_text.indexOf("*/", m_at + 2), 2);
        } else if (IsDigit(c) && IsValuePlace()) {
            TakeNumber();
        } else if (IsNamePart(c)) {
            CopyName();
        } else {
            const bool isSign = (c == '-' || c == '+') && IsValuePlace();
            if (c > ' ' && !isSign) {
                m_before = c;
            }
            m_result.shape += c;
            ++m_at;
        }
    }

    /// Numbers elsewhere may be positions ("ORDER BY 1"), which are no values.
    bool IsValuePlace() const { return m_before == '=' || (m_inValues && (m_before == '(' || m_before == ',')); }

    void Copy(qsizetype end) {
        m_result.shape += m_text.mid(m_at, end - m_at);
        m_at = end;
        m_before = 'x';
    }

    /// Copies up to a position found, and so many characters behind it; to the end when it was not found.
    void CopyTo(qsizetype found, qsizetype behind) { Copy(found < 0 ? m_text.size() : found + behind); }

    void CopyName() {
        qsizetype end = m_at;
        while (end < m_text.size() && IsNamePart(m_text.at(end))) {
            ++end;
        }
        // x'00' is a value of bytes: what follows the name is part of it.
        if (end < m_text.size() && m_text.at(end) == '\'') {
            const qsizetype close = m_text.indexOf('\'', end + 1);
            end = close < 0 ? m_text.size() : close + 1;
        } else if (m_text.mid(m_at, end - m_at).toUpper() == "VALUES") {
            m_inValues = true;
        }
        Copy(end);
    }

    void TakeText() {
        QByteArray bytes;
        qsizetype from = m_at + 1;
        for (;;) {
            const qsizetype close = m_text.indexOf('\'', from);
            if (close < 0) {
                Copy(m_text.size()); // an open literal: the database names the error
                return;
            }
            bytes += m_text.mid(from, close - from);
            from = close + 1;
            if (from >= m_text.size() || m_text.at(from) != '\'') {
                break;
            }
            bytes += '\'';
            ++from;
        }
        Take({true, bytes}, from);
    }

    void TakeNumber() {
        qsizetype end = m_at;
        while (end < m_text.size() && (IsNamePart(m_text.at(end)) || m_text.at(end) == '.')) {
            ++end;
        }
        const QByteArray digits = m_text.mid(m_at, end - m_at);
        bool isNumber = false;
        digits.toDouble(&isNumber);
        if (isNumber) {
            Take({false, digits}, end);
        } else {
            Copy(end);
        }
    }

    void Take(StatementShape::Value value, qsizetype end) {
        m_result.values.append(std::move(value));
        m_result.shape += '?';
        m_before = 'x';
        m_at = end;
    }

    const QByteArray& m_text;
    StatementShape m_result;
    qsizetype m_at = 0;
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
