// Mexal: a folder of CSV files with counterparties and accounts, articles with their stock, bills and documents.
// Counterparties are those that Tessera and Visual Space, which stand beside it, know by codes of their own.

#include "examples/CsvWriter.h"
#include "examples/describedRules.h"

namespace examples {

namespace mexal {

namespace {

using namespace described;

constexpr qint64 BillRows = 4;
constexpr qint64 DocumentRows = 2;
constexpr qint64 SuppliersOfArticle = 9;
const Count Articles = [](const Options& options) { return options.rows; };
const Count Heads = EachOf(5); ///< articles with a bill: the first
const Count CustomerOrders = EachOf(3);
const Count SupplierOrders = EachOf(6);
const Count Invoices = EachOf(4);

Rule ArticleCode() { return Code("MX-", 5); }
Rule CustomerCode() { return Code("201.", 5); }
Rule SupplierCode() { return Code("401.", 5); }

// --- Counterparties and accounts ----------------------------------------------------------------------------------

Table AccountTable() {
    const Address address("PIA_CON");
    return {"PIA_CON",
            "controparti",
            Counterparties,
            {{{"_PCCOD", 'C', 9}, BySide(CustomerCode(), SupplierCode())},
             {{"_PCANN", 'C', 1}, Flag(2)},
             {{"TIPO", 'C', 1}, BySide(Fixed("C"), Fixed("F"))},
             {{"_PCDES", 'C', 40}, CompanyName(40)},
             {{"_PCRAG", 'C', 60}, CompanyName(60)},
             {{"_PCIND", 'C', 60}, address.Street()},
             {{"_PCCAP", 'C', 10}, address.PostCode()},
             {{"_PCLOC", 'C', 40}, address.Town()},
             {{"_PCPRO", 'C', 2}, address.Province()},
             {{"_PCPAE", 'C', 2}, Fixed("IT")},
             {{"_PCPIV", 'C', 11}, VatNumber()},
             {{"_PCFIS", 'C', 16}, TaxCode()},
             {{"_PCTEL", 'C', 20}, address.Telephone()},
             {{"_PCFAX", 'C', 20}, Chance(30, address.Telephone())},
             {{"_PCCEL", 'C', 20}, {}},
             {{"_PCEMA", 'C', 60}, Chance(60, OnInternet("info@"))},
             {{"_PCWEB", 'C', 60}, Chance(30, OnInternet("www."))},
             {{"_PCPAG", 'N', 3}, OneOf({30, 60, 90})},
             {{"_PCABI", 'N', 5}, {}},
             {{"_PCCAB", 'N', 5}, {}},
             {{"_PCCON", 'C', 12}, {}},
             {{"_PCCIN", 'C', 1}, {}},
             {{"_PCIBA", 'C', 27}, Chance(50, Iban())},
             {{"_PCSCO", 'C', 10}, OneOf({"", "5", "10+5"})},
             {{"_PCAGE", 'C', 4}, {}},
             {{"_PCLIS", 'N', 2}, BySide(Fixed(1), {})},
             {{"_PCZON", 'N', 3}, {}},
             {{"_PCALI", 'C', 3}, Chance(10, Fixed("N8"))},
             {{"_PCVAL", 'N', 3}, Fixed(1)},
             {{"_PCNOT", 'M'}, Chance(10, Fixed("Chiude il lunedì; \"avvisare\""))}},
            {{{"_PCCOD", "201.90001"}, {"TIPO", "C"}, {"_PCANN", "N"}, {"_PCSCO", "dieci"}},
             {{"_PCCOD", "101"}, {"TIPO", "A"}, {"_PCDES", "Cassa e banche"}},
             {{"_PCCOD", "101.00001"}, {"TIPO", "A"}, {"_PCDES", "Cassa contanti"}},
             {{"_PCCOD", "501"}, {"TIPO", "P"}, {"_PCDES", "Fondi"}},
             {{"_PCCOD", "801.00001"}, {"TIPO", "E"}, {"_PCDES", "Merci c/vendite"}}}};
}

// --- Articles -----------------------------------------------------------------------------------------------------

QVector<Field> SupplierFields() {
    QVector<Field> fields;
    for (qint64 number = 1; number <= SuppliersOfArticle; ++number) {
        const auto name = [number](const char* column) {
            return QStringLiteral("%1(%2)").arg(QLatin1String(column)).arg(number).toLatin1();
        };
        const bool isUsed = number <= 2;
        fields +=
            QVector<Field>{{{name("_ARFOR"), 'C', 9}, isUsed ? Chance(40, AnyOf(Suppliers, SupplierCode())) : Rule()},
                           {{name("_ARCOF"), 'C', 30}, isUsed ? Chance(50, Code("FOR-", 4)) : Rule()},
                           {{name("_ARFPR"), 'N', 12, 4}, isUsed ? Number(0.5, 90, 2) : Rule()}};
    }
    return fields;
}

/// A row for each article, and behind them one for each that stands in a second warehouse too.
Table ArticleTable() {
    QVector<Field> fields{{{"_ARTIP", 'C', 1}, Fixed("A")},
                          {{"_ARCOD", 'C', 30}, ArticleCode()},
                          {{"_ARDES", 'C', 60}, ArticleText()},
                          {{"_ARAGG", 'C', 60}, Chance(20, Fixed("zincato"))},
                          {{"_ARALT", 'C', 30}, Chance(10, Code("ALT-", 5))},
                          {{"_ARANN", 'C', 1}, Flag(3)},
                          {{"_ARDTC", 'D'}, Day(360)},
                          {{"_ARDSL(1)", 'C', 60}, Chance(10, Fixed("galvanized"))},
                          {{"_ARIVA", 'C', 3}, Fixed("22")},
                          {{"_ARUM1", 'C', 2}, OneOf({"PZ", "KG"})},
                          {{"_ARUM2", 'C', 2}, {}},
                          {{"_ARKOEPTA", 'N', 10, 4}, {}},
                          {{"_ARCTG", 'C', 5}, {}},
                          {{"GRPMERCE", 'C', 5}, Chance(50, Fixed("MECC"))},
                          {{"_ARCUL", 'N', 12, 4}, Chance(80, Number(0.5, 90, 2))},
                          {{"_ARCOS", 'N', 12, 4}, Number(0.5, 90, 2)},
                          {{"_ARPRZ(1)", 'N', 12, 4}, Number(1, 190, 2)},
                          {{"_ARSCO", 'C', 5}, {}},
                          {{"_ARGGR(1)", 'N', 4}, Whole(0, 30)},
                          {{"_ARLOT(1)", 'N', 8, 2}, Number(0, 20, 0)},
                          {{"_ARPES", 'N', 10, 3}, Number(0.1, 40, 3)},
                          {{"_ARSMI", 'N', 8, 2}, Number(0, 20, 0)},
                          {{"_ARSMA", 'N', 8, 2}, {}},
                          {{"_ARDBP", 'C', 1}, Kinds({{Heads, Fixed("S")}, {Articles, Fixed("N")}})},
                          {{"_ARUBI", 'C', 10}, Chance(40, Code("U-", 4))}};
    fields += SupplierFields();
    for (Field& field : fields) {
        field.rule = Kinds({{Articles, field.rule}, {Articles, field.rule}});
    }
    fields += QVector<Field>{{{"NUMMAG", 'N', 3}, Kinds({{Articles, Fixed(1)}, {Articles, Fixed(2)}})},
                             {{"QTAINVENT", 'N', 12, 3}, Number(0, 500, 1)},
                             {{"QTACARICO", 'N', 12, 3}, Chance(30, Number(0, 100, 1))},
                             {{"QTASCARIC", 'N', 12, 3}, Chance(30, Number(0, 100, 1))}};
    const Count rows = Sum(Articles, Heads);
    return {"ART_MAG",
            "articoli",
            rows,
            fields,
            {{{"_ARCOD", "COSTO-MANCA"}, {"_ARCUL", "ottanta"}, {"NUMMAG", 1}},
             {{"_ARCOD", "INDICE"}, {"_ARTIP", "I"}, {"NUMMAG", 1}}}};
}

/// The bill of an article holds articles that have none.
Table BillTable() {
    return {"DIS_MAT",
            "distinte",
            Times(BillRows, Heads),
            {{{"_DBPAD", 'C', 30}, OfParent(BillRows, ArticleCode())},
             {{"_DBFAS", 'N', 2}, [](const Place& place) { return QVariant(place.row % BillRows / 2 + 1); }},
             {{"_DBRIG", 'N', 3}, Line(BillRows)},
             {{"_DBFIG", 'C', 30}, AnyBehind(Heads, Articles, ArticleCode())},
             {{"_DBQTA", 'N', 10, 3}, Number(0.5, 9, 1)},
             {{"_DBNOT", 'C', 60}, Chance(10, Fixed("tagliare a 45°"))}},
            {{{"_DBPAD", "NON-CE"}}, {{"_DBFAS", 3}, {"_DBRIG", 9}, {"_DBFIG", "NON-CE"}, {"_DBPAD", "MX-00001"}}}};
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// What tells a document from others stands in its head and in its rows.
QVector<Field> DocumentKey(const std::function<Rule(const Rule&)>& ofHead) {
    const Rule day = Named("DOC.day", Day(360));
    const Rule digits = [day](const Place& place) {
        return QVariant(day(place).toDate().toString(QStringLiteral("dMMyyyy")));
    };
    const auto byKind = [](const Rule& customerOrder, const Rule& supplierOrder, const Rule& invoice) {
        return Kinds({{CustomerOrders, customerOrder}, {SupplierOrders, supplierOrder}, {Invoices, invoice}});
    };
    const Rule number = [](const Place& place) { return QVariant(place.row + 1); };
    const Rule customer = Named("DOC.customer", AnyOf(Customers, CustomerCode()));
    const Rule supplier = Named("DOC.supplier", AnyOf(Suppliers, SupplierCode()));
    return {{{"_MMSIG", 'C', 2}, ofHead(byKind(Fixed("OC"), Fixed("OF"), Fixed("FT")))},
            {{"_MMSER", 'N', 2}, ofHead(Fixed(1))},
            {{"_MMNUM", 'N', 7}, ofHead(byKind(number, number, number))},
            {{"_MMDAT", 'C', 8}, ofHead(digits)},
            {{"_MMCLI", 'C', 9}, ofHead(byKind(customer, supplier, customer))}};
}

QVector<Table> DocumentTables() {
    const Count documents = [](const Options& options) {
        return CustomerOrders(options) + SupplierOrders(options) + Invoices(options);
    };
    const Amounts amounts("DOC_RIG", DocumentRows);
    const QVector<Field> head = DocumentKey([](const Rule& rule) { return rule; });
    const QVector<Field> row = DocumentKey([](const Rule& rule) { return OfParent(DocumentRows, rule); });
    // Stock movements stay behind; the second document is of somebody who is not there.
    const QVector<OddRow> odd{{{"_MMSIG", "MF"}, {"_MMNUM", 1}, {"_MMDAT", "1032024"}, {"_MMCLI", "401.00001"}},
                              {{"_MMSIG", "OC"}, {"_MMNUM", 999999}, {"_MMDAT", "1032024"}, {"_MMCLI", "201.99999"}}};
    QVector<OddRow> oddRows = odd;
    for (OddRow& each : oddRows) {
        each.append({"_MMRIG", 1});
    }
    return {{"DOC_TES", "documenti", documents,
             head + QVector<Field>{{{"_MMPAG", 'N', 3}, OneOf({30, 60, 90})},
                                   {{"_MMVAL", 'N', 3}, Fixed(1)},
                                   {{"_MMNOT", 'C', 60}, Chance(10, Fixed("Urgente"))},
                                   {{"_MMRIF", 'C', 20}, Chance(50, Code("PO ", 1))}},
             odd},
            {"DOC_RIG", "documenti", Times(DocumentRows, documents),
             row + QVector<Field>{{{"_MMRIG", 'N', 4}, Line(DocumentRows)},
                                  {{"_MMART", 'C', 30}, AnyOf(Articles, ArticleCode())},
                                  {{"_MMDES", 'C', 60}, {}},
                                  {{"_MMQTA", 'N', 12, 3}, amounts.Quantity()},
                                  {{"_MMPRZ", 'N', 12, 4}, amounts.Price()},
                                  {{"_MMSCO", 'C', 10}, OneOf({"", "", "5", "10+5"})},
                                  {{"_MMALI", 'C', 3}, Fixed("22")},
                                  {{"_MMSCA", 'C', 8}, {}},
                                  {{"_MMEVA", 'N', 12, 3}, {}}},
             oddRows}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("N8", "Non imponibile art. 8", 0);
    for (const char* code : {"30", "60", "90"}) {
        script.Translate("PIA_CON", "_PCPAG", code, QString("RB" + QString::fromLatin1(code)));
    }
    script.Translate("PIA_CON", "_PCPAE", "IT", "ITA");
    script.Translate("PIA_CON", "_PCALI", "N8", "N8");
    script.Translate("PIA_CON", "_PCLIS", "1", "L1");
    script.Translate("ART_MAG", "_ARIVA", "22", "22");
    script.Translate("ART_MAG", "_ARUM1", "PZ", "NR");
    script.Translate("ART_MAG", "GRPMERCE", "MECC", "MECCANICA");
    script.DocumentReason("ORD", "ORDCM", "ORD");
    script.DocumentReason("ORD", "ORDFM", "ORD");
    script.DocumentReason("FAT", "FATCM", "FAT");
    return script;
}

} // namespace

} // namespace mexal

Totals MakeMexal(const Options& options) {
    using namespace mexal;
    CsvFolder folder(options.folder);
    const QVector<Table> tables = QVector<Table>{AccountTable(), ArticleTable(), BillTable()} + DocumentTables();
    return Write(folder, tables, options, PreparedFor(options));
}

} // namespace examples
