#pragma once

#include "core/Session.h"

namespace contract {

/// CDBAN of the company's bank with an IBAN, blanks left out; empty when there is none, or it is blank.
QString BankOfIban(Session& session, const QString& iban);
/// CDBAN for a bank of the source: of the one that has its code, else of the one with its IBAN, else the highest code
/// of digits plus one, five digits. Raises `ImportError` when they are used up.
QString BankCodeOf(Session& session, const QString& code, const QString& iban);

} // namespace contract
