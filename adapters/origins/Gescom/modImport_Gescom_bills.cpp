// Bills of Gescom: DISBAS holds a row for each component of a parent, arcfas the phases of each article.

#include "adapters/origins/Gescom/modImport_Gescom.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

Bills Distinte() {
    const QString disbas = QStringLiteral("DISBAS");
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteGescom",
                  .announcement = "Inizio importazione Distinte Base da Gescom",
                  .completion = "Distinte Base Gescom importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = disbas, .key = "PADISBAS", .order = "PADISBAS", .distinct = true},
        .article = {"PADISBAS", Article()},
        .components =
            {
                .rows = {.table = disbas,
                         .on = {{"PADISBAS"}},
                         .order = "RGDISBAS",
                         .naming = "PADISBAS, RGDISBAS, FIDISBAS"},
                .article = {"FIDISBAS", Article()},
                .quantity = "QTDISBAS",
                .note = "NTDISBAS",
                .position = "RGDISBAS",
                .phase = "FSDISBAS",
            },
        .phases =
            BillPhases{
                .rows = {.table = Arcfas,
                         .on = {{"ARARCFAS", "PADISBAS"}},
                         .order = "SQARCFAS",
                         .naming = "ARARCFAS, SQARCFAS, CODFASEL"},
                .key = "CODFASEL",
                .number = "SQARCFAS",
                .work = {"CODFASEL", Work(Arcfas, "CODFASEL")},
                .note = "NTARCFAS",
                .setUpTime = "TAARCFAS",
                .unitTime = "TUARCFAS",
            },
    };
}

} // namespace modImport_Gescom
