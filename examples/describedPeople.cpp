#include "examples/describedRules.h"
#include "examples/italian.h"

#include <algorithm>

namespace examples::described {

namespace {

constexpr qint64 SharedEvery = 10; ///< one supplier in so many is a customer as well

/// The number of the identity of a counterparty.
qint64 WhoOf(const Place& place) {
    const qint64 supplier = place.row - Customers(place.options);
    const bool isCustomerToo = supplier > 0 && supplier % SharedEvery == 0;
    return isCustomerToo ? supplier : place.row;
}

italian::Identity IdentityOf(const Place& place) { return italian::MakeIdentity(place.options.seed, WhoOf(place)); }

Rule OfIdentity(const std::function<QString(const italian::Identity&)>& part) {
    return [part](const Place& place) { return QVariant(part(IdentityOf(place))); };
}

/// Where a name goes on in the next line: the last blank that leaves at most so many characters before it.
qsizetype BreakOf(const QString& name, int length) {
    return name.size() <= length ? name.size() : name.lastIndexOf(u' ', length);
}

/// Somebody's name, so many words of it.
Rule OfPerson(int first, int last) {
    return [=](const Place& place) {
        Random random(place.options.seed, StreamOf("person"), static_cast<quint64>(place.row));
        return QVariant(italian::MakePerson(random).section(u' ', first, last));
    };
}

Rule OfTown(quint64 stream, const std::function<QString(Random&, const italian::Town&)>& part) {
    return [=](const Place& place) {
        Random random(place.options.seed, stream, static_cast<quint64>(place.row));
        const italian::Town& town = italian::MakeTown(random);
        return QVariant(part(random, town));
    };
}

Rule OfBank(quint64 stream, int percent, const std::function<QString(const italian::Bank&)>& part) {
    return [=](const Place& place) {
        Random random(place.options.seed, stream, static_cast<quint64>(place.row));
        return random.Chance(percent) ? QVariant(part(italian::MakeBank(random))) : QVariant();
    };
}

QString IbanOf(const italian::Bank& bank) { return italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account); }

} // namespace

qint64 Customers(const Options& options) { return options.rows - Suppliers(options); }

qint64 Suppliers(const Options& options) { return std::max<qint64>(1, options.rows * 3 / 10); }

qint64 Counterparties(const Options& options) { return options.rows; }

Rule BySide(const Rule& customer, const Rule& supplier) {
    return Kinds({{Customers, customer}, {Suppliers, supplier}});
}

Rule CompanyName(int length) {
    return OfIdentity([length](const italian::Identity& who) { return who.name.left(length).trimmed(); });
}

Rule NameBegin(int length) {
    return OfIdentity([length](const italian::Identity& who) { return who.name.left(BreakOf(who.name, length)); });
}

Rule NameRest(int length) {
    return OfIdentity([length](const italian::Identity& who) { return who.name.mid(BreakOf(who.name, length) + 1); });
}

Rule VatNumber() {
    return OfIdentity([](const italian::Identity& who) { return who.vatNumber; });
}

Rule TaxCode() {
    return OfIdentity([](const italian::Identity& who) { return who.taxCode; });
}

Rule IdentityNumber() {
    return [](const Place& place) { return QVariant(WhoOf(place) + 1); };
}

Rule ForPerson(const Rule& person, const Rule& company) {
    return [=](const Place& place) {
        const Rule& rule = IdentityOf(place).isCompany ? company : person;
        return rule ? rule(place) : QVariant();
    };
}

Rule PersonSurname() {
    return ForPerson(OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', 0, -2); }));
}

Rule PersonFirstName() {
    return ForPerson(OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', -1); }));
}

Rule FirstName() { return OfPerson(0, 0); }

Rule LastName() { return OfPerson(1, -1); }

Rule FullName() { return OfPerson(0, -1); }

Rule Mobile() {
    return [](const Place& place) {
        Random random = place.Draw();
        return QVariant(italian::MakeMobile(random));
    };
}

Rule OnInternet(const QString& prefix) {
    return [prefix](const Place& place) {
        return QVariant(prefix + QStringLiteral("ditta%1.example").arg(place.row + 1));
    };
}

Rule Address::Street() const {
    return OfTown(m_stream, [](Random& random, const italian::Town&) {
        const QString street = italian::MakeStreet(random);
        return QString(street + u", " + italian::MakeHouseNumber(random));
    });
}

Rule Address::StreetName() const {
    return OfTown(m_stream, [](Random& random, const italian::Town&) { return italian::MakeStreet(random); });
}

Rule Address::HouseNumber() const {
    return OfTown(m_stream, [](Random& random, const italian::Town&) {
        italian::MakeStreet(random); // drawn before it
        return italian::MakeHouseNumber(random);
    });
}

Rule Address::PostCode() const {
    return OfTown(m_stream, [](Random&, const italian::Town& town) { return QString::fromUtf16(town.postCode); });
}

Rule Address::Town() const {
    return OfTown(m_stream, [](Random&, const italian::Town& town) { return QString::fromUtf16(town.name); });
}

Rule Address::Province() const {
    return OfTown(m_stream, [](Random&, const italian::Town& town) { return QString::fromUtf16(town.province); });
}

Rule Address::LandCode() const {
    return OfTown(m_stream, [](Random&, const italian::Town& town) { return QString::fromUtf16(town.landCode); });
}

Rule Address::Telephone() const {
    return OfTown(m_stream,
                  [](Random& random, const italian::Town& town) { return italian::MakeTelephone(random, town); });
}

QVector<Field> Address::Columns(const QByteArray& street, const QByteArray& postCode, const QByteArray& town,
                                const QByteArray& province) const {
    return {{{street, 'C', 40}, Street()},
            {{postCode, 'C', 10}, PostCode()},
            {{town, 'C', 40}, Town()},
            {{province, 'C', 10}, Province()}};
}

Rule Iban() {
    return [](const Place& place) {
        Random random = place.Draw();
        return QVariant(IbanOf(italian::MakeBank(random)));
    };
}

Rule Account::Abi() const {
    return OfBank(m_stream, m_percent, [](const italian::Bank& bank) { return bank.abi; });
}

Rule Account::Cab() const {
    return OfBank(m_stream, m_percent, [](const italian::Bank& bank) { return bank.cab; });
}

Rule Account::Number() const {
    return OfBank(m_stream, m_percent, [](const italian::Bank& bank) { return bank.account; });
}

Rule Account::Check() const {
    return OfBank(m_stream, m_percent, [](const italian::Bank& bank) { return bank.check; });
}

Rule Account::Bic() const {
    return OfBank(m_stream, m_percent, [](const italian::Bank& bank) { return bank.bic; });
}

Rule Account::Iban() const { return OfBank(m_stream, m_percent, IbanOf); }

} // namespace examples::described
