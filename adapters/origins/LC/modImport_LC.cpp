// LibertyCommerce: the ODBC data source "LibertyCommerce", opened as the user Admin. Counterparties with destinations,
// which not every installation has. clfn is known to be its table; its columns and clfndest are this system's own
// reading in its style, fitted to an installation by "Tracciati/LibertyCommerce.ini". Known gaps: agents, and
// everything but counterparties.

#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/kinds/PartyColumns.h"
#include "adapters/sourceSettings.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_LC {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_LC");

const QString Clfn = QStringLiteral("clfn");

const PartyColumns Columns{
    .name = "cfrag1",
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
    .created = "cfdata",
};

/// Customers and suppliers are told by letters or by numbers.
const RoleValues Kinds{.customer = {"C", "1"}, .supplier = {"F", "2"}, .both = {}, .carrier = {"V"}};

QString OfOtherKind(const SourceRow& row) {
    const QStringList known = Kinds.customer + Kinds.supplier + Kinds.carrier;
    return known.contains(row.Text("cftipo"), Qt::CaseInsensitive)
               ? QString()
               : QStringLiteral("né cliente né fornitore né vettore (cftipo)");
}

Branches Destinazioni() {
    return {
        .rows = {.table = "clfndest", .on = {{"cftipo"}, {"cfcod"}}, .order = "cdnum", .isOptional = true},
        .lines = BranchLines("clfndest", {.number = "cdnum",
                                          .name = "cdrag",
                                          .street = "cdind",
                                          .postCode = "cdcap",
                                          .town = "cdloc",
                                          .province = "cdprov"}),
        .numbers = {.office = "cdtel", .fax = "cdfax"},
    };
}

Counterparties Controparti() {
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiLC"},
        .source = {.table = Clfn, .key = "cfcod", .order = "cftipo, cfcod", .naming = "cftipo, cfcod"},
        .roles = ByLetter("cftipo", Kinds),
        .name = "cfrag1, cfrag2",
        .vatNumber = "cfpiva",
        .taxCode = "cfcfis",
        .lines = PartyLines(Clfn, Columns),
        .numbers = {.office = "cftel1",
                    .office2 = "cftel2",
                    .fax = "cffax",
                    .mobile = "cfcell",
                    .mail = "cfemail",
                    .web = "cfweb"},
        .created = "cfdata",
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "cfrif", Text()}}}},
        .leavesOut = OfOtherKind,
        .more = SetIban,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "LibertyCommerce",
        Module,
        {.kind = "ODBC",
         .prepare = sourceSettings::Fixed("Provider=MSDASQL.1;User ID=Admin;Data Source=LibertyCommerce"),
         .names = Naming::OurReading},
        Buttons("YNNNN---"),
        Shown::Keep,
        {ProcedureOf(Button::Cli, Controparti())},
    };
    return origin;
}

} // namespace modImport_LC
