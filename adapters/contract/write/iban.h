#pragma once

#include <QString>

namespace contract {

/// What the coordinates of an Italian account give.
struct ItalianIban {
    QString iban;
    QString wrong = {}; ///< why they give none, in the operator's words; empty where they are not all known
};

/// The IBAN of an Italian account. Bank and branch have five digits and the account twelve characters, whose leading
/// zeros may be missing or too many; "00000" is a bank that is not known. What has another form gives no IBAN: cut to
/// it, the digits of control would be right and the account somebody else's.
ItalianIban IbanOf(const QString& cin, const QString& abi, const QString& cab, const QString& account);

} // namespace contract
