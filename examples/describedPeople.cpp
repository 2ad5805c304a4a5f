#include "examples/describedRules.h"

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

italian::Identity IdentityOf(const Place& place) { return italian::MakeIdentity(place.options.seed, WhoOf(place)); }

Rule OfIdentity(const std::function<QString(const italian::Identity&)>& part) {
    return [part](const Place& place) { return QVariant(part(IdentityOf(place))); };
}

/// Where a name goes on in the next line: the last blank that leaves at most so many characters before it.
qsizetype BreakOf(const QString& name, int length) {
    return name.size() <= length ? name.size() : name.lastIndexOf(u' ', length);
}

/// Somebody's name, from one word of it to another.
Rule OfPerson(int first, int last) {
    return [=](const Place& place) {
        Random random(place.options.seed, StreamOf("person"), static_cast<quint64>(place.row));
        return QVariant(italian::MakePerson(random).section(u' ', first, last));
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

Rule IfPerson(const Rule& person, const Rule& company) {
    return [=](const Place& place) {
        const Rule& chosen = IdentityOf(place).isCompany ? company : person;
        return chosen ? chosen(place) : QVariant();
    };
}

Rule OwnSurname() {
    return IfPerson(OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', 0, -2); }), {});
}

Rule OwnFirstName() {
    return IfPerson(OfIdentity([](const italian::Identity& who) { return who.name.section(u' ', -1); }), {});
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

Rule BankAccount::Part(const std::function<QString(const italian::Bank&)>& part) const {
    return [=, *this](const Place& place) {
        const qint64 bankRow = m_banks == 0 ? place.row : place.row % m_banks;
        Random ofBank(place.options.seed, m_stream, static_cast<quint64>(bankRow));
        Random ofRow(place.options.seed, m_stream + 1, static_cast<quint64>(place.row));
        if (!ofRow.Chance(m_percent)) {
            return QVariant();
        }
        italian::Bank bank = italian::MakeBank(ofBank);
        bank.account = italian::MakeBank(ofRow).account;
        bank.check = italian::BankCheck(bank.abi, bank.cab, bank.account);
        return QVariant(part(bank));
    };
}

Rule BankAccount::Abi() const {
    return Part([](const italian::Bank& bank) { return bank.abi; });
}

Rule BankAccount::Cab() const {
    return Part([](const italian::Bank& bank) { return bank.cab; });
}

Rule BankAccount::Check() const {
    return Part([](const italian::Bank& bank) { return bank.check; });
}

Rule BankAccount::Number() const {
    return Part([](const italian::Bank& bank) { return bank.account; });
}

Rule BankAccount::Iban() const { return Part(IbanOf); }

Rule BankAccount::Bic() const {
    return Part([](const italian::Bank& bank) { return bank.bic; });
}

Rule BankAccount::OfBank(const Rule& rule) const {
    return With([banks = m_banks](qint64 row) { return banks == 0 ? row : row % banks; }, rule);
}

} // namespace examples::described
