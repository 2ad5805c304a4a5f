// Bills of Mago.net: MA_BillOfMaterials holds the heads, MA_BillOfMaterialsComp the components,
// MA_BillOfMaterialsRouting the phases. Drawings and notes among the components, alternative phases, scrap and
// quantities that are fixed for a lot have no place in a bill of Quadrix; the texts of operations and work centres are
// those of Quadrix.

#include "adapters/origins/Mago/modImport_Mago.h"

#include "adapters/contract/kinds/childRules.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Mago {

namespace {

const QString Heads = QStringLiteral("MA_BillOfMaterials");
const QString Components = QStringLiteral("MA_BillOfMaterialsComp");
const QString Routing = QStringLiteral("MA_BillOfMaterialsRouting");

/// Times of the source are seconds.
Rule Minutes() { return Times(1.0 / 60); }

/// Description and notes, and the unit that the bill makes one of.
Rule BillNote() {
    return {"testi, e dietro \"UM: \" l'ultimo, ognuno su una riga", [](const RuleInput& input) {
                QStringList lines;
                for (const QString& column : input.columns) {
                    const QString text = input.row.Text(column);
                    lines.append(column == input.columns.last() && !text.isEmpty() ? QString("UM: " + text) : text);
                }
                lines.removeAll(QString());
                return RuleValue(lines.join(u'\n'));
            }};
}

/// Who does the operation: the supplier of the phase, else that of a work centre outside.
Rule Supplier() {
    return Or(KnownSupplier(),
              OfFirst(Routing, {.table = "MA_WorkCenters", .on = {{"WC"}}, .where = "Outsourced = '1'"}, "Supplier",
                      KnownSupplier()));
}

/// A quantity in another unit than that of its article is told: the source says it so, Quadrix counts in its own.
void TellOtherUnit(ImportRun& run, const SourceRow& row, Component& component) {
    const ChildTable items{.table = Items, .on = {{"Item", "Component"}}};
    items.First(run.GetSession(), row, [&](const SourceRow& item) {
        const QString unit = row.Text("UoM");
        const QString base = item.Text("BaseUoM");
        if (!unit.isEmpty() && unit.compare(base, Qt::CaseInsensitive) != 0) {
            run.Log(QStringLiteral("UNITÀ DIVERSA: %1: '%2' è in '%3', l'articolo in '%4'; la quantità resta %5")
                        .arg(run.RowKey(), component.article, unit, base, QString::number(component.quantity)));
        }
    });
}

} // namespace

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteMago",
                  .announcement = "Inizio importazione Distinte Base da Mago",
                  .completion = "Distinte Base Mago importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Heads, .key = "BOM", .order = "BOM"},
        .article = {"BOM", Item()},
        .note = {"Description, Notes, UoM", BillNote()},
        .lines =
            {
                {"DBANN", "Disabled", Flag()},
                {"DBACT", "InProduction", Flag()},
                {"DTINS", "CreationDate", DayThere(NoDay)},
            },
        .components =
            {
                .rows = {.table = Components,
                         .on = {{"BOM"}},
                         .order = "Line",
                         .where = "ComponentType = 7798784",
                         .naming = "BOM, Line"},
                .article = {"Component", Item()},
                .quantity = {"Qty, PercQty", FirstNotZero()},
                .note = "Notes",
                .position = "Line",
                .phase = "DNRtgStep",
                .until = {"ValidityEndingDate", Day(NoDay)},
            },
        .phases =
            BillPhases{
                .rows = {.table = Routing,
                         .on = {{"BOM"}},
                         .order = "RtgStep",
                         .where = "(Alternate IS NULL OR Alternate = '')",
                         .naming = "BOM, RtgStep"},
                .key = "RtgStep",
                .number = "RtgStep",
                .work = {"Operation", Or(Translated("MA_Operations", "Operation"), schema::defaults::GenericWork)},
                .note = "Notes",
                .setUpTime = {"SetupTime", Minutes()},
                .unitTime = {"ProcessingTime", Minutes()},
                .cost = {"Operation", OfFirst(Routing, {.table = "MA_Operations", .on = {{"Operation"}}}, "HourlyCost",
                                              RoundedTo(6))},
                .supplier = {"Supplier", Supplier()},
                .machine = {"WC", Translated("MA_WorkCenters", "WC")},
                .lines = {{"DLNUP", "NoOfProcessingWorkers", NotZero()}},
                .sendsComponents = true,
            },
        .component = TellOtherUnit,
        .further = {{}, {{Components, {}, {"UoM"}}, {Items, {"Item"}, {"BaseUoM"}}}, {}},
    };
}

} // namespace modImport_Mago
