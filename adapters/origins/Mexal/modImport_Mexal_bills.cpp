// Bills of Mexal: DIS_MAT holds a row for each component of a phase of a parent.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Mexal {

namespace {

/// Phases are numbered 1, 2, 3 and stand at 10, 20, 30; a component without one belongs to the first.
Rule PhaseNumber() {
    return {"dieci volte il numero, almeno 10", [](const RuleInput& input) {
                const int number = WholeNumberOf(input.row, input.columns.first());
                return RuleValue(std::max(1, number) * schema::defaults::FirstPhase);
            }};
}

} // namespace

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
                       .phase = {"_DBFAS", PhaseNumber()}},
        .phases = BillPhases{.rows = rows, .key = {"_DBFAS", PhaseNumber()}, .number = {"_DBFAS", PhaseNumber()}},
    };
}

} // namespace modImport_Mexal
