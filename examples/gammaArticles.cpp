// Articles of Gamma with their prices and bills of two levels, and tubes.

#include "examples/gamma.h"

namespace examples::gamma {

namespace {

constexpr qint64 Components = 3;
constexpr qint64 Phases = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Products = EachOf(4); ///< the first articles; their bills hold parts and what is bought
const Count Parts = EachOf(2);    ///< behind them; their bills hold what is bought
const Count Bills = Sum(Products, Parts);

Rule ArticleCode() { return Code("GA-", 5); }
/// What is different for products, parts and what is bought.
Rule ByKind(const Rule& product, const Rule& part, const Rule& bought) {
    return Kinds({{Products, product}, {Parts, part}, {Articles, bought}});
}

} // namespace

QVector<Table> ArticleTables() {
    return {{"MG66_ANAGRART",
             "articoli",
             Articles,
             {Company("MG66"),
              {{"MG66_CODART", 'C', 30}, ArticleCode()},
              {{"MG66_UM1", 'C', 3}, ByKind(Fixed("PZ"), Fixed("PZ"), OneOf({"PZ", "KG"}))},
              {{"MG66_UM2", 'C', 3}, {}},
              {{"MG66_FATTCONV", 'N', 12, 4}, No()},
              {{"MG66_FAM_MG53", 'C', 4}, OneOf({"MEC", "LAM"})},
              {{"MG66_GRUPPO_MG55", 'C', 4}, {}},
              {{"MG66_CODIVA_CG28", 'C', 4}, OneOf({"22", "22", "10"})},
              {{"MG66_PESONETTO", 'N', 12, 3}, Number(0.1, 40, 3)},
              {{"MG66_PESOLORDO", 'N', 12, 3}, {}},
              {{"MG66_COSTOSTD", 'N', 12, 4}, Chance(70, Number(0.5, 90, 2), No())},
              {{"MG66_COSTOULT", 'N', 12, 4}, Number(0.5, 90, 2)},
              {{"MG66_SCORTAMIN", 'N', 12, 2}, Whole(0, 20)},
              {{"MG66_SCORTAMAX", 'N', 12, 2}, Whole(20, 90)},
              {{"MG66_LOTTORIOR", 'N', 12, 2}, Whole(0, 20)},
              {{"MG66_GGAPPROV", 'I'}, Whole(0, 30)},
              {{"MG66_FLGOBSOLETO", 'I'}, Chance(3, Fixed(1), No())}},
             {{{"MG66_CODART", "PESO-MANCA"}, {"MG66_PESONETTO", "due"}}},
             {{"MG66_CODART"}}},
            {"MG87_ARTDESC",
             "articoli",
             [](const Options& options) { return Articles(options) + options.rows / 4; },
             {Company("MG87"),
              {{"MG87_CODART_MG66", 'C', 30}, Kinds({{Articles, ArticleCode()}, {Articles, ArticleCode()}})},
              {{"MG87_OPZIONE_MG5E", 'C', 10}, Fixed("")},
              {{"MG87_LINGUA_MG52", 'C', 4}, Kinds({{Articles, Fixed("")}, {Articles, Fixed("ING")}})},
              {{"MG87_DESCART", 'C', 72}, Kinds({{Articles, ArticleText()}, {Articles, Code("Item ", 1)}})},
              {{"MG87_DESCARTEST", 'M'}, Chance(20, Fixed("zincato a caldo"))}},
             {},
             {{"MG87_CODART_MG66"}}},
            {"PD18_ARTPROD",
             "articoli",
             Articles,
             {Company("PD18"),
              {{"PD18_CODART_MG66", 'C', 30}, ArticleCode()},
              {{"PD18_TIPOPROD_PD20", 'C', 2}, ByKind(Fixed("PF"), Fixed("SL"), Fixed("MP"))},
              {{"PD18_CODPROV_PD21", 'I'}, ByKind(Fixed(1), Fixed(1), Fixed(2))},
              {{"PD18_CODCICLO", 'C', 10}, Kinds({{Bills, Code("CIC", 5)}, {Articles, {}}})}},
             {},
             {{"PD18_CODART_MG66"}}},
            {"MG73_ARTCLIFOR",
             "articoli",
             [](const Options& options) { return options.rows + EachOf(3)(options); },
             Owner("MG73", Kinds({{EachOf(1), Fixed(1)}, {EachOf(3), No()}}), AnyOf(Suppliers, RowNumber())) +
                 QVector<Field>{{{"MG73_CODART_MG66", 'C', 30}, ArticleCode()},
                                {{"MG73_FLGFORPREF", 'I'}, Chance(40, Fixed(1), No())},
                                {{"MG73_CODARTCF", 'C', 30}, Code("COD-", 5)}},
             {},
             {{"MG73_CODART_MG66"}}}};
}

/// Lists 1 and 2 are of sales, 3 of purchases; prices of the first that have ended stand behind.
QVector<Table> PriceTables() {
    const Count halves = EachOf(2);
    const auto byList = [halves](const Rule& first, const Rule& second, const Rule& third, const Rule& ended) {
        return Kinds({{Articles, first}, {halves, second}, {halves, third}, {halves, ended}});
    };
    const Rule article = ArticleCode();
    return {{"LI10_LISTARTIC",
             "listini",
             Sum(Articles, Times(3, halves)),
             QVector<Field>{
                 Company("LI10"),
                 {{"LI10_NUMLIST", 'I'}, byList(Fixed(1), Fixed(2), Fixed(3), Fixed(1))},
                 {{"LI10_FLGVENDACQ", 'I'}, byList(No(), No(), Fixed(1), No())},
                 {{"LI10_CODART_MG66", 'C', 30}, byList(article, article, article, article)},
                 {{"LI10_DATAINIZIOVAL", 'T'}, byList(NewYear(2024), NewYear(2024), NewYear(2024), NewYear(2022))},
                 {{"LI10_DATAFINEVAL", 'T'}, byList({}, {}, {}, NewYear(2023))},
                 {{"LI10_QTA", 'N', 12, 2}, byList(No(), Fixed(10), No(), No())},
                 {{"LI10_PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
                 {{"LI10_OPZIONE_MG5E", 'C', 10}, Fixed("")}} +
                 Unused({"LI10_DEPOS_MG58"}),
             {{{"LI10_CODART_MG66", "NON-CE"}}, {{"LI10_CODART_MG66", "GA-00001"}, {"LI10_DEPOS_MG58", "D2"}}},
             {{"LI10_CODART_MG66"}}},
            {"LI16_LISTARTCF",
             "listini",
             Times(2, halves),
             Owner("LI16", Kinds({{halves, No()}, {halves, Fixed(1)}}), AnyOf(Suppliers, RowNumber())) +
                 QVector<Field>{{{"LI16_CODART_MG66", 'C', 30}, article},
                                {{"LI16_DATAINIZIOVAL", 'T'}, NewYear(2024)},
                                {{"LI16_PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
                                {{"LI16_SC1PER", 'N', 6, 2}, OneOf({0, 5, 10})},
                                {{"LI16_SC2PER", 'N', 6, 2}, OneOf({0, 0, 3})},
                                {{"LI16_MAG1PER", 'N', 6, 2}, OneOf({0, 0, 2})}} +
                 Unused({"LI16_SC3PER", "LI16_MAG2PER"}),
             {{{"LI16_TIPOCF_CG44", 0}, {"LI16_CLIFOR_CG44", 9000003}}},
             {{"LI16_CLIFOR_CG44"}, {"LI16_CODART_MG66"}}}};
}

QVector<Table> BillTables() {
    const Count ofProducts = Times(Components, Products);
    const Count ofParts = Times(Components, Parts);
    return {{"PD95_DISBA",
             "distinte",
             Bills,
             {Company("PD95"),
              {{"PD95_IDDISBA", 'I'}, RowNumber()},
              {{"PD95_CODART_MG66", 'C', 30}, ArticleCode()},
              {{"PD95_TIPO_DISTINTA", 'I'}, No()},
              {{"PD95_OPZIONE", 'C', 10}, Fixed("")}},
             {{{"PD95_CODART_MG66", "NON-CE"}}, {{"PD95_CODART_MG66", "GA-00001"}, {"PD95_OPZIONE", "ROSSO"}}},
             {{"PD95_CODART_MG66"}}},
            {"PD96_LEGAMIDISBA",
             "distinte",
             Times(Components, Bills),
             {{{"PD96_IDDISBA_PD95", 'I'}, OfParent(Components, RowNumber())},
              {{"PD96_SEQCOMP", 'I'}, Line(Components)},
              {{"PD96_COMPON", 'C', 30},
               Kinds({{ofProducts, AnyBehind(Products, Articles, ArticleCode())},
                      {ofParts, AnyBehind(Bills, Articles, ArticleCode())}})},
              {{"PD96_QUANT_1", 'N', 12, 3}, Number(0.5, 9, 1)}},
             {{{"PD96_IDDISBA_PD95", 1}, {"PD96_SEQCOMP", 9}, {"PD96_COMPON", "NON-CE"}}},
             {{"PD96_IDDISBA_PD95"}}},
            {"PD48_CICLI",
             "distinte",
             Times(Phases, Bills),
             {Company("PD48"),
              {{"PD48_CICLO_PD52", 'C', 10}, OfParent(Phases, Code("CIC", 5))},
              {{"PD48_SEQFASE", 'I'}, Each({10, 20})},
              {{"PD48_CODFASE_PD12", 'C', 6}, Each({"SALD", "ZINC"})},
              {{"PD48_IDDISBA_PD95", 'I'}, {}},
              {{"PD48_INDTIPOPROV", 'I'}, Each({0, 1})},
              {{"PD48_CODFORN_CG44", 'I'}, Turn(1, {{}, AnyOf(Suppliers, RowNumber())})},
              {{"PD48_MACCHINA_PD08", 'C', 6}, Each({"CS1", {}})},
              {{"PD48_TEMPOSETUP", 'N', 8, 2}, Whole(0, 30)},
              {{"PD48_TEMPOLAV", 'N', 8, 2}, Number(0.5, 20, 1)}},
             {},
             {{"PD48_CICLO_PD52"}}}};
}

Table TubeTable() {
    return {"TUBI",
            "tubolari",
            EachOf(10),
            {{{"CODICE", 'C', 30}, Code("TUBO-", 4)},
             {{"DESCRIZIONE", 'C', 60}, Each({"Tubo quadro 40x40x3", "Tubo quadro 60x60x4", "Tubo tondo 30x2"})},
             {{"PROFILO", 'C', 10}, Each({"TQ40", "TQ60", "TT30"})},
             {{"DIM_A", 'I'}, Each({40, 60, 30})},
             {{"DIM_B", 'I'}, Each({40, 60, 30})},
             {{"SPESSORE", 'N', 6, 1}, Each({3.0, 4.0, 2.0})},
             {{"LUNGHEZZA", 'I'}, OneOf({3000, 6000, 12000})},
             {{"PESO_ML", 'N', 8, 2}, Each({3.41, 6.71, 1.38})},
             {{"MATERIALE", 'C', 10}, OneOf({"S235", "S355"})},
             {{"COSTO", 'N', 8, 2}, Number(0.8, 9, 2)}},
            {{{"CODICE", "TUBO-MISURA"}, {"LUNGHEZZA", "sei"}}, {{"CODICE", ""}}}};
}

} // namespace examples::gamma
