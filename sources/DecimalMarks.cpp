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

/// Whether a value has a sign of a currency or a percentage: no number is made of it, and it stays as it stands.
bool HasSign(QByteArrayView value) {
    for (const QByteArrayView sign : {"%", "$", "\xe2\x82\xac", "\xc2\xa3"}) {
        if (value.contains(sign)) {
            return true;
        }
    }
    return false;
}

/// How a value is written.
struct Written {
    enum class Kind { Number, Code, Word };
    Kind kind = Kind::Number;
    char thousands = 0; ///< the mark between its thousands; of a value with no other mark perhaps that of its decimals
    char decimals = 0;  ///< the mark before its decimals
};

Written HowMarked(QByteArrayView text) {
    using enum Written::Kind;
    const qsizetype comma = text.lastIndexOf(',');
    const qsizetype point = text.lastIndexOf('.');
    const char last = comma > point ? ',' : '.';
    const char other = last == ',' ? '.' : ',';
    const qsizetype at = std::max(comma, point);
    if (at < 0) {
        return {AreDigits(text) ? Number : Code};
    }
    const QByteArrayView whole = text.first(at);
    const bool hasDecimals = AreDigits(text.sliced(at + 1));
    if (comma >= 0 && point >= 0) {
        return hasDecimals && IsGrouped(whole, other) ? Written{Number, other, last} : Written{Code};
    }
    if (IsGrouped(text, last)) {
        return {Number, last};
    }
    return hasDecimals && AreDigits(whole) ? Written{Number, 0, last} : Written{Code};
}

Written HowWritten(QByteArrayView value) {
    using enum Written::Kind;
    if (std::none_of(value.begin(), value.end(), IsDigit)) {
        return {Word};
    }
    const QByteArrayView text = Bare(value);
    const bool isPadded = text.size() > 1 && text[0] == '0' && IsDigit(text[1]);
    if (isPadded || std::any_of(text.begin(), text.end(), IsLetter)) {
        return {Code};
    }
    return text.contains(' ') ? HowMarked(text.toByteArray().replace(" ", "")) : HowMarked(text);
}

} // namespace

bool DecimalMarks::Column::IsOfNumbers() const {
    constexpr qint64 tenth = 10;
    return !isLeftOut && (isTold || (codes * tenth <= numbers && words <= numbers));
}

DecimalMarks::Column& DecimalMarks::Of(int column) {
    const auto index = static_cast<size_t>(column);
    if (index >= m_columns.size()) {
        m_columns.resize(index + 1);
    }
    return m_columns[index];
}

void DecimalMarks::Look(int column, QByteArrayView value) { Of(column).Look(value); }

void DecimalMarks::Column::Look(QByteArrayView value) {
    const QByteArrayView text = value.trimmed();
    if (isLeftOut || text.isEmpty()) {
        return;
    }
    const auto [kind, thousands, decimals] = HowWritten(text);
    if (kind != Written::Kind::Number) {
        ++(kind == Written::Kind::Code ? codes : words);
        misfit = misfit.isEmpty() ? text.toByteArray() : misfit;
        return;
    }
    ++numbers;
    hasCommas = hasCommas || decimals == ',';
    hasPoints = hasPoints || decimals == '.';
    if (thousands != 0 && !HasSign(text)) {
        QByteArray& first = decimals == 0 ? (thousands == ',' ? commaGrouped : pointGrouped)
                                          : (thousands == ',' ? commaDivided : pointDivided);
        first = first.isEmpty() ? text.toByteArray() : first;
    }
}

void DecimalMarks::Settle(PrivateTable& table, Oddities& oddities) const {
    for (int column = 0; column < static_cast<int>(m_columns.size()); ++column) {
        const Column& seen = m_columns[static_cast<size_t>(column)];
        if (seen.IsOfNumbers()) {
            SettleColumn(column, table, oddities);
        } else if (!seen.isLeftOut) {
            NoteAmongOthers(seen, table.Columns().at(column).name, oddities);
        }
    }
}

namespace {

void NoteAmbiguous(const QString& name, const QString& what, Oddities& oddities) {
    oddities.Add(QStringLiteral("NUMERO AMBIGUO"), name, 0, what);
}

QString AmongOthers(const QByteArray& other, const QString& value) {
    return QStringLiteral("la colonna ha anche '%1', che non è un numero: il segno in '%2' resta, e se è un numero si "
                          "legge come quello dei decimali")
        .arg(QString::fromUtf8(other), value);
}

} // namespace

/// A column of codes has none with decimals: its marks are its own.
void DecimalMarks::NoteAmongOthers(const Column& seen, const QString& name, Oddities& oddities) const {
    const QByteArray& first = seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped;
    if (!first.isEmpty() && (seen.hasCommas || seen.hasPoints || seen.codes == 0)) {
        NoteAmbiguous(name, AmongOthers(seen.misfit, QString::fromUtf8(first)), oddities);
    }
}

/// The mark between the thousands of values that have no other one; 0 for none, and where it cannot be known, which is
/// noted.
char DecimalMarks::FindThousands(const Column& seen, const QString& name, Oddities& oddities) const {
    constexpr char none = 0;
    if (seen.pointGrouped.isEmpty() && seen.commaGrouped.isEmpty()) {
        return none;
    }
    const QString first = QString::fromUtf8(seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped);
    const char found = seen.isTold ? m_told : seen.hasCommas ? ',' : seen.hasPoints ? '.' : none;
    const char decimal = found != none ? found : m_told;
    const char thousands = decimal == ',' ? '.' : ',';
    const auto noteAmbiguous = [&](const QString& what) {
        NoteAmbiguous(name, what, oddities);
        return none;
    };
    if (seen.hasCommas && seen.hasPoints && !seen.isTold) {
        return noteAmbiguous(
            QStringLiteral("la colonna ha decimali con la virgola e altri con il punto: il segno in '%1' si legge come "
                           "quello dei decimali; scriverli nel file tutti allo stesso modo")
                .arg(first));
    }
    if (decimal == none) {
        return noteAmbiguous(
            QStringLiteral("se '%1' è un numero, il segno si legge come quello dei decimali; se divide le migliaia, %2")
                .arg(first, m_remedies.number));
    }
    if (seen.Grouped(thousands).isEmpty()) {
        return none;
    }
    if (found == none && !seen.misfit.isEmpty()) { // what is told holds for numbers: these may be codes
        return noteAmbiguous(AmongOthers(seen.misfit, first));
    }
    return thousands;
}

namespace {

/// Whether a mark of a value divides its thousands. @param thousands the mark that does in values with no other one
bool IsBetweenThousands(QByteArrayView value, char mark, char thousands) {
    const Written written = HowWritten(value);
    return written.thousands == mark && (written.decimals != 0 || mark == thousands) && !HasSign(value);
}

} // namespace

void DecimalMarks::NoteThousands(const QString& name, const QByteArray& sample, char mark, Oddities& oddities) const {
    oddities.Add(QStringLiteral("SEGNO DELLE MIGLIAIA"), name, 0,
                 QStringLiteral("il segno in '%1' divide le migliaia, i decimali hanno '%2'; %3")
                     .arg(QString::fromUtf8(sample), QString(QLatin1Char(mark == ',' ? '.' : ',')), m_remedies.code));
}

void DecimalMarks::SettleColumn(int column, PrivateTable& table, Oddities& oddities) const {
    const Column& seen = m_columns[static_cast<size_t>(column)];
    const QString& name = table.Columns().at(column).name;
    const char thousands = FindThousands(seen, name, oddities);
    for (const char mark : {'.', ','}) {
        const QByteArray& sample = mark == thousands ? seen.Grouped(mark) : seen.Divided(mark);
        if (!sample.isEmpty()) {
            table.RemoveMark(column, mark, [mark, thousands](QByteArrayView value) {
                return IsBetweenThousands(value, mark, thousands);
            });
            NoteThousands(name, sample, mark, oddities);
        }
    }
}

QByteArray DecimalMarks::Read(int column, const QString& name, QByteArrayView value, Oddities& oddities) const {
    const auto index = static_cast<size_t>(column);
    Column seen = index < m_columns.size() ? m_columns[index] : Column();
    for (QByteArray* sample : {&seen.pointGrouped, &seen.commaGrouped, &seen.pointDivided, &seen.commaDivided}) {
        sample->clear(); // what is noted is of this value
    }
    seen.Look(value);
    QByteArray text = value.toByteArray();
    if (!seen.IsOfNumbers()) {
        NoteAmongOthers(seen, name, oddities);
        return text;
    }
    const char thousands = FindThousands(seen, name, oddities);
    for (const char mark : {'.', ','}) {
        if (IsBetweenThousands(value, mark, thousands)) {
            NoteThousands(name, value.toByteArray(), mark, oddities);
            text.replace(QByteArray(1, mark), QByteArray());
        }
    }
    return text;
}

bool MayDivideThousands(QByteArrayView value) { return HowWritten(value.trimmed()).thousands != 0 && !HasSign(value); }

QByteArray WithoutThousands(QByteArrayView value) {
    QByteArray text = value.trimmed().toByteArray();
    const Written written = HowWritten(text);
    if (written.thousands != 0 && (written.decimals != 0 || text.count(written.thousands) > 1)) {
        text.replace(QByteArray(1, written.thousands), QByteArray());
    }
    return text;
}

} // namespace sources
