#pragma once

#include "adapters/contract/kinds/Field.h"

namespace contract {

/// The columns of a plain table of counterparties by what they hold; an empty one the source does not have.
struct PartyColumns {
    QString name = {};
    QString name2 = {};
    QString isPerson = {}; ///< a flag
    QString surname = {};
    QString firstName = {};
    QString street = {};
    QString houseNumber = {};
    QString postCode = {};
    QString town = {};
    QString province = {};
    QString country = {};
    QString vatNumber = {};
    QString taxCode = {};
    QString recipientCode = {}; ///< of electronic invoices
    QString certifiedMail = {};
    QString payment = {};
    QString ownBank = {}; ///< of the company, by its code of the source
    QString abi = {};
    QString cab = {};
    QString cin = {};
    QString account = {};
    QString iban = {};
    QString bic = {};
    QString discount1 = {};
    QString discount2 = {};
    QString discount3 = {};
    QString agent = {};
    QString list = {};
    QString currency = {};
    QString language = {};
    QString zone = {};
    QString category = {};
    QString exemption = {}; ///< VAT code of rate zero
    QString port = {};
    QString carrier = {};
    QString credit = {};
    QString ledger = {}; ///< control account
    QString isBlocked = {};
    QString isCancelled = {};
    QString note = {};
    QString created = {};
};

/// The lines of CON_TRO that they give. Codes are those that SYS_IMP has for the table and the column.
Lines PartyLines(const QString& table, const PartyColumns& columns);

/// The columns of a plain table of branches by what they hold; an empty one the source does not have.
struct BranchColumns {
    QString number = {};
    QString name = {};
    QString street = {};
    QString houseNumber = {};
    QString postCode = {};
    QString town = {};
    QString province = {};
    QString country = {};
    QString person = {};
    QString isDefault = {}; ///< a flag
    QString note = {};
};

/// The lines of CON_SED that they give. The country is the one that SYS_IMP has for the table and the column.
Lines BranchLines(const QString& table, const BranchColumns& columns);

} // namespace contract
