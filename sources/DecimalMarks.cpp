#include "sources/DecimalMarks.h"

#include <array>
#include <optional>

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

/// An amount with its currency.
struct Amount {
    QByteArray number; ///< without blanks, its sign in front
    QByteArray currency;
};

/// The currency at an end of a text, which is taken off; a code needs a blank between.
QByteArray TakeCurrency(QByteArrayView& text, bool isFront) {
    static const std::array<std::pair<QByteArray, QByteArray>, 7> currencies{{{"\xe2\x82\xac", "EUR"},
                                                                              {"EUR ", "EUR"},
                                                                              {"$", "USD"},
                                                                              {"USD ", "USD"},
                                                                              {"\xc2\xa3", "GBP"},
                                                                              {"GBP ", "GBP"},
                                                                              {"CHF ", "CHF"}}};
    for (const auto& [sign, code] : currencies) {
        const QByteArray end = sign.endsWith(' ') ? ' ' + sign.trimmed() : sign;
        const QByteArray& looked = isFront ? sign : end;
        const bool isThere =
            text.size() > looked.size() &&
            (isFront ? text.first(looked.size()) : text.last(looked.size())).compare(looked, Qt::CaseInsensitive) == 0;
        if (isThere) {
            text = (isFront ? text.sliced(looked.size()) : text.chopped(looked.size())).trimmed();
            return code;
        }
    }
    return {};
}

std::optional<Amount> AmountIn(QByteArrayView value) {
    constexpr qsizetype longest = 40;
    const bool isPlain =
        std::all_of(value.begin(), value.end(), [](char c) { return IsDigit(c) || c == '.' || c == ','; });
    if (isPlain || value.size() > longest) {
        return std::nullopt;
    }
    const QByteArray blank = value.toByteArray().replace("\xc2\xa0", " ").replace("\xe2\x80\xaf", " ").trimmed();
    QByteArrayView text = blank;
    Amount amount;
    const auto takeSign = [&] {
        if (amount.number.isEmpty() && text.startsWith('-')) {
            amount.number = "-";
            text = text.sliced(1).trimmed();
        }
    };
    takeSign();
    amount.currency = TakeCurrency(text, true);
    takeSign();
    if (amount.currency.isEmpty()) {
        amount.currency = TakeCurrency(text, false);
    }
    if (amount.currency.isEmpty() || text.isEmpty() || !IsDigit(text.front()) || !IsDigit(text.back())) {
        return std::nullopt;
    }
    const auto mark = std::find_if(text.begin(), text.end(), [](char c) { return c == ',' || c == '.'; });
    const QByteArrayView whole = text.first(mark - text.begin());
    const bool isPadded = whole.size() > 1 && whole.front() == '0';
    if (isPadded || (whole.contains(' ') && !IsGrouped(whole, ' '))) {
        return std::nullopt;
    }
    amount.number += whole.toByteArray().replace(" ", "") + text.sliced(whole.size());
    return amount;
}

/// Whether a value with a sign of a currency or of a percentage stays as it stands.
bool IsOfDoubt(QByteArrayView value) {
    const QByteArray text = value.toByteArray().replace("\xc2\xa0", " ").replace("\xe2\x80\xaf", " ");
    return text.contains('%') || text.contains('$') || text.contains("\xe2\x82\xac") || text.contains("\xc2\xa3") ||
           text.trimmed().endsWith(" -");
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
    if (const auto amount = AmountIn(value)) {
        return HowMarked(amount->number.startsWith('-') ? QByteArrayView(amount->number).sliced(1)
                                                        : QByteArrayView(amount->number));
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

/// Where all values have several they may be codes of as many parts.
char DecimalMarks::Column::DecimalByTwice() const {
    const bool isOne = pointTwice.isEmpty() != commaTwice.isEmpty();
    return !isOne || twice == numbers ? '\0' : pointTwice.isEmpty() ? '.' : ',';
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
    const auto [kind, thousands, decimals] = HowWritten(text);
    if (kind != Written::Kind::Number) {
        ++(kind == Written::Kind::Code ? seen.codes : seen.words);
        seen.misfit = seen.misfit.isEmpty() ? text.toByteArray() : seen.misfit;
        return;
    }
    ++seen.numbers;
    seen.hasCommas = seen.hasCommas || decimals == ',';
    seen.hasPoints = seen.hasPoints || decimals == '.';
    const auto amount = AmountIn(text);
    if (amount) {
        seen.hasCurrencies = seen.hasCurrencies || (!seen.amount.isEmpty() && seen.currency != amount->currency);
        seen.currency = seen.amount.isEmpty() ? amount->currency : seen.currency;
        seen.amount = seen.amount.isEmpty() ? text.toByteArray() : seen.amount;
    }
    if (thousands != 0 && decimals == 0 && text.count(thousands) > 1) {
        ++seen.twice;
        QByteArray& first = thousands == ',' ? seen.commaTwice : seen.pointTwice;
        first = first.isEmpty() ? text.toByteArray() : first;
    }
    if (thousands != 0 && (amount || !IsOfDoubt(text))) {
        QByteArray& first = decimals == 0 ? (thousands == ',' ? seen.commaGrouped : seen.pointGrouped)
                                          : (thousands == ',' ? seen.commaDivided : seen.pointDivided);
        const bool isBetter = !amount && AmountIn(first); // amounts may stay as they stand
        first = first.isEmpty() || isBetter ? text.toByteArray() : first;
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

namespace {

/// A value without its currency and the marks between its thousands; nothing where it stays as it stands.
/// @param decimal the mark of the column's decimals; 0 where it is not known
std::optional<QByteArray> Settled(QByteArrayView value, char decimal, bool takesCurrency) {
    const auto amount = AmountIn(value.trimmed());
    if (amount ? !takesCurrency : IsOfDoubt(value)) {
        return std::nullopt;
    }
    const Written written = HowWritten(value);
    const bool isKnown = written.decimals != 0 || written.thousands == 0 || decimal != 0;
    const bool divides =
        written.thousands != 0 && (written.decimals != 0 || (decimal != 0 && written.thousands != decimal));
    if (written.kind != Written::Kind::Number || (amount ? !isKnown : !divides)) {
        return std::nullopt;
    }
    QByteArray number = amount ? amount->number : value.toByteArray();
    return divides ? number.replace(QByteArray(1, written.thousands), "") : number;
}

} // namespace

/// A column of codes has none with decimals: its marks are its own.
void DecimalMarks::NoteAmongOthers(const Column& seen, const QString& name, Oddities& oddities) const {
    const QByteArray& first = seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped;
    if (!first.isEmpty() && (seen.hasCommas || seen.hasPoints || seen.codes == 0)) {
        NoteAmbiguous(name, AmongOthers(seen.misfit, QString::fromUtf8(first)), oddities);
    }
}

/// The mark before the decimals of values with one kind of marks; 0 where there is none such, and where it cannot be
/// known, which is noted.
char DecimalMarks::FindDecimal(const Column& seen, const QString& name, Oddities& oddities) const {
    constexpr char none = 0;
    if (seen.pointGrouped.isEmpty() && seen.commaGrouped.isEmpty()) {
        return none;
    }
    const QString first = QString::fromUtf8(seen.pointGrouped.isEmpty() ? seen.commaGrouped : seen.pointGrouped);
    const char found = seen.isTold ? m_told : seen.hasCommas ? ',' : seen.hasPoints ? '.' : none;
    const char decimal = found != none ? found : m_told != none ? m_told : seen.DecimalByTwice();
    const auto noteAmbiguous = [&](const QString& what) {
        NoteAmbiguous(name, what, oddities);
        return none;
    };
    const QByteArray& twice = decimal == ',' ? seen.commaTwice : seen.pointTwice;
    if (!seen.isTold && ((seen.hasCommas && seen.hasPoints) || (found != none && !twice.isEmpty()))) {
        return noteAmbiguous(
            QStringLiteral("la colonna ha decimali con la virgola e altri con il punto: il segno in '%1' si legge come "
                           "quello dei decimali; scriverli nel file tutti allo stesso modo")
                .arg(first));
    }
    if (decimal == none && seen.twice > 0) {
        return noteAmbiguous(
            QStringLiteral("i segni in '%1' restano: se divide le migliaia, %2").arg(first, m_remedies.number));
    }
    if (decimal == none) {
        return noteAmbiguous(
            QStringLiteral("se '%1' è un numero, il segno si legge come quello dei decimali; se divide le migliaia, %2")
                .arg(first, m_remedies.number));
    }
    const bool hasThousands = !seen.Grouped(decimal == ',' ? '.' : ',').isEmpty();
    if (hasThousands && found == none && !seen.misfit.isEmpty()) { // what is told holds for numbers: these may be codes
        return noteAmbiguous(AmongOthers(seen.misfit, first));
    }
    return decimal;
}

void DecimalMarks::SettleColumn(int column, PrivateTable& table, Oddities& oddities) const {
    const Column& seen = m_columns[static_cast<size_t>(column)];
    const QString& name = table.Columns().at(column).name;
    const char decimal = FindDecimal(seen, name, oddities);
    const char thousands = decimal == 0 ? '\0' : decimal == ',' ? '.' : ',';
    const bool takesCurrency = !seen.amount.isEmpty() && !seen.hasCurrencies;
    for (const char mark : {'.', ','}) {
        const QByteArray& sample = mark == thousands ? seen.Grouped(mark) : seen.Divided(mark);
        if (!sample.isEmpty() && (takesCurrency || !AmountIn(sample))) {
            oddities.Add(
                QStringLiteral("SEGNO DELLE MIGLIAIA"), name, 0,
                QStringLiteral("il segno in '%1' divide le migliaia, i decimali hanno '%2'; %3")
                    .arg(QString::fromUtf8(sample), QString(QLatin1Char(mark == ',' ? '.' : ',')), m_remedies.code));
        }
    }
    if (takesCurrency) {
        oddities.Add(QStringLiteral("SEGNO DELLA VALUTA"), name, 0,
                     QStringLiteral("di '%1' si legge il numero, senza la valuta").arg(QString::fromUtf8(seen.amount)));
    }
    const bool hasMarks = !seen.pointGrouped.isEmpty() || !seen.commaGrouped.isEmpty() ||
                          !seen.pointDivided.isEmpty() || !seen.commaDivided.isEmpty();
    if (hasMarks || takesCurrency) {
        table.Rewrite(column, [&](QByteArrayView value) { return Settled(value, decimal, takesCurrency); });
    }
}

} // namespace sources
