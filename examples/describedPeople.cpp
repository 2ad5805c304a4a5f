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

/// Of a counterparty that is a person, whose surname stands in front.
Rule OfPrivateName(int first, int last) {
    return [=](const Place& place) {
        const italian::Identity who = italian::MakeIdentity(place.options.seed, WhoOf(place));
        return who.isCompany ? QVariant() : QVariant(who.name.section(u' ', first, last));
    };
}

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

Rule IsPerson() {
    return OfIdentity([](const italian::Identity& who) { return QString(who.isCompany ? u'N' : u'S'); });
}

Rule PersonSurname() { return OfPrivateName(0, -2); }

Rule PersonFirstName() { return OfPrivateName(-1, -1); }

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
        const italian::Bank bank = italian::MakeBank(random);
        return QVariant(italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account));
    };
}

QVector<Field> OfSuppliers(QVector<Field> fields) {
    for (Field& field : fields) {
        if (const Rule rule = field.rule) {
            field.rule = [rule](const Place& place) { return rule(place.At(Customers(place.options) + place.row)); };
        }
    }
    return fields;
}

} // namespace examples::described
