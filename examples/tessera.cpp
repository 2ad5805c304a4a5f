// Tessera: a database with customers and suppliers, articles, bills by revision, orders and what is made for them. Its
// counterparties have the codes of Mexal, which stands beside it.

#include "examples/tessera.h"

namespace examples {

namespace tessera {

namespace {

constexpr qint64 BillRows = 3;
constexpr qint64 OrderLines = 2;
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count CustomerOrders = EachOf(3);
const Count WorkOrders = EachOf(6);
const Count SupplierOrders = EachOf(5);

Rule No() { return Fixed(0); }
Rule Counted(const Count& count) { return AnyOf(count, RowNumber()); }
/// Id of a supplier: they stand behind the customers.
Rule SupplierId() { return AnyBehind(Customers, Counterparties, RowNumber()); }

QVector<Table> CodeTables() {
    const auto codes = [](const char* name, const char* id, const char* code, const QVariantList& values) {
        return Table{QLatin1String(name),
                     "controparti",
                     Exactly(values.size()),
                     {{{id, 'I'}, RowNumber()}, {{code, 'C', 4}, Each(values)}}};
    };
    return {codes("Pagam", "IdPag", "CodPag", {"B30", "B60", "RD"}),
            codes("Iva", "IdIva", "CodIva", {"22", "10", "N8"})};
}

QVector<Table> CounterpartyTables(const Rule& code) {
    const Address address("CliFor");
    const Address destination("CliForDest");
    return {{"CliFor",
             "controparti",
             Counterparties,
             {{{"IdCliFor", 'I'}, RowNumber()},
              {{"CodCliFor", 'C', 9}, code},
              {{"FlgCli", 'I'}, BySide(Fixed(1), No())},
              {{"FlgFor", 'I'}, BySide(No(), Fixed(1))},
              {{"RagSoc", 'C', 50}, CompanyName(50)},
              {{"RagSoc2", 'C', 50}, {}},
              {{"Indir", 'C', 40}, address.Street()},
              {{"Cap", 'C', 10}, address.PostCode()},
              {{"Citta", 'C', 30}, address.Town()},
              {{"Prov", 'C', 10}, address.Province()},
              {{"CodNaz", 'C', 10}, Fixed("IT")},
              {{"PartIva", 'C', 16}, VatNumber()},
              {{"CodFis", 'C', 16}, TaxCode()},
              {{"Tel1", 'C', 20}, address.Telephone()},
              {{"Tel2", 'C', 20}, {}},
              {{"Fax", 'C', 20}, {}},
              {{"Cell", 'C', 20}, {}},
              {{"EMail", 'C', 60}, Chance(60, OnInternet("info@"))},
              {{"Web", 'C', 60}, {}},
              {{"IdPag", 'I'}, Whole(1, 3)},
              {{"IdIva", 'I'}, Chance(10, Fixed(3))},
              {{"Abi", 'C', 5}, {}},
              {{"Cab", 'C', 5}, {}},
              {{"ContoC", 'C', 12}, {}},
              {{"Cin", 'C', 1}, {}},
              {{"Iban", 'C', 40}, Chance(50, Iban())},
              {{"Sconto1", 'N', 6, 2}, OneOf({0, 5, 10})},
              {{"Sconto2", 'N', 6, 2}, No()},
              {{"CodAge", 'C', 4}, {}},
              {{"CodLis", 'C', 4}, {}},
              {{"CodVal", 'C', 4}, Fixed("EUR")},
              {{"Note", 'M'}, Chance(10, Fixed("Chiude il lunedì"))},
              {{"FlgAnn", 'I'}, Chance(3, Fixed(1), No())}},
             {{{"CodCliFor", "201.90001"}, {"FlgCli", 0}, {"FlgFor", 0}},
              {{"CodCliFor", "201.90002"}, {"FlgCli", 1}, {"Prov", "TORINO"}, {"PartIva", ""}, {"CodFis", ""}}},
             {{"IdCliFor"}}},
            {"CliForDest",
             "controparti",
             EachOf(4),
             {{{"IdCliFor", 'I'}, Counted(Customers)},
              {{"Progr", 'I'}, RowNumber()},
              {{"RagSoc", 'C', 50}, Fixed("Magazzino")},
              {{"Indir", 'C', 40}, Chance(80, destination.Street())},
              {{"Cap", 'C', 10}, destination.PostCode()},
              {{"Citta", 'C', 30}, destination.Town()},
              {{"Prov", 'C', 10}, destination.Province()}},
             {},
             {{"IdCliFor"}}}};
}

Table ArticleTable() {
    return {"Artic",
            "articoli",
            Articles,
            {{{"IdArt", 'I'}, RowNumber()},
             {{"CodArt", 'C', 50}, ArticleCode()},
             {{"DesArt", 'C', 150}, ArticleText()},
             {{"DesArt2", 'C', 50}, Chance(20, Fixed("zincato"))},
             {{"UniMis", 'C', 3}, OneOf({"PZ", "KG"})},
             {{"UniMis2", 'C', 3}, {}},
             {{"FatConv", 'N', 10, 4}, No()},
             {{"IdIva", 'I'}, Fixed(1)},
             {{"TipArt", 'I'}, Kinds({{Heads, Fixed(0)}, {Articles, OneOf({1, 2, 2, 3})}})},
             {{"CodFam", 'C', 4}, Chance(50, Fixed("MECC"))},
             {{"CosStd", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"CosUlt", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"PrzVen", 'N', 12, 4}, Number(1, 190, 2)},
             {{"PesoN", 'N', 12, 3}, Number(0.1, 40, 3)},
             {{"PesoL", 'N', 12, 3}, {}},
             {{"ScoMin", 'N', 12, 2}, Whole(0, 20)},
             {{"LotRio", 'N', 12, 2}, Whole(0, 20)},
             {{"GgRio", 'N', 4}, Whole(0, 30)},
             {{"IdFor", 'I'}, Chance(30, SupplierId())},
             {{"CodArtFor", 'C', 20}, Chance(50, Code("FOR-", 4))},
             {{"CodUbi", 'C', 10}, Chance(40, Code("U-", 4))},
             {{"Disegno", 'C', 20}, Chance(40, Code("DIS-", 5))},
             {{"Rev", 'C', 5}, OneOf({"A", "B", ""})},
             {{"FlgAnn", 'I'}, Chance(3, Fixed(1), No())}},
            {{{"CodArt", "PESO-MANCA"}, {"PesoN", "due"}}},
            {{"CodArt"}}};
}

/// The bill of an article holds articles that have none. Some bills have a revision before.
QVector<Table> BillTables() {
    return {{"DisBasT",
             "distinte",
             Heads,
             {{{"IdDisBas", 'I'}, RowNumber()},
              {{"CodArt", 'C', 50}, ArticleCode()},
              {{"Rev", 'C', 5}, Fixed("1")},
              {{"FlgAtt", 'I'}, Fixed(1)},
              {{"Note", 'M'}, {}}},
             {{{"CodArt", "TS-00001"}, {"Rev", "0"}, {"FlgAtt", 0}, {"Note", "superata"}},
              {{"CodArt", "NON-CE"}},
              {{"CodArt", "TS-00002"}, {"Rev", "A"}}},
             {{"IdDisBas"}}},
            {"DisBasF",
             "distinte",
             Heads,
             {{{"IdDisBas", 'I'}, RowNumber()},
              {{"NumFas", 'I'}, Fixed(10)},
              {{"CodLav", 'C', 10}, OneOf({"SALD", "MONT"})},
              {{"TemAtt", 'N', 8, 2}, Whole(0, 30)},
              {{"TemUni", 'N', 8, 2}, Number(0.5, 20, 1)},
              {{"CosOra", 'N', 8, 2}, Whole(25, 60)},
              {{"IdFor", 'I'}, No()}},
             {},
             {{"IdDisBas"}}},
            {"DisBasR",
             "distinte",
             Times(BillRows, Heads),
             {{{"IdDisBas", 'I'}, OfParent(BillRows, RowNumber())},
              {{"NumRig", 'I'}, Line(BillRows)},
              {{"CodArt", 'C', 50}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"Qta", 'N', 10, 3}, Number(0.5, 9, 1)},
              {{"NumFas", 'I'}, Fixed(10)},
              {{"Note", 'C', 60}, Chance(10, Fixed("destra e sinistra"))}},
             {{{"IdDisBas", 1}, {"NumRig", 9}, {"CodArt", "NON-CE"}}},
             {{"IdDisBas"}}}};
}

/// The orders of one side. @param reference column of the counterparty's own number
QVector<Table> OrderTables(const QByteArray& name, const Count& orders, const Rule& counterparty,
                           const QByteArray& reference, const QVector<OddRow>& odd) {
    const QByteArray id = "Id" + name;
    const Amounts amounts(name, OrderLines);
    return {{QString(name + 'T'),
             "documenti",
             orders,
             {{{id, 'I'}, RowNumber()},
              {{"AnnOrd", 'I'}, Fixed(2024)},
              {{"NumOrd", 'I'}, RowNumber()},
              {{"DatOrd", 'T'}, Day(360)},
              {{"IdCliFor", 'I'}, counterparty},
              {{reference, 'C', 20}, Chance(50, Code("PO ", 1))},
              {{"DatRif", 'T'}, {}},
              {{"IdPag", 'I'}, Whole(1, 3)},
              {{"StatOrd", 'I'}, OneOf({0, 1, 4})},
              {{"Note", 'M'}, Chance(10, Fixed("Urgente"))}},
             odd,
             {{id}}},
            {QString(name + 'R'),
             "documenti",
             // The odd heads have a row as well.
             Times(OrderLines, Sum(orders, Exactly(odd.size()))),
             {{{id + 'R', 'I'}, RowNumber()},
              {{id, 'I'}, OfParent(OrderLines, RowNumber())},
              {{"NumRig", 'I'}, Line(OrderLines)},
              {{"CodArt", 'C', 50}, AnyOf(Articles, ArticleCode())},
              {{"DesArt", 'C', 100}, {}},
              {{"UniMis", 'C', 3}, {}},
              {{"Qta", 'N', 10, 2}, amounts.Quantity()},
              {{"QtaEva", 'N', 10, 2}, No()},
              {{"Prezzo", 'N', 12, 4}, amounts.Price()},
              {{"Sconto1", 'N', 6, 2}, {}},
              {{"Sconto2", 'N', 6, 2}, {}},
              {{"IdIva", 'I'}, Fixed(1)},
              {{"DatCons", 'T'}, Day(360)}},
             {},
             {{id}}}};
}

QVector<Table> WorkOrderTables() {
    return {{"OrdProT",
             "documenti",
             WorkOrders,
             {{{"IdOrdPro", 'I'}, RowNumber()},
              {{"IdOrdCliR", 'I'}, RowNumber()},
              {{"NumOrdP", 'I'}, RowNumber()},
              {{"DatOrdP", 'T'}, Day(360)},
              {{"DatCons", 'T'}, Day(360)},
              {{"Qta", 'N', 10, 2}, Whole(1, 20)},
              {{"Stato", 'C', 5}, OneOf({"PIA", "LAN"})}},
             {},
             {{"IdOrdCliR"}}},
            {"OrdProR",
             "documenti",
             Times(2, WorkOrders),
             {{{"IdOrdPro", 'I'}, OfParent(2, RowNumber())},
              {{"NumRig", 'I'}, Line(2)},
              {{"CodArt", 'C', 50}, AnyOf(Articles, ArticleCode())},
              {{"DesArt", 'C', 100}, ArticleText()},
              {{"Qta", 'N', 10, 2}, Whole(1, 20)},
              {{"UniMis", 'C', 3}, Fixed("PZ")},
              {{"NumFas", 'I'}, Fixed(10)}},
             {},
             {{"IdOrdPro"}}},
            {"OrdProF",
             "documenti",
             WorkOrders,
             {{{"IdOrdPro", 'I'}, RowNumber()},
              {{"NumFas", 'I'}, Fixed(10)},
              {{"CodLav", 'C', 10}, Fixed("SALD")},
              {{"Qta", 'N', 10, 2}, Whole(1, 20)},
              {{"QtaFat", 'N', 10, 2}, No()},
              {{"Stato", 'C', 5}, Fixed("PIA")}},
             {},
             {{"IdOrdPro"}}}};
}

} // namespace

qint64 Articles(const Options& options) { return 2 * options.rows; }

Rule ArticleCode() { return Code("TS-", 5); }

QVector<Table> Tables(const Rule& code) {
    const QVector<OddRow> customerOrders{{{"IdCliFor", 99999}, {"StatOrd", 0}},
                                         {{"StatOrd", 2}},
                                         {{"DatOrd", QDateTime(QDate(2005, 12, 31), QTime(0, 0), Qt::UTC)}}};
    return CodeTables() + CounterpartyTables(code) + QVector<Table>{ArticleTable()} + BillTables() +
           OrderTables("OrdCli", CustomerOrders, Counted(Customers), "RifCli", customerOrders) + WorkOrderTables() +
           OrderTables("OrdFor", SupplierOrders, SupplierId(), "RifFor", {});
}

void Prepare(QuadrixScript& script) {
    script.UsualVatCodes();
    for (const char* code : {"22", "10", "N8"}) {
        script.Translate("Iva", "CodIva", code, code);
    }
    for (const char* code : {"B30", "B60", "RD"}) {
        script.Translate("Pagam", "CodPag", code, code);
    }
    script.Translate("CliFor", "CodNaz", "IT", "ITA");
    script.Translate("CliFor", "CodVal", "EUR", "EUR");
    script.Translate("Artic", "UniMis", "PZ", "NR");
    script.Translate("Artic", "UniMis", "KG", "KG");
    script.Translate("Artic", "CodFam", "MECC", "MECCANICA");
    script.Translate("Lavorazioni", "CodLav", "SALD", "SALD");
    script.Translate("Lavorazioni", "CodLav", "MONT", "MONT");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("MONT", "Montaggio");
    script.DocumentReason("ORD", "ORDCL", "ORD");
    script.DocumentReason("ORD", "ORDFO", "ORD");
}

} // namespace tessera

Totals MakeTessera(const Options& options) {
    using namespace tessera;
    QuadrixScript script(options.company);
    Prepare(script);
    return Write("tessera.db", Tables(BySide(Code("201.", 5), Code("401.", 5))), options, script);
}

} // namespace examples
