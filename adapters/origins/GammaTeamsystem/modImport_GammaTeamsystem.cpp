// Gamma of TeamSystem over ODBC: data source GAMMATEAMSYSTEM unless the setting DSN names another, company of the
// setting Ditta (1). It is the database of modImport_GammaSqlServer, read with its declarations: what is known of its
// tables and columns, and what is left out, is told there; both share their translations.
// Customers, then suppliers; branches and contacts in imports of their own.

#include "adapters/origins/GammaSqlServer/modImport_GammaSqlServer.h"
#include "adapters/sourceSettings.h"

using namespace contract;

namespace modImport_GammaTeamsystem {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_GammaTeamsystem");

/// The counterparties of one role, without their branches. Customers come first, and empty the tables.
Counterparties Controparti(bool customers) {
    Counterparties parties = modImport_GammaSqlServer::Controparti();
    parties.frame = {.module = Module,
                     .procedure =
                         customers ? QStringLiteral("ImportClientiGamma") : QStringLiteral("ImportFornitoriGamma"),
                     .announcement = customers ? QStringLiteral("Inizio importazione Clienti")
                                               : QStringLiteral("Inizio importazione Fornitori"),
                     .log = customers ? LogStart::Anew : LogStart::Behind,
                     .step = customers ? QStringLiteral("Clienti") : QStringLiteral("Fornitori"),
                     .completion = customers ? QStringLiteral("Clienti importati correttamente!")
                                             : QStringLiteral("Fornitori importati correttamente!")};
    parties.source.where = QStringLiteral("T.CG44_TIPOCF = %1").arg(customers ? 0 : 1);
    parties.branches = {};
    parties.empties = customers;
    return parties;
}

/// Branches or contacts, under the name that the procedure has here.
PartyRows Named(PartyRows rows, const QString& procedure) {
    rows.frame.module = Module;
    rows.frame.procedure = procedure;
    return rows;
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Gamma TeamSystem",
        Module,
        {.kind = "ODBC",
         .prepare = sourceSettings::DataSource("GAMMATEAMSYSTEM"),
         .company = modImport_GammaSqlServer::Ditta()},
        Buttons("YNNNNNYY", {{Button::Piano, "Importa Sedi"}, {Button::Disegni, "Importa Riferimenti"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, Controparti(true)),
            ProcedureOf(Button::Cli, Controparti(false)),
            ProcedureOf(Button::Piano, Named(modImport_GammaSqlServer::SediSole(), "ImportSediGamma")),
            ProcedureOf(Button::Disegni, Named(modImport_GammaSqlServer::Riferimenti(), "ImportRiferimentiGamma")),
        },
    };
    return origin;
}

} // namespace modImport_GammaTeamsystem
