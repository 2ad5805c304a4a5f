// Brantel, one customer's own database: SQL Server, BRANTEL unless the setting Databasename names another.
// Attachments stand here, counterparties in modImport_Brantel_parties.cpp, articles and bills in
// modImport_Brantel_articles.cpp, open orders of customers and price lists in modImport_Brantel_documents.cpp. Nothing
// is published: every table and column is this system's own reading, fitted to an installation by
// "Tracciati/Brantel.ini". A price of ListiniRighe holds from QtaDa on; times are minutes.
// Costs and prices of the bills that are in Quadrix, whichever import has brought them, are made anew without a source.
// Known gaps: orders to suppliers, whose button is hidden; stock.

#include "adapters/origins/Brantel/modImport_Brantel.h"

#include "adapters/contract/kinds/Attachments.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/sourceSettings.h"
#include "core/ovDistinta.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Brantel {

const contract::Origin& Entry();

namespace {

// --- Attachments --------------------------------------------------------------------------------------------------

/// Of articles, of their bills, and of counterparties by the code that they have as customers, else as suppliers.
Attachments Allegati() {
    return {
        .frame = {.module = Module, .procedure = "ImportAllegatiBrantel"},
        .source = {.table = "Allegati",
                   .key = "Chiave",
                   .order = "Tabella, Chiave",
                   .naming = "Tabella, Chiave, NomeFile"},
        .records = {{.marks = {"ART"},
                     .table = "ART_ICO",
                     .keyColumn = "CDART",
                     .key = {"Chiave", Article()},
                     .flag = "ARATT"},
                    {.marks = {"DIS"},
                     .table = "DIS_BAS",
                     .keyColumn = "DBART",
                     .key = {"Chiave", Article()},
                     .flag = "DBATT"},
                    {.marks = {"ANA"}, .table = "CON_TRO", .keyColumn = "CDCON", .key = {"Chiave", KnownParty()}}},
        .kind = "Tabella",
        .path = "Percorso",
        .name = "NomeFile",
        .description = "Descrizione",
        .revision = "Revisione",
        .day = "Data",
    };
}

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
        {.kind = "SQL Server", .prepare = sourceSettings::Server("BRANTEL"), .names = Naming::OurReading},
        Buttons("YYYYNYYY", {{Button::Cli, "Importa Controparti"},
                             {Button::Art, "Importa Articoli"},
                             {Button::Doc, "Importa Ordini Aperti"},
                             {Button::Saldi, "Aggiorna costi/prezzi"},
                             {Button::Piano, "Importa Listini"},
                             {Button::Disegni, "Importa Allegati"}}),
        Shown::Keep,
        {
            ImportContropartiBrantel(),
            ImportArticoliBrantel(),
            ImportDistinteBrantel(),
            ImportOrdiniBrantel(),
            {.button = Button::Saldi,
             .name = "AggiornaCostiPrezzi",
             .run = AggiornaCostiPrezzi,
             .needs = CostiPrezziNeeds(),
             .confirmation = "Aggiornare i costi e i prezzi delle distinte?",
             .opensSource = false,
             .asksReset = false},
            ImportListiniBrantel(),
            ProcedureOf(Button::Disegni, Allegati()),
        },
    };
    return origin;
}

} // namespace modImport_Brantel
