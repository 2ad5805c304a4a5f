#include "examples/ledger.h"

#include "examples/italian.h"

#include <cmath>

namespace examples::ledger {

namespace {

constexpr qint64 PricesOfArticle = 3; ///< sales, sales of larger quantities, purchase
constexpr qint64 SpecialEvery = 10;   ///< of the articles one in so many has a special price

void Add(QVector<Field>& fields, const QByteArray& name, char type, int length, const Rule& rule, int decimals = 0) {
    if (!name.isEmpty()) {
        fields.append({{name, type, length, decimals}, rule});
    }
}

Rule BySide(const Rule& customer, const Rule& supplier) {
    return Kinds({{Customers, customer}, {Suppliers, supplier}});
}

Rule YesOrNo(int percent) { return Chance(percent, Fixed("S"), Fixed("N")); }

/// What a row tells of its bank account, if it has one.
Rule OfAccount(const QByteArray& table, int percent, const std::function<QString(const italian::Bank&)>& part) {
    return Named(table + ".bank", Chance(percent, [part](const Place& place) {
                     Random random = place.Draw();
                     return QVariant(part(italian::MakeBank(random)));
                 }));
}

void AddWho(QVector<Field>& fields, const QByteArray& table, const PartyNames& names) {
    const Address address(table);
    Add(fields, names.name, 'C', 60, CompanyName(60));
    Add(fields, names.name2, 'C', 60, Chance(8, Fixed("Stabilimento 2")));
    Add(fields, names.isPerson, 'C', 1, IsPerson());
    Add(fields, names.surname, 'C', 40, PersonSurname());
    Add(fields, names.firstName, 'C', 40, PersonFirstName());
    Add(fields, names.street, 'C', 60, names.houseNumber.isEmpty() ? address.Street() : address.StreetName());
    Add(fields, names.houseNumber, 'C', 10, address.HouseNumber());
    Add(fields, names.postCode, 'C', 10, address.PostCode());
    Add(fields, names.town, 'C', 40, address.Town());
    Add(fields, names.province, 'C', 10, address.Province());
    Add(fields, names.country, 'C', 3, Fixed("IT"));
    Add(fields, names.vatNumber, 'C', 16, VatNumber());
    Add(fields, names.taxCode, 'C', 16, TaxCode());
}

void AddReach(QVector<Field>& fields, const QByteArray& table, const PartyNames& names) {
    Add(fields, names.office, 'C', 30, Address(table).Telephone());
    Add(fields, names.office2, 'C', 30, Chance(10, Address(table + ".2").Telephone()));
    Add(fields, names.fax, 'C', 30, Chance(40, Address(table + ".fax").Telephone()));
    Add(fields, names.mobile, 'C', 30, Chance(30, Mobile()));
    Add(fields, names.mail, 'C', 80, Chance(60, OnInternet("info@")));
    Add(fields, names.certifiedMail, 'C', 80, Chance(40, OnInternet("posta@pec.")));
    Add(fields, names.web, 'C', 80, Chance(20, OnInternet("www.")));
    Add(fields, names.contact, 'C', 40, Chance(40, PersonName()));
}

/// Some tell their account by its coordinates alone, some by the IBAN as well.
void AddAccount(QVector<Field>& fields, const QByteArray& table, const PartyNames& names) {
    constexpr int withAccount = 50;
    constexpr int withIban = 35;
    const auto add = [&](const QByteArray& name, int length, int percent, auto part) {
        Add(fields, name, 'C', length, OfAccount(table, percent, part));
    };
    add(names.abi, 5, withAccount, [](const italian::Bank& bank) { return bank.abi; });
    add(names.cab, 5, withAccount, [](const italian::Bank& bank) { return bank.cab; });
    add(names.cin, 1, withAccount, [](const italian::Bank& bank) { return bank.check; });
    add(names.account, 12, withAccount, [](const italian::Bank& bank) { return bank.account; });
    add(names.iban, 34, withIban,
        [](const italian::Bank& bank) { return italian::MakeIban(bank.check, bank.abi, bank.cab, bank.account); });
    add(names.bic, 11, withAccount, [](const italian::Bank& bank) { return bank.bic; });
}

void AddConditions(QVector<Field>& fields, const PartyNames& names) {
    Add(fields, names.payment, 'C', 4, OneOf({"RB30", "RB60", "BB30"}));
    Add(fields, names.ownBank, 'C', 6, Chance(30, Fixed("BA1")));
    Add(fields, names.discount1, 'N', 6, OneOf({0, 0, 5, 10}), 2);
    Add(fields, names.discount2, 'N', 6, Chance(10, Whole(1, 4)), 2);
    Add(fields, names.agent, 'C', 4, BySide(Chance(50, OneOf({"AG1", "AG2"})), {}));
    Add(fields, names.list, 'C', 4, BySide(Fixed(SalesList), Chance(50, Fixed(PurchaseList))));
    Add(fields, names.currency, 'C', 3, Fixed("EUR"));
    Add(fields, names.language, 'C', 3, {});
    Add(fields, names.zone, 'C', 4, BySide(OneOf({"Z1", "Z2", "Z3"}), {}));
    Add(fields, names.category, 'C', 4, OneOf({"IND", "ART", "COM"}));
    Add(fields, names.exemption, 'C', 4, BySide(Chance(5, Fixed("N8")), {}));
    Add(fields, names.port, 'C', 2, OneOf({"FR", "AS"}));
    Add(fields, names.carrier, 'C', 6, Chance(60, OneOf({"V1", "V2"})));
    Add(fields, names.credit, 'N', 14, BySide(OneOf({0, 5000, 20000}), {}), 2);
    Add(fields, names.ledger, 'C', 10, BySide(Fixed("0400100001"), Fixed("0500100001")));
    Add(fields, names.isBlocked, 'C', 1, YesOrNo(2));
    Add(fields, names.isCancelled, 'C', 1, YesOrNo(3));
    Add(fields, names.note, 'M', 0, Chance(10, OneOf({"Chiamare prima della consegna", "Chiude il lunedì"})));
    Add(fields, names.created, 'T', 0, Day(300));
}

/// A part of the cost, in percent.
Rule OfCost(qint64 percent) {
    return [percent, cost = Cost()](const Place& place) {
        return QVariant(std::round(cost(place).toDouble() * static_cast<double>(percent)) / 100);
    };
}

/// Some articles are counted by the piece and weighed as well.
Rule Weighed(const Rule& weighed, const Rule& others = {}) {
    return Named("ledger.weighed", Chance(15, weighed, others));
}
/// Some articles are bought of a supplier.
Rule Bought(const Rule& rule) { return Named("ledger.bought", Chance(40, rule)); }
/// Some stand in a place of their own, of which there are a few.
Rule Location() {
    constexpr qint64 places = 120;
    return Chance(40, With([](qint64 row) { return row % places; }, Code("A-", 3)));
}

Rule ByRow(const Count& articles, const QVector<Rule>& ofArticle, const Rule& special) {
    return Kinds({{Times(PricesOfArticle, articles), Turn(1, ofArticle)}, {Exactly(1), special}});
}

/// @param number of the first
Table KnownParties(const QByteArray& code, const QByteArray& mark, qint64 number, qint64 count, const Rule& codes) {
    const Address address("CON_TRO." + mark);
    return {"CON_TRO",
            {},
            Exactly(count),
            QVector<Field>{{{"CDCON", 'C', 10}, Code({}, 6, number)},
                           {{"CORAS", 'C', 35}, With([number](qint64 row) { return row + number; }, CompanyName(35))},
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

QVector<Field> PartyColumns(const QByteArray& table, const PartyNames& names) {
    QVector<Field> fields;
    AddWho(fields, table, names);
    AddReach(fields, table, names);
    AddAccount(fields, table, names);
    AddConditions(fields, names);
    return fields;
}

void PrepareParties(QuadrixScript& script, const QString& table, const PartyNames& names, const Options& options) {
    const auto keep = [&](const QByteArray& name, const QStringList& codes) {
        if (!name.isEmpty()) {
            script.Keep(table, QString::fromLatin1(name), codes);
        }
    };
    keep(names.payment, {"RB30", "RB60", "BB30"});
    keep(names.agent, {"AG1", "AG2"});
    keep(names.list, {SalesList, PurchaseList});
    keep(names.zone, {"Z1", "Z2", "Z3"});
    keep(names.category, {"IND", "ART", "COM"});
    keep(names.port, {"FR", "AS"});
    keep(names.carrier, {"V1", "V2"});
    script.Translate(table, QString::fromLatin1(names.country), "IT", "ITA");
    script.VatCode("N8", "Non imponibile art. 8", 0);
    Prepare(script,
            {"BAN_CHE",
             {},
             Exactly(1),
             {{{"CDBAN", 'C', 5}, Fixed("00001")},
              {{"BADES", 'C', 40}, Fixed("Cassa rurale di Arco")},
              {{"BAEXT", 'C', 6}, Fixed("BA1")}}},
            options);
}

Rule Cost() { return Named("ledger.cost", Number(0.5, 90, 2)); }

Rule SalesPrice() { return OfCost(140); }

QVector<Field> ArticleColumns(const ArticleNames& names, const Rule& supplier) {
    QVector<Field> fields;
    Add(fields, names.description, 'C', 60, ArticleText());
    Add(fields, names.description2, 'C', 60, Chance(20, Fixed("zincato")));
    Add(fields, names.longText, 'M', 0, Chance(10, Fixed("Zincato a caldo, secondo il disegno")));
    Add(fields, names.unit, 'C', 3, Weighed(Fixed("PZ"), OneOf({"PZ", "PZ", "KG"})));
    Add(fields, names.unit2, 'C', 3, Weighed(Fixed("KG")));
    Add(fields, names.factor, 'N', 12, Weighed(Number(0.1, 20, 2)), 5);
    Add(fields, names.vatCode, 'C', 4, OneOf({"22", "22", "10"}));
    Add(fields, names.kind, 'C', 4, Chance(40, Fixed(names.product), Fixed("M")));
    Add(fields, names.family, 'C', 6, OneOf({"MECC", "LAM", "VITI"}));
    Add(fields, names.lastCost, 'N', 12, Chance(80, Cost(), Fixed(0)), 4);
    Add(fields, names.standardCost, 'N', 12, Cost(), 4);
    Add(fields, names.price, 'N', 12, SalesPrice(), 4);
    Add(fields, names.discount, 'N', 6, Chance(10, Fixed(5)), 2);
    Add(fields, names.netWeight, 'N', 12, Named("ledger.weight", Number(0.1, 40, 1)), 3);
    Add(
        fields, names.grossWeight, 'N', 12,
        [weight = Named("ledger.weight", Number(0.1, 40, 1))](const Place& place) {
            return QVariant(weight(place).toDouble() + 0.5);
        },
        3);
    Add(fields, names.lowestStock, 'N', 12, Chance(50, Whole(1, 20)), 3);
    Add(fields, names.highestStock, 'N', 12, Chance(30, Whole(50, 200)), 3);
    Add(fields, names.reorderPoint, 'N', 12, Chance(30, Whole(20, 40)), 3);
    Add(fields, names.lowestOrder, 'N', 12, Chance(30, Whole(1, 10)), 3);
    Add(fields, names.lot, 'N', 12, Chance(30, Whole(1, 50)), 3);
    Add(fields, names.leadDays, 'I', 0, Whole(0, 30));
    Add(fields, names.supplier, 'C', 8, Bought(AnyOf(Suppliers, supplier)));
    Add(fields, names.supplierCode, 'C', 25, Bought(Code("FOR-", 4)));
    Add(fields, names.barCode, 'C', 20, Chance(40, Code("80012345", 5)));
    Add(fields, names.location, 'C', 15, Location());
    Add(fields, names.length, 'N', 12, Chance(30, Whole(100, 3000)), 3);
    Add(fields, names.width, 'N', 12, Chance(30, Whole(50, 1500)), 3);
    Add(fields, names.thickness, 'N', 12, Chance(30, Whole(1, 20)), 3);
    Add(fields, names.isCancelled, 'C', 1, YesOrNo(3));
    Add(fields, names.note, 'M', 0, Chance(10, Fixed("Imballare a parte")));
    Add(fields, names.created, 'T', 0, Day(300));
    return fields;
}

void PrepareArticles(QuadrixScript& script, const QString& table, const ArticleNames& names) {
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("10", "IVA 10%", 10);
    for (const QByteArray& unit : {names.unit, names.unit2}) {
        if (!unit.isEmpty()) {
            script.Translate(table, QString::fromLatin1(unit), "PZ", "NR");
            script.Translate(table, QString::fromLatin1(unit), "KG", "KG");
        }
    }
    script.Translate(table, QString::fromLatin1(names.family), "MECC", "MECCANICA");
    script.Translate(table, QString::fromLatin1(names.family), "LAM", "LAMIERE");
    script.Translate(table, QString::fromLatin1(names.family), "VITI", "VITERIA");
}

qint64 PriceRows(const Count& articles, const Options& options) {
    return PricesOfArticle * articles(options) + articles(options) / SpecialEvery;
}

Rule ByList(const Count& articles, const Rule& sales, const Rule& purchase, const Rule& special) {
    return ByRow(articles, {sales, sales, purchase}, special);
}

QVector<Field> PriceColumns(const PriceNames& names, const Count& articles, const Rule& article) {
    const auto ofArticle = [](const Rule& rule) { return OfParent(PricesOfArticle, rule); };
    const auto ofSpecial = [](const Rule& rule) { return With([](qint64 row) { return row * SpecialEvery; }, rule); };
    const Rule anArticle = ofArticle(article);
    const auto day = [](int year, int month, int dayOfMonth) {
        return Fixed(QDate(year, month, dayOfMonth).startOfDay(Qt::UTC));
    };
    QVector<Field> fields;
    Add(fields, names.list, 'C', 4, ByList(articles, Fixed(SalesList), Fixed(PurchaseList), Fixed(SpecialList)));
    Add(fields, names.article, 'C', 60, ByList(articles, anArticle, anArticle, ofSpecial(article)));
    Add(fields, names.from, 'T', 0, day(2024, 1, 1));
    Add(fields, names.to, 'T', 0, ByList(articles, {}, {}, day(2026, 12, 31)));
    Add(fields, names.quantity, 'N', 12, ByRow(articles, {Fixed(0), Fixed(50), Fixed(0)}, Fixed(0)), 3);
    Add(fields, names.price, 'N', 12,
        ByRow(articles, {ofArticle(SalesPrice()), ofArticle(OfCost(130)), ofArticle(OfCost(100))},
              ofSpecial(OfCost(120))),
        4);
    Add(fields, names.discount1, 'N', 6, ByList(articles, Chance(20, OneOf({5, 10})), {}, {}), 2);
    Add(fields, names.discount2, 'N', 6, {}, 2);
    Add(fields, names.discount3, 'N', 6, {}, 2);
    return fields;
}

} // namespace examples::ledger
