// Open jobs of Factory, which become orders of customers: COMMESSE with COMMRIGHE, or the first sheet of a workbook,
// whose columns from A to O and first row, 2, are this system's own layout; it ends at the first row without a number.
// A job of the workbook is the one of the database that has its number and year.

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/run/Origin.h"
#include "adapters/origins/Factory/modImport_Factory.h"
#include "adapters/sourceSettings.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Factory {

namespace {

const DocumentKind Job{.cause = "ORDCL", .type = "ORD", .family = Sales};

Documents Commesse() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportCommesseAperteFactory",
                  .announcement = "Inizio importazione Commesse aperte da Factory",
                  .step = "Commesse aperte",
                  .completion = "Commesse aperte Factory importate correttamente: %1",
                  .confirmation = "Importare le Commesse aperte?"},
        .source = {.table = "COMMESSE",
                   .key = "NUMERO",
                   .order = "ANNO, NUMERO",
                   .where = "STATO IN ('A','P')",
                   .naming = "ANNO, NUMERO"},
        .rows = {.table = "COMMRIGHE", .on = {{"IDCOMM"}}, .order = "RIGA"},
        .reading = Reading::HeadThenRows,
        .kinds = {Job},
        .head =
            {
                .number = "NUMERO",
                .day = "DATA",
                .year = "ANNO",
                .counterparty = {"CODCLI", CustomerOf()},
                .lines =
                    {
                        {"DTRIC", "RIFCLI", Text()},
                        {"DTRID", "DATARIF", Day()},
                        {"DTCOR", "CONSEGNA", Day()},
                        {"DTNOT", "NOTE", Text()},
                    },
            },
        .row =
            {
                .number = "RIGA",
                .article = {"CODART", Article()},
                .description = "DESCRIZIONE",
                .unit = {"UM", ArticleUnit("")},
                .quantity = "QTA",
                .delivered = "QTAEVASA",
                .price = "PREZZO",
                .discounts = {"SCONTO"},
                .vatCode = {"CODIVA", NotBlank(VatCode(Articoli, "CODIVA"))},
                .lines = {{"DRCOR", "CONSEGNA", Day()}},
            },
        .others = "dal file Excel",
    };
}

// --- The workbook -------------------------------------------------------------------------------------------------

const QString Sheet = QStringLiteral("COMMESSE_XLS");
const QString RowNumber = sources::RowNumberColumn;
constexpr int FirstRow = 2;
constexpr int Columns = 15;

Documents CommesseDiExcel() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportCommesseAperteFactory_daFileExcel",
                  .announcement = "Inizio importazione Commesse aperte da file Excel",
                  .step = "Commesse aperte",
                  .completion = "Commesse aperte importate correttamente dal file Excel: %1",
                  .confirmation = "Importare le Commesse aperte da un file Excel?"},
        .source = {.table = Sheet, .key = "A", .order = "B, A, F", .naming = RowNumber, .group = {"B", "A"}},
        .reading = Reading::OneTable,
        .kinds = {Job},
        .head =
            {
                .number = "A",
                .day = "C",
                .year = "B",
                .counterparty = {"D", CustomerOf()},
                .lines =
                    {
                        {"DTRIC", "E", Text()},
                        {"DTNOT", "O", Text()},
                    },
            },
        .row =
            {
                .number = "F",
                .article = {"G", Article()},
                .description = "H",
                .unit = {"I", ArticleUnit("")},
                .quantity = "J",
                .delivered = "K",
                .price = "L",
                .discounts = {"M"},
                .lines = {{"DRCOR", "N", Day()}},
            },
        .sinceCondition = EveryRow,
        .others = "dalla base di dati",
    };
}

} // namespace

Procedure ImportCommesseAperteFactory() { return ProcedureOf(Button::Doc, Commesse()); }

Procedure ImportCommesseAperteFactory_daFileExcel() {
    return OverSourceOf(EntryOfWorkbook(), ProcedureOf(Button::Acq, CommesseDiExcel()));
}

const Origin& EntryOfWorkbook() {
    static const Origin origin{
        "Factory (Excel)",
        Module,
        {"Excel", sourceSettings::OpenFileExcel(
                      {{.table = Sheet, .headerRow = 0, .firstRow = FirstRow, .columns = Columns, .end = {"A"}}})},
        Buttons("--------"),
        Shown::Keep,
        {ProcedureOf(std::nullopt, CommesseDiExcel())},
    };
    return origin;
}

} // namespace modImport_Factory
