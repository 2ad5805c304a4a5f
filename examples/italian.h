#pragma once

#include "examples/random.h"

#include <QDate>
#include <QString>

/// Made-up people and companies of Italy whose codes obey their check digits.
namespace examples::italian {

struct Town {
    const char16_t* name;
    const char16_t* province;   ///< two letters
    const char16_t* postCode;   ///< CAP
    const char16_t* landCode;   ///< of the land register, part of the tax codes of people born there
    const char16_t* dialPrefix; ///< of its telephone district
};

/// Who a counterparty is. Identities of different numbers never have a VAT number or tax code in common.
struct Identity {
    bool isCompany = true;
    QString name;      ///< "Officine Meccaniche Rossi & Figli S.r.l.", "Rossi Mario"
    QString vatNumber; ///< partita IVA, 11 digits; blank for a private person
    QString taxCode;   ///< codice fiscale: 16 characters of a person, 11 digits of a company
};

/// The identity of a number from 0 to 2,400,000; always the same for the same seed and number.
Identity MakeIdentity(quint64 seed, qint64 number);

/// A VAT number of a number from 0 to 9,999,999, none twice: seven digits, those of a province and a check digit.
QString VatNumber(qint64 number);
/// Whether the eleven digits end in their check digit.
bool IsVatNumber(const QString& text);

/// The tax code of a person.
/// @param landCode of the town of birth, e.g. "H501" for Rome
QString TaxCode(const QString& surname, const QString& firstName, QDate birth, bool isWoman, const QString& landCode);
/// Whether the sixteen characters end in their check letter.
bool IsTaxCode(const QString& text);

/// The check letter (CIN) of bank coordinates: five digits ABI, five digits CAB, twelve characters of account.
QString BankCheck(const QString& abi, const QString& cab, const QString& account);

/// An Italian IBAN, its check digits calculated.
QString MakeIban(const QString& check, const QString& abi, const QString& cab, const QString& account);

struct Bank {
    QString abi;
    QString cab;
    QString account; ///< 12 digits
    QString check;   ///< CIN
    QString bic;
};
Bank MakeBank(Random& random);

const Town& MakeTown(Random& random);
/// Name of a street of at most 25 characters, e.g. "Via Giuseppe Garibaldi".
QString MakeStreet(Random& random);
/// House number of at most 5 characters, e.g. "12/A".
QString MakeHouseNumber(Random& random);
/// First name and surname.
QString MakePerson(Random& random);
/// A land line number of a town as people write it: mostly plain, in some cases with signs, an extension, a country
/// code or a word.
QString MakeTelephone(Random& random, const Town& town);
/// A mobile number.
QString MakeMobile(Random& random);
/// A name in lower case without accents, blanks and signs, of at most 20 characters, as in addresses of the Internet.
QString DomainOf(const QString& name);

} // namespace examples::italian
