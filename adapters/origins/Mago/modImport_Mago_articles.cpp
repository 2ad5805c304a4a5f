// Articles of Mago.net: MA_Items with MA_ItemsGoodsData and MA_ItemsManufacturingData, one row each, and the suppliers,
// customers' codes, bar codes, units, costs and languages of an item in tables of their own. ProductSubCtg has no place
// beside ProductCtg, nor have discounts of suppliers; a supplier who is disabled for an item is none of it. Which
// number of Nature is finished and which semi-finished is not sure: what is not purchased is finished when it heads a
// bill.

#include "adapters/origins/Mago/modImport_Mago.h"

#include "adapters/contract/kinds/childRules.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Mago {

namespace {

const QString Goods = QStringLiteral("MA_ItemsGoodsData");
const QString Manufacturing = QStringLiteral("MA_ItemsManufacturingData");
const QString Suppliers = QStringLiteral("MA_ItemSuppliers");
const QString Customers = QStringLiteral("MA_ItemCustomers");
const QString Languages = QStringLiteral("MA_ItemsLanguageDescri");

/// Who still supplies the item.
const QString Enabled = QStringLiteral("(Disabled IS NULL OR Disabled <> '1')");

const QString Purchased = QStringLiteral("22413314");

/// What belongs to an item, in a table of its own.
ChildTable OfItem(const QString& table, const QString& order = {}) {
    return {.table = table, .on = {{"Item"}}, .order = order};
}

/// The row of the supplier whom the item is usually bought from.
ChildTable UsualSupplier() { return {.table = Suppliers, .on = {{"Item"}, {"Supplier"}}, .where = Enabled}; }

Rule IsUsualSupplier() {
    return Or(OfFirst(Suppliers, {.table = Goods, .on = {{"Item"}, {"Supplier"}}}, "Item", Constant(true)), false);
}

Rule ItemUnit(const QString& blank) { return Unit(Items, "BaseUoM", blank); }

/// How much of the second unit a stock unit is.
Rule Ratio() {
    return {
        "la prima divisa per la seconda, 6 decimali; niente se una è zero", [](const RuleInput& input) -> RuleValue {
            const double first = NumberOf(input.row, input.columns.first());
            const double second = NumberOf(input.row, input.columns.last());
            constexpr int decimals = 6;
            return first == 0 || second == 0 ? RuleValue() : RuleValue(contract::RoundedTo(first / second, decimals));
        }};
}

Rule Class() {
    const Rule bill = OfFirst(Items, {.table = "MA_BillOfMaterials", .on = {{"BOM", "Item"}}}, "BOM", Constant("PF"));
    Rule rule{"\"CM\" per " + Purchased +
                  "; altrimenti \"PF\" se ha una distinta in MA_BillOfMaterials, \"CM\" se non l'ha",
              [bill](const RuleInput& input) {
                  const RuleValue heads = input.Text() == Purchased ? RuleValue() : bill.apply(input);
                  return heads ? heads : RuleValue(QStringLiteral("CM"));
              },
              Side::Both, bill.reads};
    return WithDefault(std::move(rule));
}

Rule Cost() {
    return FirstNotZeroOf(
        {OfFirst(Items, OfItem("MA_ItemsFiscalData", "FiscalYear DESC"), "StandardCost, LastCost", FirstNotZero()),
         FirstNotZero(), OfFirst(Goods, UsualSupplier(), "StandardPrice, LastPrice", FirstNotZero())});
}

/// The long text is one of the article's own language.
void WriteLongText(ImportRun& run, const SourceRow& row, const QString& article) {
    if (const QString text = row.Text("DescriptionText"); !text.isEmpty()) {
        ArticleWriter(run).Text(article, "ARDEC", text);
    }
}

} // namespace

Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliMago"},
        .source =
            {
                .table = Items,
                .key = "Item",
                .order = "Item",
                .joins =
                    {
                        {.table = Goods,
                         .on = {{"Item"}},
                         .columns = {"ReceiptUoM", "IssueUoM", "NetWeight", "GrossWeight", "GrossVolume",
                                     "MinimumStock", "MaximumStock", "ReorderingLotSize", "DefaultLocation", "Location",
                                     "Supplier"}},
                        {.table = Manufacturing,
                         .on = {{"Item"}},
                         .columns = {"BOMCost", "LastProductionCost", "ReorderPoint", "MinProductionQty", "LeadTime"}},
                    },
            },
        .code = {"Item", Item()},
        .description = "Description",
        .lines =
            {
                {"CDEXT", "Item", Text()},
                {"ARDEC", "DescriptionText", First(255)},
                {"ARDE2", "ShortDescription", Text()},
                {"ARUMS", "BaseUoM", ItemUnit(schema::defaults::Unit)},
                {"ARUMP", "ReceiptUoM", ItemUnit("")},
                {"ARUMV", "IssueUoM", ItemUnit("")},
                {"ARUM2", "SecondRateUoM", ItemUnit("")},
                {"ARCOE", "SecondRateUoM",
                 OfFirst(Items,
                         {.table = "MA_ItemsComparableUoM", .on = {{"Item"}, {"ComparableUoM", "SecondRateUoM"}}},
                         "CompUoMQty, BaseUoMQty", Ratio())},
                {"ARIVA", "TaxCode", VatCode(Items, "TaxCode")},
                {"ARCLA", "Nature", Class()},
                {"ARTIP", "ItemType", Translated(Items, "ItemType")},
                {"ARFAM", "CommodityCtg", Translated(Items, "CommodityCtg")},
                {"ARPRY", "ProductCtg", Translated(Items, "ProductCtg")},
                {"ARCAC", "SaleOffset", Text()},
                {"ARPRZ", "BasePrice", RoundedTo(6)},
                {"ARSCO", "Discount1", RoundedTo(2)},
                {"ARSC2", "Discount2", RoundedTo(2)},
                {"ARCOS", "BOMCost, LastProductionCost", Cost()},
                {"ARPSN", "NetWeight", RoundedTo(3)},
                {"ARPSL", "GrossWeight", RoundedTo(3)},
                {"ARVOL", "GrossVolume", RoundedTo(6)},
                {"ARSMN", "MinimumStock", RoundedTo(6)},
                {"ARSMX", "MaximumStock", RoundedTo(6)},
                {"ARLOR", "ReorderingLotSize", RoundedTo(6)},
                {"ARPUR", "ReorderPoint", RoundedTo(6)},
                {"ARQMR", "MinProductionQty", RoundedTo(6)},
                {"ARGGA", "LeadTime", RoundedTo(0)},
                {"ARDUC", "Supplier",
                 Or(OfFirst(Goods, UsualSupplier(), "LastPurchaseDocDate", Day(NoDay)), QVariant())},
                {"ARMAG", "IsGood", Flag()},
                {"ARANN", "Disabled", Flag()},
                {"ARNOT", "InternalNote, PublicNote", OnLines()},
                {"ARDIS", "Picture", Text()},
                {"DTINS", "CreationDate", DayThere(NoDay)},
            },
        .suppliers = {{
            .rows = {.table = Suppliers,
                     .on = {{"Item"}},
                     .order = "Supplier",
                     .where = Enabled,
                     .naming = "Item, Supplier"},
            .supplier = {"Supplier", KnownSupplier()},
            .ownCode = "SupplierCode",
            .ownDescription = {"SupplierDescription", First(100)},
            .price = {"StandardPrice, LastPrice", FirstNotZero()},
            .leadDays = "DaysForDelivery",
            .minimum = "MinOrderQty",
            .preferred = {"Supplier", IsUsualSupplier()},
        }},
        .aliases = {{.code = "OldItem"},
                    {.code = "SaleBarCode"},
                    {.rows = OfItem("MA_ItemsPurchaseBarCode", "BarCode"), .code = "BarCode"},
                    {.rows = OfItem(Customers, "Customer"),
                     .code = "CustomerCode",
                     .counterparty = {"Customer", KnownCustomer()},
                     .ownDescription = {"CustomerDescription", First(100)}}},
        .location = {"DefaultLocation, Location", FirstNotBlank(Text())},
        .languages = {{
            .rows = OfItem(Languages, "Language"),
            .language = {"Language", TranslatedOrKnown(Languages, "Language", "TAB_LNG")},
            .text = "Description",
        }},
        .more = SetMarkUp,
        .after = WriteLongText,
        .further = {{}, {{Items, {}, {"DescriptionText"}}}, {{"ART_ICO", {"ARRIC"}}}},
    };
}

} // namespace modImport_Mago
