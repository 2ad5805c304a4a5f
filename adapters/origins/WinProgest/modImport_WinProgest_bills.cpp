// WinProgest: bills of materials. Heads stand in NFTDIS, components in NFCODIS; both and their columns are known from
// installations.

#include "adapters/contract/map/supplierNote.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_WinProgest {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Nftdis = QStringLiteral("NFTDIS");
const QString Nfcodis = QStringLiteral("NFCODIS");

} // namespace

// --- Bills --------------------------------------------------------------------------------------------------------

Bills DistinteWinProgest() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteWinProgest",
                  .announcement = "Inizio importazione Distinte Base da WinProgest",
                  .log = LogStart::Behind,
                  .completion = "Distinte Base WinProgest importate correttamente: %1(Fasi: %2, Comp.: %3"},
        .source = {.table = Nftdis, .key = "PADRE", .order = "PADRE"},
        .article = {"PADRE", Article()},
        .sourceKey = {"PADRE", First(50)},
        .components = {.rows = {.table = Nfcodis, .on = {{"PADRE"}}, .order = "NINS", .naming = "PADRE, NINS, FIGLIO"},
                       .article = {"FIGLIO", Article()},
                       .quantity = "QTA",
                       .note = {"CODFOR", SupplierNote(Nfcodis, "FIGLIO")}},
        .further = {{}, {}, {CounterpartyNeed()}},
    };
}

} // namespace modImport_WinProgest
