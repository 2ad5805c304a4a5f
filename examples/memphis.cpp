// Memphis: a database with customers and suppliers in one table, their destinations, and the chart of accounts in
// ledgers and accounts.

#include "examples/chartOfAccounts.h"
#include "examples/plainTables.h"

namespace examples {

namespace memphis {

namespace {

using namespace described;

const PartyNames Names{.name = "RagSoc1",
                       .name2 = "RagSoc2",
                       .isPerson = "PersFisica",
                       .surname = "Cognome",
                       .firstName = "Nome",
                       .street = "Indirizzo",
                       .postCode = "Cap",
                       .town = "Localita",
                       .province = "Provincia",
                       .country = "CodNazione",
                       .vatNumber = "PartitaIva",
                       .taxCode = "CodFiscale",
                       .office = "Telefono1",
                       .office2 = "Telefono2",
                       .fax = "Fax",
                       .mobile = "Cellulare",
                       .mail = "EMail",
                       .web = "Internet",
                       .contact = "Contatto",
                       .payment = "CodPagamento",
                       .ownBank = "CodBancaAz",
                       .abi = "CodAbi",
                       .cab = "CodCab",
                       .cin = "Cin",
                       .account = "NumConto",
                       .iban = "Iban",
                       .bic = "Bic",
                       .discount1 = "Sconto1",
                       .discount2 = "Sconto2",
                       .agent = "CodAgente",
                       .list = "CodListino",
                       .currency = "CodValuta",
                       .language = "CodLingua",
                       .zone = "CodZona",
                       .category = "CodCategoria",
                       .exemption = "CodIva",
                       .port = "CodPorto",
                       .carrier = "CodVettore",
                       .credit = "Fido",
                       .ledger = "CodMastro",
                       .isBlocked = "Bloccato",
                       .isCancelled = "Annullato",
                       .note = "Note",
                       .created = "DataCreazione"};

QVector<Table> CounterpartyTables() {
    return {{"ANAGRAFICHE",
             "controparti",
             Counterparties,
             QVector<Field>{{{"TipoAnag", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                            {{"CodAnag", 'C', 8}, BySide(Code("", 1), Code("F", 5))}} +
                 PartyColumns(Address("ANAGRAFICHE"), Names),
             {{{"TipoAnag", "C"}, {"CodAnag", "900001"}, {"Provincia", "TORINO"}},
              {{"TipoAnag", "F"}, {"CodAnag", "F90001"}, {"Sconto1", "dieci"}},
              {{"TipoAnag", "V"}, {"CodAnag", "V1"}, {"RagSoc1", "Un vettore"}}},
             {{"TipoAnag", "CodAnag"}}},
            {"DESTINAZIONI",
             "controparti",
             Branches(),
             QVector<Field>{{{"TipoAnag", 'C', 1}, Fixed("C")}, {{"CodAnag", 'C', 8}, OfBranch(Code("", 1))}} +
                 BranchColumns(Address("DESTINAZIONI"), {.number = "CodDest",
                                                         .name = "RagSoc",
                                                         .street = "Indirizzo",
                                                         .postCode = "Cap",
                                                         .town = "Localita",
                                                         .province = "Provincia",
                                                         .country = "CodNazione",
                                                         .office = "Telefono",
                                                         .fax = "Fax",
                                                         .contact = "Riferimento",
                                                         .isDefault = "Predefinita"}),
             {},
             {{"TipoAnag", "CodAnag"}}}};
}

QVector<Table> ChartTables() {
    const QVector<Account> ledgers = Chart(1, 2);
    const QVector<Account> accounts = Chart(3, 3);
    return {{"MASTRI",
             "conti",
             Exactly(ledgers.size()),
             {{{"CodMastro", 'C', 6}, Each(ledgers, &Account::code)},
              {{"Descrizione", 'C', 50}, Each(ledgers, &Account::description)},
              {{"TipoMastro", 'C', 1}, Each(ledgers, &Account::kind)},
              {{"Livello", 'I'}, Each(ledgers, &Account::Level)},
              {{"CodRaggr", 'C', 6}, Each(ledgers, &Account::Parent)}}},
            {"CONTI",
             "conti",
             Exactly(accounts.size()),
             {{{"CodConto", 'C', 10}, Each(accounts, &Account::code)},
              {{"Descrizione", 'C', 50}, Each(accounts, &Account::description)},
              {{"CodMastro", 'C', 6}, Each(accounts, &Account::Parent)},
              {{"Natura", 'C', 2}, Each(accounts, &Account::kind)},
              {{"Livello", 'C', 4}, Each(accounts, &Account::Level)}},
             {{{"CodConto", "99010001"}, {"Descrizione", "Livello che non è un numero"}, {"Livello", "tre"}}}}};
}

} // namespace

} // namespace memphis

Totals MakeMemphis(const Options& options) {
    using namespace memphis;
    QuadrixScript script(options.company);
    PrepareParties(script, "ANAGRAFICHE", Names);
    PrepareBases(script);
    return Write("memphis.db", CounterpartyTables() + ChartTables(), options, script);
}

} // namespace examples
