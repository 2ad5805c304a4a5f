// Gemini: a database with customers and suppliers in tables alike, articles, and price lists, one of them a customer's.

#include "examples/plainTables.h"

namespace examples {

namespace gemini {

namespace {

using namespace described;

const Count Articles = [](const Options& options) { return 2 * options.rows; };

Rule ArticleCode() { return Code("GE-", 5); }
Rule CustomerCode() { return Code("1", 5); }
Rule SupplierCode() { return Code("2", 5); }

const PartyNames Parties{.name = "RAGSOC",
                         .name2 = "RAGSOC2",
                         .surname = "COGNOME",
                         .firstName = "NOME",
                         .street = "INDIRIZZO",
                         .postCode = "CAP",
                         .town = "LOCALITA",
                         .province = "PROVINCIA",
                         .country = "NAZIONE",
                         .vatNumber = "PIVA",
                         .taxCode = "CODFISC",
                         .office = "TELEF1",
                         .office2 = "TELEF2",
                         .fax = "TELEFAX",
                         .mobile = "CELLULARE",
                         .mail = "EMAIL",
                         .web = "INTERNET",
                         .contact = "RIFERIMENTO",
                         .payment = "PAGAMENTO",
                         .ownBank = "BANCA_AZ",
                         .abi = "ABI",
                         .cab = "CAB_BANCA",
                         .cin = "CIN",
                         .account = "CONTO_CORR",
                         .iban = "IBAN",
                         .bic = "SWIFT",
                         .discount1 = "SCONTO1",
                         .discount2 = "SCONTO2",
                         .agent = "AGENTE",
                         .list = "LISTINO",
                         .currency = "VALUTA",
                         .language = "LINGUA",
                         .zone = "ZONA",
                         .category = "CATEGORIA",
                         .exemption = "COD_IVA",
                         .port = "PORTO",
                         .carrier = "VETTORE",
                         .credit = "FIDO",
                         .ledger = "CONTO",
                         .isBlocked = "BLOCCO",
                         .isCancelled = "ANNULLATO",
                         .note = "NOTE",
                         .created = "DATA_INS"};

const ArticleNames ItemNames{.description = "DESCRIZIONE",
                             .description2 = "DESCRIZIONE2",
                             .unit = "UM",
                             .unit2 = "UM2",
                             .factor = "FATTORE",
                             .vatCode = "COD_IVA",
                             .family = "GRUPPO",
                             .lastCost = "COSTO_ULT",
                             .standardCost = "COSTO_STD",
                             .price = "PREZZO1",
                             .discount = "SCONTO",
                             .netWeight = "PESO_NETTO",
                             .grossWeight = "PESO_LORDO",
                             .lowestStock = "SCORTA_MIN",
                             .highestStock = "SCORTA_MAX",
                             .reorderPoint = "PUNTO_RIORD",
                             .lot = "LOTTO_RIORD",
                             .leadDays = "GG_CONSEGNA",
                             .supplier = "FORNITORE",
                             .supplierCode = "COD_FORNITORE",
                             .barCode = "BARCODE",
                             .location = "UBICAZIONE",
                             .isCancelled = "ANNULLATO",
                             .note = "NOTE",
                             .created = "DATA_INS"};

QVector<Table> CounterpartyTables() {
    const QVector<Field> parties = PartyColumns(Address("CLIENTI"), Parties);
    return {{"CLIENTI",
             "controparti",
             Customers,
             QVector<Field>{{{"CODICE", 'C', 8}, CustomerCode()}} + parties,
             {{{"CODICE", "190001"}, {"SCONTO1", "molto"}, {"PIVA", {}}, {"CODFISC", {}}}},
             {{"CODICE"}}},
            {"FORNITORI",
             "controparti",
             Suppliers,
             QVector<Field>{{{"CODICE", 'C', 8}, SupplierCode()}} + Behind(Customers, parties),
             {{{"CODICE", "290001"}, {"PROVINCIA", "TORINO"}, {"PIVA", {}}, {"CODFISC", {}}}},
             {{"CODICE"}}},
            {"CLIENTI_DEST",
             "controparti",
             Branches(),
             QVector<Field>{{{"CODICE", 'C', 8}, OfBranch(CustomerCode())}} +
                 BranchColumns(Address("CLIENTI_DEST"), {.number = "PROGR",
                                                         .name = "RAGSOC",
                                                         .street = "INDIRIZZO",
                                                         .postCode = "CAP",
                                                         .town = "LOCALITA",
                                                         .province = "PROVINCIA",
                                                         .office = "TELEFONO"}),
             {{{"INDIRIZZO", {}}}},
             {{"CODICE"}}}};
}

QVector<Table> ArticleTables() {
    Table lists = ListTable(
        "LISTINI",
        {.code = "CODICE", .description = "DESCRIZIONE", .kind = "TIPO", .currency = "VALUTA", .from = "DATA_INIZIO"});
    lists.fields.append({{"CLIENTE", 'C', 8}, Turn(1, {{}, {}, CustomerCode()})});
    lists.odd = {{{"CODICE", "L9"}, {"DESCRIZIONE", "Di nessuno"}, {"CLIENTE", "199999"}}};
    return {
        {"ARTICOLI",
         "articoli",
         Articles,
         QVector<Field>{{{"CODICE", 'C', 30}, ArticleCode()}, {{"TIPO", 'C', 4}, Chance(40, Fixed("F"), Fixed("M"))}} +
             ArticleColumns(ItemNames, AnyOf(Suppliers, SupplierCode())),
         {{{"CODICE", "PESO-ERRATO"}, {"PESO_NETTO", "due"}}, {{"CODICE", "FORN-MANCA"}, {"FORNITORE", "999999"}}},
         {{"CODICE"}}},
        lists,
        {"LISTINI_RIGHE",
         "listini",
         Prices(Articles),
         PriceColumns({.list = "LISTINO",
                       .article = "ARTICOLO",
                       .from = "DATA_INIZIO",
                       .to = "DATA_FINE",
                       .quantity = "QTA",
                       .price = "PREZZO",
                       .discount1 = "SCONTO1",
                       .discount2 = "SCONTO2",
                       .discount3 = "SCONTO3"},
                      Articles, ArticleCode()),
         {{{"LISTINO", "L9"}, {"ARTICOLO", "GE-00001"}}, {{"LISTINO", SalesList}, {"ARTICOLO", "NON-CE"}}},
         {{"LISTINO"}, {"ARTICOLO"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareParties(script, "CLIENTI", Parties);
    PrepareParties(script, "FORNITORI", Parties);
    PrepareBases(script);
    PrepareArticles(script, "ARTICOLI", ItemNames);
    return script;
}

} // namespace

} // namespace gemini

Totals MakeGemini(const Options& options) {
    using namespace gemini;
    return Write("gemini.db", CounterpartyTables() + ArticleTables(), options, PreparedFor(options));
}

} // namespace examples
