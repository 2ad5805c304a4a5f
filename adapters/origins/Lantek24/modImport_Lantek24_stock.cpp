// Stock of Lantek 24: WWHH_IIVV holds the sheets in the warehouses, the products themselves the remnants.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/kinds/Stock.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Attachment.h"
#include "adapters/contract/write/missingCodes.h"
#include "adapters/contract/write/SheetFormat.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Inventory = QStringLiteral("WWHH_IIVV_00000100");

// --- Stock --------------------------------------------------------------------------------------------------------

/// Minimum stock and minimum order stand with each warehouse that may hold the product, also with an empty one: the
/// article needs the stock of all of them together, and orders the greatest of their orders at the least.
void UpdateArticle(ImportRun& run, const SourceRow& row, const QString& article) {
    const ChildTable warehouses{.table = Inventory, .on = {{"PrdRef"}}, .order = "WrhRef", .naming = "WrhRef, PrdRef"};
    if (FillsCodes(run) || !IsThere(run.GetSession(), "ART_ICO", "CDART", article)) {
        return;
    }
    double minimum = 0;
    double order = 0;
    warehouses.ForEach(run.GetSession(), row, [&](const SourceRow& one) {
        minimum += NumberOf(one, "MinStock");
        order = std::max(order, NumberOf(one, "MinOrder"));
    });
    TargetRow target(run, "ART_ICO");
    target.Set("ARSMN", RoundedTo(minimum, 6));
    target.Set("ARQMR", order);
    target.Update("WHERE " + Equals(run.GetSession(), "CDART", article));
}

RowOutcome ImportSaldo(ImportRun& run, StockWriter& writer, const SourceRow& row) {
    const QString product = row.Text("PrdRef");
    const KnownFormat format = FindFormat(run, product, [&] { return ArticleOf(run, product); });
    const QString warehouse = TranslatedCode(run.GetSession(), "WWHH_IIVV", "WrhRef", row.Text("WrhRef"), "MAG_AZZ");
    StockLine line;
    line.warehouse = warehouse.isEmpty() ? schema::defaults::Warehouse : warehouse;
    line.article = format.article.isEmpty() ? ArticleOf(run, product) : format.article;
    line.quantity = NumberOf(row, "StockQ");
    line.location = row.Text("LocDefault");
    line.sheet = true;
    line.format = format.code;
    line.length = NumberOf(row, "DIS_Length");
    line.width = NumberOf(row, "DIS_Width");
    const RowOutcome outcome = writer.Balance(line);
    UpdateArticle(run, row, line.article);
    return outcome;
}

// --- Remnants -----------------------------------------------------------------------------------------------------

/// The code of a remnant, without the prefix that its product has in the CAM.
QString OffcutOf(const QString& product) {
    static const QString prefix = QStringLiteral("RIT-");
    return product.startsWith(prefix, Qt::CaseInsensitive) ? product.mid(prefix.size()) : product;
}

RowOutcome ImportRitaglio(ImportRun& run, StockWriter& stock, const SourceRow& row) {
    const QString product = row.Text("PrdRef");
    const QString article = cam::SheetOfRemnant(run, row);
    if (article.isEmpty()) {
        run.Log(QStringLiteral("LAMIERA NON TROVATA: %1: '%2'").arg(run.RowKey(), row.Text("DIS_ShtRefOrg")));
        return run.Skip(SheetMissing);
    }
    SheetFormat format;
    format.article = article;
    format.code = product;
    format.length = NumberOf(row, "DIS_Length");
    format.width = NumberOf(row, "DIS_Width");
    format.weight = NumberOf(row, "Weight");
    format.offcut = OffcutOf(product);
    format.external = product;
    qint64 id = 0;
    const RowOutcome outcome = WriteSheetFormat(run, format, &id);
    TellFormerOffcuts(run, format);
    qdxAggiornaImmagineRitagli(run, id, product);
    StockLine line;
    line.warehouse = schema::defaults::Warehouse;
    line.article = article;
    line.quantity = NumberOf(row, "DIS_CamQuan");
    line.price = NumberOf(row, "DIS_ScrpPrice");
    line.sheet = true;
    line.format = format.code;
    line.offcut = format.offcut;
    line.length = format.length;
    line.width = format.width;
    stock.Balance(line);
    return outcome;
}

std::vector<TableNeed> SheetStockNeeds() {
    std::vector<TableNeed> needs = StockNeeds();
    needs.push_back({"MOV_MAG", {"MMLAM"}});
    needs.push_back({"MOV_MAR", {"MRUBI", "MRFMT", "MRSFR", "MRLMX", "MRLMY"}});
    return needs;
}

} // namespace

Procedure InventarioProcedure() {
    Needs needs{{}, {{Inventory, {"LocDefault", "MinStock", "MinOrder"}}}, SheetStockNeeds()};
    needs.codes.push_back({.list = "WWHH_IIVV", .field = "WrhRef", .table = "MOV_MAR", .column = "MRMAG"});
    needs.writes.push_back({"ART_ICO", {"CDART", "ARSMN", "ARQMR"}});
    return ProcedureOf(
        Button::Saldi,
        {.module = Module,
         .procedure = "ImportInventarioLantek24",
         .announcement = "Inizio importazione saldi di magazzino",
         .log = LogStart::Behind,
         .completion = "Saldi di magazzino importati correttamente!"},
        {{.step = "Saldi di magazzino",
          .source = {.table = Inventory,
                     .key = "PrdRef",
                     .order = "WrhRef, PrdRef",
                     .where = "J1.DIS_PClass = " + SheetClass +
                              " AND (J1.DIS_IsRemnant = 0 OR J1.DIS_IsRemnant IS NULL) AND T.StockQ <> 0",
                     .naming = "WrhRef, PrdRef",
                     .joins = {{.table = Products,
                                .on = {{"PrdRef"}},
                                .columns = {"DIS_Length", "DIS_Width"},
                                .isOptional = false}}},
          .needs = needs,
          .empties = StockEmptying(),
          .make = ImportingStock(ImportSaldo, {.warehouse = {}, .article = {}, .sheet = true})}});
}

/// A reset deletes the remnants that an import wrote, with their stock.
Procedure RitagliProcedure() {
    const TableNeed reads{
        Products,
        {"DIS_ShtRefOrg", "DIS_MatRef", "DIS_Thickness", "DIS_Length", "DIS_Width", "Weight", "DIS_ScrpPrice"}};
    return ProcedureOf(
        Button::Disegni,
        {.module = Module,
         .procedure = "ImportRitagliLantek24",
         .announcement = "Inizio importazione ritagli",
         .completion = "Ritagli importati correttamente!"},
        {{.step = "Ritagli",
          .source = {.table = Products,
                     .key = "PrdRef",
                     .order = "PrdRef",
                     .where = "DIS_PClass = '51' AND\r      DIS_IsRemnant = 1 AND\r      DIS_CamQuan > 0"},
          .needs = {{}, {reads}, SheetFormatNeeds() + SheetStockNeeds() + ImageNeeds()},
          .empties = DeletedImports("ART_FMT", "LMSFR > ''") + DeletedImports("MOV_MAR", "MRSFR > ''"),
          .make =
              ImportingStock(ImportRitaglio, {.warehouse = {}, .article = {}, .sheet = true, .offcut = "ritaglio"})}});
}

} // namespace modImport_Lantek24
