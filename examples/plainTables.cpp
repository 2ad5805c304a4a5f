#include "examples/plainTables.h"

#include "examples/italian.h"

namespace examples::described {

namespace {

const QVariantList Payments{"RB30", "RB60", "BO30", "RD"};
const QVariantList OwnBanks{"BA1", "BA2"};
const QVariantList Agents{"AG1", "AG2", "AG3"};
const QVariantList Lists{"L1", "L2"};
const QVariantList Zones{"NORD", "CENTRO", "SUD"};
const QVariantList CustomerKinds{"IND", "RIV", "ART"};
const QVariantList Ports{"FR", "AS"};
const QVariantList Carriers{"V1", "V2"};
const QVariantList Units{"PZ", "KG", "MT"};
const QVariantList Families{"MEC", "LAM", "VIT"};
const QString Exempt = QStringLiteral("N8");
const QString Euro = QStringLiteral("EUR");

constexpr qint64 BranchesOfOne = 2;

/// Without the columns that the source does not have.
QVector<Field> Present(QVector<Field> fields) {
    fields.removeIf([](const Field& field) { return field.column.name.isEmpty(); });
    return fields;
}

Rule CustomersOnly(const Rule& rule) { return BySide(rule, {}); }

/// The codes are the same in Quadrix.
void Keep(QuadrixScript& script, const QString& table, const QByteArray& column, const QVariantList& codes) {
    for (const QVariant& code : column.isEmpty() ? QVariantList() : codes) {
        script.Translate(table, column, code.toString(), code.toString());
    }
}

QVector<Field> IdentityColumns(const Address& address, const PartyNames& names) {
    return {{{names.name, 'C', 60}, CompanyName(60)},
            {{names.name2, 'C', 60}, IfPerson({}, Chance(10, OneOf({"Stabilimento 2", "Divisione Commerciale"})))},
            {{names.isPerson, 'C', 1}, IfPerson(Fixed(Yes), Fixed(No))},
            {{names.surname, 'C', 40}, IfPerson(OwnSurname(), {})},
            {{names.firstName, 'C', 40}, IfPerson(OwnFirstName(), {})},
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
    const BankAccount bank("party");
    const auto ofBank = [](const Rule& part) { return Named("bank of a party", Chance(70, part)); };
    return {{{names.abi, 'C', 5}, ofBank(bank.Abi())},
            {{names.cab, 'C', 5}, ofBank(bank.Cab())},
            {{names.cin, 'C', 1}, ofBank(bank.Check())},
            {{names.account, 'C', 12}, ofBank(bank.Number())},
            {{names.iban, 'C', 42}, Chance(70, ofBank(bank.Iban()))},
            {{names.bic, 'C', 11}, ofBank(bank.Bic())}};
}

QVector<Field> TradeColumns(const PartyNames& names) {
    return {{{names.payment, 'C', 4}, OneOf(Payments)},
            {{names.ownBank, 'C', 6}, Chance(60, OneOf(OwnBanks))},
            {{names.discount1, 'N', 6, 2}, OneOf({0, 0, 5, 10})},
            {{names.discount2, 'N', 6, 2}, Chance(10, Fixed(2))},
            {{names.agent, 'C', 4}, CustomersOnly(Chance(50, OneOf(Agents)))},
            {{names.list, 'C', 4}, CustomersOnly(OneOf(Lists))},
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

/// Cost and weight of an article agree in all columns that tell of them.
Rule Cost() { return Named("cost of an article", Number(0.5, 90, 2)); }

} // namespace

QVector<Field> PartyColumns(const Address& address, const PartyNames& names) {
    return Present(IdentityColumns(address, names) + NumberColumns(address, names) + BankColumns(names) +
                   TradeColumns(names));
}

void PrepareParties(QuadrixScript& script, const QString& table, const PartyNames& names) {
    Keep(script, table, names.payment, Payments);
    Keep(script, table, names.agent, Agents);
    Keep(script, table, names.list, Lists);
    Keep(script, table, names.zone, Zones);
    Keep(script, table, names.category, CustomerKinds + QVariantList{"FOR"});
    Keep(script, table, names.port, Ports);
    Keep(script, table, names.carrier, Carriers);
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

QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier) {
    const auto onlyWith = [](const char* what, int percent, const Rule& rule) {
        return Named(what, Chance(percent, rule));
    };
    const Rule weight = Named("weight of an article", Number(0.05, 40, 3));
    return Present({{{names.description, 'C', 60}, ArticleText()},
                    {{names.description2, 'C', 60}, Chance(20, OneOf({"zincato", "verniciato RAL 7035", "grezzo"}))},
                    {{names.longText, 'M'}, Chance(15, Fixed("Con certificato 3.1, imballato a dieci"))},
                    {{names.unit, 'C', 3}, OneOf({"PZ", "PZ", "PZ", "KG", "MT"})},
                    {{names.unit2, 'C', 3}, onlyWith("second unit", 20, Fixed("KG"))},
                    {{names.factor, 'N', 10, 4}, onlyWith("second unit", 20, Number(0.5, 12, 3))},
                    {{names.purchaseUnit, 'C', 3}, Chance(10, Fixed("KG"))},
                    {{names.vatCode, 'C', 4}, OneOf({"22", "22", "22", "10"})},
                    {{names.family, 'C', 6}, OneOf(Families)},
                    {{names.lastCost, 'N', 12, 4}, Chance(70, Cost(), Fixed(0))},
                    {{names.standardCost, 'N', 12, 4}, Cost()},
                    {{names.price, 'N', 12, 4}, Scaled(1.5, 4, Cost())},
                    {{names.discount, 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                    {{names.netWeight, 'N', 12, 3}, weight},
                    {{names.grossWeight, 'N', 12, 3}, Scaled(1.05, 4, weight)},
                    {{names.lowestStock, 'N', 12, 3}, Chance(40, Whole(1, 20))},
                    {{names.highestStock, 'N', 12, 3}, Chance(40, Whole(50, 200))},
                    {{names.reorderPoint, 'N', 12, 3}, Chance(40, Whole(5, 30))},
                    {{names.lowestOrder, 'N', 12, 3}, Chance(40, Whole(1, 10))},
                    {{names.lot, 'N', 12, 3}, Chance(40, Whole(10, 50))},
                    {{names.leadDays, 'I'}, Chance(40, Whole(1, 30))},
                    {{names.supplier, 'C', 8}, onlyWith("own supplier", 60, supplier)},
                    {{names.supplierCode, 'C', 25}, onlyWith("own supplier", 60, Code("FOR-", 5))},
                    {{names.barCode, 'C', 20}, Chance(40, BarCode())},
                    {{names.location, 'C', 15}, Chance(40, AnyOf(Exactly(200), Code("A-", 3)))},
                    {{names.isCancelled, 'C', 1}, Chance(3, Fixed(Yes), Fixed(No))},
                    {{names.note, 'M'}, Chance(10, OneOf({"Verniciare a parte", "Non impilare"}))},
                    {{names.created, 'T'}, Day(300)}});
}

void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names) {
    for (const QByteArray& column : {names.unit, names.unit2, names.purchaseUnit}) {
        Keep(script, table, column, Units);
    }
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("10", "IVA 10%", 10);
    Keep(script, table, names.family, Families);
}

QVector<Account> Chart(int firstLevel, int lastLevel) {
    static const QVector<Account> all{{"01", "Immobilizzazioni", "A"},
                                      {"0101", "Immobilizzazioni materiali", "A"},
                                      {"01010001", "Impianti e macchinari", "A"},
                                      {"01010002", "Attrezzature", "A"},
                                      {"04", "Crediti", "A"},
                                      {"0401", "Clienti", "A"},
                                      {"04010001", "Clienti Italia", "A"},
                                      {"05", "Debiti", "P"},
                                      {"0501", "Fornitori", "P"},
                                      {"05010001", "Fornitori Italia", "P"},
                                      {"06", "Liquidità", "A"},
                                      {"0601", "Banche", "A"},
                                      {"06010001", "Banca c/c ordinario", "A"},
                                      {"60", "Costi", "C"},
                                      {"6001", "Acquisti", "C"},
                                      {"60010001", "Acquisti di materie prime", "C"},
                                      {"60010002", "Lavorazioni di terzi", "C"},
                                      {"70", "Ricavi", "R"},
                                      {"7001", "Ricavi di vendita", "R"},
                                      {"70010001", "Vendite Italia", "R"},
                                      {"70010002", "Vendite all'estero", "R"},
                                      {"90", "Conti d'ordine", "O"},
                                      {"9001", "Beni di terzi", "O"},
                                      {"90010001", "Merce in conto visione", "O"}};
    QVector<Account> asked = all;
    asked.removeIf([=](const Account& account) { return account.Level() < firstLevel || account.Level() > lastLevel; });
    return asked;
}

} // namespace examples::described
