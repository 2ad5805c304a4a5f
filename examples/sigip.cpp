// SIGIP: a database with customers and suppliers in tables alike, articles, bills by revision with their cycles, and
// the orders of both sides, whose rows have a day of delivery that is wanted and one that is confirmed.

#include "examples/describedRules.h"

namespace examples {

namespace sigip {

namespace {

using namespace described;

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
constexpr qint64 OrderLines = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count SalesOrders = EachOf(3);
const Count PurchaseOrders = EachOf(5);

const QVariantList Terms{"RB30", "RB60", "BON"};

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("SI-", 5); }
Rule PartyCode() { return Code("", 6); } ///< of either side
Rule AnySupplier() { return AnyOf(Suppliers, PartyCode()); }

/// @param first the counterparties before those of the table @param list price list of the side
Table PartyTable(const QString& name, const Count& count, const Count& first, const QString& list,
                 const QVector<OddRow>& odd) {
    const Address address(name.toLatin1());
    const BankAccount account(name.toLatin1(), 60);
    return {name,
            "controparti",
            count,
            QVector<Field>{{{"CODICE", 'C', 8}, PartyCode()},
                           {{"RAGSOC", 'C', 40}, Behind(first, NameBegin(40))},
                           {{"RAGSO2", 'C', 40}, Behind(first, NameRest(40))},
                           {{"NAZION", 'C', 5}, OneOf({"I", "ITA", {}})},
                           {{"PARIVA", 'C', 16}, Behind(first, VatNumber())},
                           {{"CODFIS", 'C', 16}, Behind(first, TaxCode())},
                           {{"TELEF1", 'C', 20}, address.Telephone()},
                           {{"TELCEL", 'C', 20}, Chance(30, Mobile())},
                           {{"EMAIL", 'C', 60}, Chance(60, Behind(first, OnInternet("info@")))},
                           {{"SITWEB", 'C', 60}, Chance(30, Behind(first, OnInternet("www.")))},
                           {{"CODPAG", 'C', 4}, OneOf(Terms)},
                           {{"CODABI", 'C', 5}, account.Abi()},
                           {{"CODCAB", 'C', 5}, account.Cab()},
                           {{"CONCOR", 'C', 12}, account.Number()},
                           {{"CODIBA", 'C', 34}, account.Iban()},
                           {{"SCONT1", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                           {{"SCONT2", 'N', 6, 2}, OneOf({0, 0, 3})},
                           {{"CODAGE", 'C', 5}, Chance(30, OneOf({"AG1", "AG2"}))},
                           {{"CODLIS", 'C', 5}, Chance(60, Fixed(list))},
                           {{"CODVAL", 'C', 3}, Fixed("EUR")},
                           {{"CODZON", 'C', 5}, OneOf({"NORD", "SUD", {}})},
                           {{"CODESE", 'C', 4}, Chance(8, Fixed("N8"))},
                           {{"ANNOTA", 'M'}, Chance(10, Fixed("Chiamare prima"))}} +
                address.Columns("INDIRI", "CAP", "LOCALI", "PROVIN") + Unused({"TELEF2", "TELFAX", "CODBAN"}),
            odd,
            {{"CODICE"}}};
}

QVector<Table> CounterpartyTables() {
    const Address destination("DESTIN");
    return {PartyTable("CLIENTI", Customers, Exactly(0), "L1",
                       {{{"CODICE", "900001"}, {"SCONT1", "molto"}, {"PARIVA", {}}, {"CODFIS", {}}},
                        {{"CODICE", "900002"}, {"PROVIN", "TRENTO"}, {"PARIVA", {}}, {"CODFIS", {}}}}),
            PartyTable("FORNIT", Suppliers, Customers, "A1", {}),
            {"DESTIN",
             "controparti",
             EachOf(4),
             QVector<Field>{{{"CODCLI", 'C', 8}, AnyOf(Customers, PartyCode())},
                            {{"NUMDES", 'C', 5}, RowNumber()},
                            {{"RAGSOC", 'C', 40}, OneOf({"Magazzino", "Stabilimento", "Cantiere"})}} +
                 destination.Columns("INDIRI", "CAP", "LOCALI", "PROVIN"),
             {{{"CODCLI", "000001"}, {"INDIRI", {}}}},
             {{"CODCLI"}}}};
}

Table ArticleTable() {
    return {"ARTICO",
            "articoli",
            Articles,
            {{{"CODART", 'C', 30}, ArticleCode()},
             {{"DESCR1", 'C', 60}, ArticleText()},
             {{"DESCR2", 'C', 60}, Chance(20, Fixed("zincato"))},
             {{"UNIMIS", 'C', 3}, OneOf({"PZ", "KG"})},
             {{"UNIMI2", 'C', 3}, {}},
             {{"FATCON", 'N', 10, 4}, No()},
             {{"CODIVA", 'C', 4}, OneOf({"22", "22", "10"})},
             {{"TIPART", 'C', 2}, Kinds({{Heads, Fixed("PF")}, {Articles, OneOf({"SL", "MP", "MP"})}})},
             {{"GRUPPO", 'C', 6}, OneOf({"MEC", "LAM"})},
             {{"COSSTA", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"COSULT", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), No())},
             {{"PREVEN", 'N', 12, 4}, Number(1, 190, 2)},
             {{"PESNET", 'N', 12, 3}, Number(0.1, 40, 3)},
             {{"PESLOR", 'N', 12, 3}, {}},
             {{"SCOMIN", 'N', 12, 2}, Whole(0, 20)},
             {{"SCOMAX", 'N', 12, 2}, Whole(20, 90)},
             {{"PUNRIO", 'N', 12, 2}, Whole(0, 20)},
             {{"LOTRIO", 'N', 12, 2}, Whole(5, 20)},
             {{"GGCONS", 'I'}, Whole(0, 30)},
             {{"CODFOR", 'C', 8}, Chance(30, AnySupplier())},
             {{"ARTFOR", 'C', 30}, Chance(50, Code("FOR-", 4))},
             {{"CODUBI", 'C', 20}, Chance(40, Code("U-", 4))},
             {{"FLGANN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))}},
            {{{"CODART", "PESO-MANCA"}, {"PESNET", "due"}}},
            {{"CODART"}}};
}

QVector<Table> BillTables() {
    return {{"DISBAS",
             "distinte",
             Times(Components, Heads),
             {{{"PADRE", 'C', 30}, OfParent(Components, ArticleCode())},
              {{"REVISI", 'C', 5}, OfParent(Components, Each({"1", "2", {}}))},
              {{"FIGLIO", 'C', 30}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"NUMRIG", 'I'}, Line(Components)},
              {{"QUANTI", 'N', 12, 3}, Number(0.5, 9, 1)},
              {{"DATFIN", 'T'}, Chance(5, Day(300))},
              {{"NOTRIG", 'C', 60}, Chance(10, Fixed("destra e sinistra"))}},
             {{{"PADRE", "SI-00001"}, {"REVISI", "1"}, {"NUMRIG", 9}, {"FIGLIO", "NON-CE"}}, {{"PADRE", "NON-CE"}}},
             {{"PADRE"}}},
            {"CICLAV",
             "distinte",
             Times(Phases, Heads),
             {{{"CODART", 'C', 30}, OfParent(Phases, ArticleCode())},
              {{"NUMFAS", 'I'}, Each({10, 20})},
              {{"CODLAV", 'C', 10}, Each({"SALD", "ZINC"})},
              {{"TEMATT", 'N', 8, 2}, Whole(0, 30)},
              {{"TEMUNI", 'N', 8, 2}, Number(0.5, 20, 1)},
              {{"CODTER", 'C', 8}, Turn(1, {{}, AnySupplier()})}},
             {},
             {{"CODART"}}}};
}

/// The orders of one side.
QVector<Table> OrderTables(const QString& heads, const QString& rows, const Count& orders, const Rule& party) {
    const Amounts amounts(rows.toLatin1(), OrderLines);
    const Rule day = Named(heads.toLatin1(), Day(300));
    return {{heads,
             "documenti",
             orders,
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"NUMORD", 'I'}, RowNumber()},
              {{"DATORD", 'T'}, day},
              {{"CODICE", 'C', 8}, party},
              {{"RIFORD", 'C', 30}, Chance(50, Code("Vs. ", 1))},
              {{"DATRIF", 'T'}, {}},
              {{"CODPAG", 'C', 4}, OneOf(Terms)},
              {{"CODVAL", 'C', 3}, Fixed("EUR")},
              {{"CAMBIO", 'N', 10, 4}, Fixed(1)},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("Urgente"))},
              {{"STAORD", 'C', 1}, OneOf({"A", "A", {}, "E"})}},
             {{{"CODICE", "999999"}, {"STAORD", "A"}}},
             {{"ANNO", "NUMORD"}}},
            {rows,
             "documenti",
             // The odd order has its rows as well.
             Times(OrderLines, Sum(orders, Exactly(1))),
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"NUMORD", 'I'}, OfParent(OrderLines, RowNumber())},
              {{"NUMRIG", 'I'}, Line(OrderLines)},
              {{"CODART", 'C', 30}, AnyOf(Articles, ArticleCode())},
              {{"DESCR1", 'C', 60}, Chance(10, Fixed("come da disegno"))},
              {{"UNIMIS", 'C', 3}, {}},
              {{"QTAORD", 'N', 12, 2}, amounts.Quantity()},
              {{"QTAEVA", 'N', 12, 2}, No()},
              {{"PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"SCONT1", 'N', 6, 2}, OneOf({0, 0, 10})},
              {{"SCONT2", 'N', 6, 2}, {}},
              {{"CODIVA", 'C', 4}, Fixed("22")},
              {{"DATCON", 'T'}, After(OfParent(OrderLines, day), 10, 60)},
              {{"DATCNF", 'T'}, Chance(50, After(OfParent(OrderLines, day), 20, 90))}},
             {},
             {{"ANNO", "NUMORD"}}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    for (const char* table : {"CLIENTI", "FORNIT"}) {
        script.Keep(table, "CODPAG", Terms);
        script.Translate(table, "NAZION", "I", "ITA");
        script.Translate(table, "NAZION", "ITA", "ITA");
        script.Keep(table, "CODAGE", {"AG1", "AG2"});
        script.Keep(table, "CODZON", {"NORD", "SUD"});
        script.Keep(table, "CODLIS", {"L1", "A1"});
    }
    script.Keep("CICLAV", "CODLAV", {"SALD", "ZINC"});
    script.Translate("ARTICO", "UNIMIS", "PZ", "NR");
    script.Translate("ARTICO", "UNIMIS", "KG", "KG");
    script.Translate("ARTICO", "GRUPPO", "MEC", "MECCANICA");
    script.Translate("ARTICO", "GRUPPO", "LAM", "LAMIERE");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("ZINC", "Zincatura");
    script.DocumentReason("ORD", "ORDCL", "ORD");
    script.DocumentReason("ORD", "ORDFO", "ORD");
    return script;
}

} // namespace

} // namespace sigip

Totals MakeSIGIP(const Options& options) {
    using namespace sigip;
    const QVector<Table> tables = CounterpartyTables() + QVector<Table>{ArticleTable()} + BillTables() +
                                  OrderTables("ORDCLT", "ORDCLR", SalesOrders, AnyOf(Customers, PartyCode())) +
                                  OrderTables("ORDFOT", "ORDFOR", PurchaseOrders, AnySupplier());
    return Write("sigip.db", tables, options, PreparedFor(options));
}

} // namespace examples
