// Puzzle: customers and suppliers in tables alike, with the destinations and contacts of both in tables that they
// share.

#include "examples/plainTables.h"

namespace examples {

namespace puzzle {

namespace {

using namespace described;

Rule CustomerCode() { return Code("1", 5); }
Rule SupplierCode() { return Code("2", 5); }

PartyNames Customer() {
    return {.name = "ragione_sociale",
            .name2 = "ragione_sociale2",
            .isPerson = "persona_fisica",
            .surname = "cognome",
            .firstName = "nome",
            .street = "indirizzo",
            .houseNumber = "civico",
            .postCode = "cap",
            .town = "citta",
            .province = "provincia",
            .country = "nazione",
            .vatNumber = "partita_iva",
            .taxCode = "codice_fiscale",
            .office = "telefono",
            .office2 = "telefono2",
            .fax = "fax",
            .mobile = "cellulare",
            .mail = "email",
            .certifiedMail = "pec",
            .web = "sito_web",
            .contact = "referente",
            .payment = "cod_pagamento",
            .ownBank = "cod_banca_azienda",
            .abi = "abi",
            .cab = "cab_banca",
            .cin = "cin",
            .account = "conto_corrente",
            .iban = "iban",
            .bic = "bic",
            .discount1 = "sconto1",
            .discount2 = "sconto2",
            .agent = "cod_agente",
            .list = "cod_listino",
            .currency = "valuta",
            .language = "lingua",
            .zone = "cod_zona",
            .category = "cod_categoria",
            .exemption = "cod_iva",
            .port = "cod_porto",
            .carrier = "cod_vettore",
            .credit = "fido",
            .ledger = "conto_contabile",
            .isBlocked = "bloccato",
            .isCancelled = "annullato",
            .note = "note",
            .created = "data_inserimento"};
}

/// Agents and zones are those of customers.
PartyNames Supplier() {
    PartyNames names = Customer();
    names.agent.clear();
    names.zone.clear();
    return names;
}

QVector<Table> CounterpartyTables() {
    return {{"clienti",
             "controparti",
             Customers,
             QVector<Field>{{{"codice", 'C', 8}, CustomerCode()}} + PartyColumns(Address("clienti"), Customer()),
             {{{"codice", "190001"}, {"sconto1", "dieci"}, {"partita_iva", {}}, {"codice_fiscale", {}}}},
             {{"codice"}}},
            {"fornitori",
             "controparti",
             Suppliers,
             QVector<Field>{{{"codice", 'C', 8}, SupplierCode()}} +
                 Behind(Customers, PartyColumns(Address("fornitori"), Supplier())),
             {{{"codice", "290001"}, {"provincia", "TORINO"}, {"partita_iva", {}}, {"codice_fiscale", {}}}},
             {{"codice"}}}};
}

/// The key of rows that customers and suppliers have: three of a customer for one of a supplier.
QVector<Field> OwnerFields() {
    constexpr qint64 together = 4;
    const auto turn = [](qint64 row) { return row / together * (together - 1) + row % together; };
    const Rule customer = With(turn, CustomerCode());
    return {{{"tipo", 'C', 1}, Each({"C", "C", "C", "F"})},
            {{"codice", 'C', 8}, Turn(1, {customer, customer, customer, OfParent(together, SupplierCode())})},
            {{"progressivo", 'I'}, Fixed(1)}};
}

QVector<Table> TablesOfBoth() {
    const Address branch("destinazioni");
    const Address office("referenti");
    return {{"destinazioni",
             "controparti",
             EachOf(4),
             OwnerFields() + QVector<Field>{{{"ragione_sociale", 'C', 60}, Each({"Magazzino", "Stabilimento"})},
                                            {{"indirizzo", 'C', 60}, branch.StreetName()},
                                            {{"civico", 'C', 10}, branch.HouseNumber()},
                                            {{"cap", 'C', 5}, branch.PostCode()},
                                            {{"citta", 'C', 40}, branch.Town()},
                                            {{"provincia", 'C', 2}, branch.Province()},
                                            {{"nazione", 'C', 3}, Fixed("IT")},
                                            {{"telefono", 'C', 20}, Chance(60, branch.Telephone())},
                                            {{"fax", 'C', 20}, {}},
                                            {{"referente", 'C', 40}, Chance(30, FullName())},
                                            {{"predefinita", 'C', 1}, Each({"S", "N"})}},
             {{{"progressivo", 2}, {"indirizzo", {}}}},
             {{"tipo", "codice"}}},
            {"referenti",
             "controparti",
             EachOf(2),
             OwnerFields() + QVector<Field>{{{"nominativo", 'C', 60}, FullName()},
                                            {{"ruolo", 'C', 40}, OneOf({"Acquisti", "Ufficio tecnico"})},
                                            {{"telefono", 'C', 20}, office.Telephone()},
                                            {{"cellulare", 'C', 20}, Chance(50, Mobile())},
                                            {{"email", 'C', 80}, Chance(60, OnInternet("ufficio@"))},
                                            {{"note", 'C', 100}, Chance(10, Fixed("Solo al mattino"))}},
             {{{"progressivo", 2}, {"nominativo", {}}}},
             {{"tipo", "codice"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareParties(script, "clienti", Customer());
    PrepareParties(script, "fornitori", Supplier());
    PrepareBases(script);
    script.Translate("destinazioni", "nazione", "IT", "ITA");
    return script;
}

} // namespace

} // namespace puzzle

Totals MakePuzzle(const Options& options) {
    using namespace puzzle;
    return Write("puzzle.db", CounterpartyTables() + TablesOfBoth(), options, PreparedFor(options));
}

} // namespace examples
