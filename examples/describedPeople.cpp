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

/// Somebody's name, one word of it.
Rule OfPerson(int word) {
    return [word](const Place& place) {
        Random random(place.options.seed, StreamOf("person"), static_cast<quint64>(place.row));
        return QVariant(italian::MakePerson(random).section(u' ', word, word == 0 ? 0 : -1));
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

Rule IdentityNumber() {
    return [](const Place& place) { return QVariant(WhoOf(place) + 1); };
}

Rule OfSupplier(const Rule& rule) {
    return [rule](const Place& place) { return rule(place.At(Customers(place.options) + place.row)); };
}

Rule VatNumber() {
    return OfIdentity([](const italian::Identity& who) { return who.vatNumber; });
}

Rule TaxCode() {
    return OfIdentity([](const italian::Identity& who) { return who.taxCode; });
}

Rule FirstName() { return OfPerson(0); }

Rule LastName() { return OfPerson(1); }

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

namespace {

/// @param stream,banks as `Account` has them
Rule OfAccount(quint64 stream, qint64 banks, const std::function<QString(const italian::Bank&)>& part) {
    return [=](const Place& place) {
        const qint64 bankRow = banks == 0 ? place.row : place.row % banks;
        Random ofBank(place.options.seed, stream, static_cast<quint64>(bankRow));
        Random ofRow(place.options.seed, stream + 1, static_cast<quint64>(place.row));
        italian::Bank bank = italian::MakeBank(ofBank);
        bank.account = italian::MakeBank(ofRow).account;
        bank.check = italian::BankCheck(bank.abi, bank.cab, bank.account);
        return QVariant(part(bank));
    };
}

} // namespace

Rule Account::Abi() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) { return bank.abi; });
}

Rule Account::Cab() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) { return bank.cab; });
}

Rule Account::Bic() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) { return bank.bic; });
}

Rule Account::Number() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) { return bank.account; });
}

Rule Account::Check() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) { return bank.check; });
}

Rule Account::Iban() const {
    return OfAccount(m_stream, m_banks, [](const italian::Bank& bank) {
        return italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account);
    });
}

Rule Account::OfBank(const Rule& rule) const {
    return With([banks = m_banks](qint64 row) { return banks == 0 ? row : row % banks; }, rule);
}

Rule Iban() {
    return [](const Place& place) {
        Random random = place.Draw();
        const italian::Bank bank = italian::MakeBank(random);
        return QVariant(italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account));
    };
}

} // namespace examples::described
