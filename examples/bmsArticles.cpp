// Articles of BMS with their bills, orders and prices.

#include "examples/bms.h"

namespace examples::bms {

namespace {

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
constexpr qint64 OrderKinds = 3; ///< of a customer, to a supplier and to a subcontractor
constexpr qint64 OrderLines = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count Orders = Times(OrderKinds, EachOf(5));

Rule ArticleCode() { return Code("BM-", 5); }
Rule AnySupplier() { return AnyOf(Suppliers, SupplierCode()); }

} // namespace

QVector<Table> ArticleTables() {
    return {{"LGARTMAG",
             "articoli",
             Articles,
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"ID_ARTICOLO", 'I'}, RowNumber()},
              {{"DESCR1", 'C', 60}, ArticleText()},
              {{"DESCR2", 'C', 60}, Chance(20, Fixed("zincato"))},
              {{"UM_BASE", 'C', 3}, OneOf({"PZ", "KG"})},
              {{"UM_ALT", 'C', 3}, {}},
              {{"FATT_CONV", 'N', 10, 4}, Fixed(0)},
              {{"COD_IVA", 'C', 4}, OneOf({"22", "22", "10"})},
              {{"TIPO_ART", 'C', 1}, Kinds({{Heads, Fixed("P")}, {Articles, OneOf({"S", "A", "M"})}})},
              {{"COD_FAMIGLIA", 'C', 6}, OneOf({"MEC", "LAM"})},
              {{"COSTO_STD", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"COSTO_ULT", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), Fixed(0))},
              {{"PREZZO_BASE", 'N', 12, 4}, Number(1, 190, 2)},
              {{"PESO_NETTO", 'N', 12, 3}, Number(0.1, 40, 3)},
              {{"PESO_LORDO", 'N', 12, 3}, {}},
              {{"SCORTA_MIN", 'N', 12, 2}, Whole(0, 20)},
              {{"SCORTA_MAX", 'N', 12, 2}, Whole(20, 90)},
              {{"LOTTO_RIORD", 'N', 12, 2}, Whole(5, 20)},
              {{"GG_APPROV", 'I'}, Whole(0, 30)},
              {{"COD_UBIC", 'C', 20}, Chance(40, Code("U-", 4))},
              {{"FL_ANN", 'C', 1}, YesOrNo(3)},
              {{"DT_INS", 'T'}, Day(300)}},
             {{{"COD_ARTICOLO", "PESO-MANCA"}, {"PESO_NETTO", "due"}}},
             {{"COD_ARTICOLO"}}},
            {"LGARTFOR",
             "articoli",
             EachOf(1),
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"COD_FORNITORE", 'C', 10}, AnySupplier()},
              {{"COD_ART_FORN", 'C', 30}, Chance(60, Code("FOR-", 4))},
              {{"DES_ART_FORN", 'C', 60}, {}},
              {{"PREZZO", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"GG_CONS", 'I'}, Whole(0, 30)},
              {{"LOTTO_MIN", 'N', 12, 2}, Whole(0, 5)},
              {{"FL_ABIT", 'C', 1}, YesOrNo(50)}},
             {},
             {{"COD_ARTICOLO"}}},
            {"LGARTLIN",
             "articoli",
             EachOf(4),
             {{{"COD_ARTICOLO", 'C', 30}, ArticleCode()},
              {{"COD_LINGUA", 'C', 3}, Fixed("E")},
              {{"DESCR", 'C', 60}, Code("Item ", 1)}},
             {},
             {{"COD_ARTICOLO"}}},
            {"LGARTCAR",
             "articoli",
             Times(2, EachOf(4)),
             {{{"COD_ARTICOLO", 'C', 30}, OfParent(2, ArticleCode())},
              {{"COD_CARATT", 'C', 10}, Each({"COLORE", "FINITURA"})},
              {{"DES_CARATT", 'C', 40}, Each({"Colore", "Finitura"})},
              {{"VALORE", 'C', 40}, Turn(1, {OneOf({"rosso", "blu", "grigio"}), OneOf({"lucida", "opaca"})})}},
             {},
             {{"COD_ARTICOLO"}}}};
}

QVector<Table> BillTables() {
    return {{"LGLEGAMI",
             "distinte",
             Times(Components, Heads),
             {{{"COD_PADRE", 'C', 30}, OfParent(Components, ArticleCode())},
              {{"COD_FIGLIO", 'C', 30}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"POSIZIONE", 'I'}, Line(Components)},
              {{"QTA", 'N', 12, 3}, Number(0.5, 9, 1)},
              {{"PERC_SCARTO", 'N', 6, 2}, OneOf({0, 0, 5})},
              {{"DT_FIN_VAL", 'T'}, Chance(5, Day(300))},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("destra e sinistra"))}},
             {{{"COD_PADRE", "BM-00001"}, {"POSIZIONE", 9}, {"COD_FIGLIO", "NON-CE"}}, {{"COD_PADRE", "NON-CE"}}},
             {{"COD_PADRE"}}},
            {"LGCICLI",
             "distinte",
             Times(Phases, Heads),
             {{{"COD_ARTICOLO", 'C', 30}, OfParent(Phases, ArticleCode())},
              {{"NUM_FASE", 'I'}, Each({10, 20})},
              {{"COD_LAVORAZ", 'C', 10}, Each({"SALD", "ZINC"})},
              {{"T_ATTR", 'N', 8, 2}, Whole(0, 30)},
              {{"T_UNIT", 'N', 8, 2}, Number(0.5, 20, 1)}},
             {},
             {{"COD_ARTICOLO"}}}};
}

QVector<Table> OrderTables() {
    const Amounts amounts("LGORDRIG", OrderLines);
    const Rule day = Named("LGORDTES", Day(300));
    return {{"LGORDTES",
             "documenti",
             Orders,
             {{{"ID_ORDINE", 'I'}, RowNumber()},
              {{"TIPO_DOC", 'C', 2}, Each({"OC", "OF", "OL"})},
              {{"ANNO", 'I'}, Fixed(2024)},
              {{"NUMERO", 'I'}, OfParent(OrderKinds, RowNumber())},
              {{"DT_DOC", 'T'}, day},
              {{"COD_SOGG", 'C', 10}, Turn(1, {AnyOf(Customers, CustomerCode()), AnySupplier(), AnySupplier()})},
              {{"RIF_CLI", 'C', 30}, Chance(50, Code("Vs. ", 1))},
              {{"DT_RIF", 'T'}, {}},
              {{"COD_PAGAM", 'C', 4}, OneOf(Terms)},
              {{"COD_VALUTA", 'C', 3}, Fixed("EUR")},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("Urgente"))}},
             // Each has rows behind those of the others.
             {{{"TIPO_DOC", "OC"}, {"COD_SOGG", "C999999"}}, {{"TIPO_DOC", "XX"}}},
             {{"ID_ORDINE"}}},
            {"LGORDRIG",
             "documenti",
             Times(OrderLines, Sum(Orders, Exactly(2))),
             {{{"ID_ORDINE", 'I'}, OfParent(OrderLines, RowNumber())},
              {{"NUM_RIGA", 'I'}, Line(OrderLines)},
              {{"COD_ARTICOLO", 'C', 30}, AnyOf(Articles, ArticleCode())},
              {{"DESCR", 'C', 60}, Chance(10, Fixed("come da disegno"))},
              {{"UM", 'C', 3}, {}},
              {{"QTA", 'N', 12, 2}, amounts.Quantity()},
              {{"QTA_EVASA", 'N', 12, 2}, Fixed(0)},
              {{"PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 10})},
              {{"SCONTO2", 'N', 6, 2}, {}},
              {{"COD_IVA", 'C', 4}, Fixed("22")},
              {{"DT_CONS", 'T'}, After(OfParent(OrderLines, day), 10, 60)}},
             {},
             {{"ID_ORDINE"}}}};
}

QVector<Table> PriceTables() {
    return {ListTable("LGLISTES",
                      {.code = "COD_LISTINO", .description = "DESCR", .kind = "TIPO", .currency = "COD_VALUTA"}),
            {"LGLISRIG",
             "listini",
             Prices(Articles),
             PriceColumns({.list = "COD_LISTINO",
                           .article = "COD_ARTICOLO",
                           .from = "DT_INIZIO",
                           .to = "DT_FINE",
                           .quantity = "QTA_DA",
                           .price = "PREZZO",
                           .discount1 = "SCONTO1",
                           .discount2 = "SCONTO2",
                           .discount3 = "SCONTO3"},
                          Articles, ArticleCode()),
             {{{"COD_LISTINO", SalesList}, {"COD_ARTICOLO", "NON-CE"}},
              {{"COD_LISTINO", "ZZ"}, {"COD_ARTICOLO", "BM-00001"}}},
             {{"COD_LISTINO"}}}};
}

} // namespace examples::bms
