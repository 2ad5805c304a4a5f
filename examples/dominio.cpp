// DOMINIO: a database with customers and suppliers in one table, their destinations, the chart of accounts and base
// tables with their codes.

#include "examples/chartOfAccounts.h"
#include "examples/plainTables.h"

namespace examples {

namespace dominio {

namespace {

using namespace described;

const PartyNames Names{.name = "ragsoc1",
                       .name2 = "ragsoc2",
                       .isPerson = "persfis",
                       .surname = "cognome",
                       .firstName = "nome",
                       .street = "indirizzo",
                       .postCode = "cap",
                       .town = "localita",
                       .province = "provincia",
                       .country = "nazione",
                       .vatNumber = "partiva",
                       .taxCode = "codfisc",
                       .office = "telefono",
                       .office2 = "telefono2",
                       .fax = "fax",
                       .mobile = "cellulare",
                       .mail = "email",
                       .web = "sitoweb",
                       .contact = "riferim",
                       .payment = "codpag",
                       .ownBank = "bancaaz",
                       .abi = "abi",
                       .cab = "cab_ban",
                       .cin = "cin",
                       .account = "contocor",
                       .iban = "iban",
                       .bic = "bic",
                       .discount1 = "sconto1",
                       .discount2 = "sconto2",
                       .agent = "codage",
                       .list = "codlis",
                       .currency = "codval",
                       .language = "codlin",
                       .zone = "codzona",
                       .category = "codcat",
                       .exemption = "codiva",
                       .port = "codporto",
                       .carrier = "codvett",
                       .credit = "fido",
                       .ledger = "mastro",
                       .isBlocked = "blocco",
                       .isCancelled = "annullato",
                       .note = "note",
                       .created = "datains"};

QVector<Table> CounterpartyTables() {
    return {{"clifor",
             "controparti",
             Counterparties,
             QVector<Field>{{{"tipocf", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                            {{"codcf", 'C', 8}, BySide(Code("", 1), Code("", 1))}} +
                 PartyColumns(Address("clifor"), Names),
             {{{"tipocf", "C"}, {"codcf", "900001"}, {"sconto1", "dieci"}},
              {{"tipocf", "F"}, {"codcf", "900001"}, {"provincia", "TORINO"}},
              {{"tipocf", "A"}, {"codcf", "1"}, {"ragsoc1", "Un agente"}}},
             {{"tipocf", "codcf"}}},
            {"clidest",
             "controparti",
             Branches(),
             QVector<Field>{{{"tipocf", 'C', 1}, Fixed("C")}, {{"codcf", 'C', 8}, OfBranch(Code("", 1))}} +
                 BranchColumns(Address("clidest"), {.number = "coddest",
                                                    .name = "ragsoc",
                                                    .street = "indirizzo",
                                                    .postCode = "cap",
                                                    .town = "localita",
                                                    .province = "provincia",
                                                    .office = "telefono",
                                                    .fax = "fax",
                                                    .isDefault = "predef"}),
             {},
             {{"tipocf", "codcf"}}}};
}

/// Behind the accounts come those of the counterparties.
Table ChartTable() {
    const QVector<Account> accounts = Chart(1, 3);
    const Count own = Exactly(accounts.size());
    const auto either = [own](const Rule& account, const Rule& customer, const Rule& supplier) {
        return Kinds({{own, account}, {Customers, customer}, {Suppliers, supplier}});
    };
    return {"pdc",
            "conti",
            Sum(own, Counterparties),
            {{{"conto", 'C', 20}, either(Each(accounts, &Account::code), Code("0401C", 6), Code("0501F", 6))},
             {{"descr", 'C', 50}, either(Each(accounts, &Account::description), CompanyName(50), Fixed("Fornitore"))},
             {{"mastro", 'C', 10}, either(Each(accounts, &Account::Parent), Fixed("0401"), Fixed("0501"))},
             {{"tipo", 'C', 1}, either(Each(accounts, &Account::kind), Fixed("K"), Fixed("F"))},
             {{"livello", 'C', 5}, either(Each(accounts, &Account::Level), Fixed(3), Fixed(3))},
             {{"movim", 'C', 1}, either(Each(accounts, &Account::TakesPostings), Fixed(true), Fixed(true))},
             {{"riclass", 'C', 10}, either(Each(accounts, &Account::kind), {}, {})}},
            {{{"conto", "99"}, {"descr", "Livello che non è un numero"}, {"tipo", "O"}, {"livello", "uno"}}}};
}

QVector<Table> BaseTables() {
    return {
        {"tabiva",
         "tabelle",
         Exactly(5),
         {{{"codice", 'C', 4}, Each({"22", "10", "4", "22I", "N8"})},
          {{"descr", 'C', 40},
           Each({"Iva 22%", "Iva 10%", "Iva 4%", "Iva 22% indetraibile al 50%", "Non imponibile art. 8"})},
          {{"aliquota", 'N', 6, 2}, Each({22, 10, 4, 22, 0})},
          {{"percind", 'N', 6, 2}, Each({0, 0, 0, 50, 0})},
          {{"tipo", 'C', 1}, Each({"O", "O", "O", "O", "N"})}},
         {{{"codice", "X1"}, {"aliquota", "zero"}}}},
        {"tabtippag",
         "tabelle",
         Exactly(3),
         {{{"tipo", 'C', 1}, Each({"B", "D", "R"})},
          {{"descr", 'C', 30}, Each({"Bonifico", "Rimessa diretta", "Ricevuta bancaria"})}}},
        {"tabpag",
         "tabelle",
         Exactly(4),
         {{{"codice", 'C', 4}, Each({"RB30", "RB60", "BO30", "RD"})},
          {{"descr", 'C', 40},
           Each({"Riba 30/60/90 gg FM il 10", "Riba 60/90 gg DF", "Bonifico 30 gg DF", "Rimessa diretta"})},
          {{"nrate", 'I'}, Each({3, 2, 1, 1})},
          {{"sconto", 'N', 6, 2}, Each({0, 0, 0, 1.5})},
          {{"spese", 'N', 10, 2}, Each({3.5, 3.5, 0, 0})},
          {{"tipo", 'C', 1}, Each({"R", "R", "B", "D"})},
          {{"ggprima", 'I'}, Each({30, 60, 30, 0})},
          {{"ggrate", 'I'}, Each({30, 30, 0, 0})},
          {{"finemese", 'C', 1}, Each({Yes, No, No, No})},
          {{"giornofisso", 'I'}, Each({10, 0, 0, 0})}}},
        {"tabum",
         "tabelle",
         Exactly(3),
         {{{"codice", 'C', 3}, Each({"PZ", "BOB", "ROT"})}, {{"descr", 'C', 30}, Each({"Pezzi", "Bobine", "Rotoli"})}}},
        {"banche",
         "tabelle",
         Exactly(2),
         {{{"codice", 'C', 6}, Each({"BA1", "BA2"})},
          {{"descr", 'C', 40}, Each({"Banca popolare", "Cassa rurale"})},
          {{"abi", 'C', 5}, BankAccount("banche").Abi()},
          {{"cab", 'C', 5}, BankAccount("banche").Cab()},
          {{"cin", 'C', 1}, BankAccount("banche").Check()},
          {{"conto", 'C', 12}, BankAccount("banche").Number()},
          {{"iban", 'C', 42}, BankAccount("banche").Iban()},
          {{"bic", 'C', 11}, BankAccount("banche").Bic()},
          {{"sia", 'C', 5}, Code("A1", 3)}}}};
}

} // namespace

} // namespace dominio

Totals MakeDominio(const Options& options) {
    using namespace dominio;
    QuadrixScript script(options.company);
    PrepareParties(script, "clifor", Names);
    return Write("dominio.db", CounterpartyTables() + QVector<Table>{ChartTable()} + BaseTables(), options, script);
}

} // namespace examples
