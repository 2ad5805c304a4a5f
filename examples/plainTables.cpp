#include "examples/plainTables.h"

namespace examples::described {

namespace {

const QVariantList Payments{"RB30", "RB60", "BO30", "RD"};
const QVariantList OwnBanks{"BA1", "BA2"};
const QVariantList Agents{"AG1", "AG2", "AG3"};
const QVariantList Zones{"NORD", "CENTRO", "SUD"};
const QVariantList CustomerKinds{"IND", "RIV", "ART"};
const QVariantList Ports{"FR", "AS"};
const QVariantList Carriers{"V1", "V2"};
const QString Exempt = QStringLiteral("N8");
const QString Euro = QStringLiteral("EUR");

constexpr qint64 BranchesOfOne = 2;

Rule CustomersOnly(const Rule& rule) { return BySide(rule, {}); }

QVector<Field> IdentityColumns(const Address& address, const PartyNames& names) {
    return {{{names.name, 'C', 60}, CompanyName(60)},
            {{names.name2, 'C', 60}, IfPerson({}, Chance(10, OneOf({"Stabilimento 2", "Divisione Commerciale"})))},
            {{names.isPerson, 'C', 1}, IfPerson(Fixed(Yes), Fixed(No))},
            {{names.surname, 'C', 40}, OwnSurname()},
            {{names.firstName, 'C', 40}, OwnFirstName()},
            {{names.street, 'C', 60}, names.houseNumber.isEmpty() ? address.Street() : address.StreetName()},
            {{names.houseNumber, 'C', 10}, address.HouseNumber()},
            {{names.postCode, 'C', 10}, address.PostCode()},
            {{names.town, 'C', 40}, address.Town()},
            {{names.province, 'C', 10}, address.Province()},
            {{names.country, 'C', 3}, Chance(90, Fixed("IT"))},
            {{names.vatNumber, 'C', 16}, VatNumber()},
            {{names.taxCode, 'C', 16}, TaxCode()},
            {{names.isCancelled, 'C', 1}, Chance(3, Fixed(Yes), Fixed(No))},
            {{names.note, 'M'}, Chance(10, OneOf({"Chiamare prima", "Consegnare di mattina", "Chiude il lunedì"}))},
            {{names.created, 'T'}, Day(300)}};
}

QVector<Field> NumberColumns(const Address& address, const PartyNames& names) {
    return {{{names.office, 'C', 20}, Chance(90, address.Telephone())},
            {{names.office2, 'C', 20}, Chance(10, Mobile())},
            {{names.fax, 'C', 20}, Chance(20, address.Telephone())},
            {{names.mobile, 'C', 20}, Chance(30, Mobile())},
            {{names.mail, 'C', 80}, Chance(70, OnInternet("info@"))},
            {{names.certifiedMail, 'C', 80}, Chance(50, OnInternet("posta@pec."))},
            {{names.web, 'C', 80}, Chance(30, OnInternet("www."))},
            {{names.contact, 'C', 40}, Chance(30, FullName())}};
}

/// Most have the coordinates of their bank, some of these no IBAN.
QVector<Field> BankColumns(const PartyNames& names) {
    const BankAccount bank("party", 70);
    return {{{names.abi, 'C', 5}, bank.Abi()},
            {{names.cab, 'C', 5}, bank.Cab()},
            {{names.cin, 'C', 1}, bank.Check()},
            {{names.account, 'C', 12}, bank.Number()},
            {{names.iban, 'C', 42}, Chance(70, bank.Iban())},
            {{names.bic, 'C', 11}, bank.Bic()}};
}

QVector<Field> TradeColumns(const PartyNames& names) {
    return {{{names.payment, 'C', 4}, OneOf(Payments)},
            {{names.ownBank, 'C', 6}, Chance(60, OneOf(OwnBanks))},
            {{names.discount1, 'N', 6, 2}, OneOf({0, 0, 5, 10})},
            {{names.discount2, 'N', 6, 2}, Chance(10, Fixed(2))},
            {{names.agent, 'C', 4}, CustomersOnly(Chance(50, OneOf(Agents)))},
            {{names.list, 'C', 4}, BySide(Fixed(SalesList), Chance(50, Fixed(PurchaseList)))},
            {{names.currency, 'C', 3}, Chance(90, Fixed(Euro))},
            {{names.language, 'C', 3}, Chance(20, Fixed("IT"))},
            {{names.zone, 'C', 6}, CustomersOnly(OneOf(Zones))},
            {{names.category, 'C', 4}, BySide(OneOf(CustomerKinds), Fixed("FOR"))},
            {{names.exemption, 'C', 4}, Chance(5, Fixed(Exempt))},
            {{names.port, 'C', 2}, Chance(60, OneOf(Ports))},
            {{names.carrier, 'C', 4}, CustomersOnly(Chance(30, OneOf(Carriers)))},
            {{names.credit, 'N', 12, 2}, CustomersOnly(OneOf({0, 0, 5000, 20000}))},
            {{names.ledger, 'C', 10}, BySide(Fixed("0401"), Fixed("0501"))},
            {{names.isBlocked, 'C', 1}, Chance(3, Fixed(Yes), Fixed(No))}};
}

} // namespace

QVector<Field> Present(QVector<Field> fields) {
    fields.removeIf([](const Field& field) { return field.column.name.isEmpty(); });
    return fields;
}

QVector<Field> PartyColumns(const Address& address, const PartyNames& names) {
    return Present(IdentityColumns(address, names) + NumberColumns(address, names) + BankColumns(names) +
                   TradeColumns(names));
}

void PrepareParties(QuadrixScript& script, const QString& table, const PartyNames& names) {
    script.Keep(table, names.payment, Payments);
    script.Keep(table, names.agent, Agents);
    script.Keep(table, names.list, {SalesList, PurchaseList});
    script.Keep(table, names.zone, Zones);
    script.Keep(table, names.category, CustomerKinds + QVariantList{"FOR"});
    script.Keep(table, names.port, Ports);
    script.Keep(table, names.carrier, Carriers);
    if (!names.country.isEmpty()) {
        script.Translate(table, names.country, "IT", "ITA");
    }
}

void PrepareBases(QuadrixScript& script) {
    script.VatCode(Exempt, "Non imponibile art. 8", 0);
    for (const QVariant& bank : OwnBanks) {
        script.Bank(bank.toString(), "Banca " + bank.toString());
    }
}

namespace {

/// @param mark column of the side @param number of the first
Table KnownParties(const QByteArray& code, const QByteArray& mark, qint64 number, qint64 count, const Rule& codes) {
    const Address address("CON_TRO." + mark);
    return {"CON_TRO",
            {},
            Exactly(count),
            QVector<Field>{{{"CDCON", 'C', 10}, Code({}, 6, number)},
                           {{"CORAS", 'C', 35}, Behind(Exactly(number), CompanyName(35))},
                           {{code, 'C', 10}, codes},
                           {{mark, 'I'}, Fixed(1)}} +
                address.Columns("COIND", "COCAP", "COCIT", "COPRO")};
}

} // namespace

void PrepareCustomers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options) {
    Prepare(script, KnownParties("COCGE", "COCLI", 1, count, code), options);
}

void PrepareSuppliers(QuadrixScript& script, qint64 count, const Rule& code, const Options& options) {
    constexpr qint64 behind = 500001; ///< the numbers of the customers
    Prepare(script, KnownParties("COFGE", "COFOR", behind, count, code), options);
}

Count Branches() { return Times(BranchesOfOne, EachOf(8)); }

QVector<Field> BranchColumns(const Address& address, const BranchNames& names) {
    return Present({{{names.number, 'C', 3}, Line(BranchesOfOne)},
                    {{names.name, 'C', 60}, Turn(1, {Fixed("Magazzino"), Fixed("Amministrazione")})},
                    {{names.street, 'C', 60}, Chance(95, address.Street())},
                    {{names.postCode, 'C', 10}, address.PostCode()},
                    {{names.town, 'C', 40}, address.Town()},
                    {{names.province, 'C', 10}, address.Province()},
                    {{names.country, 'C', 3}, Chance(50, Fixed("IT"))},
                    {{names.office, 'C', 20}, Chance(60, address.Telephone())},
                    {{names.fax, 'C', 20}, Chance(10, address.Telephone())},
                    {{names.contact, 'C', 40}, Chance(40, FullName())},
                    {{names.isDefault, 'C', 1}, Turn(1, {Fixed(Yes), Fixed(No)})}});
}

/// There are fewer owners than half of the rows, and more customers.
Rule OfBranch(const Rule& customer) {
    return With([](qint64 row) { return row / BranchesOfOne * 4; }, customer);
}

} // namespace examples::described
