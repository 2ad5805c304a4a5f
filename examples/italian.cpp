#include "examples/italian.h"

#include "examples/italianWords.h"

namespace examples::italian {

namespace {

constexpr quint64 IdentityStream = 1001; ///< apart from the streams of the tables
const QDate FirstBirth(1930, 1, 1);
constexpr qint64 BirthDays = 27000; ///< to the end of 2003

QString Text(const char16_t* text) { return QString::fromUtf16(text); }

QString Digits(Random& random, int count) {
    QString digits;
    for (int i = 0; i < count; ++i) {
        digits += QChar(u'0' + static_cast<ushort>(random.Below(10)));
    }
    return digits;
}

/// Day, place of birth and sex of a person follow from the number, so that no two people share a tax code whatever
/// their names are.
QString TaxCodeOf(qint64 number, const QString& surname, const QString& firstName, bool isWoman) {
    const auto towns = static_cast<qint64>(Towns().size());
    // The factor is a prime beyond the modulus: every number gets a place of its own.
    const qint64 place = number * 15485863 % (BirthDays * towns);
    const Town& town = Towns()[static_cast<std::size_t>(place % towns)];
    return TaxCode(surname, firstName, FirstBirth.addDays(place / towns), isWoman, Text(town.landCode));
}

QString CompanyName(Random& random, const QString& surname) {
    const QString trade = Text(random.Pick(Trades()));
    const QString form = Text(random.Pick(CompanyForms()));
    switch (random.Below(6)) {
    case 0:
        return trade + u' ' + surname + u" & " + Text(random.Pick(Surnames())) + u' ' + form;
    case 1:
        return trade + u' ' + surname + u" & Figli " + form;
    case 2:
        return surname + u' ' + trade + u' ' + form;
    case 3:
        return surname + u' ' + form;
    default:
        return trade + u' ' + surname + u' ' + form;
    }
}

} // namespace

Identity MakeIdentity(quint64 seed, qint64 number) {
    Random random(seed, IdentityStream, static_cast<quint64>(number));
    Identity identity;
    const QString surname = Text(random.Pick(Surnames()));
    identity.isCompany = random.Chance(80);
    if (identity.isCompany) {
        identity.name = CompanyName(random, surname);
        identity.vatNumber = VatNumber(number);
        identity.taxCode = identity.vatNumber;
        return identity;
    }
    const bool isWoman = random.Chance(50);
    const QString firstName = Text(random.Pick(isWoman ? WomenNames() : MenNames()));
    identity.name = surname + u' ' + firstName;
    identity.taxCode = TaxCodeOf(number, surname, firstName, isWoman);
    // Craftsmen and the like have a VAT number beside their tax code.
    identity.vatNumber = random.Chance(50) ? VatNumber(number) : QString();
    return identity;
}

Bank MakeBank(Random& random) {
    static const std::vector<std::pair<const char16_t*, const char16_t*>> banks{
        {u"01005", u"BNLIITRR"}, {u"01030", u"PASCITMM"}, {u"02008", u"UNCRITMM"}, {u"03032", u"BACRIT22"},
        {u"03069", u"BCITITMM"}, {u"05034", u"BAPPIT22"}, {u"05387", u"BPMOIT22"}, {u"06045", u"CRBZIT2B"},
        {u"06230", u"CRPPIT2P"}, {u"08327", u"ROMAITRR"},
    };
    const auto& choice = random.Pick(banks);
    Bank bank{Text(choice.first), Digits(random, 5), Digits(random, 12), {}, Text(choice.second)};
    bank.check = BankCheck(bank.abi, bank.cab, bank.account);
    return bank;
}

const Town& MakeTown(Random& random) { return random.Pick(Towns()); }

QString MakeStreet(Random& random) { return Text(random.Pick(Streets())); }

QString MakeHouseNumber(Random& random) {
    const QString number = QString::number(random.Between(1, 240));
    switch (random.Below(10)) {
    case 0:
        return number + u"/A";
    case 1:
        return number.left(2) + u"bis";
    case 2:
        return QStringLiteral("snc");
    default:
        return number;
    }
}

QString MakePerson(Random& random) {
    const QString firstName = Text(random.Pick(random.Chance(50) ? WomenNames() : MenNames()));
    return firstName + u' ' + Text(random.Pick(Surnames()));
}

QString MakeTelephone(Random& random, const Town& town) {
    const QString prefix = Text(town.dialPrefix);
    const QString number = Digits(random, 6);
    switch (random.Below(20)) {
    case 0:
        return prefix + u'/' + number.left(4) + u" int. 5";
    case 1:
        return u"+39 " + prefix + u' ' + number;
    case 2:
        return prefix + u'-' + number.left(3) + u'-' + number.mid(3);
    case 3:
        return prefix + u'\\' + number;
    case 4:
        return QStringLiteral("solo mattina");
    case 5:
        return prefix + number + u" ab.";
    case 6:
    case 7:
    case 8:
        return prefix + u'/' + number.left(3) + u' ' + number.mid(3);
    default:
        return prefix + u'/' + number;
    }
}

QString MakeMobile(Random& random) {
    return QStringLiteral("3%1 %2").arg(random.Between(20, 93)).arg(Digits(random, 7));
}

QString DomainOf(const QString& name) {
    QString domain;
    for (const QChar character : name.normalized(QString::NormalizationForm_D).toLower()) {
        domain += character >= u'a' && character <= u'z' ? QString(character) : QString();
    }
    return domain.left(20);
}

} // namespace examples::italian
