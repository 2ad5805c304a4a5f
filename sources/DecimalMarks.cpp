#include "sources/DecimalMarks.h"

namespace sources {

namespace {

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// Whether marks stand before each three digits, and nowhere else: "1.234", "12.345.678"; not "0.125", a fraction.
bool IsGrouped(QByteArrayView digits, char mark) {
    constexpr qsizetype group = 4;
    const qsizetype first = digits.indexOf(mark);
    if (first < 1 || first >= group || digits.front() == '0') {
        return false;
    }
    for (qsizetype at = 0; at < digits.size(); ++at) {
        const bool isPlace = at >= first && (at - first) % group == 0;
        if (isPlace != (digits[at] == mark) || (!isPlace && !IsDigit(digits[at]))) {
            return false;
        }
    }
    return (digits.size() - first) % group == 0;
}

} // namespace

void DecimalMarks::LeaveOut(int column) { m_columns[static_cast<size_t>(column)].isOfNumbers = false; }

void DecimalMarks::Look(int column, QByteArrayView value) {
    Column& seen = m_columns[static_cast<size_t>(column)];
    QByteArrayView text = value.trimmed();
    if (!seen.isOfNumbers || text.isEmpty()) {
        return;
    }
    if (text.startsWith('-') || text.startsWith('+')) {
        text = text.sliced(1);
    }
    const qsizetype comma = text.lastIndexOf(',');
    const qsizetype point = text.lastIndexOf('.');
    const bool isPlain = comma < 0 && point < 0;
    const char last = comma > point ? ',' : '.';
    const char other = last == ',' ? '.' : ',';
    if (isPlain) {
        seen.isOfNumbers = std::all_of(text.begin(), text.end(), IsDigit);
    } else if (comma >= 0 && point >= 0) {
        const qsizetype at = std::max(comma, point);
        seen.isOfNumbers = IsGrouped(text.first(at), other) && std::all_of(text.begin() + at + 1, text.end(), IsDigit);
        (last == ',' ? seen.hasCommas : seen.hasPoints) = true;
    } else if (IsGrouped(text, last)) {
        QByteArray& grouped = last == ',' ? seen.commaGrouped : seen.pointGrouped;
        grouped = grouped.isEmpty() ? text.toByteArray() : grouped;
    } else {
        seen.isOfNumbers = text.count(last) == 1 &&
                           std::all_of(text.begin(), text.end(), [last](char c) { return IsDigit(c) || c == last; });
        (last == ',' ? seen.hasCommas : seen.hasPoints) = true;
    }
}

void DecimalMarks::Settle(PrivateTable& table, Oddities& oddities) const {
    for (size_t index = 0; index < m_columns.size(); ++index) {
        const Column& seen = m_columns[index];
        const auto column = static_cast<int>(index);
        const QString& name = table.Columns().at(column).name;
        if (!seen.isOfNumbers || (seen.pointGrouped.isEmpty() && seen.commaGrouped.isEmpty())) {
            continue;
        }
        const char decimal = seen.hasCommas ? ',' : seen.hasPoints ? '.' : m_told;
        const QByteArray& thousands = decimal == ',' ? seen.pointGrouped : seen.commaGrouped;
        const QByteArray& first = seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped;
        if (seen.hasCommas && seen.hasPoints) {
            oddities.Add(QStringLiteral("NUMERO AMBIGUO"), name, 0,
                         QStringLiteral("la colonna ha decimali con la virgola e altri con il punto: il segno in '%1' "
                                        "si legge come quello dei decimali; scriverli nel file tutti allo stesso modo")
                             .arg(QString::fromLatin1(first)));
        } else if (decimal == 0) {
            oddities.Add(QStringLiteral("NUMERO AMBIGUO"), name, 0,
                         QStringLiteral("se '%1' è un numero, il segno si legge come quello dei decimali; se divide le "
                                        "migliaia, dirlo in schema.ini (DecimalSymbol)")
                             .arg(QString::fromLatin1(first)));
        } else if (!thousands.isEmpty()) {
            table.RemoveMark(column, decimal == ',' ? '.' : ',', decimal);
            oddities.Add(QStringLiteral("SEGNO DELLE MIGLIAIA"), name, 0,
                         QStringLiteral("il segno in '%1' divide le migliaia, i decimali hanno '%2'")
                             .arg(QString::fromLatin1(thousands), QString(QLatin1Char(decimal))));
        }
    }
}

} // namespace sources
