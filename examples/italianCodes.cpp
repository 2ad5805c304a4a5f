#include "examples/italian.h"

#include <array>

namespace examples::italian {

namespace {

constexpr int VatDigits = 11;
constexpr int TaxCharacters = 16;

/// What a character in an odd place (the first, the third, ...) counts in tax codes and bank coordinates.
constexpr std::array<int, 26> OddValues{1,  0,  5, 7, 9, 13, 15, 17, 19, 21, 2,  4,  18,
                                        20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};

/// A digit is worth itself, a letter its place in the alphabet from 0.
int Worth(QChar character) { return character.isDigit() ? character.digitValue() : character.unicode() - u'A'; }

QChar CheckLetter(const QString& text) {
    int sum = 0;
    for (int i = 0; i < text.size(); ++i) {
        const int worth = Worth(text[i]);
        sum += i % 2 == 0 ? OddValues.at(static_cast<std::size_t>(worth)) : worth;
    }
    return QChar(u'A' + sum % 26);
}

int VatCheck(const QString& digits) {
    int sum = 0;
    for (int i = 0; i < VatDigits - 1; ++i) {
        const int digit = digits[i].digitValue();
        const int doubled = digit > 4 ? digit * 2 - 9 : digit * 2;
        sum += i % 2 == 0 ? digit : doubled;
    }
    return (10 - sum % 10) % 10;
}

/// The letters A to Z of a name, in capitals, accents taken off.
QString Letters(const QString& name) {
    QString letters;
    for (const QChar character : name.normalized(QString::NormalizationForm_D).toUpper()) {
        letters += character >= u'A' && character <= u'Z' ? QString(character) : QString();
    }
    return letters;
}

/// Consonants first, then vowels, filled up with X.
QString ThreeLetters(const QString& name, bool isFirstName) {
    QString consonants;
    QString vowels;
    for (const QChar letter : Letters(name)) {
        (QStringLiteral("AEIOU").contains(letter) ? vowels : consonants) += letter;
    }
    if (isFirstName && consonants.size() > 3) {
        consonants.remove(1, 1);
    }
    return QString(consonants + vowels + QString(3, u'X')).left(3);
}

} // namespace

QString VatNumber(qint64 number) {
    // The factor has no divisor in common with the modulus: every number gets seven digits of its own.
    const qint64 body = (number * 7654321 + 1234567) % 10000000;
    const qint64 province = 1 + (number * 37) % 100;
    const QString digits =
        QStringLiteral("%1%2").arg(body, 7, 10, QLatin1Char('0')).arg(province, 3, 10, QLatin1Char('0'));
    return digits + QString::number(VatCheck(digits));
}

bool IsVatNumber(const QString& text) {
    bool isNumber = false;
    text.toULongLong(&isNumber);
    return isNumber && text.size() == VatDigits && VatCheck(text) == text.back().digitValue();
}

QString TaxCode(const QString& surname, const QString& firstName, QDate birth, bool isWoman, const QString& landCode) {
    const QChar month = QStringLiteral("ABCDEHLMPRST").at(birth.month() - 1);
    const QString code = ThreeLetters(surname, false) + ThreeLetters(firstName, true) +
                         QStringLiteral("%1").arg(birth.year() % 100, 2, 10, QLatin1Char('0')) + month +
                         QStringLiteral("%1").arg(birth.day() + (isWoman ? 40 : 0), 2, 10, QLatin1Char('0')) + landCode;
    return code + CheckLetter(code);
}

bool IsTaxCode(const QString& text) {
    return text.size() == TaxCharacters && CheckLetter(text.left(TaxCharacters - 1)) == text.back();
}

QString MakeIban(const QString& check, const QString& abi, const QString& cab, const QString& account) {
    constexpr int modulus = 97;
    const QString coordinates = check + abi + cab + account;
    int rest = 0;
    for (const QChar character : QString(coordinates + QStringLiteral("IT00"))) {
        // A letter counts as two digits: A is 10.
        const int worth = character.isDigit() ? character.digitValue() : character.unicode() - u'A' + 10;
        rest = (rest * (worth > 9 ? 100 : 10) + worth) % modulus;
    }
    return QStringLiteral("IT%1%2").arg(modulus + 1 - rest, 2, 10, QLatin1Char('0')).arg(coordinates);
}

QString BankCheck(const QString& abi, const QString& cab, const QString& account) {
    return CheckLetter(abi + cab + account);
}

} // namespace examples::italian
