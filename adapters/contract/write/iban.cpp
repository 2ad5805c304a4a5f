#include "adapters/contract/write/iban.h"

#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

#include <algorithm>

namespace contract {

namespace {

constexpr int BankSize = 5;
constexpr int AccountSize = 12;

/// A part without blanks, with the zeros in front that its size wants; empty for zeros alone.
QString Part(QString text, int size) {
    text.remove(u' ');
    while (text.startsWith(u'0')) {
        text.remove(0, 1);
    }
    return text.isEmpty() ? text : text.rightJustified(size, u'0');
}

bool IsLetter(QChar c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

bool IsLetterOrDigit(QChar c) { return IsLetter(c) || IsDigit(c); }

/// Whether a part has so many characters of a kind, and no others.
bool Fits(const QString& part, qsizetype size, bool (*isOfKind)(QChar)) {
    return part.size() == size && std::all_of(part.begin(), part.end(), isOfKind);
}

} // namespace

ItalianIban IbanOf(const QString& cin, const QString& abi, const QString& cab, const QString& account) {
    const QString letter = cin.trimmed();
    const QString bank = Part(abi, BankSize);
    const QString branch = Part(cab, BankSize);
    const QString number = Part(account, AccountSize);
    if (letter.isEmpty() || bank.isEmpty() || branch.isEmpty() || number.isEmpty()) {
        return {};
    }
    const auto wrong = [](const QString& what, const QString& text) { return ItalianIban{{}, what.arg(text)}; };
    if (!Fits(letter, 1, IsLetter)) {
        return wrong(QStringLiteral("il CIN '%1' non è una lettera"), cin);
    }
    if (!Fits(bank, BankSize, IsDigit)) {
        return wrong(QStringLiteral("l'ABI '%1' non è di cinque cifre"), abi);
    }
    if (!Fits(branch, BankSize, IsDigit)) {
        return wrong(QStringLiteral("il CAB '%1' non è di cinque cifre"), cab);
    }
    if (!Fits(number, AccountSize, IsLetterOrDigit)) {
        return wrong(QStringLiteral("il conto '%1' non è di dodici lettere e cifre"), account);
    }
    return {mod_ovTools::MakeItalianIban(letter, bank, branch, number)};
}

} // namespace contract
