// Articles of Factory, and its bills: DISTINTE with the components in DISTCOMP and the phases in CICLI.

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/origins/Factory/modImport_Factory.h"
#include "adapters/sourceSettings.h"
#include "core/modMain.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Factory {

namespace {

const QString Section = QStringLiteral("IMPORT");

/// A measure of the piece, which not every installation keeps in its articles.
Rule Measure() {
    const Rule number = NotBlank(RoundedTo(6));
    return {number.text + QStringLiteral("; niente se l'impostazione ARARMisura non è 1"),
            [measure = number.apply](const RuleInput& input) {
                return modMain::IsAppConfigOn(input.session, Section, "ARARMisura", "1") ? measure(input) : RuleValue();
            }};
}

contract::Articles ArticlesOf() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliFactory"},
        .source = {.table = Articoli, .key = "CODART", .order = "CODART"},
        .code = {"CODART", Article()},
        .description = "DESCRIZIONE",
        .lines =
            {
                {"CDEXT", "CODART", First(50)},
                {"IDEST", "IDART", Text()},
                {"ARDE2", "DESCRIZIONE2", First(100)},
                {"ARUMS", "UM", ArticleUnit(schema::defaults::Unit)},
                {"ARUMP", "UMACQ", ArticleUnit("")},
                {"ARCOE", "COEFF", NotZero()},
                {"ARIVA", "CODIVA", VatCode(Articoli, "CODIVA")},
                {"ARCLA", "TIPO",
                 Choice({{"P", "PF"}, {"S", "SL"}, {"M", "CM"}, {"A", "CM"}, {"L", "LM"}, {"T", "TB"}}, "CM")},
                {"ARLAM", "TIPO", Is("L")},
                {"ARTUB", "TIPO", Is("T")},
                {"ARFAM", "FAMIGLIA", Translated(Articoli, "FAMIGLIA")},
                {"ARMAT", "MATERIALE", Translated(Articoli, "MATERIALE")},
                {"ARDMX", "LUNGH", Measure()},
                {"ARDMY", "LARGH", Measure()},
                {"ARDMZ", "SPESS", Measure()},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARCOS", "COSTO, COSTOULT", FirstNotZero()},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARRIC", "PREZZO, COSTO, COSTOULT", MarkUp()},
                {"ARSMN", "SCORTAMIN", RoundedTo(6)},
                {"ARLOR", "LOTTO", RoundedTo(6)},
                {"ARGGA", "LEADTIME", RoundedTo(0)},
                {"ARDIS", "DISEGNO", Text()},
                {"ARREV", "REV", Text()},
                {"ARNOT", "NOTE", Text()},
                {"ARANN", "OBSOLETO", Flag()},
            },
        .suppliers = {{.supplier = {"CODFOR", KnownSupplier()},
                       .ownCode = "CODARTFOR",
                       .price = {"COSTO, COSTOULT", FirstNotZero()},
                       .leadDays = "LEADTIME",
                       .lot = "LOTTO"}},
        .location = "UBICAZIONE",
        .condition = sourceSettings::ArticleCondition,
    };
}

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteFactory",
                  .announcement = "Inizio importazione Distinte Base da Factory",
                  .completion = "Distinte Base Factory importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = "DISTINTE", .key = "CODART", .order = "CODART, REV", .naming = "CODART, REV"},
        .article = {"CODART", Article()},
        .sourceKey = "IDDIST",
        .revision = {"REV", RevisionNumber()},
        .active = {"ATTIVA", Flag()},
        .note = "NOTE",
        .components =
            {
                .rows = {.table = "DISTCOMP", .on = {{"IDDIST"}}, .order = "POS", .naming = "IDDIST, POS, CODCOMP"},
                .article = {"CODCOMP", Article()},
                .quantity = "QTA",
                .note = "NOTE",
                .position = "POS",
                .phase = "SEQFASE",
                .lines =
                    {
                        {"DCDMX", "LUNGH", RoundedTo(6)},
                        {"DCDMY", "LARGH", RoundedTo(6)},
                    },
            },
        .phases =
            BillPhases{
                .rows = {.table = "CICLI", .on = {{"IDDIST"}}, .order = "SEQ", .naming = "IDDIST, SEQ"},
                .key = "SEQ",
                .number = "SEQ",
                .work = {"CODLAV", Work("Lavorazioni", "CODLAV")},
                .note = "NOTE",
                .setUpTime = "TATTR",
                .unitTime = "TUNIT",
                .cost = "COSTO",
                .supplier = {"CODFOR", KnownSupplier()},
                .machine = {"CODMAC", Text()},
            },
    };
}

} // namespace

Procedure ImportArticoliFactory() { return ProcedureOf(Button::Art, ArticlesOf()); }

Procedure ImportDistinteFactory() { return ProcedureOf(Button::Dis, Distinte()); }

} // namespace modImport_Factory
