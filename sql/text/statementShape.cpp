#include "sql/text/statementShape.h"

#include "sql/mod_ovTools.h"
#include "sql/text/sqlScan.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using sqlScan::Kind;
using Value = StatementShape::Value;
using Verb = StatementShape::Verb;
using Token = sqlScan::Token<char>;

constexpr qsizetype MostValues = 500;

/// A piece of the statement, which the result holds.
QByteArray Part(const char* from, const char* end) { return QByteArray::fromRawData(from, end - from); }

bool IsWord(const char* from, const char* end, const char* word, qsizetype length) {
    return end - from == length && qstrnicmp(from, word, static_cast<size_t>(length)) == 0;
}

Value NumberOf(const char* from, const char* end) {
    Value number{Value::Kind::Decimal, 0, Part(from, end)};
    if (std::any_of(from, end, [](char c) { return c == 'e' || c == 'E'; })) {
        number.kind = Value::Kind::Float;
    } else if (std::find(from, end, '.') == end) {
        bool fits = false;
        number.integer = number.bytes.toLongLong(&fits);
        number.kind = fits ? Value::Kind::Integer : Value::Kind::Digits;
        return number;
    }
    number.real = number.bytes.toDouble();
    return number;
}

Value TextOf(const char* from, const Token& token) {
    const QByteArray inner = Part(from + 1, token.end - 1);
    return {Value::Kind::Text, 0, token.hasDoubled ? QByteArray(inner).replace("''", "'") : inner};
}

/// A value as the literal that it was, or would be.
void AppendLiteral(QByteArray& text, const Value& value) {
    switch (value.kind) {
    case Value::Kind::Null:
        text += "Null";
        break;
    case Value::Kind::Text:
        text += '\'';
        text += value.bytes.contains('\'') ? QByteArray(value.bytes).replace("'", "''") : value.bytes;
        text += '\'';
        break;
    default:
        text += value.Digits();
    }
}

/// Walks through a statement and takes its values out; what stands between them is copied in one piece.
class Splitter {
public:
    explicit Splitter(const QByteArray& text)
        : m_end(text.constData() + text.size()),
          m_at(text.constData()),
          m_copied(m_at) {
        constexpr qsizetype usualValues = 16;
        m_result.text = text;
        m_result.shape.reserve(text.size());
        m_result.values.reserve(usualValues);
    }

    StatementShape Split() {
        while (m_at != m_end) {
            Step(sqlScan::Read(m_at, m_end));
        }
        CopyUpTo(m_end);
        return std::move(m_result);
    }

private:
    void Step(const Token& token) {
        switch (token.kind) {
        case Kind::Space:
        case Kind::Comment:
            m_at = token.end; // what stands before them counts
            return;
        case Kind::Text:
            Take(TextOf(m_at, token), token.end);
            return;
        case Kind::Number:
            IsValuePlace() ? TakeNumber(token.end) : Pass(token.end);
            return;
        case Kind::Word:
            m_inValues = m_inValues || IsWord(m_at, token.end, "VALUES", 6);
            Pass(token.end);
            return;
        case Kind::Other:
            *m_at == '-' && IsValuePlace() ? TakeNegative(token.end) : Pass(token.end, *m_at);
            return;
        default:
            Pass(token.end);
        }
    }

    /// Numbers elsewhere may be positions ("ORDER BY 1"), which are no values.
    bool IsValuePlace() const { return m_before == '=' || (m_inValues && (m_before == '(' || m_before == ',')); }

    /// The minus belongs to the number: engines read a parameter behind a sign as something to be negated, which for a
    /// decimal is another thing than the number itself.
    void TakeNegative(const char* digits) {
        const bool isNumber = digits != m_end && sqlScan::IsDigit(*digits);
        const Token number = isNumber ? sqlScan::Read(digits, m_end) : Token{digits, Kind::Other};
        number.kind == Kind::Number ? TakeNumber(number.end) : Pass(digits, '-');
    }

    /// What is beyond a double is left to the engine, whose word about it counts.
    void TakeNumber(const char* end) {
        const Value number = NumberOf(m_at, end);
        bool isHeld = number.kind != Value::Kind::Float;
        if (!isHeld) {
            isHeld = std::isfinite(number.bytes.toDouble(&isHeld)) && isHeld;
        }
        isHeld ? Take(number, end) : Pass(end);
    }

    void Pass(const char* end, char before = 'x') {
        m_at = end;
        m_before = before;
    }

    void Take(Value value, const char* end) {
        CopyUpTo(m_at);
        m_copied = end;
        m_result.values.append(std::move(value));
        m_result.shape += '?';
        Pass(end);
    }

    void CopyUpTo(const char* end) { m_result.shape.append(m_copied, end - m_copied); }

    const char* m_end;
    const char* m_at;
    const char* m_copied; ///< what stands before it is in the shape
    StatementShape m_result;
    char m_before = '\0'; ///< last character that is no blank; 'x' behind names and values
    bool m_inValues = false;
};

} // namespace

Value Value::OfNumber(double number) {
    constexpr double wholeWithoutLoss = 9007199254740992; // 2^53
    if (number == std::floor(number) && std::abs(number) < wholeWithoutLoss) {
        return OfInteger(static_cast<qint64>(number));
    }
    constexpr double leastWithoutExponent = 1e-7;
    if (std::abs(number) < wholeWithoutLoss && std::abs(number) >= leastWithoutExponent) {
        return {Kind::Decimal, 0, {}, number};
    }
    const QByteArray digits = mod_ovTools::NumberText(number).toLatin1();
    Value value = NumberOf(digits.constBegin(), digits.constEnd());
    value.bytes = digits; // not a part of what ends here
    return value;
}

QByteArray Value::Digits() const {
    if (!bytes.isEmpty()) {
        return bytes;
    }
    return kind == Kind::Integer ? QByteArray::number(integer) : mod_ovTools::NumberText(real).toLatin1();
}

Verb StatementShape::VerbOf(const QByteArray& statement) {
    struct Known {
        const char* word;
        Verb verb;
    };
    constexpr Known Verbs[] = {
        {"SELECT", Verb::Select}, {"INSERT", Verb::Insert}, {"UPDATE", Verb::Update}, {"DELETE", Verb::Delete}};
    constexpr qsizetype length = 6;
    const char* end = statement.constData() + statement.size();
    const char* from = sqlScan::Behind(statement.constData(), end, sqlScan::IsBlank<char>);
    const char* behind = sqlScan::Behind(from, end, sqlScan::IsWordPart<char>);
    const auto* known = std::find_if(std::begin(Verbs), std::end(Verbs),
                                     [&](const Known& verb) { return IsWord(from, behind, verb.word, length); });
    return known == std::end(Verbs) ? Verb::Other : known->verb;
}

bool StatementShape::HoldsFew() const { return values.size() <= MostValues; }

StatementShape StatementShape::Of(const QByteArray& statement) {
    const Verb verb = VerbOf(statement);
    if (verb != Verb::Other) {
        StatementShape split = OfPart(statement);
        if (split.HoldsFew()) {
            split.verb = verb;
            split.isCommon = true;
            return split;
        }
    }
    return {statement, {}, statement, {}, verb, false};
}

StatementShape StatementShape::OfPart(const QByteArray& part) { return Splitter(part).Split(); }

QString StatementShape::Text() const {
    if (!text.isEmpty()) {
        return QString::fromUtf8(text);
    }
    QByteArray whole;
    auto value = values.constBegin();
    const char* end = shape.constEnd();
    for (const char* at = shape.constBegin(); at != end;) {
        const Token token = sqlScan::Read(at, end);
        if (*at == '?' && token.kind == Kind::Other && value != values.constEnd()) {
            AppendLiteral(whole, *value++);
        } else {
            whole.append(at, token.end - at);
        }
        at = token.end;
    }
    return QString::fromUtf8(whole);
}
