// Albalog: customers, suppliers and carriers in one table, whose rows name their carrier, articles, and price lists in
// one table, some of them a customer's own.

#include "examples/plainTables.h"

namespace examples {

namespace albalog {

namespace {

using namespace described;

const Count Articles = [](const Options& options) { return 2 * options.rows; };
constexpr qint64 Carriers = 5;

Rule ArticleCode() { return Code("AL-", 5); }
Rule CustomerCode() { return Code("1", 5); }
Rule SupplierCode() { return Code("2", 5); }
Rule CarrierCode() { return Code("V", 2); }
Rule ByKind(const Rule& customer, const Rule& supplier, const Rule& carrier) {
    return Kinds({{Customers, customer}, {Suppliers, supplier}, {Exactly(Carriers), carrier}});
}
/// Some have a carrier, some of them one that is a supplier.
Rule CarrierOf() {
    return Chance(60, Turn(1, {AnyOf(Exactly(Carriers), CarrierCode()), AnyOf(Exactly(Carriers), CarrierCode()),
                               AnyOf(Suppliers, SupplierCode())}));
}

const PartyNames Parties{.name = "ragsoc",
                         .name2 = "ragso2",
                         .street = "indiri",
                         .postCode = "codcap",
                         .town = "locali",
                         .province = "provin",
                         .country = "codnaz",
                         .vatNumber = "pariva",
                         .taxCode = "codfis",
                         .office = "telef1",
                         .office2 = "telef2",
                         .fax = "numfax",
                         .mobile = "numcel",
                         .mail = "email",
                         .web = "sitint",
                         .contact = "rifana",
                         .payment = "codpag",
                         .ownBank = "codban",
                         .abi = "codabi",
                         .cab = "codcab",
                         .cin = "codcin",
                         .account = "concor",
                         .iban = "codiba",
                         .bic = "codbic",
                         .discount1 = "scont1",
                         .discount2 = "scont2",
                         .agent = "codage",
                         .list = "codlis",
                         .currency = "codval",
                         .language = "codlin",
                         .zone = "codzon",
                         .category = "codcat",
                         .exemption = "codiva",
                         .port = "codpor",
                         .credit = "impfid",
                         .ledger = "codcon",
                         .isBlocked = "flgblo",
                         .isCancelled = "flgann",
                         .note = "notana",
                         .created = "datins"};

const ArticleNames ItemNames{.description = "desart",
                             .description2 = "desar2",
                             .longText = "desest",
                             .unit = "unimis",
                             .unit2 = "unimi2",
                             .factor = "coeffi",
                             .vatCode = "codiva",
                             .family = "codfam",
                             .lastCost = "cosult",
                             .standardCost = "cossta",
                             .price = "preven",
                             .discount = "scont1",
                             .netWeight = "pesnet",
                             .grossWeight = "peslor",
                             .lowestStock = "scomin",
                             .highestStock = "scomax",
                             .reorderPoint = "punrio",
                             .lowestOrder = "qtamin",
                             .lot = "lotrio",
                             .leadDays = "ggappr",
                             .supplier = "codfor",
                             .supplierCode = "artfor",
                             .barCode = "codbar",
                             .location = "ubicaz",
                             .length = "lunghe",
                             .width = "larghe",
                             .thickness = "spesso",
                             .isCancelled = "flgann",
                             .note = "notart",
                             .created = "datins"};

Table CounterpartyTable() {
    return {"anagraf",
            "controparti",
            Sum(Counterparties, Exactly(Carriers)),
            QVector<Field>{
                {{"tipana", 'C', 1}, ByKind(Chance(5, Fixed("E"), Fixed("C")), Fixed("F"), Fixed("V"))},
                {{"codana", 'C', 8}, ByKind(CustomerCode(), SupplierCode(), CarrierCode())},
                {{"codvet", 'C', 6}, ByKind(CarrierOf(), {}, {})},
            } + PartyColumns(Address("anagraf"), Parties),
            {{{"tipana", "C"}, {"codana", "190001"}, {"scont1", "dieci"}, {"pariva", {}}, {"codfis", {}}},
             {{"tipana", "C"}, {"codana", "190002"}, {"codvet", "MANCA"}, {"pariva", {}}, {"codfis", {}}},
             {{"tipana", "X"}, {"codana", "190003"}}},
            {{"tipana", "codana"}}};
}

Table ArticleTable() {
    return {
        "articol",
        "articoli",
        Articles,
        QVector<Field>{{{"codart", 'C', 60}, ArticleCode()}, {{"tipart", 'C', 4}, Chance(40, Fixed("P"), Fixed("M"))}} +
            ArticleColumns(ItemNames, AnyOf(Suppliers, SupplierCode())),
        {{{"codart", "PESO-ERRATO"}, {"pesnet", "due"}}, {{"codart", "FORN-MANCA"}, {"codfor", "999999"}}},
        {{"codart"}}};
}

Table PriceTable() {
    const auto texts = [](const QString& sales, const QString& purchase, const QString& special) {
        return ByList(Articles, Fixed(sales), Fixed(purchase), Fixed(special));
    };
    return {"listini",
            "listini",
            Prices(Articles),
            QVector<Field>{
                {{"deslis", 'C', 40}, texts("Listino base", "Listino acquisti", "Prezzi riservati")},
                {{"tiplis", 'C', 1}, texts("V", "A", "V")},
                {{"codval", 'C', 3}, Fixed("EUR")},
                {{"codana", 'C', 8}, ByList(Articles, {}, {}, AnyOf(Exactly(3), CustomerCode()))},
            } + PriceColumns({.list = "codlis",
                              .article = "codart",
                              .from = "datini",
                              .to = "datfin",
                              .quantity = "qtalis",
                              .price = "prezzo",
                              .discount1 = "scont1",
                              .discount2 = "scont2",
                              .discount3 = "scont3"},
                             Articles, ArticleCode()),
            {{{"codlis", "P9"}, {"codart", "AL-00002"}, {"codana", "199999"}},
             {{"codlis", SalesList}, {"codana", {}}, {"codart", "NON-CE"}},
             {{"codlis", PurchaseList}, {"codana", {}}, {"codart", "AL-00001"}, {"prezzo", "poco"}}},
            {{"codlis"}, {"codart"}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareParties(script, "anagraf", Parties);
    PrepareBases(script);
    PrepareArticles(script, "articol", ItemNames);
    script.Translate("codicilistino", "Albalog", SalesList, "1");
    script.Translate("codicilistino", "Albalog", PurchaseList, "2");
    return script;
}

} // namespace

} // namespace albalog

Totals MakeAlbalog(const Options& options) {
    using namespace albalog;
    return Write("albalog.db", {CounterpartyTable(), ArticleTable(), PriceTable()}, options, PreparedFor(options));
}

} // namespace examples
