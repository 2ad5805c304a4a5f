// SAM: a database with persons who are customers, suppliers or both, their addresses and contacts, articles and the
// chart of accounts.

#include "examples/chartOfAccounts.h"
#include "examples/plainTables.h"

namespace examples {

namespace sam {

namespace {

using namespace described;

const Count Articles = [](const Options& options) { return options.rows; };

const PartyNames PersonNames{.name = "RagioneSociale",
                             .name2 = "RagioneSociale2",
                             .isPerson = "PersonaFisica",
                             .surname = "Cognome",
                             .firstName = "Nome",
                             .street = "Indirizzo",
                             .houseNumber = "NumeroCivico",
                             .postCode = "CAP",
                             .town = "Localita",
                             .province = "Provincia",
                             .country = "Nazione",
                             .vatNumber = "PartitaIva",
                             .taxCode = "CodiceFiscale",
                             .office = "Telefono1",
                             .office2 = "Telefono2",
                             .fax = "Fax",
                             .mobile = "Cellulare",
                             .mail = "EMail",
                             .web = "SitoWeb",
                             .contact = "Referente",
                             .abi = "ABI",
                             .cab = "CAB_Banca",
                             .cin = "CIN",
                             .account = "ContoCorrente",
                             .iban = "IBAN",
                             .bic = "BIC",
                             .currency = "Valuta",
                             .language = "Lingua",
                             .isCancelled = "Annullato",
                             .note = "Note",
                             .created = "DataInserimento"};

const PartyNames CustomerNames{.payment = "Pagamento",
                               .ownBank = "BancaNostra",
                               .discount1 = "Sconto1",
                               .discount2 = "Sconto2",
                               .agent = "Agente",
                               .list = "Listino",
                               .zone = "Zona",
                               .category = "Categoria",
                               .exemption = "CodiceIva",
                               .port = "Porto",
                               .carrier = "Vettore",
                               .credit = "Fido",
                               .ledger = "Conto",
                               .isBlocked = "Bloccato"};

const PartyNames SupplierNames{.payment = "Pagamento",
                               .ownBank = "BancaNostra",
                               .discount1 = "Sconto1",
                               .discount2 = "Sconto2",
                               .list = "Listino",
                               .category = "Categoria",
                               .exemption = "CodiceIva",
                               .ledger = "Conto"};

const ArticleNames ItemNames{.description = "Descrizione",
                             .description2 = "Descrizione2",
                             .longText = "DescrizioneEstesa",
                             .unit = "UnitaMisura",
                             .unit2 = "UnitaMisura2",
                             .factor = "FattoreConversione",
                             .vatCode = "CodiceIva",
                             .family = "Famiglia",
                             .lastCost = "CostoUltimo",
                             .standardCost = "CostoStandard",
                             .price = "PrezzoVendita",
                             .discount = "Sconto",
                             .netWeight = "PesoNetto",
                             .grossWeight = "PesoLordo",
                             .lowestStock = "ScortaMinima",
                             .highestStock = "ScortaMassima",
                             .reorderPoint = "PuntoRiordino",
                             .lowestOrder = "QuantitaMinima",
                             .lot = "LottoRiordino",
                             .leadDays = "GiorniApprovvigionamento",
                             .supplier = "CodFornitore",
                             .supplierCode = "CodiceFornitore",
                             .barCode = "CodiceBarre",
                             .location = "Ubicazione",
                             .isCancelled = "Annullato",
                             .note = "Note",
                             .created = "DataInserimento"};

Rule SupplierCode() { return Code("F", 5); }
QVector<Table> PersonTables() {
    return {{"Persone",
             "controparti",
             Counterparties,
             QVector<Field>{{{"IdPersona", 'I'}, RowNumber()}, {{"Codice", 'C', 8}, Code("P", 5)}} +
                 PartyColumns(Address("Persone"), PersonNames),
             {{{"IdPersona", 9000001}, {"Codice", "PROV"}, {"Provincia", "TORINO"}}},
             {{"IdPersona"}}},
            {"Clienti",
             "controparti",
             Customers,
             QVector<Field>{{{"IdPersona", 'I'}, RowNumber()}, {{"CodCliente", 'C', 8}, Code("", 1)}} +
                 PartyColumns(Address("Clienti"), CustomerNames),
             {{{"IdPersona", 9000001}, {"CodCliente", "900001"}}, {{"IdPersona", 9000009}, {"CodCliente", "900002"}}},
             {{"IdPersona"}}},
            {"Fornitori",
             "controparti",
             Suppliers,
             QVector<Field>{{{"IdPersona", 'I'}, Behind(Customers, IdentityNumber())},
                            {{"CodFornitore", 'C', 8}, SupplierCode()}} +
                 Behind(Customers, PartyColumns(Address("Fornitori"), SupplierNames)),
             {},
             {{"IdPersona"}}},
            {"PersoneIndirizzi",
             "controparti",
             Branches(),
             QVector<Field>{{{"IdPersona", 'I'}, OfBranch(RowNumber())}} +
                 BranchColumns(Address("PersoneIndirizzi"), {.number = "Progressivo",
                                                             .name = "Descrizione",
                                                             .street = "Indirizzo",
                                                             .postCode = "CAP",
                                                             .town = "Localita",
                                                             .province = "Provincia",
                                                             .country = "Nazione",
                                                             .office = "Telefono",
                                                             .fax = "Fax",
                                                             .isDefault = "Predefinito"}),
             {},
             {{"IdPersona"}}},
            {"PersoneContatti",
             "controparti",
             EachOf(3),
             {{{"IdPersona", 'I'}, With([](qint64 row) { return 2 * row; }, RowNumber())},
              {{"Progressivo", 'I'}, Fixed(1)},
              {{"Nominativo", 'C', 60}, FullName()},
              {{"Ruolo", 'C', 40}, OneOf({"Acquisti", "Amministrazione", "Ufficio tecnico"})},
              {{"Telefono", 'C', 20}, Address("Persone").Telephone()},
              {{"Cellulare", 'C', 20}, Chance(60, Mobile())},
              {{"EMail", 'C', 80}, Chance(60, OnInternet("ufficio@"))}},
             {},
             {{"IdPersona"}}}};
}

Table ArticleTable() {
    return {
        "Articoli",
        "articoli",
        Articles,
        QVector<Field>{{{"Codice", 'C', 20}, Code("SM-", 5)}, {{"TipoArticolo", 'C', 4}, OneOf({"PF", "MP", "MP"})}} +
            ArticleColumns(ItemNames, AnyOf(Suppliers, SupplierCode())),
        {{{"Codice", "PESO"}, {"PesoNetto", "due"}}, {{"Codice", "FORNITORE"}, {"CodFornitore", "F99999"}}},
        {{"Codice"}}};
}

Table ChartTable() {
    const QVector<Account> accounts = Chart(1, 3);
    return {"PianoConti",
            "conti",
            Exactly(accounts.size()),
            {{{"Conto", 'C', 20}, Each(accounts, &Account::code)},
             {{"Descrizione", 'C', 50}, Each(accounts, &Account::description)},
             {{"Mastro", 'C', 10}, Each(accounts, &Account::Parent)},
             {{"Tipo", 'C', 1}, Each(accounts, &Account::kind)},
             {{"Livello", 'C', 5}, Each(accounts, &Account::Level)},
             {{"Movimentabile", 'C', 1}, Each(accounts, &Account::TakesPostings)},
             {{"Raggruppamento", 'C', 10}, {}}},
            {{{"Conto", "99"}, {"Descrizione", "Livello che non è un numero"}, {"Livello", "uno"}}}};
}

} // namespace

} // namespace sam

Totals MakeSam(const Options& options) {
    using namespace sam;
    QuadrixScript script(options.company);
    for (const PartyNames& names : {PersonNames, CustomerNames, SupplierNames}) {
        PrepareParties(script, "Persone", names);
    }
    PrepareBases(script);
    PrepareArticles(script, "Articoli", ItemNames);
    return Write("sam.db", PersonTables() + QVector<Table>{ArticleTable(), ChartTable()}, options, script);
}

} // namespace examples
