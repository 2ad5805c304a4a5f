// Cometa: customers and suppliers in one table, their destinations, articles, and price lists whose codes Quadrix
// numbers.

#include "examples/ledger.h"

namespace examples {

namespace cometa {

namespace {

using namespace ledger;

const Count Articles = [](const Options& options) { return 2 * options.rows; };

Rule ArticleCode() { return Code("CO-", 5); }
Rule PartyCode() { return Code({}, 5); } ///< customers and suppliers have the same ones
Rule SideOf() { return Kinds({{Customers, Fixed("C")}, {Suppliers, Fixed("F")}}); }

const PartyNames Parties{.name = "ACRAG1",
                         .name2 = "ACRAG2",
                         .street = "ACINDI",
                         .postCode = "ACCAPP",
                         .town = "ACLOCA",
                         .province = "ACPROV",
                         .country = "ACNAZI",
                         .vatNumber = "ACPIVA",
                         .taxCode = "ACCFIS",
                         .office = "ACTEL1",
                         .office2 = "ACTEL2",
                         .fax = "ACFAXX",
                         .mobile = "ACCELL",
                         .mail = "ACMAIL",
                         .web = "ACSITO",
                         .contact = "ACRIFE",
                         .payment = "ACPAGA",
                         .ownBank = "ACBANA",
                         .abi = "ACABIX",
                         .cab = "ACCABX",
                         .cin = "ACCINX",
                         .account = "ACCOCO",
                         .iban = "ACIBAN",
                         .bic = "ACBICX",
                         .discount1 = "ACSCO1",
                         .discount2 = "ACSCO2",
                         .agent = "ACAGEN",
                         .list = "ACLIST",
                         .currency = "ACVALU",
                         .language = "ACLING",
                         .zone = "ACZONA",
                         .category = "ACCATE",
                         .exemption = "ACESEN",
                         .port = "ACPORT",
                         .carrier = "ACVETT",
                         .credit = "ACFIDO",
                         .ledger = "ACCONT",
                         .isBlocked = "ACBLOC",
                         .isCancelled = "ACANNU",
                         .note = "ACNOTE",
                         .created = "ACDINS"};

const ArticleNames ArticleTableNames{.description = "ARDES1",
                                     .description2 = "ARDES2",
                                     .unit = "ARUNMI",
                                     .unit2 = "ARUNM2",
                                     .factor = "ARCOEF",
                                     .vatCode = "ARCIVA",
                                     .kind = "ARTIPO",
                                     .product = "PF",
                                     .family = "ARFAMI",
                                     .lastCost = "ARCULT",
                                     .standardCost = "ARCSTD",
                                     .price = "ARPRE1",
                                     .discount = "ARSCON",
                                     .netWeight = "ARPNET",
                                     .grossWeight = "ARPLOR",
                                     .lowestStock = "ARSMIN",
                                     .highestStock = "ARSMAX",
                                     .reorderPoint = "ARPRIO",
                                     .lot = "ARLOTT",
                                     .leadDays = "ARGGCO",
                                     .supplier = "ARFORN",
                                     .supplierCode = "ARCODF",
                                     .barCode = "ARBARC",
                                     .location = "ARUBIC",
                                     .isCancelled = "ARANNU",
                                     .note = "ARNOTE",
                                     .created = "ARDINS"};

QVector<Table> CounterpartyTables() {
    const Address branch("DESTIN");
    return {
        {"ANAGCF",
         "controparti",
         Counterparties,
         QVector<Field>{{{"ACTIPO", 'C', 1}, SideOf()},
                        {{"ACCODI", 'C', 8}, Kinds({{Customers, PartyCode()}, {Suppliers, PartyCode()}})}} +
             PartyColumns("ANAGCF", Parties),
         {{{"ACTIPO", "C"}, {"ACCODI", "90001"}, {"ACSCO1", "dieci"}, {"ACPIVA", {}}, {"ACCFIS", {}}},
          {{"ACTIPO", "F"}, {"ACCODI", "90002"}, {"ACPROV", "TORINO"}, {"ACPIVA", {}}, {"ACCFIS", {}}},
          {{"ACTIPO", "P"}, {"ACCODI", "90003"}}},
         {{"ACTIPO", "ACCODI"}}},
        {"DESTIN",
         "controparti",
         EachOf(4),
         QVector<Field>{{{"DSTIPO", 'C', 1}, Fixed("C")},
                        {{"DSCODI", 'C', 8}, OfParent(2, PartyCode())},
                        {{"DSPROG", 'C', 3}, Line(2)},
                        {{"DSRAGI", 'C', 60}, Each({"Magazzino", "Amministrazione"})},
                        {{"DSTELE", 'C', 20}, Chance(60, branch.Telephone())}} +
             branch.Columns("DSINDI", "DSCAPP", "DSLOCA", "DSPROV"),
         {{{"DSPROG", "AMM"}, {"DSINDI", {}}}},
         {{"DSTIPO", "DSCODI"}}},
    };
}

QVector<Table> ArticleTables() {
    const auto priceRows = [](const Options& options) { return PriceRows(Articles, options); };
    return {
        {"ARTICOLI",
         "articoli",
         Articles,
         QVector<Field>{{{"ARCODI", 'C', 60}, ArticleCode()}} + ArticleColumns(ArticleTableNames, PartyCode()),
         {{{"ARCODI", "PESO-ERRATO"}, {"ARPNET", "due"}}, {{"ARCODI", "FORN-MANCA"}, {"ARFORN", "99999"}}},
         {{"ARCODI"}}},
        {"LISTES",
         "listini",
         Exactly(3),
         {{{"LTCODI", 'C', 4}, Each({SalesList, PurchaseList, SpecialList})},
          {{"LTDESC", 'C', 40}, Each({"Listino base", "Listino acquisti", "Prezzi riservati"})},
          {{"LTTIPO", 'C', 1}, Each({"V", "A", "V"})},
          {{"LTVALU", 'C', 3}, Fixed("EUR")},
          {{"LTDINI", 'T'}, Day(1)}},
         {},
         {{"LTCODI"}}},
        {"LISRIG",
         "listini",
         priceRows,
         PriceColumns({.list = "LRLIST",
                       .article = "LRARTI",
                       .from = "LRDINI",
                       .to = "LRDFIN",
                       .quantity = "LRQTAX",
                       .price = "LRPREZ",
                       .discount1 = "LRSCO1",
                       .discount2 = "LRSCO2",
                       .discount3 = "LRSCO3"},
                      Articles, ArticleCode()),
         {{{"LRLIST", "ZZ"}},
          {{"LRLIST", SalesList}, {"LRARTI", "NON-CE"}},
          {{"LRLIST", SpecialList}, {"LRARTI", "CO-00002"}, {"LRPREZ", "poco"}}},
         {{"LRLIST"}, {"LRARTI"}}},
    };
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareParties(script, "ANAGCF", Parties, options);
    PrepareArticles(script, "ARTICOLI", ArticleTableNames);
    script.Translate("codicilistino", "COMETA", SalesList, "1");
    script.Translate("codicilistino", "COMETA", PurchaseList, "2");
    return script;
}

} // namespace

} // namespace cometa

Totals MakeCometa(const Options& options) {
    using namespace cometa;
    return Write("cometa.db", CounterpartyTables() + ArticleTables(), options, PreparedFor(options));
}

} // namespace examples
