// Cometa: customers and suppliers in one table, their destinations, articles, and price lists whose codes Quadrix
// numbers.

#include "examples/plainTables.h"

namespace examples {

namespace cometa {

namespace {

using namespace described;

const Count Articles = [](const Options& options) { return 2 * options.rows; };

Rule ArticleCode() { return Code("CO-", 5); }
Rule PartyCode() { return Code({}, 5); } ///< customers and suppliers have the same ones
Rule SideOf() { return BySide(Fixed("C"), Fixed("F")); }

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

const ArticleNames ItemNames{.description = "ARDES1",
                             .description2 = "ARDES2",
                             .unit = "ARUNMI",
                             .unit2 = "ARUNM2",
                             .factor = "ARCOEF",
                             .vatCode = "ARCIVA",
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
    return {
        {"ANAGCF",
         "controparti",
         Counterparties,
         QVector<Field>{{{"ACTIPO", 'C', 1}, SideOf()}, {{"ACCODI", 'C', 8}, BySide(PartyCode(), PartyCode())}} +
             PartyColumns(Address("ANAGCF"), Parties),
         {{{"ACTIPO", "C"}, {"ACCODI", "90001"}, {"ACSCO1", "dieci"}, {"ACPIVA", {}}, {"ACCFIS", {}}},
          {{"ACTIPO", "F"}, {"ACCODI", "90002"}, {"ACPROV", "TORINO"}, {"ACPIVA", {}}, {"ACCFIS", {}}},
          {{"ACTIPO", "P"}, {"ACCODI", "90003"}}},
         {{"ACTIPO", "ACCODI"}}},
        {"DESTIN",
         "controparti",
         Branches(),
         QVector<Field>{{{"DSTIPO", 'C', 1}, Fixed("C")}, {{"DSCODI", 'C', 8}, OfBranch(PartyCode())}} +
             BranchColumns(Address("DESTIN"), {.number = "DSPROG",
                                               .name = "DSRAGI",
                                               .street = "DSINDI",
                                               .postCode = "DSCAPP",
                                               .town = "DSLOCA",
                                               .province = "DSPROV",
                                               .office = "DSTELE"}),
         {{{"DSPROG", "AMM"}, {"DSINDI", {}}}},
         {{"DSTIPO", "DSCODI"}}},
    };
}

QVector<Table> ArticleTables() {
    return {
        {"ARTICOLI",
         "articoli",
         Articles,
         QVector<Field>{{{"ARCODI", 'C', 60}, ArticleCode()},
                        {{"ARTIPO", 'C', 4}, Chance(40, Fixed("PF"), Fixed("M"))}} +
             ArticleColumns(ItemNames, AnyOf(Suppliers, PartyCode())),
         {{{"ARCODI", "PESO-ERRATO"}, {"ARPNET", "due"}}, {{"ARCODI", "FORN-MANCA"}, {"ARFORN", "99999"}}},
         {{"ARCODI"}}},
        ListTable(
            "LISTES",
            {.code = "LTCODI", .description = "LTDESC", .kind = "LTTIPO", .currency = "LTVALU", .from = "LTDINI"}),
        {"LISRIG",
         "listini",
         Prices(Articles),
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
    PrepareParties(script, "ANAGCF", Parties);
    PrepareBases(script);
    PrepareArticles(script, "ARTICOLI", ItemNames);
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
