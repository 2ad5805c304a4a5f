// OS1: an Access file, here a database, with customers and suppliers in one table, their banks and destinations, and
// articles with what each of their suppliers asks.

#include "examples/plainTables.h"

namespace examples {

namespace os1 {

namespace {

using namespace described;

constexpr qint64 Banks = 40;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count BoughtElsewhere = EachOf(2); ///< articles that somebody else sells as well

Rule ArticleCode() { return Code("OS-", 5); }
Rule PartyCode() { return Code("", 1); } ///< customers and suppliers have the same ones
Rule BankCode() { return Code("B", 2); }

const PartyNames Parties{.name = "RagSoc",
                         .name2 = "RagSoc2",
                         .isPerson = "PersonaFisica",
                         .surname = "Cognome",
                         .firstName = "Nome",
                         .street = "Indirizzo",
                         .postCode = "CAP",
                         .town = "Citta",
                         .province = "Prov",
                         .country = "Nazione",
                         .vatNumber = "PartitaIVA",
                         .taxCode = "CodFiscale",
                         .office = "Telefono",
                         .office2 = "Telefono2",
                         .fax = "Fax",
                         .mobile = "Cellulare",
                         .mail = "Email",
                         .web = "SitoWeb",
                         .contact = "Riferimento",
                         .payment = "CodPagamento",
                         .ownBank = "CodBancaAzienda",
                         .abi = "ABI",
                         .cab = "CAB_Banca",
                         .cin = "CIN",
                         .account = "ContoCorrente",
                         .iban = "IBAN",
                         .bic = "SWIFT",
                         .discount1 = "Sconto1",
                         .discount2 = "Sconto2",
                         .agent = "CodAgente",
                         .list = "CodListino",
                         .currency = "CodValuta",
                         .language = "CodLingua",
                         .zone = "CodZona",
                         .category = "CodCategoria",
                         .exemption = "CodIvaEsenzione",
                         .port = "CodPorto",
                         .carrier = "CodVettore",
                         .credit = "Fido",
                         .ledger = "Sottoconto",
                         .isBlocked = "Bloccato",
                         .isCancelled = "Annullato",
                         .note = "Note",
                         .created = "DataInserimento"};

const ArticleNames ItemNames{.description = "Descrizione",
                             .description2 = "Descrizione2",
                             .longText = "DescrEstesa",
                             .unit = "UM",
                             .unit2 = "UM2",
                             .factor = "FattoreConv",
                             .vatCode = "CodIva",
                             .family = "CodFamiglia",
                             .lastCost = "CostoUltimo",
                             .standardCost = "CostoStandard",
                             .price = "Prezzo1",
                             .discount = "Sconto",
                             .netWeight = "PesoNetto",
                             .grossWeight = "PesoLordo",
                             .lowestStock = "ScortaMinima",
                             .highestStock = "ScortaMassima",
                             .reorderPoint = "PuntoRiordino",
                             .lowestOrder = "QtaMinOrdine",
                             .lot = "LottoRiordino",
                             .leadDays = "GiorniConsegna",
                             .supplier = "CodFornitore",
                             .supplierCode = "CodArtFornitore",
                             .barCode = "CodiceBarre",
                             .location = "Ubicazione",
                             .isCancelled = "Annullato",
                             .note = "Note",
                             .created = "DataInserimento"};

/// Who does not tell the codes of his bank names the bank.
QVector<Table> CounterpartyTables() {
    const BankAccount bank("BANCHE");
    return {{"CLIFOR",
             "controparti",
             Counterparties,
             QVector<Field>{{{"TipoCF", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                            {{"Codice", 'C', 8}, BySide(PartyCode(), PartyCode())},
                            {{"CodBanca", 'C', 6}, Chance(30, AnyOf(Exactly(Banks), BankCode()))}} +
                 PartyColumns(Address("CLIFOR"), Parties),
             {{{"TipoCF", "C"}, {"Codice", "900001"}, {"Prov", "TORINO"}},
              {{"TipoCF", "F"}, {"Codice", "900001"}, {"Sconto1", "dieci"}},
              {{"TipoCF", "A"}, {"Codice", "A1"}, {"RagSoc", "Un agente"}}},
             {{"TipoCF", "Codice"}}},
            {"BANCHE",
             "controparti",
             Exactly(Banks),
             {{{"CodBanca", 'C', 6}, BankCode()},
              {{"Descrizione", 'C', 40}, Code("Banca ", 1)},
              {{"ABI", 'C', 5}, bank.Abi()},
              {{"CAB", 'C', 5}, bank.Cab()}},
             {},
             {{"CodBanca"}}},
            {"DESTINAZIONI",
             "controparti",
             Branches(),
             QVector<Field>{{{"TipoCF", 'C', 1}, Fixed("C")}, {{"Codice", 'C', 8}, OfBranch(PartyCode())}} +
                 BranchColumns(Address("DESTINAZIONI"), {.number = "NrDest",
                                                         .name = "RagSoc",
                                                         .street = "Indirizzo",
                                                         .postCode = "CAP",
                                                         .town = "Citta",
                                                         .province = "Prov",
                                                         .country = "Nazione",
                                                         .office = "Telefono",
                                                         .fax = "Fax",
                                                         .contact = "Riferimento",
                                                         .isDefault = "Predefinita"}),
             {},
             {{"TipoCF", "Codice"}}}};
}

QVector<Table> ArticleTables() {
    const Rule supplier = AnyOf(Suppliers, PartyCode());
    return {{"ARTICOLI",
             "articoli",
             Articles,
             QVector<Field>{{{"Codice", 'C', 20}, ArticleCode()},
                            {{"TipoArticolo", 'C', 4}, Chance(40, Fixed("PF"), Fixed("MP"))}} +
                 ArticleColumns(ItemNames, supplier),
             {{{"Codice", "PESO"}, {"PesoNetto", "due"}}, {{"Codice", "FORNITORE"}, {"CodFornitore", "99999"}}},
             {{"Codice"}}},
            {"ARTFORN",
             "articoli",
             BoughtElsewhere,
             {{{"Codice", 'C', 20}, ArticleCode()},
              {{"CodFornitore", 'C', 8}, supplier},
              {{"CodArtFornitore", 'C', 25}, Chance(60, Code("ALT-", 5))},
              {{"Prezzo", 'N', 14, 5}, Scaled(1.1, 2, Cost())},
              {{"GiorniConsegna", 'I'}, Whole(1, 30)},
              {{"LottoMin", 'N', 12, 3}, Whole(0, 20)}},
             {},
             {{"Codice"}}}};
}

} // namespace

} // namespace os1

Totals MakeOS1(const Options& options) {
    using namespace os1;
    QuadrixScript script(options.company);
    PrepareParties(script, "CLIFOR", Parties);
    PrepareBases(script);
    PrepareArticles(script, "ARTICOLI", ItemNames);
    return Write("os1.db", CounterpartyTables() + ArticleTables(), options, script);
}

} // namespace examples
