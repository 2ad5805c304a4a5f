// LibertyCommerce: a database with customers, suppliers and carriers in one table, and their destinations.

#include "examples/plainTables.h"

namespace examples {

namespace libertyCommerce {

namespace {

using namespace described;

const PartyNames Names{.name = "cfrag1",
                       .name2 = "cfrag2",
                       .isPerson = "cfpfis",
                       .surname = "cfcogn",
                       .firstName = "cfnome",
                       .street = "cfind",
                       .postCode = "cfcap",
                       .town = "cfloc",
                       .province = "cfprov",
                       .country = "cfnaz",
                       .vatNumber = "cfpiva",
                       .taxCode = "cfcfis",
                       .office = "cftel1",
                       .office2 = "cftel2",
                       .fax = "cffax",
                       .mobile = "cfcell",
                       .mail = "cfemail",
                       .web = "cfweb",
                       .contact = "cfrif",
                       .payment = "cfpag",
                       .ownBank = "cfbanaz",
                       .abi = "cfabi",
                       .cab = "cfcab",
                       .cin = "cfcin",
                       .account = "cfcc",
                       .iban = "cfiban",
                       .bic = "cfbic",
                       .discount1 = "cfsc1",
                       .discount2 = "cfsc2",
                       .agent = "cfage",
                       .list = "cflis",
                       .currency = "cfval",
                       .language = "cflin",
                       .zone = "cfzona",
                       .category = "cfcat",
                       .exemption = "cfiva",
                       .port = "cfporto",
                       .carrier = "cfvett",
                       .credit = "cffido",
                       .ledger = "cfconto",
                       .isBlocked = "cfblocco",
                       .isCancelled = "cfann",
                       .note = "cfnote",
                       .created = "cfdata"};

QVector<Table> CounterpartyTables() {
    const Rule customer = Code("", 5);
    return {{"clfn",
             "controparti",
             Counterparties,
             QVector<Field>{{{"cftipo", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
                            {{"cfcod", 'C', 8}, BySide(customer, Code("", 5))}} +
                 PartyColumns(Address("clfn"), Names),
             {{{"cftipo", "V"}, {"cfcod", "V1"}, {"cfrag1", "Autotrasporti Veloci S.r.l."}},
              {{"cftipo", "V"}, {"cfcod", "V2"}, {"cfrag1", "Corriere Espresso S.p.A."}},
              {{"cftipo", "A"}, {"cfcod", "AG1"}, {"cfrag1", "Un agente"}},
              {{"cftipo", "2"}, {"cfcod", "90001"}, {"cfsc1", "tre"}},
              {{"cftipo", "1"}, {"cfcod", "90001"}, {"cfrag1", "Cliente con il tipo in cifre"}}},
             {{"cftipo", "cfcod"}}},
            {"clfndest",
             "controparti",
             Branches(),
             QVector<Field>{{{"cftipo", 'C', 1}, Fixed("C")}, {{"cfcod", 'C', 8}, OfBranch(customer)}} +
                 BranchColumns(Address("clfndest"), {.number = "cdnum",
                                                     .name = "cdrag",
                                                     .street = "cdind",
                                                     .postCode = "cdcap",
                                                     .town = "cdloc",
                                                     .province = "cdprov",
                                                     .office = "cdtel",
                                                     .fax = "cdfax"}),
             {},
             {{"cftipo", "cfcod"}}}};
}

} // namespace

} // namespace libertyCommerce

Totals MakeLibertyCommerce(const Options& options) {
    using namespace libertyCommerce;
    QuadrixScript script(options.company);
    PrepareParties(script, "clfn", Names);
    PrepareBases(script);
    return Write("libertycommerce.db", CounterpartyTables(), options, script);
}

} // namespace examples
