// Mago.net: a database with customers and suppliers in one table and their options in two, articles with what stores
// and production know of them, and bills with routings.

#include "examples/describedRules.h"

namespace examples {

namespace mago {

namespace {

using namespace described;

constexpr qint64 Components = 3;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first

const QVariant Customer = 3211264;
const QVariant Supplier = 3211265;

Rule ItemCode() { return Code("MG-", 5); }
Rule No() { return Fixed("0"); }
Rule CodeOfCounterparty() { return BySide(Code("", 5), Code("F", 5)); }
/// Code of a supplier: they stand behind the customers.
Rule AnySupplier() { return AnyOf(Suppliers, Code("F", 5)); }

QVector<Table> CounterpartyTables() {
    const Address address("MA_CustSupp");
    const Address branch("MA_CustSuppBranches");
    return {{"MA_CustSupp",
             "controparti",
             Counterparties,
             QVector<Field>{{{"CustSuppType", 'I'}, BySide(Fixed(Customer), Fixed(Supplier))},
                            {{"CustSupp", 'C', 12}, CodeOfCounterparty()},
                            {{"CompanyName", 'C', 128}, CompanyName(60)},
                            {{"NaturalPerson", 'C', 1}, No()},
                            {{"ISOCountryCode", 'C', 2}, Fixed("IT")},
                            {{"TaxIdNumber", 'C', 20}, VatNumber()},
                            {{"FiscalCode", 'C', 20}, TaxCode()},
                            {{"Telephone1", 'C', 20}, address.Telephone()},
                            {{"EMail", 'C', 128}, Chance(60, OnInternet("info@"))},
                            {{"ContactPerson", 'C', 64}, Chance(30, LastName())},
                            {{"Payment", 'C', 8}, OneOf({"RB30", "RB60", "BON"})},
                            {{"IBAN", 'C', 34}, Chance(50, Iban())},
                            {{"Discount1", 'N', 6, 2}, OneOf({0, 5, 10})},
                            {{"Currency", 'C', 8}, Fixed("EUR")},
                            {{"TBCreated", 'T'}, Day(300)},
                            {{"Disabled", 'C', 1}, Chance(3, Fixed("1"), No())},
                            {{"Notes", 'M'}, Chance(10, Fixed("Chiude il lunedì"))}} +
                 address.Columns("Address", "ZIPCode", "City", "County") +
                 Unused({"StreetNo",
                         "Address2",
                         "Telephone2",
                         "Telex",
                         "Fax",
                         "Internet",
                         "CertifiedEMail",
                         "EICertifiedEMail",
                         "IPACode",
                         "CustSuppBank",
                         "CIN",
                         "CA",
                         "CompanyBank",
                         "Discount2",
                         "PriceList",
                         "Language",
                         "Account",
                         "CustSuppKind",
                         "InsertionDate",
                         "SplitTax",
                         "ShipToAddress",
                         "SendDocumentsTo",
                         "PrivacyStatement",
                         "LinkedCustSupp"}),
             {{{"CustSuppType", Customer},
               {"CustSupp", "90001"},
               {"County", "TORINO"},
               {"TaxIdNumber", ""},
               {"FiscalCode", ""}},
              {{"CustSuppType", Supplier},
               {"CustSupp", "F90001"},
               {"Discount1", "dieci"},
               {"TaxIdNumber", ""},
               {"FiscalCode", ""}}},
             {{"CustSuppType", "CustSupp"}}},
            {"MA_CustSuppCustomerOptions",
             "controparti",
             Customers,
             QVector<Field>{{{"CustSuppType", 'I'}, Fixed(Customer)},
                            {{"Customer", 'C', 12}, Code("", 5)},
                            {{"Category", 'C', 8}, OneOf({"RIV", "IND"})},
                            {{"MaximumCredit", 'N', 12, 2}, Whole(0, 50000)}} +
                 Unused({"Area", "Salesperson", "AreaManager", "ExemptFromTax", "TaxCode", "GoodsOffset", "Blocked",
                         "Port", "Shipping", "Carrier1", "MaxOrderValue", "CustomerClassification", "OneInvoicePerDN",
                         "PASplitPayment", "DeclarationOfIntentNo", "DeclarationOfIntentDate",
                         "DeclarationOfIntentOurNo", "DeclarationOfIntentDueDate"}),
             {},
             {{"CustSuppType", "Customer"}}},
            {"MA_CustSuppSupplierOptions",
             "controparti",
             Suppliers,
             QVector<Field>{{{"CustSuppType", 'I'}, Fixed(Supplier)}, {{"Supplier", 'C', 12}, Code("F", 5)}} +
                 Unused({"Category", "TaxCode", "GoodsOffset", "Blocked", "Port", "Shipping", "Carrier1"}),
             {},
             {{"CustSuppType", "Supplier"}}},
            {"MA_CustSuppNaturalPerson", "controparti", Exactly(0),
             Unused({"CustSuppType", "CustSupp", "LastName", "Name", "DateOfBirth", "CityOfBirth", "CountyOfBirth",
                     "Gender"})},
            {"MA_Banks", "controparti", Exactly(0), Unused({"Bank", "IsACompanyBank", "ABI", "CAB", "Swift"})},
            {"MA_CustSuppNotes", "controparti", Exactly(0), Unused({"CustSuppType", "CustSupp", "Line", "Notes"})},
            {"MA_CustSuppBranches",
             "controparti",
             EachOf(4),
             QVector<Field>{{{"CustSuppType", 'I'}, Fixed(Customer)},
                            {{"CustSupp", 'C', 12}, AnyOf(Customers, Code("", 5))},
                            {{"Branch", 'C', 8}, Code("", 3)},
                            {{"CompanyName", 'C', 128}, Fixed("Magazzino")},
                            {{"ISOCountryCode", 'C', 2}, Fixed("IT")}} +
                 branch.Columns("Address", "ZIPCode", "City", "County") +
                 Unused({"StreetNo", "ContactPerson", "Notes", "Telephone1", "Telephone2", "Fax", "EMail"}),
             {},
             {{"CustSuppType", "CustSupp"}}},
            {"MA_CustSuppPeople",
             "controparti",
             EachOf(3),
             QVector<Field>{{{"CustSuppType", 'I'}, Fixed(Customer)},
                            {{"CustSupp", 'C', 12}, AnyOf(Customers, Code("", 5))},
                            {{"Line", 'I'}, Line(1)},
                            {{"LastName", 'C', 32}, LastName()},
                            {{"Name", 'C', 32}, FirstName()},
                            {{"WorkingPosition", 'C', 32}, OneOf({"Acquisti", "Ufficio tecnico"})},
                            {{"Invoice", 'I'}, OneOf({12451840, 12451841})}} +
                 Unused({"TitleCode", "Notes", "CustomerQuotation", "SaleOrder", "PurchaseOrder", "DeliveryNote",
                         "Telephone1", "Telephone2", "Fax", "EMail"}),
             {},
             {{"CustSuppType", "CustSupp"}}}};
}

QVector<Table> ArticleTables() {
    return {{"MA_Items",
             "articoli",
             Articles,
             QVector<Field>{{{"Item", 'C', 21}, ItemCode()},
                            {{"Description", 'C', 128}, ArticleText()},
                            {{"BaseUoM", 'C', 8}, OneOf({"PZ", "KG"})},
                            {{"TaxCode", 'C', 4}, Fixed("22")},
                            {{"Nature", 'I'}, Kinds({{Heads, Fixed(22413313)}, {Articles, Fixed(22413314)}})},
                            {{"CommodityCtg", 'C', 8}, Chance(50, Fixed("MECC"))},
                            {{"BasePrice", 'N', 12, 4}, Number(1, 190, 2)},
                            {{"IsGood", 'C', 1}, Fixed("1")},
                            {{"Disabled", 'C', 1}, Chance(3, Fixed("1"), No())}} +
                 Unused({"DescriptionText", "ShortDescription", "OldItem", "SaleBarCode", "SecondRateUoM", "ItemType",
                         "ProductCtg", "SaleOffset", "Discount1", "Discount2", "InternalNote", "PublicNote",
                         "CreationDate", "Picture"}),
             {{{"Item", "PREZZO-ERRATO"}, {"BasePrice", "dieci"}}},
             {{"Item"}}},
            {"MA_ItemsGoodsData",
             "articoli",
             Articles,
             QVector<Field>{{{"Item", 'C', 21}, ItemCode()},
                            {{"NetWeight", 'N', 12, 3}, Number(0.1, 40, 3)},
                            {{"MinimumStock", 'N', 12, 2}, Whole(0, 20)},
                            {{"DefaultLocation", 'C', 21}, Chance(40, Code("U-", 4))}} +
                 Unused({"ReceiptUoM", "IssueUoM", "GrossWeight", "GrossVolume", "MaximumStock", "ReorderingLotSize",
                         "Location", "Supplier"}),
             {},
             {{"Item"}}},
            {"MA_ItemsManufacturingData",
             "articoli",
             Articles,
             QVector<Field>{{{"Item", 'C', 21}, ItemCode()}, {{"LastProductionCost", 'N', 12, 4}, Number(0.5, 90, 2)}} +
                 Unused({"BOMCost", "ReorderPoint", "MinProductionQty", "LeadTime"}),
             {},
             {{"Item"}}},
            {"MA_ItemSuppliers",
             "articoli",
             EachOf(2),
             QVector<Field>{{{"Item", 'C', 21}, AnyOf(Articles, ItemCode())},
                            {{"Supplier", 'C', 12}, AnySupplier()},
                            {{"SupplierCode", 'C', 20}, Chance(50, Code("FOR-", 4))},
                            {{"StandardPrice", 'N', 12, 4}, Number(0.5, 90, 2)},
                            {{"Disabled", 'C', 1}, No()}} +
                 Unused({"LastPrice", "MinOrderQty", "DaysForDelivery", "LastPurchaseDocDate"}),
             {},
             {{"Item"}}},
            {"MA_ItemsFiscalData", "articoli", Exactly(0), Unused({"Item", "FiscalYear", "StandardCost", "LastCost"})},
            {"MA_ItemsComparableUoM", "articoli", Exactly(0),
             Unused({"Item", "ComparableUoM", "BaseUoMQty", "CompUoMQty"})},
            {"MA_ItemCustomers", "articoli", Exactly(0), Unused({"Item", "Customer", "CustomerCode"})},
            {"MA_ItemsPurchaseBarCode", "articoli", Exactly(0), Unused({"Item", "BarCode"})},
            {"MA_ItemsLanguageDescri", "articoli", Exactly(0), Unused({"Item", "Language", "Description"})}};
}

/// The bill of an article holds articles that have none.
QVector<Table> BillTables() {
    return {{"MA_BillOfMaterials",
             "distinte",
             Heads,
             QVector<Field>{
                 {{"BOM", 'C', 21}, ItemCode()}, {{"Disabled", 'C', 1}, No()}, {{"InProduction", 'C', 1}, Fixed("1")}} +
                 Unused({"Description", "Notes", "UoM", "CreationDate"}),
             {{{"BOM", "NON-CE"}}},
             {{"BOM"}}},
            {"MA_BillOfMaterialsComp",
             "distinte",
             Times(Components, Heads),
             QVector<Field>{{{"BOM", 'C', 21}, OfParent(Components, ItemCode())},
                            {{"Line", 'I'}, Line(Components)},
                            {{"Component", 'C', 21}, AnyBehind(Heads, Articles, ItemCode())},
                            {{"ComponentType", 'I'}, Fixed(7798784)},
                            {{"Qty", 'N', 12, 3}, Number(0.5, 9, 1)},
                            {{"DNRtgStep", 'I'}, Fixed(10)}} +
                 Unused({"PercQty", "UoM", "Notes", "ValidityEndingDate"}),
             {{{"BOM", "MG-00001"}, {"Line", 9}, {"Component", "NON-CE"}}},
             {{"BOM"}}},
            {"MA_BillOfMaterialsRouting",
             "distinte",
             Heads,
             QVector<Field>{{{"BOM", 'C', 21}, ItemCode()},
                            {{"RtgStep", 'I'}, Fixed(10)},
                            {{"Alternate", 'C', 8}, Fixed("")},
                            {{"Operation", 'C', 21}, OneOf({"SALD", "MONT"})},
                            {{"SetupTime", 'N', 12, 2}, Whole(0, 1800)},
                            {{"ProcessingTime", 'N', 12, 2}, Whole(30, 1200)}} +
                 Unused({"WC", "NoOfProcessingWorkers", "Supplier", "Notes"}),
             {},
             {{"BOM"}}},
            {"MA_Operations", "distinte", Exactly(0), Unused({"Operation", "HourlyCost"})},
            {"MA_WorkCenters", "distinte", Exactly(0), Unused({"WC", "Outsourced", "Supplier"})}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.VatCode("22", "IVA 22%", 22);
    script.Translate("MA_Items", "TaxCode", "22", "22");
    for (const char* code : {"RB30", "RB60", "BON"}) {
        script.Translate("MA_CustSupp", "Payment", code, code);
    }
    script.Translate("MA_CustSupp", "ISOCountryCode", "IT", "ITA");
    script.Translate("MA_CustSupp", "Currency", "EUR", "EUR");
    script.Translate("MA_CustSupp", "Category", "RIV", "RIV");
    script.Translate("MA_CustSupp", "Category", "IND", "IND");
    script.Translate("MA_Items", "BaseUoM", "PZ", "NR");
    script.Translate("MA_Items", "BaseUoM", "KG", "KG");
    script.Translate("MA_Items", "CommodityCtg", "MECC", "MECCANICA");
    script.Translate("MA_Operations", "Operation", "SALD", "SALD");
    script.Translate("MA_Operations", "Operation", "MONT", "MONT");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("MONT", "Montaggio");
    return script;
}

} // namespace

} // namespace mago

Totals MakeMago(const Options& options) {
    using namespace mago;
    return Write("mago.db", CounterpartyTables() + ArticleTables() + BillTables(), options, PreparedFor(options));
}

} // namespace examples
