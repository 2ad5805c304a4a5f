// AUTOMA, an automatic warehouse, and Ferrobrio, the store of a customer: they hold the sheets of the workshop.

#include "examples/lantek.h"

namespace examples {

namespace sheetStores {

namespace {

using namespace lantek;

constexpr qint64 Cells = 40;

Table CellsTable() {
    return {"CELLE",
            "ubicazioni",
            Exactly(Cells),
            {{{"ID_CELLA", 'I'}, [](const Place& place) { return QVariant(place.row + 1); }},
             {{"COD_CELLA", 'C', 40}, Code("C-", 3)},
             {{"DESCRIZIONE", 'C', 50}, Chance(50, Code("Cella ", 1))},
             {{"AREA", 'C', 10}, OneOf({"NORD", "SUD"})},
             {{"CATEGORIA", 'C', 10}, Fixed("L")},
             {{"STABILIMENTO", 'C', 10}, Fixed("S1")},
             {{"CORRIDOIO", 'I'}, Whole(1, 4)},
             {{"POSIZIONE", 'I'}, Line(10)},
             {{"RIPIANO", 'I'}, Whole(1, 6)},
             {{"DIM_X", 'N', 8, 1}, Fixed(3000)},
             {{"DIM_Y", 'N', 8, 1}, Fixed(1500)},
             {{"DIM_Z", 'N', 8, 1}, Fixed(200)},
             {{"PORTATA", 'N', 8, 1}, Fixed(3000)},
             {{"FL_UDC", 'L'}, Flag(50)},
             {{"FL_DISABILITATA", 'L'}, Fixed(false)}},
            {{{"COD_CELLA", "C-900"}, {"FL_DISABILITATA", true}}, {{"COD_CELLA", "C-901"}, {"PORTATA", "tanto"}}}};
}

Table CellStockTable() {
    const Rule no = Fixed(0);
    const auto sheetOrBought = [](const Rule& sheet, const Rule& bought) {
        return Kinds({{Exactly(Sheets), sheet}, {Bought, bought}});
    };
    return {"GIACENZE",
            "giacenze",
            [](const Options& options) { return Sheets + Bought(options); },
            {{{"COD_ARTICOLO", 'C', 50}, sheetOrBought(SheetCode(), BoughtCode())},
             {{"ID_CELLA", 'I'}, Whole(1, Cells)},
             {{"QTA", 'N', 10, 2}, sheetOrBought(Whole(1, 40), Whole(10, 900))},
             {{"UM", 'C', 3}, Fixed("nr")},
             {{"LUNGHEZZA", 'N', 8, 1}, sheetOrBought(SheetLength(), no)},
             {{"LARGHEZZA", 'N', 8, 1}, sheetOrBought(SheetWidth(), no)},
             {{"SPESSORE", 'N', 6, 2}, sheetOrBought(SheetThickness(), no)},
             {{"FL_SFRIDO", 'L'}, Fixed(false)},
             {{"LOTTO", 'C', 20}, Code("L24-", 4)},
             {{"DATA_CARICO", 'T'}, Day(300)},
             {{"ID_UDC", 'C', 30}, Chance(30, Code("U-", 4))}},
            {{{"COD_ARTICOLO", "NON-CE"}}, {{"COD_ARTICOLO", "COM-0001"}, {"QTA", "5 pezzi"}}}};
}

QVector<Table> FerrobrioTables() {
    const Rule family = Fixed("LAMIERE");
    return {{"Materiali",
             "materiali",
             Exactly(Materials),
             {{{"CodMateriale", 'C', 60}, MaterialCode()},
              {{"Descrizione", 'C', 60}, MaterialCode()},
              {{"PesoSpecifico", 'N', 8, 3}, Density()},
              {{"Famiglia", 'C', 10}, family}},
             {{{"CodMateriale", "ORO"}, {"PesoSpecifico", "pesante"}}}},
            {"Lamiere",
             "materiali",
             Exactly(Sheets),
             {{{"CodLamiera", 'C', 60}, SheetCode()},
              {{"CodMateriale", 'C', 60}, SheetMaterial()},
              {{"Spessore", 'N', 6, 2}, SheetThickness()},
              {{"Lunghezza", 'N', 8, 1}, SheetLength()},
              {{"Larghezza", 'N', 8, 1}, SheetWidth()},
              {{"CodErp", 'C', 50}, {}}}},
            {"Giacenze",
             "giacenze",
             Exactly(Sheets),
             {{{"Codice", 'C', 60}, SheetCode()},
              {{"Magazzino", 'C', 5}, OneOf({"M1", ""})},
              {{"Quantita", 'N', 10, 2}, Whole(1, 30)},
              {{"Ubicazione", 'C', 30}, Chance(50, Code("F-", 2))},
              {{"Sfrido", 'L'}, Fixed(false)},
              {{"Costo", 'N', 10, 2}, Chance(70, Number(20, 90, 2))}},
             {{{"Codice", "NON-CE"}}, {{"Quantita", "molte"}}}}};
}

} // namespace

} // namespace sheetStores

Totals MakeAutoma(const Options& options) {
    using namespace sheetStores;
    QuadrixScript script(options.company);
    Prepare(script);
    return Write("automa.db", {CellsTable(), CellStockTable()}, options, script);
}

Totals MakeFerrobrio(const Options& options) {
    using namespace sheetStores;
    QuadrixScript script(options.company);
    Prepare(script);
    script.Translate("FERROBRIO", "MAGAZZINO", "M1", "001");
    script.Translate("Materiali", "Famiglia", "LAMIERE", "LAMIERE");
    return Write("ferrobrio.db", FerrobrioTables(), options, script);
}

} // namespace examples
