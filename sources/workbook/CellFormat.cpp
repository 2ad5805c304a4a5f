#include "sources/workbook/CellFormat.h"

#include <QDateTime>

#include <cmath>

namespace sources {

namespace {

/// The part of a format for numbers above zero, taken apart: what stands for digits and dates, and what is shown as it
/// stands.
struct Section {
    QString shown;   ///< digits as "0" and "#", other characters as they are shown
    QString symbols; ///< lower case, without what is shown as it stands
    bool isElapsed = false;
    bool isPlain = true; ///< only digits and texts: no decimals, no percent, no blanks of a width
};

bool IsElapsedMark(const QString& bracket) {
    const QString mark = bracket.toLower();
    return !mark.isEmpty() &&
           (mark.count(u'h') == mark.size() || mark.count(u'm') == mark.size() || mark.count(u's') == mark.size());
}

Section ReadSection(const QString& code) {
    Section section;
    for (qsizetype at = 0; at < code.size() && code.at(at) != u';'; ++at) {
        const QChar symbol = code.at(at);
        if (symbol == u'"' || symbol == u'[') {
            const qsizetype end = code.indexOf(symbol == u'"' ? u'"' : u']', at + 1);
            const QString inside = code.mid(at + 1, (end < 0 ? code.size() : end) - at - 1);
            section.shown += symbol == u'"' ? inside : QString();
            if (symbol == u'[' && IsElapsedMark(inside)) {
                section.isElapsed = true;
                section.symbols += inside.toLower();
            }
            at = end < 0 ? code.size() : end;
        } else if (symbol == u'\\') {
            ++at;
            section.shown += at < code.size() ? code.mid(at, 1) : QString();
        } else if (symbol == u'_' || symbol == u'*') {
            ++at; // a blank of the width of the next character, or the next character to the edge of the cell
        } else {
            section.shown += symbol;
            section.symbols += symbol.toLower();
            section.isPlain = section.isPlain && !QStringLiteral(".%,?/eE@").contains(symbol);
        }
    }
    return section;
}

CellFormat::Kind KindOf(const Section& section) {
    if (section.symbols == u"general") {
        return CellFormat::Kind::Number;
    }
    const auto has = [&section](QChar symbol) { return section.symbols.contains(symbol); };
    const bool isTime = has(u'h') || has(u's');
    if (section.isElapsed) {
        return CellFormat::Kind::Elapsed;
    }
    if (has(u'y') || has(u'd') || (has(u'm') && !isTime)) {
        return CellFormat::Kind::Date;
    }
    if (isTime) {
        return CellFormat::Kind::Time;
    }
    return section.isPlain && section.symbols.count(u'0') > 1 ? CellFormat::Kind::Padded : CellFormat::Kind::Number;
}

} // namespace

CellFormat::CellFormat(const QString& code) {
    const Section section = ReadSection(code);
    m_kind = KindOf(section);
    m_isPercent = m_kind == Kind::Number && section.symbols.contains(u'%');
    m_pattern = m_kind == Kind::Padded ? section.shown : QString();
}

CellFormat CellFormat::BuiltIn(int number) {
    CellFormat format;
    const bool isDate = (number >= 14 && number <= 17) || number == 22 || (number >= 27 && number <= 31) ||
                        number == 36 || (number >= 50 && number <= 58);
    const bool isTime =
        (number >= 18 && number <= 21) || (number >= 32 && number <= 35) || number == 45 || number == 47;
    constexpr int elapsed = 46;
    format.m_isPercent = number == 9 || number == 10;
    format.m_kind = isDate ? Kind::Date : isTime ? Kind::Time : number == elapsed ? Kind::Elapsed : Kind::Number;
    return format;
}

std::optional<QByteArray> CellFormat::Padded(double number) const {
    constexpr double exact = 1e15;
    if (m_kind != Kind::Padded || !(number >= 0 && number < exact) || number != std::floor(number)) {
        return std::nullopt;
    }
    QString digits = QString::number(static_cast<qint64>(number));
    QString text;
    qsizetype first = 0; // of the places for digits, in what is shown
    for (qsizetype at = m_pattern.size() - 1; at >= 0; --at) {
        const QChar symbol = m_pattern.at(at);
        if (symbol != u'0' && symbol != u'#') {
            text.prepend(symbol);
            continue;
        }
        if (!digits.isEmpty()) {
            text.prepend(digits.back());
            digits.chop(1);
        } else if (symbol == u'0') {
            text.prepend(u'0');
        }
        first = text.size();
    }
    return text.insert(text.size() - first, digits).toUtf8();
}

std::optional<QByteArray> DateOfSerial(double serial, CellFormat::Kind kind, bool since1904) {
    constexpr qint64 secondsOfDay = 86400;
    constexpr qint64 leapDay1900 = 60; // of a year that was none
    constexpr qint64 endOfDays = 2958466;
    constexpr qint64 daysTo1904 = 1462;
    if (!(serial >= 0 && serial < endOfDays)) {
        return std::nullopt;
    }
    const qint64 all = std::llround(serial * secondsOfDay);
    const qint64 day = all / secondsOfDay;
    const QTime time = QTime(0, 0).addSecs(static_cast<int>(all % secondsOfDay));
    if (kind == CellFormat::Kind::Time && serial < 1) {
        return time.toString(QStringLiteral("hh:mm:ss")).toLatin1();
    }
    if (serial == 0 && !since1904) {
        return QByteArray();
    }
    const qint64 shift = since1904 ? daysTo1904 : day < leapDay1900 ? 1 : 0;
    const bool isNoDay = !since1904 && (day == 0 || day == leapDay1900); // a time without its day is none either
    if (isNoDay || day + shift >= endOfDays) {
        return std::nullopt;
    }
    const QDateTime moment(QDate(1899, 12, 30).addDays(day + shift), time, Qt::UTC);
    const bool isWhole = moment.time() == QTime(0, 0);
    return moment.toString(isWhole ? QStringLiteral("yyyyMMdd") : QStringLiteral("yyyyMMdd hh:mm:ss")).toLatin1();
}

} // namespace sources
