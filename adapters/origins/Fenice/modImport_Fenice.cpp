// Fenice: a database over ODBC, data source FENICE unless the setting DSN names another. Bills of materials, whose
// articles must be in Quadrix, with phases and components. The whole layout, tables and columns, is this system's own
// in the product's style, all releases alike, and is fitted to an installation by the layout file
// "Tracciati/Fenice.ini". Left out: the unit of a component (DISTRIGHE.UNIMIS), for a bill counts in that of the
// article. Times are minutes. The window shows no button of its own for this origin: the import stands behind the one
// for bills where it is visible.

#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/map/supplierNote.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Fenice {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Fenice");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Distinta = QStringLiteral("DISTINTA");
const QString Fasi = QStringLiteral("DISTFASI");
const QString Righe = QStringLiteral("DISTRIGHE");

/// A bill has its phases and components by these.
const std::vector<Tie> OfBill{{"IDDIST"}};

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode(Distinta, "CODART"); }

std::pair<qint64, QString> PlaceOf(const SourceRow& row) { return PlaceOfRevision(row.Text("REVIS")); }

/// Of the revisions of an article the highest that is active is the one in force.
Rule IsInForce() {
    const ChildTable revisions{.table = Distinta, .on = {{"CODART"}}, .order = "REVIS", .naming = "IDDIST"};
    return {"vero per la revisione più alta dell'articolo fra quelle con FLGATT",
            [revisions, isSet = Flag().apply](const RuleInput& input) {
                const auto isActive = [&](const SourceRow& row) {
                    return isSet({input.session, row, {"FLGATT"}, input.facts})->toBool();
                };
                bool inForce = isActive(input.row);
                revisions.ForEach(input.session, input.row, [&](const SourceRow& other) {
                    inForce = inForce && !(isActive(other) && PlaceOf(other) > PlaceOf(input.row));
                });
                return RuleValue(inForce);
            },
            Side::Both, revisions.OwnNeeds(Distinta).reads};
}

// --- Declaration --------------------------------------------------------------------------------------------------

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteFenice",
                  .announcement = "Inizio importazione Distinte Base da Fenice",
                  .completion = "Distinte Base Fenice importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Distinta, .key = "CODART", .order = "CODART, REVIS", .naming = "CODART, REVIS"},
        .article = {"CODART", Article()},
        .sourceKey = "IDDIST",
        .revision = {"REVIS", RevisionNumber()},
        .active = {"FLGATT", IsInForce()},
        .oneInForce = true,
        .note = "NOTE",
        .lines = {{"DBACT", "FLGATT", Flag()}, {"DTINS", "DATCRE", NotBlank(MomentOrNow())}},
        .components = {.rows = {.table = Righe, .on = OfBill, .order = "NUMRIG", .naming = "IDDIST, NUMRIG"},
                       .article = {"CODCOM", Article()},
                       .quantity = "QTAUTI",
                       .note = {"CODFOR, NOTE", SupplierNote(Righe, "IDDIST, NUMRIG")},
                       .position = "NUMRIG",
                       .phase = "NUMFAS",
                       .lines = {{"DCDMX", "LUNGHE", RoundedTo(6)},
                                 {"DCDMY", "LARGHE", RoundedTo(6)},
                                 {"DCCOE", "PERSFR", WasteFactor()}}},
        .phases =
            BillPhases{
                .rows = {.table = Fasi, .on = OfBill, .order = "NUMFAS", .naming = "IDDIST, NUMFAS"},
                .key = "NUMFAS",
                .number = "NUMFAS",
                .work = {"CODLAV", Or(Translated(Fasi, "CODLAV"), schema::defaults::GenericWork)},
                .note = "NOTE",
                .setUpTime = "TEMATT",
                .unitTime = "TEMLAV",
                .cost = "COSORA",
                .supplier = {"CODFOR", KnownSupplier()},
                .machine = {"CODMAC", Translated(Fasi, "CODMAC")},
                .sendsComponents = true,
                .isOutside = {"CODFOR", Or(NotBlank(Constant(true)), false)},
            },
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Fenice",
        Module,
        {.kind = "ODBC", .prepare = sourceSettings::DataSource("FENICE"), .names = Naming::OurReading},
        Buttons("NN------"),
        Shown::Keep,
        {
            ProcedureOf(Button::Dis, Distinte()),
        },
    };
    return origin;
}

} // namespace modImport_Fenice
