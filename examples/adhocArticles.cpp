// Articles of Ad Hoc, some of them sheets, and their stock.

#include "examples/adhoc.h"
#include "examples/lantek.h"

namespace examples::adhoc {

namespace {

constexpr qint64 Lists = 2;
constexpr qint64 MovementRows = 5;
const Count Movements = [](const Options& options) { return (options.rows + 1) / 2; };
const Count InSecondStore = EachOf(5);

Rule ItemWeight() { return Named("ART_ICOL.weight", Number(0.1, 40, 3)); }
/// Code of the list that the row belongs to, each article having one row for each list.
Rule ListCode() { return Turn(1, {Fixed("L1"), Fixed("L2")}); }

Rule SheetWeight() {
    return [](const Place& place) {
        const auto number = [&place](const Rule& rule) { return rule(place).toDouble(); };
        constexpr double cubicMillimetres = 1e6; // of a cubic decimetre
        return QVariant(number(lantek::SheetLength()) * number(lantek::SheetWidth()) *
                        number(lantek::SheetThickness()) * number(lantek::Density()) / cubicMillimetres);
    };
}

Rule SheetText() {
    return [](const Place& place) {
        return QVariant(u"Lamiera " + lantek::SheetCode()(place).toString().replace(u'-', u' '));
    };
}

} // namespace

qint64 Articles(const Options& options) { return options.rows; }

Rule ItemCode() { return Code("AH-", 5); }

Rule ItemCost() { return Named("ART_ICOL.cost", Number(0.5, 90, 2)); }

Table ArticleTable() {
    const auto byKind = [](const Rule& article, const Rule& sheet) {
        return Kinds({{Articles, article}, {Exactly(lantek::Sheets), sheet}});
    };
    QVector<Field> fields{{{"ARCODART", 'C', 20}, byKind(ItemCode(), lantek::SheetCode())},
                          {{"ARDESART", 'C', 40}, byKind(ArticleText(), SheetText())},
                          {{"ARDESSUP", 'M'}, byKind(Chance(20, Fixed("Zincato a caldo")), {})},
                          {{"ARUNMIS1", 'C', 3}, byKind(Fixed("PZ"), Fixed("KG"))},
                          {{"ARUNMIS2", 'C', 3}, byKind(Chance(20, Fixed("SC")), {})},
                          {{"AROPERAT", 'C', 1}, byKind(Fixed("/"), {})},
                          {{"ARMOLTIP", 'N', 12, 4}, byKind(OneOf({10, 50, 100}), {})},
                          {{"ARTIPART", 'C', 2}, byKind(OneOf({"PF", "SE", "MP"}), Fixed("MP"))},
                          {{"ARGRUMER", 'C', 10}, byKind(OneOf({"MEC", "FER"}), lantek::SheetMaterial())},
                          {{"ARCODFAM", 'C', 5}, byKind(Chance(60, OneOf({"MECC", "IDRA"})), Fixed("LAM"))},
                          {{"ARCODIVA", 'C', 5}, Chance(90, Fixed("22"), Fixed("10"))},
                          {{"ARPESNET", 'N', 12, 3}, byKind(ItemWeight(), SheetWeight())},
                          {{"ARPESLOR", 'N', 12, 3}, byKind(Scaled(1.05, 3, ItemWeight()), SheetWeight())},
                          {{"ARULTCOS", 'N', 12, 4}, byKind(Chance(70, ItemCost()), Number(0.8, 4, 2))},
                          {{"ARCODDIS", 'C', 20}, byKind(Chance(10, Code("D-", 5)), {})},
                          {{"ARDIMLU1", 'N', 12, 3}, byKind({}, lantek::SheetLength())},
                          {{"ARDIMLA1", 'N', 12, 3}, byKind({}, lantek::SheetWidth())},
                          {{"ARDIMAL1", 'N', 12, 3}, byKind({}, lantek::SheetThickness())},
                          {{"ARDTOBSO", 'T'}, byKind(Chance(3, Day(300)), {})},
                          {{"ARDTINVA", 'T'}, Day(300)},
                          {{"utdc", 'T'}, Day(300)}};
    return {"ART_ICOL",
            "articoli",
            Sum(Articles, Exactly(lantek::Sheets)),
            fields,
            {{{"ARCODART", "PESO-MANCA"}, {"ARPESNET", "due"}, {"ARCODFAM", "MECC"}, {"ARGRUMER", {}}},
             {{"ARCODART", "S235-8-RITAGLI"}, {"ARDIMLU1", {}}, {"ARGRUMER", "S235"}}},
            {{"ARCODART"}}};
}

QVector<Table> TablesOfArticles() {
    const Rule supplier = AnyOf(Suppliers, PartyCode());
    const Table reorder{"PAR_RIOR",
                        "articoli",
                        Articles,
                        {{{"PRCODART", 'C', 20}, ItemCode()},
                         {{"PRSCOMIN", 'N', 12, 3}, Whole(0, 20)},
                         {{"PRSCOMAX", 'N', 12, 3}, Whole(20, 200)},
                         {{"PRPUNRIO", 'N', 12, 3}, Whole(0, 30)},
                         {{"PRLOTRIO", 'N', 12, 3}, Whole(1, 50)},
                         {{"PRQTAMIN", 'N', 12, 3}, Whole(1, 10)},
                         {{"PRGIOAPP", 'I'}, Whole(1, 30)},
                         {{"PRCODFOR", 'C', 15}, Chance(40, supplier)},
                         {{"PRCOSSTA", 'N', 18, 5}, ItemCost()}},
                        {},
                        {{"PRCODART"}}};
    const auto code = [](const Rule& own, const Rule& barcode, const Rule& ofSupplier, const Rule& ofCustomer) {
        return Kinds({{Articles, own}, {EachOf(2), barcode}, {EachOf(3), ofSupplier}, {EachOf(10), ofCustomer}});
    };
    const Rule item = ItemCode();
    const Table codes{"KEY_ARTI",
                      "articoli",
                      Sum(Sum(Articles, EachOf(2)), Sum(EachOf(3), EachOf(10))),
                      {{{"CACODICE", 'C', 20}, code(item, BarCode(), Code("FOR-", 5), Code("CLI-", 5))},
                       {{"CACODART", 'C', 20}, code(item, item, item, item)},
                       {{"CATIPCON", 'C', 1}, code({}, {}, Fixed("F"), Fixed("C"))},
                       {{"CACODCON", 'C', 15}, code({}, {}, supplier, AnyOf(Customers, PartyCode()))}},
                      {},
                      {{"CACODART"}}};
    const Table prices{"LIS_TINI",
                       "articoli",
                       Times(Lists, Articles),
                       {{{"LICODART", 'C', 20}, OfParent(Lists, item)},
                        {{"CPROWNUM", 'I'}, Line(Lists)},
                        {{"LICODLIS", 'C', 5}, ListCode()},
                        {{"LIDATATT", 'T'}, Fixed(QDate(2024, 1, 1))},
                        {{"LIDATDIS", 'T'}, {}}},
                       {},
                       {{"LICODART"}}};
    const Table quantities{"LIS_SCAG",
                           "articoli",
                           Times(Lists, Articles),
                           {{{"LICODART", 'C', 20}, OfParent(Lists, item)},
                            {{"LIROWNUM", 'I'}, Line(Lists)},
                            {{"LIPREZZO", 'N', 18, 5}, OfParent(Lists, Scaled(1.6, 2, ItemCost()))},
                            {{"LISCONT1", 'N', 6, 2}, OneOf({0, 0, 10})},
                            {{"LISCONT2", 'N', 6, 2}, Fixed(0)},
                            {{"LISCONT3", 'N', 6, 2}, Fixed(0)}},
                           {},
                           {{"LICODART"}}};
    return {reorder, codes, prices, quantities};
}

QVector<Table> StockTables() {
    const Amounts amounts("MVM_DETT", MovementRows);
    const auto ofMovement = [](const Rule& rule) { return OfParent(MovementRows, rule); };
    const auto loadOr = [](const char* load, const char* other) {
        return Named("MVM_MAST.kind", Chance(60, Fixed(load), Fixed(other)));
    };
    const Rule serial = Code("", 10);
    const Table heads{"MVM_MAST",
                      "magazzino",
                      Movements,
                      {{{"MMSERIAL", 'C', 10}, serial},
                       {{"MMNUMREG", 'I'}, RowNumber()},
                       {{"MMDATREG", 'T'}, Day(360)},
                       {{"MMTCAMAG", 'C', 5}, loadOr("CAR", "SCA")}},
                      {{{"MMSERIAL", "9000000001"}}},
                      {{"MMSERIAL"}}};
    const Table rows{"MVM_DETT",
                     "magazzino",
                     Times(MovementRows, Movements),
                     {{{"MMSERIAL", 'C', 10}, ofMovement(serial)},
                      {{"CPROWNUM", 'I'}, Line(MovementRows)},
                      {{"CPROWORD", 'I'}, Line(MovementRows)},
                      {{"MMCODART", 'C', 20}, AnyOf(Articles, ItemCode())},
                      {{"MMCODMAG", 'C', 5}, ofMovement(Chance(80, Fixed("M1"), Fixed("M2")))},
                      {{"MMQTAMOV", 'N', 12, 3}, amounts.Quantity()},
                      {{"MMQTAUM1", 'N', 12, 3}, amounts.Quantity()},
                      {{"MMCAUMAG", 'C', 5}, ofMovement(loadOr("CAR", "SCA"))},
                      {{"MMFLCASC", 'C', 1}, ofMovement(loadOr("+", "-"))},
                      {{"MMPREZZO", 'N', 18, 5}, amounts.Price()},
                      {{"MMVALMAG", 'N', 18, 4}, amounts.RowTotal()}},
                     {{{"MMSERIAL", "0000000001"}, {"CPROWNUM", 6}, {"CPROWORD", 6}, {"MMCODART", "MANCA"}},
                      {{"MMSERIAL", "0000000001"}, {"CPROWNUM", 7}, {"CPROWORD", 7}, {"MMFLCASC", "="}},
                      {{"MMSERIAL", "9000000001"}, {"MMQTAUM1", "tanti"}}},
                     {{"MMSERIAL"}}};
    const Table balances{"SALDIART",
                         "magazzino",
                         Sum(Articles, InSecondStore),
                         {{{"SLCODICE", 'C', 20}, Kinds({{Articles, ItemCode()}, {InSecondStore, ItemCode()}})},
                          {{"SLCODMAG", 'C', 5}, Kinds({{Articles, Fixed("M1")}, {InSecondStore, Fixed("M2")}})},
                          {{"SLQTAPER", 'N', 18, 3}, Chance(80, Number(0, 500, 1), Fixed(0))},
                          {{"SLVALUCA", 'N', 12, 4}, Kinds({{Articles, ItemCost()}, {InSecondStore, ItemCost()}})}},
                         {{{"SLCODICE", "MANCA"}, {"SLCODMAG", "M1"}, {"SLQTAPER", 3}}},
                         {{"SLCODICE"}}};
    return {heads, rows, balances};
}

} // namespace examples::adhoc
