// Punta: a SQL Server database, PUNTA unless the setting Databasename names another: articles, and bills by revision
// with the phases that CICLI has for the article. The contact persons come from a workbook
// (modImport_Punta_contacts.cpp); counterparties must be in Quadrix. Customer-specific, nothing of it is published:
// every table and column is this system's own reading, fitted to an installation by "Tracciati/Punta.ini". Known gaps:
// counterparties themselves, stock, documents.

#include "adapters/origins/Punta/modImport_Punta.h"

#include "adapters/contract/kinds/Articles.h"
#include "adapters/contract/kinds/Bills.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Punta {

const contract::Origin& Entry();

namespace {

const QString ArticoliTable = QStringLiteral("ARTICOLI");
const QString DistinteTable = QStringLiteral("DISTINTE");
const QString Cicli = QStringLiteral("CICLI");

Rule Article() { return ArticleCode(ArticoliTable, "COD_ART"); }

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliPunta"},
        .source = {.table = ArticoliTable, .key = "COD_ART", .order = "COD_ART"},
        .code = {"COD_ART", Article()},
        .description = "DES_ART",
        .lines =
            {
                {"CDEXT", "COD_ART", First(50)},
                {"IDEST", "ID_ART", Text()},
                {"ARDE2", "DES_ART2", First(100)},
                {"ARUMS", "UM", Unit(ArticoliTable, "UM", schema::defaults::Unit)},
                {"ARUM2", "UM_ALT", Unit(ArticoliTable, "UM_ALT", "")},
                {"ARCOE", "FATT_CONV", NotZero()},
                {"ARIVA", "COD_IVA", VatCode(ArticoliTable, "COD_IVA")},
                {"ARCLA", "TIPO_ART", Choice({{"PF", "PF"}, {"SL", "SL"}, {"MP", "CM"}}, "CM")},
                {"ARFAM", "COD_FAM", TranslatedOrKnown(ArticoliTable, "COD_FAM", "FAM_PRO")},
                {"ARMAT", "MATERIALE", TranslatedOrKnown(ArticoliTable, "MATERIALE", "TAB_MAT")},
                {"ARCOS", "COSTO_STD, COSTO_ULT", FirstNotZero()},
                {"ARPRZ", "PREZZO", RoundedTo(6)},
                {"ARRIC", "PREZZO, COSTO_STD, COSTO_ULT", MarkUp()},
                {"ARPSN", "PESO", RoundedTo(3)},
                {"ARDMX", "DIM_X", RoundedTo(6)},
                {"ARDMY", "DIM_Y", RoundedTo(6)},
                {"ARDMZ", "DIM_Z", RoundedTo(6)},
                {"ARSMN", "SCORTA_MIN", RoundedTo(6)},
                {"ARLOR", "LOTTO", RoundedTo(6)},
                {"ARGGA", "GG_CONS", RoundedTo(0)},
                {"ARDIS", "DISEGNO", Text()},
                {"ARREV", "REV", Text()},
                {"ARANN", "OBSOLETO", Flag()},
                {"ARNOT", "NOTE", Text()},
            },
        .suppliers = {{.supplier = {"COD_FORN", KnownSupplier()},
                       .ownCode = "COD_ART_FORN",
                       .price = {"COSTO_STD, COSTO_ULT", FirstNotZero()},
                       .leadDays = "GG_CONS",
                       .lot = "LOTTO"}},
        .location = "COD_UBIC",
    };
}

Bills Distinte() {
    return {
        .frame = {.module = Module, .procedure = "ImportDistintePunta"},
        .source = {.table = DistinteTable,
                   .key = "COD_PADRE",
                   .order = "COD_PADRE, REV",
                   .naming = "COD_PADRE, REV",
                   .distinct = true,
                   .apart = "REV"},
        .article = {"COD_PADRE", Article()},
        .revision = {"REV", RevisionNumber()},
        .active = {"REV",
                   IsNewestRevision(
                       {.table = DistinteTable, .on = {{"COD_PADRE"}}, .order = "REV", .naming = "COD_PADRE, REV"},
                       "REV")},
        .oneInForce = true,
        .components = {.rows = {.table = DistinteTable,
                                .on = {{"COD_PADRE"}, {.column = "REV", .tiesNulls = true}},
                                .order = "RIGA",
                                .naming = "COD_PADRE, REV, RIGA"},
                       .article = {"COD_FIGLIO", Article()},
                       .quantity = "QTA",
                       .note = "NOTE",
                       .position = "RIGA",
                       .phase = "FASE"},
        .phases =
            BillPhases{
                .rows = {.table = Cicli, .on = {{"COD_ART", "COD_PADRE"}}, .order = "FASE", .naming = "COD_ART, FASE"},
                .key = "FASE",
                .number = "FASE",
                .work = {"COD_LAV", Work("Lavorazioni", "COD_LAV")},
                .setUpTime = "T_SETUP",
                .unitTime = "T_CICLO",
                .supplier = {"COD_FORN", KnownSupplier()}},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Punta",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("PUNTA"), .names = Naming::OurReading},
        Buttons("YYYNN---"),
        Shown::Keep,
        {
            ImportRiferimentiPuntaExcel(),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
        },
    };
    return origin;
}

} // namespace modImport_Punta
