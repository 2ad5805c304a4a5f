// Articles of Metodo, with what they have for each year, and documents.

#include "examples/metodo.h"

namespace examples::metodo {

namespace {

constexpr qint64 Units = 2;
constexpr qint64 DocumentRows = 3;
constexpr qint64 DocumentKinds = 4; ///< an order, its delivery note, its invoice and an order to a supplier
const Count Articles = [](const Options& options) { return options.rows; };
const Count Documents = Times(DocumentKinds, EachOf(5));

Rule ItemCode() { return Code("MT-", 5); }
Rule ItemCost() { return Named("metodo.cost", Number(0.5, 90, 2)); }
/// The supplier that an article usually comes from.
Rule ItemSupplier() { return Named("metodo.supplier", AnyOf(Suppliers, SupplierCode())); }

} // namespace

QVector<Table> ArticleTables() {
    const auto ofYear = [](const Rule& rule) { return OfParent(Years, rule); };
    const auto ofCodes = [](const Rule& ofSuppliers, const Rule& ofCustomers) {
        return Kinds({{EachOf(3), ofSuppliers}, {EachOf(10), ofCustomers}});
    };
    return {
        {"ANAGRAFICAARTICOLI",
         "articoli",
         Articles,
         {{{"CODICE", 'C', 60}, ItemCode()},
          {{"DESCRIZIONE", 'C', 255}, ArticleText()},
          {{"DESCRESTESA", 'M'}, Chance(20, Fixed("Zincato a caldo"))},
          {{"GRUPPO", 'I'}, Whole(0, 2)},
          {{"CATEGORIA", 'I'}, Whole(0, 1)},
          {{"ARTTIPOLOGIA", 'I'}, No()},
          {{"PESONETTO", 'N', 12, 3}, Number(0.1, 40, 3)},
          {{"CUBATURA", 'N', 12, 3}, Number(0, 2, 3)},
          {{"AGGIORNAMAG", 'I'}, Chance(90, Fixed(1), No())},
          {{"DATAMODIFICA", 'T'}, Day(300)}},
         {{{"CODICE", "PESO-MANCA"}, {"PESONETTO", "tanto"}}, {{"CODICE", "VARIANTI"}, {"ARTTIPOLOGIA", 1}}},
         {{"CODICE"}}},
        {"ANAGRAFICAARTICOLICOMM",
         "articoli",
         Times(Years, Articles),
         {{{"CODICEART", 'C', 60}, ofYear(ItemCode())},
          {{"ESERCIZIO", 'I'}, Year()},
          {{"CODIVA", 'C', 4}, ofYear(Chance(90, Fixed("22"), Fixed("10")))},
          {{"SCGENVENDITEITA", 'C', 7}, Fixed("G     8")},
          {{"SCONTO1", 'N', 8, 2}, OneOf({0, 0, 5})},
          {{"SCONTO2", 'N', 8, 2}, No()},
          {{"SCONTO3", 'N', 8, 2}, No()},
          {{"BARCODE", 'C', 50}, ofYear(Chance(50, BarCode()))},
          {{"CODICEALT1", 'C', 50}, ofYear(Chance(20, Code("ALT-", 5)))},
          {{"CODICEALT2", 'C', 50}, {}},
          {{"ESAURITO", 'I'}, Chance(3, Fixed(1), No())},
          {{"INESAURIMENTO", 'I'}, Chance(3, Fixed(1), No())}},
         {},
         {{"CODICEART"}}},
        {"ANAGRAFICAARTICOLIPROD",
         "articoli",
         Times(Years, Articles),
         {{{"CODICEART", 'C', 60}, ofYear(ItemCode())},
          {{"ESERCIZIO", 'I'}, Year()},
          {{"PROVENIENZA", 'I'}, ofYear(Chance(40, Fixed(1), No()))},
          {{"SCORTAMIN", 'N', 12, 2}, Whole(0, 20)},
          {{"SCORTAMAX", 'N', 12, 2}, Whole(20, 200)},
          {{"LIVRIORDINO", 'N', 12, 2}, Whole(0, 30)},
          {{"LOTTORIORDINO", 'N', 12, 2}, Whole(1, 50)},
          {{"QMINRIORDACQ", 'N', 12, 2}, Whole(1, 10)},
          {{"TAPPROVVACQ", 'N', 8, 2}, Whole(1, 30)},
          {{"FORNPREFACQ", 'C', 7}, ofYear(ItemSupplier())}},
         {},
         {{"CODICEART"}}},
        {"ARTICOLIUMPREFERITE",
         "articoli",
         Times(Units, Articles),
         {{{"CODART", 'C', 60}, OfParent(Units, ItemCode())},
          {{"TIPOUM", 'I'}, Line(Units)},
          {{"UM", 'C', 3}, Each({"PZ", "KG"})}},
         {},
         {{"CODART"}}},
        {"ARTICOLIFATTORICONVERSIONE",
         "articoli",
         Articles,
         {{{"CODART", 'C', 60}, ItemCode()},
          {{"UM1", 'C', 3}, Fixed("PZ")},
          {{"UM2", 'C', 3}, Fixed("KG")},
          {{"FATTORE", 'N', 12, 3}, Number(0.1, 40, 3)}},
         {},
         {{"CODART"}}},
        {"STORICOPREZZIARTICOLO",
         "articoli",
         Times(Years, Articles),
         {{{"TIPOPREZZO", 'I'}, Fixed(1)},
          {{"CODARTICOLO", 'C', 60}, ofYear(ItemCode())},
          {{"DATA", 'T'}, Each({QDate(2023, 5, 2), QDate(2024, 5, 2)})},
          {{"CODCLIFOR", 'C', 7}, ofYear(ItemSupplier())},
          {{"PREZZOEURO", 'N', 12, 4}, Turn(1, {ofYear(Scaled(0.9, 2, ItemCost())), ofYear(ItemCost())})}},
         {},
         {{"CODARTICOLO"}}},
        {"LISTINIARTICOLI",
         "articoli",
         Times(Lists, Articles),
         {{{"CODART", 'C', 60}, OfParent(Lists, ItemCode())},
          {{"NRLISTINO", 'I'}, Line(Lists)},
          {{"UM", 'C', 3}, OfParent(Lists, Chance(50, Fixed("PZ")))},
          {{"PREZZOEURO", 'N', 12, 4}, OfParent(Lists, Scaled(1.6, 2, ItemCost()))},
          {{"PREZZO", 'N', 12, 4}, {}},
          {{"DATAVALIDITA", 'T'}, Fixed(QDate(2024, 1, 1))}},
         {},
         {{"CODART"}}},
        {"RELAZIONICFV",
         "articoli",
         Sum(EachOf(3), EachOf(10)),
         {{{"CODCLIFOR", 'C', 7}, ofCodes(AnyOf(Suppliers, SupplierCode()), AnyOf(Customers, CustomerCode()))},
          {{"RIFERIMENTO", 'C', 50}, ofCodes(Code("FOR-", 5), Code("CLI-", 5))},
          {{"ARTICOLO", 'C', 60}, ofCodes(ItemCode(), ItemCode())}},
         {},
         {{"ARTICOLO"}}},
    };
}

QVector<Table> DocumentTables() {
    const auto rowOfSet = RowOfSet(DocumentKinds, DocumentRows);
    const Amounts amounts("RIGHEDOCUMENTI", DocumentRows, rowOfSet);
    const auto ofSet = [](const Rule& rule) { return OfParent(DocumentKinds, rule); };
    const Rule customer = ofSet(AnyOf(Customers, CustomerCode()));
    // A delivery note and an invoice carry out the document before: its row, and what it belongs to.
    const Rule rowBefore = [](const Place& place) { return QVariant(place.row + 1 - DocumentRows); };
    const Rule headBefore = [](const Place& place) { return QVariant(place.row / DocumentRows); };
    return {
        {"PARAMETRIDOC",
         "documenti",
         Exactly(DocumentKinds),
         {{{"CODICE", 'C', 4}, Each({"OC", "BC", "FC", "OF"})},
          {{"CLIFOR", 'C', 1}, Each({"C", "C", "C", "F"})},
          {{"TIPO", 'C', 1}, Each({"O", "B", "F", "O"})}}},
        {"TESTEDOCUMENTI",
         "documenti",
         Documents,
         QVector<Field>{
             {{"PROGRESSIVO", 'I'}, RowNumber()},
             {{"TIPODOC", 'C', 4}, Each({"OC", "BC", "FC", "OF"})},
             {{"ESERCIZIO", 'I'}, Fixed(2024)},
             {{"NUMERODOC", 'I'}, ofSet(RowNumber())},
             {{"DATADOC", 'T'}, ofSet(Day(300))},
             {{"CODCLIFOR", 'C', 7}, Turn(1, {customer, customer, customer, AnyOf(Suppliers, SupplierCode())})},
             {{"DOCCHIUSO", 'I'}, Each({0, 1, 1, 0})},
             {{"NUMRIFDOC", 'C', 15}, Chance(50, Code("PO ", 1))},
             {{"DATARIFDOC", 'T'}, {}},
             {{"CODPAGAMENTO", 'C', 4}, ofSet(Term())},
             {{"CODCAMBIO", 'I'}, Fixed(1)},
             {{"VALCAMBIO", 'N', 12, 4}, Fixed(1)},
             {{"PORTO", 'I'}, Whole(0, 2)},
             {{"DATACONSEGNA", 'T'}, Day(360)},
             {{"TOTSPESETRASPEURO", 'N', 12, 2}, No()},
             {{"TOTSPESEIMBALLOEURO", 'N', 12, 2}, No()},
             {{"ANNOTAZIONI", 'C', 500}, Chance(10, Fixed("Urgente"))}} +
             Unused({"BIS", "SCONTOFINALE", "RAGSOCDDM", "INDIRIZZODDM", "CAPDDM", "LOCALITADDM", "PROVINCIADDM"}),
         {{{"PROGRESSIVO", 9000001}, {"TIPODOC", "OC"}, {"NUMERODOC", 90001}, {"CODCLIFOR", "C999999"}},
          {{"PROGRESSIVO", 9000002}, {"TIPODOC", "OC"}, {"NUMERODOC", 90002}, {"CODCLIFOR", "C     1"}}},
         {{"PROGRESSIVO"}}},
        {"RIGHEDOCUMENTI",
         "documenti",
         Times(DocumentRows, Documents),
         {{{"IDTESTA", 'I'}, OfParent(DocumentRows, RowNumber())},
          {{"IDRIGA", 'I'}, RowNumber()},
          {{"POSIZIONE", 'I'}, Line(DocumentRows)},
          {{"TIPORIGA", 'C', 1}, Fixed("N")},
          {{"CODART", 'C', 60}, With(rowOfSet, AnyOf(Articles, ItemCode()))},
          {{"DESCRIZIONEART", 'C', 255}, With(rowOfSet, ArticleText())},
          {{"UMGEST", 'C', 3}, Fixed("PZ")},
          {{"QTAGEST", 'N', 12, 2}, amounts.Quantity()},
          {{"QTAGESTRES", 'N', 12, 2}, Turn(DocumentRows, {No(), No(), No(), amounts.Quantity()})},
          {{"UMPREZZO", 'C', 3}, Fixed("PZ")},
          {{"QTAPREZZO", 'N', 12, 2}, amounts.Quantity()},
          {{"PREZZOUNITLORDOEURO", 'N', 12, 4}, amounts.Price()},
          {{"PREZZOUNITNETTOEURO", 'N', 12, 4}, amounts.Price()},
          {{"SCONTIESTESI", 'C', 20}, {}},
          {{"TOTNETTORIGAEURO", 'N', 14, 2}, amounts.RowTotal()},
          {{"CODIVA", 'C', 4}, Fixed("22")},
          {{"DATACONSEGNA", 'T'}, Day(360)},
          {{"CODDEPOSITO", 'C', 10}, Fixed("1")},
          {{"ANNOTAZIONI", 'C', 200}, Chance(5, Fixed("Con certificato 3.1"))},
          {{"RIGACHIUSA", 'I'}, No()},
          {{"IDTESTARP", 'I'}, Turn(DocumentRows, {No(), headBefore, headBefore, No()})},
          {{"IDRIGARP", 'I'}, Turn(DocumentRows, {No(), rowBefore, rowBefore, No()})}},
         {{{"IDTESTA", 9000001}, {"POSIZIONE", 1}, {"IDTESTARP", 0}},
          {{"IDTESTA", 9000002}, {"POSIZIONE", 1}, {"IDTESTARP", 0}, {"QTAGEST", "uno"}}},
         {{"IDTESTA"}}},
    };
}

} // namespace examples::metodo
