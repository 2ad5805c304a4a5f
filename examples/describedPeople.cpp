#include "examples/describedRules.h"
#include "examples/italian.h"

#include <algorithm>

namespace examples::described {

namespace {

constexpr qint64 SharedEvery = 10; ///< one supplier in so many is a customer as well

/// The number of the identity of a counterparty. The rows behind those of the rules are nobody else.
qint64 WhoOf(const Place& place) {
    const qint64 supplier = place.row - Customers(place.options);
    const bool isSupplier = supplier > 0 && place.row < Counterparties(place.options);
    const bool isCustomerToo = isSupplier && supplier % SharedEvery == 0;
    return isCustomerToo ? supplier : place.row;
}

Rule OfIdentity(const std::function<QString(const italian::Identity&)>& part) {
    return
        [part](const Place& place) { return QVariant(part(italian::MakeIdentity(place.options.seed, WhoOf(place)))); };
}

/// Somebody's name, from one word of it to another.
Rule OfPerson(int first, int last) {
    return [=](const Place& place) {
        Random random(place.options.seed, StreamOf("person"), static_cast<quint64>(place.row));
        return QVariant(italian::MakePerson(random).section(u' ', first, last));
    };
}

Rule OfBank(quint64 stream, const std::function<QString(const italian::Bank&)>& part) {
    return [=](const Place& place) {
        Random random(place.options.seed, stream, static_cast<quint64>(place.row));
        return QVariant(part(italian::MakeBank(random)));
    };
}

QString IbanOf(const italian::Bank& bank) { return italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account); }

Rule OfTown(quint64 stream, const std::function<QString(Random&, const italian::Town&)>& part) {
    return [=](const Place& place) {
        Random random(place.options.seed, stream, static_cast<quint64>(place.row));
        const italian::Town& town = italian::MakeTown(random);
        return QVariant(part(random, town));
    };
}

} // namespace

qint64 Customers(const Options& options) { return options.rows - Suppliers(options); }

qint64 Suppliers(const Options& options) { return std::max<qint64>(1, options.rows * 3 / 10); }

qint64 Counterparties(const Options& options) { return options.rows; }

Rule CompanyName(int length) {
    return OfIdentity([length](const italian::Identity& who) { return who.name.left(length).trimmed(); });
}

Rule VatNumber() {
    return OfIdentity([](const italian::Identity& who) { return who.vatNumber; });
}

Rule TaxCode() {
    return OfIdentity([](const italian::Identity& who) { return who.taxCode; });
}

Rule IfPerson(const Rule& person, const Rule& company) {
    return [=](const Place& place) {
        const bool isCompany = italian::MakeIdentity(place.options.seed, WhoOf(place)).isCompany;
        const Rule& chosen = isCompany ? company : person;
        return chosen ? chosen(place) : QVariant();
    };
}

Rule OwnSurname() {
    return OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', 0, -2); });
}

Rule OwnFirstName() {
    return OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', -1); });
}

Rule FirstName() { return OfPerson(0, 0); }

Rule LastName() { return OfPerson(1, -1); }

Rule PersonName() { return OfPerson(0, -1); }

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
        italian::MakeStreet(random);
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

Rule BankAccount::Abi() const {
    return OfBank(m_stream, [](const italian::Bank& bank) { return bank.abi; });
}

Rule BankAccount::Cab() const {
    return OfBank(m_stream, [](const italian::Bank& bank) { return bank.cab; });
}

Rule BankAccount::Check() const {
    return OfBank(m_stream, [](const italian::Bank& bank) { return bank.check; });
}

Rule BankAccount::Number() const {
    return OfBank(m_stream, [](const italian::Bank& bank) { return bank.account; });
}

Rule BankAccount::Iban() const { return OfBank(m_stream, IbanOf); }

Rule BankAccount::Bic() const {
    return OfBank(m_stream, [](const italian::Bank& bank) { return bank.bic; });
}

} // namespace examples::described
