#include "sources/DecimalMarks.h"

namespace sources {

namespace {

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

bool IsLetter(char byte) { return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z'); }

bool AreDigits(QByteArrayView text) { return std::all_of(text.begin(), text.end(), IsDigit); }

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

QByteArrayView WithoutSign(QByteArrayView value) {
    const QByteArrayView text = value.trimmed();
    return text.startsWith('-') || text.startsWith('+') ? text.sliced(1) : text;
}

/// Whether a character may stand about a number without being of it: a sign, blanks, a currency in any code page.
bool IsAbout(char byte) {
    constexpr unsigned char ascii = 0x80;
    return QByteArrayView(" \t+-$%").contains(byte) || static_cast<unsigned char>(byte) >= ascii;
}

/// What a value with a sign, a currency or a unit has of a number: "5" of "- 5", "1.234" of "EUR 1.234" and
/// "1.234 kg".
QByteArrayView Bare(QByteArrayView value) {
    constexpr qsizetype longestUnit = 3;
    QByteArrayView text = value.trimmed();
    if (text.size() > longestUnit && text.first(longestUnit).compare("EUR", Qt::CaseInsensitive) == 0) {
        text = text.sliced(longestUnit);
    }
    const qsizetype unit = text.lastIndexOf(' ') + 1;
    if (unit > 1 && text.size() - unit <= longestUnit && std::all_of(text.begin() + unit, text.end(), IsLetter)) {
        text = text.first(unit);
    }
    while (!text.isEmpty() && IsAbout(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && IsAbout(text.back())) {
        text.chop(1);
    }
    return text;
}

/// How a value is written.
struct Written {
    enum class Kind { Plain, Grouped, Decimal, Code, Word };
    Kind kind = Kind::Plain;
    char mark = 0; ///< of a grouped one the mark between thousands, of a decimal one that of the decimals
};

Written HowMarked(QByteArrayView text) {
    using enum Written::Kind;
    const qsizetype comma = text.lastIndexOf(',');
    const qsizetype point = text.lastIndexOf('.');
    const char last = comma > point ? ',' : '.';
    const qsizetype at = std::max(comma, point);
    if (at < 0) {
        return {AreDigits(text) ? Plain : Code, 0};
    }
    const QByteArrayView whole = text.first(at);
    if (comma >= 0 && point >= 0) {
        const bool isNumber = IsGrouped(whole, last == ',' ? '.' : ',') && AreDigits(text.sliced(at + 1));
        return {isNumber ? Decimal : Code, last};
    }
    if (IsGrouped(text, last)) {
        return {Grouped, last};
    }
    return {AreDigits(whole) && AreDigits(text.sliced(at + 1)) ? Decimal : Code, last};
}

Written HowWritten(QByteArrayView value) {
    using enum Written::Kind;
    if (std::none_of(value.begin(), value.end(), IsDigit)) {
        return {Word, 0};
    }
    const QByteArrayView text = Bare(value);
    const bool isPadded = text.size() > 1 && text[0] == '0' && IsDigit(text[1]);
    if (isPadded || std::any_of(text.begin(), text.end(), IsLetter)) {
        return {Code, 0};
    }
    return text.contains(' ') ? HowMarked(text.toByteArray().replace(" ", "")) : HowMarked(text);
}

} // namespace

bool DecimalMarks::Column::IsOfNumbers() const {
    constexpr qint64 tenth = 10;
    return !isLeftOut && codes * tenth <= numbers && words <= numbers;
}

DecimalMarks::Column& DecimalMarks::Of(int column) {
    const auto index = static_cast<size_t>(column);
    if (index >= m_columns.size()) {
        m_columns.resize(index + 1);
    }
    return m_columns[index];
}

void DecimalMarks::Look(int column, QByteArrayView value) {
    Column& seen = Of(column);
    const QByteArrayView text = value.trimmed();
    if (seen.isLeftOut || text.isEmpty()) {
        return;
    }
    const auto [kind, mark] = HowWritten(text);
    if (kind == Written::Kind::Code || kind == Written::Kind::Word) {
        ++(kind == Written::Kind::Code ? seen.codes : seen.words);
        seen.misfit = seen.misfit.isEmpty() ? text.toByteArray() : seen.misfit;
        return;
    }
    ++seen.numbers;
    if (kind == Written::Kind::Decimal) {
        (mark == ',' ? seen.hasCommas : seen.hasPoints) = true;
    } else if (kind == Written::Kind::Grouped) {
        QByteArray& grouped = mark == ',' ? seen.commaGrouped : seen.pointGrouped;
        grouped = grouped.isEmpty() ? text.toByteArray() : grouped;
    }
}

void DecimalMarks::Settle(PrivateTable& table, Oddities& oddities) const {
    for (int column = 0; column < static_cast<int>(m_columns.size()); ++column) {
        const Column& seen = m_columns[static_cast<size_t>(column)];
        if (seen.IsOfNumbers() && !(seen.pointGrouped.isEmpty() && seen.commaGrouped.isEmpty())) {
            SettleColumn(column, table, oddities);
        }
    }
}

void DecimalMarks::SettleColumn(int column, PrivateTable& table, Oddities& oddities) const {
    const Column& seen = m_columns[static_cast<size_t>(column)];
    const QString& name = table.Columns().at(column).name;
    const QString first = QString::fromUtf8(seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped);
    const char found = seen.hasCommas ? ',' : seen.hasPoints ? '.' : 0;
    const char decimal = found != 0 ? found : m_told;
    const QByteArray& thousands = decimal == ',' ? seen.pointGrouped : seen.commaGrouped;
    if (seen.hasCommas && seen.hasPoints) {
        oddities.Add(QStringLiteral("NUMERO AMBIGUO"), name, 0,
                     QStringLiteral("la colonna ha decimali con la virgola e altri con il punto: il segno in '%1' "
                                    "si legge come quello dei decimali; scriverli nel file tutti allo stesso modo")
                         .arg(first));
    } else if (decimal == 0) {
        oddities.Add(
            QStringLiteral("NUMERO AMBIGUO"), name, 0,
            QStringLiteral("se '%1' è un numero, il segno si legge come quello dei decimali; se divide le migliaia, %2")
                .arg(first, m_remedies.number));
    } else if (thousands.isEmpty()) {
        return;
    } else if (found == 0 && !seen.misfit.isEmpty()) { // what is told holds for numbers: these may be codes
        oddities.Add(QStringLiteral("NUMERO AMBIGUO"), name, 0,
                     QStringLiteral("la colonna ha anche '%1', che non è un numero: il segno in '%2' resta, e se è "
                                    "un numero si legge come quello dei decimali")
                         .arg(QString::fromUtf8(seen.misfit), first));
    } else {
        const char mark = decimal == ',' ? '.' : ',';
        table.RemoveMark(column, mark, [mark](QByteArrayView value) { return IsGrouped(WithoutSign(value), mark); });
        const QString remedy = m_remedies.code.isEmpty() ? QString() : QStringLiteral("; ") + m_remedies.code;
        oddities.Add(QStringLiteral("SEGNO DELLE MIGLIAIA"), name, 0,
                     QStringLiteral("il segno in '%1' divide le migliaia, i decimali hanno '%2'%3")
                         .arg(QString::fromUtf8(thousands), QString(QLatin1Char(decimal)), remedy));
    }
}

} // namespace sources
