#include "adapters/contract/write/iban.h"

#include "sql/mod_ovTools.h"

#include <QRegularExpression>

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

bool Fits(const QString& part, const QString& form) {
    return QRegularExpression(QRegularExpression::anchoredPattern(form)).match(part).hasMatch();
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
    if (!Fits(letter, QStringLiteral("[A-Za-z]"))) {
        return wrong(QStringLiteral("il CIN '%1' non è una lettera"), cin);
    }
    if (!Fits(bank, QStringLiteral("[0-9]{5}"))) {
        return wrong(QStringLiteral("l'ABI '%1' non è di cinque cifre"), abi);
    }
    if (!Fits(branch, QStringLiteral("[0-9]{5}"))) {
        return wrong(QStringLiteral("il CAB '%1' non è di cinque cifre"), cab);
    }
    if (!Fits(number, QStringLiteral("[0-9A-Za-z]{12}"))) {
        return wrong(QStringLiteral("il conto '%1' non è di dodici lettere e cifre"), account);
    }
    return {mod_ovTools::MakeItalianIban(letter, bank, branch, number)};
}

} // namespace contract
