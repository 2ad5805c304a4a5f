// Brantel, one customer's own database: SQL Server, BRANTEL unless the setting Databasename names another.
// Costs and prices of the bills of materials that are in Quadrix, whichever import has brought them: no source is read.
// Known gaps: everything that comes out of the source (counterparties, articles, bills, open orders, price lists,
// attachments); its buttons say so.

#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/sourceSettings.h"
#include "core/ovDistinta.h"

using namespace contract;

namespace modImport_Brantel {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Brantel");

// --- Costs and prices ---------------------------------------------------------------------------------------------

const Needs& CostiPrezziNeeds() {
    static const Needs needs{
        {},
        {},
        {{"DIS_BAS", {"DBART", "DBREV", "DBMAN"}},
         {"DIS_COM", {"IDDIS", "IDDBF", "DCART", "DCQTA", "DCCOE", "DCCOS", "DCRIC", "DCPRZ"}},
         {"DIS_FAS",
          {"IDDIS", "DLSEQ", "DLACT", "DLLAV", "DLTAP", "DLTUP", "DLTMP", "DLNUP", "DLCOS", "DLRIC", "DLPRZ", "DLFOR"}},
         {"ART_ICO", {"CDART", "ARLOR", "ARCOS", "ARRIC", "ARPRZ", "ARDUC", "ARDUP"}},
         {"LIS_LAV", {"CDLAV", "CDART", "CDFOR", "LLINV", "LLFIV"}},
         {"LIS_LAS", {"IDLSD", "SCQTA", "SCCOS", "SCSCO", "SCSC2", "SCSC3"}}}};
    return needs;
}

/// A single code is the article of the bills. A bill that needs no change is skipped.
void AggiornaCostiPrezzi(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "AggiornaCostiPrezzi", singleCode);
    run.Guard([&] {
        run.Announce("Inizio aggiornamento costi/prezzi distinte");
        run.Preflight(CostiPrezziNeeds());
        ovDistinta bill(session, [&run](const QString& table) { return std::make_unique<TargetRow>(run, table); });
        const QString from = run.FullName("DIS_BAS") + run.OnlyCode(" WHERE", "DBART", singleCode);
        run.Rows({.step = "Costi/Prezzi distinte",
                  .table = "DIS_BAS",
                  .keyColumn = "DBART, DBREV",
                  .count = "SELECT COUNT(*) FROM " + from,
                  .select = "SELECT RECORD_ID, DBART, DBREV FROM " + from + " ORDER BY RECORD_ID",
                  .database = &session.Quadrix},
                 [&](const SourceRow& row) {
                     const bool hasChanged = bill.AggiornaCostiPrezzi(row.Value("RECORD_ID").toLongLong());
                     return hasChanged ? RowOutcome::Updated : run.Skip("costi e prezzi già aggiornati");
                 });
        run.Complete("Costi/Prezzi distinte correttamente aggiornati!");
    });
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Brantel",
        Module,
        {"SQL Server", sourceSettings::Server("BRANTEL")},
        Buttons("YYYYNYYY", {{Button::Cli, "Importa Controparti"},
                             {Button::Art, "Importa Articoli"},
                             {Button::Doc, "Importa Ordini Aperti"},
                             {Button::Saldi, "Aggiorna costi/prezzi"},
                             {Button::Piano, "Importa Listini"},
                             {Button::Disegni, "Importa Allegati"}}),
        Shown::Keep,
        {
            {.button = Button::Saldi,
             .name = "AggiornaCostiPrezzi",
             .run = AggiornaCostiPrezzi,
             .needs = CostiPrezziNeeds(),
             .confirmation = "Aggiornare i costi e i prezzi delle distinte?",
             .opensSource = false,
             .asksReset = false},
        },
    };
    return origin;
}

} // namespace modImport_Brantel
