#pragma once

#include <algorithm>
#include <string>
#include <type_traits>

/// The one reader of SQL text: tells words, literals, names and comments apart, in UTF-16 (`char16_t`) and in UTF-8
/// (`char`) alike. A new form of literal is taught here, and everyone who reads statements knows it.
namespace sqlScan {

enum class Kind {
    Space,
    Word,
    Number,   ///< 12, 12.5, 1e-5, without a sign
    Bytes,    ///< 0xFFD8, two digits a byte
    Text,     ///< 'L''Aquila'
    Prefixed, ///< a text that the letters before it make another thing: N'..', X'..', _utf8'..'
    Moment,   ///< date as Access or FoxPro writes it: #2024/03/05 10:20:30#, {^2024/03/05}
    Name,     ///< "..", `..`
    Bracket,  ///< [..]
    Comment,
    Open, ///< a text or a name that nothing ends: the rest of the statement
    Other ///< one character
};

template<class Unit>
struct Token {
    const Unit* end;
    Kind kind;
    bool hasDoubled = false; ///< a text or a name holds its own mark, doubled
};

template<class Unit>
constexpr bool IsDigit(Unit c) {
    return c >= '0' && c <= '9';
}

template<class Unit>
constexpr bool IsLetter(Unit c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Beyond ASCII everything belongs to a word, as the engines read names.
template<class Unit>
constexpr bool IsWordPart(Unit c) {
    return IsLetter(c) || IsDigit(c) || c == '_' || c == '@' || c == '#' || c == '$' ||
           static_cast<std::make_unsigned_t<Unit>>(c) > 127;
}

template<class Unit>
constexpr bool IsBlank(Unit c) {
    return c == ' ' || (c > 0 && c < ' ');
}

/// First place from `at` on whose character is none of that sort.
template<class Unit, class Sort>
const Unit* Behind(const Unit* at, const Unit* end, const Sort& isOfSort) {
    while (at != end && isOfSort(*at)) {
        ++at;
    }
    return at;
}

template<class Unit>
const Unit* FindUnit(const Unit* at, const Unit* end, Unit what) {
    const Unit* found = std::char_traits<Unit>::find(at, static_cast<size_t>(end - at), what);
    return found == nullptr ? end : found;
}

/// Whether the text between two places is "yyyymmdd hh:mm:ss".
template<class Unit>
bool IsMoment(const Unit* at, const Unit* end) {
    constexpr std::string_view pattern = "00000000 00:00:00";
    return end - at == static_cast<std::ptrdiff_t>(pattern.size()) &&
           std::equal(at, end, pattern.begin(),
                      [](Unit c, char mark) { return mark == '0' ? IsDigit(c) : c == static_cast<Unit>(mark); });
}

/// What a mark begins and its twin ends; twice the ending one is the mark itself.
template<class Unit>
Token<Unit> ReadQuoted(const Unit* at, const Unit* end, Unit close, Kind kind) {
    bool hasDoubled = false;
    for (;;) {
        at = FindUnit(at, end, close);
        if (at == end) {
            return {end, Kind::Open, hasDoubled};
        }
        if (at + 1 == end || at[1] != close) {
            return {at + 1, kind, hasDoubled};
        }
        hasDoubled = true;
        at += 2;
    }
}

/// End of the number that begins with the digit at `at`; null when what stands there is none ("01_CON_TRO", "0xFF").
template<class Unit>
const Unit* EndOfNumber(const Unit* at, const Unit* end) {
    at = Behind(at, end, IsDigit<Unit>);
    if (at != end && *at == '.') {
        at = Behind(at + 1, end, IsDigit<Unit>);
    }
    if (at != end && (*at == 'e' || *at == 'E')) {
        const Unit* power = at + 1;
        power += power != end && (*power == '-' || *power == '+') ? 1 : 0;
        at = power != end && IsDigit(*power) ? Behind(power, end, IsDigit<Unit>) : at;
    }
    return at == end || (!IsWordPart(*at) && *at != '.') ? at : nullptr;
}

/// End of the date that Access or FoxPro wrote at `at`; null for anything else.
template<class Unit>
const Unit* EndOfMoment(const Unit* at, const Unit* end) {
    const bool isFoxPro = *at == '{';
    const Unit* inner = at + (isFoxPro ? 2 : 1);
    if (inner >= end || (isFoxPro && at[1] != '^') || !IsDigit(*inner)) {
        return nullptr;
    }
    const Unit* close = Behind(inner, end, [](Unit c) {
        return IsDigit(c) || IsLetter(c) || c == '/' || c == '-' || c == ':' || c == '.' || c == ' ';
    });
    return close != end && *close == (isFoxPro ? '}' : '#') ? close + 1 : nullptr;
}

template<class Unit>
bool IsBytes(const Unit* at, const Unit* end) {
    const auto isHex = [](Unit c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); };
    return end - at > 2 && (end - at) % 2 == 0 && at[0] == '0' && (at[1] == 'x' || at[1] == 'X') &&
           std::all_of(at + 2, end, isHex);
}

/// Whether a word changes the text that follows it at once; behind other words ("LIKE'x'") it is a text like any other.
template<class Unit>
bool IsPrefix(const Unit* at, const Unit* end) {
    const auto lower = static_cast<Unit>(*at | 0x20);
    return *at == '_' || (end - at == 1 && (lower == 'n' || lower == 'x' || lower == 'b'));
}

template<class Unit>
Token<Unit> ReadWord(const Unit* at, const Unit* end) {
    if (IsDigit(*at)) {
        if (const Unit* number = EndOfNumber(at, end)) {
            return {number, Kind::Number};
        }
    }
    const Unit* behind = Behind(at, end, IsWordPart<Unit>);
    if (behind != end && *behind == '\'' && IsPrefix(at, behind)) {
        return ReadQuoted(behind + 1, end, Unit('\''), Kind::Prefixed);
    }
    return {behind, IsBytes(at, behind) ? Kind::Bytes : Kind::Word};
}

template<class Unit>
Token<Unit> ReadComment(const Unit* at, const Unit* end) {
    if (*at == '-') {
        const Unit* line = FindUnit(at, end, Unit('\n'));
        return {line == end ? end : line + 1, Kind::Comment};
    }
    for (const Unit* star = FindUnit(at + 2, end, Unit('*')); star != end; star = FindUnit(star + 1, end, Unit('*'))) {
        if (star + 1 != end && star[1] == '/') {
            return {star + 2, Kind::Comment};
        }
    }
    return {end, Kind::Comment};
}

/// The token that begins at `at`, which is not the end.
template<class Unit>
Token<Unit> Read(const Unit* at, const Unit* end) {
    const Unit c = *at;
    const Unit next = at + 1 == end ? Unit(0) : at[1];
    if (c == '#' || c == '{') {
        if (const Unit* moment = EndOfMoment(at, end)) {
            return {moment, Kind::Moment};
        }
    }
    if (IsWordPart(c)) {
        return ReadWord(at, end);
    }
    if (IsBlank(c)) {
        return {Behind(at, end, IsBlank<Unit>), Kind::Space};
    }
    if (c == '\'') {
        return ReadQuoted(at + 1, end, c, Kind::Text);
    }
    if (c == '"' || c == '`') {
        return ReadQuoted(at + 1, end, c, Kind::Name);
    }
    if (c == '[') {
        return ReadQuoted(at + 1, end, Unit(']'), Kind::Bracket);
    }
    if ((c == '-' && next == '-') || (c == '/' && next == '*')) {
        return ReadComment(at, end);
    }
    return {at + 1, Kind::Other};
}

} // namespace sqlScan
