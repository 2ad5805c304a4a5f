// Factory: an Access file, or, as "Factory (SqlServer)", a SQL Server database; FACTORY unless the setting Databasename
// names another. Quality checks, balances, attachments and price lists stand here, articles and bills in
// modImport_Factory_articles.cpp, open jobs, which a workbook may hold instead, in modImport_Factory_jobs.cpp.
// Counterparties must be in Quadrix. Nothing of the layout is published: every table and column is this system's own
// reading, fitted to an installation by "Tracciati/Factory.ini" and "Tracciati/Factory (SqlServer).ini".
// Known gaps: jobs that are closed; notes of bills in a file of their own (SourcePathFileDBCNote).

#include "adapters/origins/Factory/modImport_Factory.h"

#include "adapters/contract/kinds/Attachments.h"
#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/kinds/Stock.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Factory {

const contract::Origin& Entry();
const contract::Origin& EntryOfSqlServer();

namespace {

// --- Quality checks -----------------------------------------------------------------------------------------------

Procedure ImportControlliFactory() {
    const BaseTable characteristics{
        .frame = {.module = Module,
                  .procedure = "ImportControlliFactory",
                  .announcement = "Inizio importazione Controlli",
                  .step = "Caratteristiche",
                  .completion = "Controlli importati correttamente!",
                  .confirmation = "Importare i Controlli?"},
        .source = {.table = "CARATTERISTICHE", .key = "CODICE", .order = "CODICE"},
        .target = "ANA_CHR",
        .code = "CODICE",
        .lines =
            {
                {"CHDES", "DESCRIZIONE", Text()},
                {"CHUMS", "UM", ArticleUnit("")},
                {"CHTIP", "TIPO", Text()},
            },
        .empties = Truncated({"ANA_CHR"}),
    };
    const BaseTable checks{
        .frame = {.step = "Controlli"},
        .source = {.table = "CONTROLLI",
                   .key = "CODART",
                   .order = "CODART, FASE, PROGR",
                   .naming = "CODART, FASE, PROGR"},
        .target = "CHK_LST",
        .lines =
            {
                {"CDART", "CODART", Article()},
                {"CKSEQ", "PROGR", RoundedTo(0)},
                {"CKFAS", "FASE", Text()},
                {"CDCHR", "CODCAR", Text()},
                {"CKVAL", "VALNOM", Text()},
                {"CKMIN", "TOLMIN", RoundedTo(6)},
                {"CKMAX", "TOLMAX", RoundedTo(6)},
                {"CKNOT", "NOTE", Text()},
            },
        .empties = Truncated({"CHK_LST"}),
        .keys = {"CDART", "CKFAS", "CKSEQ"},
    };
    return ProcedureOf(Button::Cli, FrameOf(characteristics), {PartOf(characteristics), PartOf(checks)});
}

// --- Balances -----------------------------------------------------------------------------------------------------

Balances Saldi() {
    const QString table = QStringLiteral("GIACENZE");
    return {
        .frame = {.module = Module, .procedure = "ImportSaldiFactory"},
        .source = {.table = table, .key = "CODART", .order = "CODMAG, CODART", .naming = "CODMAG, CODART"},
        .warehouse = "CODMAG",
        .article = {"CODART", Article()},
        .quantity = "QTA",
        .location = "UBICAZIONE",
    };
}

// --- Attachments --------------------------------------------------------------------------------------------------

Attachments Allegati() {
    return {
        .frame = {.module = Module, .procedure = "ImportAllegatiFactory"},
        .source = {.table = "ALLEGATI", .key = "CODART", .order = "CODART, PROGR", .naming = "CODART, PROGR"},
        .records = {{.table = "ART_ICO", .keyColumn = "CDART", .key = {"CODART", Article()}, .flag = "ARATT"}},
        .path = "PERCORSO",
        .name = "NOMEFILE",
        .description = "DESCRIZIONE",
        .revision = "REV",
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

/// A list of the rows that LISTINI does not have is called by its code.
PriceLists Listini() {
    return {
        .frame = {.module = Module, .procedure = "ImportListiniFactory", .confirmation = "Importare i Listini?"},
        .source = {.table = "LISTRIGHE",
                   .key = "CODLIS",
                   .order = "CODLIS, CODART, DATAINI, QTADA",
                   .naming = "CODLIS, CODART, QTADA",
                   .joins = {{.table = "LISTINI", .on = {{"CODLIS"}}, .columns = {"DESCR", "TIPO"}}}},
        .article = {"CODART", Article()},
        .prices = {{
            .list = "CODLIS",
            .direction = {"TIPO", UpperOr(1, schema::defaults::SalesList)},
            .description = {"DESCR, CODLIS", FirstNotBlank(Text())},
            .from = "DATAINI",
            .to = "DATAFIN",
            .scales = {{.quantityFrom = "QTADA", .price = "PREZZO", .discounts = {"SC1", "SC2", "SC3"}}},
        }},
    };
}

} // namespace

// --- Entries ------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Factory",
        Module,
        {.kind = "Access", .prepare = sourceSettings::ChosenAccessFile("FACTORY"), .names = Naming::OurReading},
        Buttons("YYYYYYY-", {{Button::Cli, "Importa Controlli"},
                             {Button::Doc, "Importa Commesse aperte"},
                             {Button::Acq, "Importa Commesse aperte XLS"},
                             {Button::Piano, "Importa Allegati"}}),
        Shown::Keep,
        {
            ImportControlliFactory(),
            ImportArticoliFactory(),
            ImportDistinteFactory(),
            ImportCommesseAperteFactory(),
            ImportCommesseAperteFactory_daFileExcel(),
            ProcedureOf(Button::Saldi, Saldi()),
            ProcedureOf(Button::Piano, Allegati()),
            ProcedureOf(Button::Disegni, Listini()),
        },
    };
    return origin;
}

namespace {

/// The list hides bills and open jobs there: they are reached by their names.
std::vector<Procedure> ProceduresOfSqlServer() {
    std::vector<Procedure> procedures = Entry().procedures;
    for (Procedure& procedure : procedures) {
        const Button button = *procedure.button;
        if (button == Button::Dis || button == Button::Doc || button == Button::Acq) {
            procedure.button.reset();
        }
    }
    return procedures;
}

} // namespace

const Origin& EntryOfSqlServer() {
    static const Origin origin{
        "Factory (SqlServer)",
        Module,
        {.kind = "SQL Server", .prepare = sourceSettings::Server("FACTORY"), .names = Naming::OurReading},
        Buttons("YYNNNYYY", {{Button::Doc, "Importa Commesse aperte"},
                             {Button::Acq, "Importa Commesse aperte XLS"},
                             {Button::Piano, "Importa Allegati"}}),
        Shown::Keep,
        ProceduresOfSqlServer(),
    };
    return origin;
}

} // namespace modImport_Factory
