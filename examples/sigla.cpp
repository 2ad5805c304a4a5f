// Sigla: a database with customers and suppliers, whose commercial data stand in a table of their own, articles and
// price lists.

#include "examples/describedRules.h"

namespace examples {

namespace sigla {

namespace {

using namespace described;

constexpr qint64 Lists = 2;
const Count Articles = [](const Options& options) { return 2 * options.rows; };

Rule ArticleCode() { return Code("SG-", 5); }
Rule SideOf() { return BySide(Fixed("C"), Fixed("F")); }
Rule PartyCode() { return BySide(Code("", 1), Code("9", 4)); }
/// A day as a text, as everywhere in this source.
Rule DayText() {
    return [](const Place& place) { return QVariant(Day(360)(place).toDateTime().toString(u"yyyyMMdd")); };
}

QVector<Table> CounterpartyTables() {
    const Address address("CLIFO");
    return {
        {"CLIFO",
         "controparti",
         Counterparties,
         {{{"TIPO", 'C', 1}, SideOf()},
          {{"CODICE", 'C', 10}, PartyCode()},
          {{"RAGIONESOC", 'C', 50}, CompanyName(50)},
          {{"PERSFISICA", 'C', 1}, Fixed("N")},
          {{"INDIR1", 'C', 40}, address.Street()},
          {{"INDIR2", 'C', 40}, {}},
          {{"CAP", 'C', 5}, address.PostCode()},
          {{"LOCALITA", 'C', 20}, {}},
          {{"COMUNE", 'C', 50}, address.Town()},
          {{"PROVINCIA", 'C', 10}, address.Province()},
          {{"COD_NAZION", 'C', 3}, Fixed("I")},
          {{"PAIV", 'C', 12}, VatNumber()},
          {{"COFI", 'C', 16}, TaxCode()},
          {{"CODIDIVA", 'C', 30}, {}},
          {{"PTEL", 'C', 10}, {}},
          {{"TEL", 'C', 30}, address.Telephone()},
          {{"FTFAXNUM", 'C', 40}, {}},
          {{"FTE_MAIL", 'C', 64}, Chance(60, OnInternet("info@"))},
          {{"CODPAG", 'C', 4}, OneOf({"RB30", "RB60", "RD"})},
          {{"CODVAL", 'C', 3}, Fixed("EUR")},
          {{"LINGUA", 'C', 1}, Fixed("I")},
          {{"RAGGR_SN", 'C', 1}, OneOf({"S", "N"})},
          {{"BLOCCO_SN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))},
          {{"SOGGIVA_SN", 'C', 1}, Chance(5, Fixed("N"), Fixed("S"))},
          {{"STATO", 'C', 1}, {}},
          {{"ULT_AGG", 'C', 8}, DayText()}},
         {{{"TIPO", "C"}, {"CODICE", "PROV"}, {"RAGIONESOC", "Provincia troppo lunga"}, {"PROVINCIA", "TORINO"}}},
         {{"TIPO", "CODICE"}}},
        {"CLIFOCOM",
         "controparti",
         Counterparties,
         QVector<Field>{{{"TIPO", 'C', 1}, SideOf()},
                        {{"CODICE", 'C', 10}, PartyCode()},
                        {{"IBAN", 'C', 34}, Chance(50, Iban())},
                        {{"SCONTO1", 'N', 6, 2}, OneOf({0, 0, 5, 10})},
                        {{"SCONTO2", 'N', 6, 2}, {}},
                        {{"FIDO", 'N', 12, 2}, OneOf({0, 5000, 20000})},
                        {{"WWW", 'C', 64}, Chance(30, OnInternet("www."))}} +
             Unused({"ABI", "CAB", "CIN", "CONTOCORR", "BIC", "BANCA", "LISTINO", "AGENTE", "ZONA", "CATEG", "PORTO",
                     "VETTORE", "CONTO", "PEC", "CELL"}),
         {},
         {{"TIPO", "CODICE"}}},
    };
}

QVector<Table> ArticleTables() {
    return {
        {"ARTICOLI",
         "articoli",
         Articles,
         QVector<Field>{{{"CODICE", 'C', 30}, ArticleCode()},
                        {{"DESCRIZION", 'C', 40}, ArticleText()},
                        {{"DESCRART01", 'C', 40}, Chance(20, Fixed("zincato"))},
                        {{"DATACREA", 'C', 8}, DayText()},
                        {{"UNIMIS", 'C', 2}, OneOf({"PZ", "KG"})},
                        {{"COEFFUM", 'N', 10, 4}, Fixed(0)},
                        {{"CODIVA", 'C', 3}, OneOf({"22", "10"})},
                        {{"CODGRU", 'C', 3}, Fixed("G1")},
                        {{"CODFAM", 'C', 3}, OneOf({"MEC", "LAM"})},
                        {{"COSTOSTD", 'N', 12, 4}, Number(0.5, 90, 2)},
                        {{"COSTOULT", 'N', 12, 4}, Number(0.5, 90, 2)},
                        {{"PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
                        {{"PESONETTO", 'C', 12}, Number(0.1, 40, 3)},
                        {{"SCORTAMIN", 'N', 12, 2}, Whole(0, 20)},
                        {{"LOTTORIOR", 'N', 12, 2}, Whole(0, 20)},
                        {{"GGCONSEGNA", 'I'}, Whole(0, 30)},
                        {{"FORNITORE", 'C', 10}, Chance(30, AnyOf(Suppliers, Code("9", 4)))},
                        {{"CODARTFOR", 'C', 30}, Chance(50, Code("FOR-", 4))},
                        {{"OBSOLETO_SN", 'C', 1}, Chance(3, Fixed("S"), Fixed("N"))}} +
             Unused({"DESCRART02", "DESARCOMPL", "UNIMIS2", "CODSFAM", "PESOLORDO", "SCORTAMAX", "STATO"}),
         {{{"CODICE", "PESO-MANCA"}, {"PESONETTO", "due"}}},
         {{"CODICE"}}},
        {"BARCODE",
         "articoli",
         EachOf(2),
         {{{"CODICE", 'C', 30}, ArticleCode()}, {{"BARCODE", 'C', 21}, Code("80012345", 5)}},
         {},
         {{"CODICE"}}},
        {"DESARTLI",
         "articoli",
         EachOf(4),
         {{{"LINGUA", 'C', 1}, Fixed("E")},
          {{"ARTICOLO", 'C', 30}, ArticleCode()},
          {{"DESCRIZION", 'C', 40}, Code("Item ", 1)},
          {{"DESCRART01", 'C', 40}, {}}},
         {},
         {{"ARTICOLO"}}},
    };
}

QVector<Table> PriceTables() {
    return {
        {"TABLIS",
         "listini",
         Exactly(Lists),
         {{{"CODICE", 'C', 5}, Code("L", 1)},
          {{"DESCRIZION", 'C', 40}, Code("Listino ", 1)},
          {{"CODVAL", 'C', 3}, Fixed("EUR")},
          {{"DATAIN", 'C', 8}, Fixed("20240101")},
          {{"TIPO", 'C', 1}, Fixed("V")}},
         {},
         {{"CODICE"}}},
        {"TABRILIS",
         "listini",
         Times(Lists, Articles),
         {{{"CODICE", 'C', 5},
           [](const Place& place) { return QVariant(QStringLiteral("L%1").arg(place.row % Lists + 1)); }},
          {{"ARTICOLO", 'C', 30}, OfParent(Lists, ArticleCode())},
          {{"DATAINVALI", 'C', 8}, Fixed("20240101")},
          {{"PREZZO", 'N', 12, 4}, Number(1, 190, 2)},
          {{"AQUAT1", 'N', 12, 2}, Fixed(0)},
          {{"PREZZO1", 'N', 12, 4}, Fixed(0)},
          {{"AQUAT2", 'N', 12, 2}, Fixed(50)},
          {{"PREZZO2", 'N', 12, 4}, Chance(20, Number(1, 90, 2), Fixed(0))},
          {{"AQUAT3", 'N', 12, 2}, Fixed(0)},
          {{"PREZZO3", 'N', 12, 4}, Fixed(0)}},
         {},
         {{"ARTICOLO"}}},
    };
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.UsualVatCodes();
    script.Translate("CLIFO", "SOGGIVA_SN", "N", "N8");
    for (const char* code : {"RB30", "RB60", "RD"}) {
        script.Translate("CLIFO", "CODPAG", code, code);
    }
    script.Translate("ARTICOLI", "UNIMIS", "PZ", "NR");
    script.Translate("ARTICOLI", "UNIMIS", "KG", "KG");
    script.Translate("ARTICOLI", "CODGRU", "G1MEC", "MECCANICA");
    script.Translate("ARTICOLI", "CODGRU", "G1LAM", "LAMIERE");
    script.Translate("DESARTLI", "LINGUA", "E", "EN");
    return script;
}

} // namespace

} // namespace sigla

Totals MakeSigla(const Options& options) {
    using namespace sigla;
    return Write("sigla.db", CounterpartyTables() + ArticleTables() + PriceTables(), options, PreparedFor(options));
}

} // namespace examples
