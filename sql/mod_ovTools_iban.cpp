#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <algorithm>

namespace mod_ovTools {

namespace {

constexpr qsizetype accountSize = 12;

bool IsCapital(QChar character) { return character >= u'A' && character <= u'Z'; }

QString PadAccount(const QString& account) {
    QString padded = account;
    padded.remove(u' ');
    padded = QString(accountSize, u'0') + padded.trimmed();
    return padded.right(accountSize);
}

/// Remainder by 97 of a text in which every letter stands for its place in the alphabet plus 9.
int Remainder97(const QString& text) {
    int remainder = 0;
    for (const QChar character : text) {
        if (IsCapital(character)) {
            remainder = (remainder * 100 + (character.unicode() - u'A' + 10)) % 97;
        } else if (IsDigit(character)) {
            remainder = (remainder * 10 + (character.unicode() - u'0')) % 97;
        }
    }
    return remainder;
}

bool AnyBlank(std::initializer_list<QStringView> parts) {
    return std::any_of(parts.begin(), parts.end(), [](QStringView part) { return part.trimmed().isEmpty(); });
}

} // namespace

QString MakeIban(const QString& country, const QString& cin, const QString& bankCode, const QString& branchCode,
                 const QString& account) {
    if (AnyBlank({country, cin, bankCode, branchCode, account})) {
        return {};
    }
    QString basic = (cin + bankCode + branchCode + PadAccount(account)).toUpper();
    basic.removeIf([](QChar character) { return !IsCapital(character) && !IsDigit(character); });
    const QString code = country.trimmed().toUpper();
    const int check = 98 - Remainder97(basic + code + QStringLiteral("00"));
    return code + QStringLiteral("%1").arg(check, 2, 10, QChar(u'0')) + basic;
}

QString MakeItalianIban(const QString& cin, const QString& bankCode, const QString& branchCode,
                        const QString& account) {
    return MakeIban(QStringLiteral("IT"), cin, bankCode, branchCode, account);
}

} // namespace mod_ovTools
