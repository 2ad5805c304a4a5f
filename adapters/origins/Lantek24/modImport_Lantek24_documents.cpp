// Purchase documents of Lantek 24: SSHH_PPOO holds heads and rows of the orders to suppliers. The production orders
// follow them.

#include "adapters/origins/Lantek24/modImport_Lantek24.h"

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/run/tiedRows.h"
#include "adapters/contract/write/Article.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

#include <cmath>

using namespace contract;
using namespace contract::rules;

namespace modImport_Lantek24 {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Orders = QStringLiteral("SSHH_PPOO_00000100");
const QString OrderRows = QStringLiteral("SSHH_PPOO_00000200");
/// How SYS_IMP names the codes of orders.
const QString OrderCodes = QStringLiteral("SSHH_PPOO");
/// Delivery state of a row that has been received.
const QString Received = QStringLiteral("20");

// --- Mappings -----------------------------------------------------------------------------------------------------

Rule Supplier() {
    return {"CDCON della riga di CON_TRO di cui è COFGE", [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                return FoundParty(LookUp(input.session, "CON_TRO", "COFGE", code, "CDCON"), code, RoleText(false));
            }};
}

/// An order is closed when it has rows, and every one of them has been received.
Rule StateOfOrder() {
    return {"chiuso quando ha righe e ogni riga è ricevuta",
            [](const RuleInput& input) -> RuleValue {
                ovConnection& source = input.session.SourceConnection();
                const QString rows =
                    "SELECT COUNT(*) FROM " + OrderRows + "\rWHERE OrdRef = " + LiteralOf(source, input.Value());
                const qint64 open =
                    source.ExecuteCommand(rows + " AND (DlvStatus IS NULL OR DlvStatus <> " + Received + ')');
                return open > 0 || source.ExecuteCommand(rows) == 0 ? schema::defaults::ToDeliver
                                                                    : schema::defaults::Closed;
            },
            Side::Both,
            {{OrderRows, {"OrdRef", "DlvStatus"}}}};
}

Rule StateOfRow() {
    return {"evasa se ricevuta, in parte se RcvdQuantity non è zero", [](const RuleInput& input) -> RuleValue {
                using namespace schema::defaults;
                if (input.row.Text("DlvStatus") == Received) {
                    return Delivered;
                }
                return NumberOf(input.row, "RcvdQuantity") > 0 ? PartlyDelivered : ToDeliver;
            }};
}

/// A row without a product is a text, and has no VAT.
Rule VatOfProduct() { return WhenNotBlank("PrdRef", NotBlank(VatCode(OrderCodes, "TaxRef"))); }

// --- Hooks --------------------------------------------------------------------------------------------------------

/// The measures of a sheet stand with its product.
void SetSheet(ImportRun& run, const SourceRow& row, TargetRow& target) {
    ovConnection& source = run.GetSession().SourceConnection();
    const Recordset found = source.ExecuteWC("SELECT * FROM " + Products + "\rWHERE " + TiedTo(source, "PrdRef", row) +
                                             " AND DIS_PClass = " + SheetClass);
    if (!found.Eof()) {
        const SourceRow product(found);
        target.Set("DRLAM", true);
        target.Set("DRLMX", NumberOf(product, "DIS_Length"));
        target.Set("DRLMY", NumberOf(product, "DIS_Width"));
    }
}

/// The supplier's own code of an article.
void KeepSupplierCode(ImportRun& run, const SourceRow& row, const WrittenRow& written) {
    const QString& article = written.values.article;
    if (!row.IsBlank("SPrdRef") && IsThere(run.GetSession(), "ART_ICO", "CDART", article)) {
        ArticleWriter(run).CodeAtCounterparty(article, row.Text("SPrdRef"), written.head.counterparty);
    }
}

/// The total of the source is there to be compared with.
void CheckTotal(ImportRun& run, const SourceRow& head, const WrittenDocument& document) {
    const Recordset found = run.GetSession().Quadrix.ExecuteWC(
        "SELECT DTTOT FROM " + run.FullName(document.family.head) + " WHERE " + Equals("RECORD_ID", document.id));
    const double here = found.Eof() ? 0 : NumberOf(SourceRow(found), "DTTOT");
    const double there = NumberOf(head, "TotalA");
    constexpr double cent = 0.01;
    if (there != 0 && std::abs(here - there) > cent) {
        run.Log(QStringLiteral("TOTALE DIVERSO: %1: qui %2, nell'origine %3")
                    .arg(run.RowKey(), QString::number(here, 'f', 2), QString::number(there, 'f', 2)));
    }
}

HeadHooks HooksOf(ImportRun& run) {
    return {
        // The digits alone do not tell orders apart.
        .complete = [&run](const SourceRow& head,
                           const DocumentHead&) { return Equals(run.GetSession(), "DTRIC", head.Text("OrdRef")); },
        .rowWritten = [&run](const SourceRow& row, const WrittenRow& written) { KeepSupplierCode(run, row, written); },
        .documentWritten = [&run](const SourceRow& head,
                                  const WrittenDocument& document) { CheckTotal(run, head, document); },
    };
}

// --- Documents ----------------------------------------------------------------------------------------------------

Documents OrdiniFornitore() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiLantek24",
                  .announcement = "Inizio importazione Documenti da Lantek 24",
                  .completion = "Documenti Lantek 24 importati correttamente: %1"},
        .source = {.table = Orders,
                   .key = "OrdRef",
                   .order = "CDate, OrdRef",
                   .where = "(RQPrice = 0 OR RQPrice IS NULL)"},
        .rows = {.table = OrderRows, .on = {{"OrdRef"}}, .order = "LineNum"},
        .reading = Reading::HeadThenRows,
        .withoutRows = WithoutRows::Written,
        .kinds = {{.cause = "ORDFL", .type = "ORD", .family = Purchases}},
        .head = {.number = {"OrdRef", DigitsAsNumber()},
                 .day = {"CDate", Day()},
                 .counterparty = {"SuppRef", Supplier()},
                 .name = "SuppName",
                 .state = {"OrdRef", StateOfOrder()},
                 .lines = {{"DTMOP", "PymName", TranslatedOrKnown(OrderCodes, "PymName", "TAB_MOP")},
                           {"DTVAL", "CurName", Currency(OrderCodes, "CurName")},
                           {"DTRIC", "OrdRef", Text()},
                           {"DTCOR", "DDate", Day()},
                           {"DTSCO", "DDisc", RoundedTo(2)},
                           {"DTNOT", "Descrip", Text()}}},
        .row = {.number = "LineNum",
                .article = {"PrdRef", ArticleCode(cam::ProductCodes, "PrdRef")},
                .description = "PrdName",
                .unit = {"QUANUntName", UnitOfName()},
                .quantity = "Quantity",
                .quantity2 = "TotalUnits",
                .delivered = "RcvdQuantity",
                .price = "UPrice",
                .discounts = {"Disc"},
                .vatCode = {"TaxRef", VatOfProduct()},
                .state = {"DlvStatus, RcvdQuantity", StateOfRow()},
                .lines = {{"DRUM2", "UntName", UnitOfName()},
                          {"DRTOT", "TPrice", NotZero()},
                          {"DRTTA", "TPrice", NotZero()},
                          {"DRNOT", "Descrip", Text()}}},
        .empties = DocumentEmptying(),
        .moreOfRow = SetSheet,
        .ofHeads = HooksOf,
        .further = {{},
                    {{Orders, {"TotalA"}},
                     {OrderRows, {"SPrdRef"}},
                     {Products, {"PrdRef", "DIS_PClass", "DIS_Length", "DIS_Width"}}},
                    {{"DOC_ACR", {"DRLAM", "DRLMX", "DRLMY"}},
                     {"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}}}},
    };
}

} // namespace

/// With the production orders.
Procedure DocumentiProcedure() {
    const Documents orders = OrdiniFornitore();
    return ProcedureOf(Button::Doc, FrameOf(orders), {PartOf(orders), OrdiniProduzione()});
}

} // namespace modImport_Lantek24
