// Zucchetti G2: a database with customers and suppliers and their commercial conditions in a table of their own,
// branches, articles, and bills of three levels.

#include "examples/plainTables.h"

namespace examples {

namespace g2 {

namespace {

using namespace described;

constexpr qint64 Components = 3;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Products = EachOf(8);   ///< the first articles
const Count Assemblies = EachOf(8); ///< those behind them
const Count Heads = Sum(Products, Assemblies);

const PartyNames Identity{.name = "RAGSOC1",
                          .name2 = "RAGSOC2",
                          .isPerson = "PERSFIS",
                          .surname = "COGNOME",
                          .firstName = "NOME",
                          .street = "INDIRIZZO",
                          .postCode = "CAP",
                          .town = "LOCALITA",
                          .province = "PROVINCIA",
                          .country = "CODNAZ",
                          .vatNumber = "PARTIVA",
                          .taxCode = "CODFISC",
                          .office = "TELEFONO1",
                          .office2 = "TELEFONO2",
                          .fax = "FAX",
                          .mobile = "CELLULARE",
                          .mail = "EMAIL",
                          .certifiedMail = "PEC",
                          .web = "SITOWEB",
                          .contact = "RIFERIM",
                          .language = "CODLIN",
                          .isCancelled = "ANNULLATO",
                          .note = "NOTE",
                          .created = "DATACREA"};

const PartyNames Conditions{.payment = "CODPAG",
                            .ownBank = "BANCAAZ",
                            .abi = "ABI",
                            .cab = "CAB",
                            .cin = "CIN",
                            .account = "CONTOCOR",
                            .iban = "IBAN",
                            .bic = "BIC",
                            .discount1 = "SCONTO1",
                            .discount2 = "SCONTO2",
                            .agent = "CODAGE",
                            .list = "CODLIS",
                            .currency = "CODVAL",
                            .zone = "CODZONA",
                            .category = "CODCAT",
                            .exemption = "CODIVA",
                            .port = "CODPORTO",
                            .carrier = "CODVETT",
                            .credit = "FIDO",
                            .ledger = "CODMAS",
                            .isBlocked = "BLOCCO"};

const ArticleNames ItemNames{.description = "DESART",
                             .description2 = "DESART2",
                             .longText = "DESEST",
                             .unit = "UM1",
                             .unit2 = "UM2",
                             .factor = "COEFFUM",
                             .purchaseUnit = "UMACQ",
                             .vatCode = "CODIVA",
                             .family = "CODGRU",
                             .lastCost = "COSTOULT",
                             .standardCost = "COSTOSTD",
                             .price = "PREZZO1",
                             .discount = "SCONTO1",
                             .netWeight = "PESONET",
                             .grossWeight = "PESOLOR",
                             .lowestStock = "SCORTAMIN",
                             .highestStock = "SCORTAMAX",
                             .reorderPoint = "PUNTORIOR",
                             .lowestOrder = "QTAMINORD",
                             .lot = "LOTTORIOR",
                             .leadDays = "GGAPPRO",
                             .supplier = "FORNABIT",
                             .supplierCode = "CODARTFOR",
                             .barCode = "BARCODE",
                             .location = "UBICAZ",
                             .isCancelled = "OBSOLETO",
                             .note = "NOTE",
                             .created = "DATACREA"};

// Codes stand in the source with blanks behind them.
Rule CustomerCode() { return Padded(8, Code("", 1)); }
Rule SupplierCode() { return Padded(8, Code("F", 5)); }
Rule ArticleCode() { return Padded(20, Code("G2-", 5)); }
Rule AnySupplier() { return AnyOf(Suppliers, SupplierCode()); }

/// The columns that tell whose a row is.
QVector<Field> PartyKey() {
    return {{{"TIPOCF", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
            {{"CODCF", 'C', 8}, BySide(CustomerCode(), SupplierCode())}};
}

QVector<Table> CounterpartyTables() {
    const QVector<QStringList> indexes{{"TIPOCF", "CODCF"}};
    return {{"ANACLIFOR",
             "controparti",
             Counterparties,
             PartyKey() + PartyColumns(Address("ANACLIFOR"), Identity),
             {{{"TIPOCF", "C"}, {"CODCF", "900001"}, {"RAGSOC1", "Sconto che non è un numero"}},
              {{"TIPOCF", "F"}, {"CODCF", "F90001"}, {"RAGSOC1", "Senza condizioni commerciali"}},
              {{"TIPOCF", "X"}, {"CODCF", "300"}, {"RAGSOC1", "Né cliente né fornitore"}}},
             indexes},
            {"CLIFORCOMM",
             "controparti",
             Counterparties,
             PartyKey() + PartyColumns(Address("CLIFORCOMM"), Conditions),
             {{{"TIPOCF", "C"}, {"CODCF", "900001"}, {"SCONTO1", "dieci"}}},
             indexes},
            {"CLIFORDEST",
             "controparti",
             Branches(),
             QVector<Field>{{{"TIPOCF", 'C', 1}, Fixed("C")}, {{"CODCF", 'C', 8}, OfBranch(CustomerCode())}} +
                 BranchColumns(Address("CLIFORDEST"), {.number = "CODDES",
                                                       .name = "RAGSOC",
                                                       .street = "INDIRIZZO",
                                                       .postCode = "CAP",
                                                       .town = "LOCALITA",
                                                       .province = "PROVINCIA",
                                                       .country = "CODNAZ",
                                                       .office = "TELEFONO",
                                                       .fax = "FAX",
                                                       .contact = "RIFERIM",
                                                       .isDefault = "PREDEF"}),
             {},
             indexes}};
}

Table ArticleTable() {
    return {"ANAART",
            "articoli",
            Articles,
            QVector<Field>{{{"CODART", 'C', 20}, ArticleCode()},
                           {{"TIPOART", 'C', 4},
                            Kinds({{Products, Fixed("P")}, {Assemblies, Fixed("S")}, {Articles, Fixed("M")}})}} +
                ArticleColumns(ItemNames, AnySupplier()),
            {{{"CODART", "PESO"}, {"PESONET", "due"}}, {{"CODART", "FORNITORE"}, {"FORNABIT", "F99999"}}},
            {{"CODART"}}};
}

/// Products hold assemblies and parts, assemblies parts alone.
QVector<Table> BillTables() {
    const Stages stages{.products = Products, .heads = Heads, .articles = Articles};
    return {{"DISBAT",
             "distinte",
             Heads,
             {{{"CODART", 'C', 20}, ArticleCode()},
              {{"VERSIONE", 'C', 4}, Chance(80, Fixed("1"), Fixed("BASE"))},
              {{"ATTIVA", 'C', 1}, Fixed(Yes)},
              {{"NOTE", 'M'}, Chance(10, Fixed("Ciclo da rivedere"))},
              {{"DATACREA", 'T'}, Day(300)}},
             {{{"CODART", "MANCA"}}},
             {{"CODART"}}},
            {"DISBAR",
             "distinte",
             Times(Components, Heads),
             {{{"CODPAD", 'C', 20}, OfParent(Components, ArticleCode())},
              {{"PROGR", 'I'}, Line(Components)},
              {{"CODFIG", 'C', 20}, Component(stages, Components, ArticleCode())},
              {{"QUANTITA", 'N', 12, 3}, Number(0.5, 9, 1)},
              {{"UM", 'C', 3}, {}},
              {{"FORNITORE", 'C', 8}, Chance(10, AnySupplier())},
              {{"NOTE", 'C', 60}, Chance(10, OneOf({"Saldare", "A misura"}))}},
             {{{"CODPAD", "G2-00001            "}, {"PROGR", 9}, {"CODFIG", "MANCA"}}},
             {{"CODPAD"}}}};
}

} // namespace

} // namespace g2

Totals MakeG2(const Options& options) {
    using namespace g2;
    QuadrixScript script(options.company);
    PrepareParties(script, "ANACLIFOR", Identity);
    PrepareParties(script, "CLIFORCOMM", Conditions);
    PrepareBases(script);
    PrepareArticles(script, "ANAART", ItemNames);
    script.Translate("CLIFORDEST", "CODNAZ", "IT", "ITA");
    return Write("g2.db", CounterpartyTables() + QVector<Table>{ArticleTable()} + BillTables(), options, script);
}

} // namespace examples
