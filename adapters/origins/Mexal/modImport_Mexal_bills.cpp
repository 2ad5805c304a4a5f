// Bills of Mexal: DIS_MAT holds a row for each component of a phase of a parent.

#include "adapters/origins/Mexal/modImport_Mexal.h"

using namespace contract;

namespace modImport_Mexal {

Bills Distinte() {
    const QString disMat = QStringLiteral("DIS_MAT");
    const ChildTable rows{
        .table = disMat, .on = {{"[_DBPAD]"}}, .order = "[_DBFAS], [_DBRIG]", .naming = "_DBPAD, _DBFAS, _DBRIG"};
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteMex",
                  .announcement = "Inizio importazione Distinte Base da Mexal",
                  .completion = "Distinte Base Mexal importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = disMat, .key = "[_DBPAD]", .order = "[_DBPAD]", .distinct = true},
        .article = {"_DBPAD", Article()},
        .components = {.rows = rows,
                       .article = {"_DBFIG", Article()},
                       .quantity = "_DBQTA",
                       .note = "_DBNOT",
                       .position = {"_DBRIG", rules::FirstNotZero()},
                       .phase = {"_DBFAS", rules::PhaseInTens()}},
        .phases = BillPhases{.rows = rows,
                             .key = {"_DBFAS", rules::PhaseInTens()},
                             .number = {"_DBFAS", rules::PhaseInTens()}},
    };
}

} // namespace modImport_Mexal
