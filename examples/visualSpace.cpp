// Visual Space: a database with customers and suppliers, articles, stock, bills, open orders and drawings. Its
// counterparties are those of Mexal, which stands beside it, under codes of their own.

#include "examples/describedRules.h"

#include <QFile>

namespace examples {

namespace visualSpace {

namespace {

using namespace described;

constexpr qint64 BillRows = 3;
constexpr qint64 OrderRows = 2;
const Count Articles = [](const Options& options) { return options.rows; };
const Count Heads = EachOf(4); ///< articles with a bill: the first
const Count CustomerOrders = EachOf(3);
const Count SupplierOrders = EachOf(5);

Rule No() { return Fixed(0); }
Rule ArticleCode() { return Code("VS-", 5); }
Rule AnyArticle() { return AnyOf(Articles, ArticleCode()); }
Rule CustomerCode() { return Code("C", 6); }
Rule SupplierCode() { return Code("F", 6); }

// --- Counterparties -----------------------------------------------------------------------------------------------

/// Customers or suppliers. @param who number of the identity, by that of the row
Table Register(const QString& name, const QByteArray& codeColumn, const Rule& code, const Count& count,
               const std::function<Rule(const Rule&)>& who, const QVector<OddRow>& odd) {
    const Address address(name.toLatin1());
    return {name,
            "controparti",
            count,
            QVector<Field>{{{codeColumn, 'C', 10}, code},
                           {{"RAGIONE_SOCIALE", 'C', 50}, who(CompanyName(50))},
                           {{"INDIRIZZO", 'C', 60}, address.Street()},
                           {{"CAP", 'C', 10}, address.PostCode()},
                           {{"LOCALITA", 'C', 40}, address.Town()},
                           {{"PROVINCIA", 'C', 10}, address.Province()},
                           {{"COD_NAZIONE", 'C', 3}, Fixed("IT")},
                           {{"PARTITA_IVA", 'C', 16}, who(VatNumber())},
                           {{"CODICE_FISCALE", 'C', 16}, who(TaxCode())},
                           {{"TELEFONO", 'C', 20}, address.Telephone()},
                           {{"EMAIL", 'C', 60}, Chance(60, OnInternet("info@"))},
                           {{"COD_PAGAMENTO", 'C', 5}, OneOf({"B30", "B60"})},
                           {{"IBAN", 'C', 40}, Chance(50, Iban())},
                           {{"SCONTO_1", 'N', 6, 2}, OneOf({0, 5, 10})},
                           {{"COD_VALUTA", 'C', 3}, Fixed("EUR")},
                           {{"COD_IVA", 'C', 5}, Chance(10, Fixed("N8"))},
                           {{"NOTE", 'M'}, Chance(10, Fixed("Chiude il lunedì"))},
                           {{"ANNULLATO", 'I'}, Chance(3, Fixed(1), No())}} +
                Unused({"RAGIONE_SOCIALE_2", "TELEFONO_2", "FAX", "CELLULARE", "SITO_WEB", "COD_BANCA", "ABI", "CAB",
                        "NUM_CONTO", "CIN", "SCONTO_2", "COD_AGENTE", "COD_LISTINO", "COD_ZONA"}),
            odd,
            {{QString::fromLatin1(codeColumn)}}};
}

QVector<Table> CounterpartyTables() {
    const auto customer = [](const Rule& rule) { return rule; };
    const auto supplier = [](const Rule& rule) -> Rule {
        return [rule](const Place& place) { return rule(place.At(Customers(place.options) + place.row)); };
    };
    return {
        Register("A_CLIENTI", "COD_CLIENTE", CustomerCode(), Customers, customer,
                 {{{"COD_CLIENTE", "C900001"}, {"PROVINCIA", "TORINO"}, {"PARTITA_IVA", ""}, {"CODICE_FISCALE", ""}}}),
        Register("A_FORNITORI", "COD_FORNITORE", SupplierCode(), Suppliers, supplier, {})};
}

// --- Articles and stock -------------------------------------------------------------------------------------------

Table ArticleTable() {
    return {"A_ARTICOLI",
            "articoli",
            Articles,
            {{{"COD_ARTICOLO", 'C', 50}, ArticleCode()},
             {{"DESCRIZIONE", 'C', 100}, ArticleText()},
             {{"DESCRIZIONE_2", 'C', 100}, Chance(20, Fixed("zincato"))},
             {{"UM", 'C', 3}, OneOf({"PZ", "KG"})},
             {{"UM_2", 'C', 3}, {}},
             {{"COEFFICIENTE", 'N', 10, 4}, {}},
             {{"COD_IVA", 'C', 5}, Fixed("22")},
             {{"COD_CLASSE", 'C', 5}, Kinds({{Heads, Fixed("FIN")}, {Articles, Fixed("MAT")}})},
             {{"COD_FAMIGLIA", 'C', 5}, Chance(50, Fixed("MECC"))},
             {{"MATERIALE", 'C', 20}, {}},
             {{"COSTO_STANDARD", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"COSTO_ULTIMO", 'N', 12, 4}, Number(0.5, 90, 2)},
             {{"PREZZO_VENDITA", 'N', 12, 4}, Number(1, 190, 2)},
             {{"PESO", 'N', 12, 3}, Number(0.1, 40, 3)},
             {{"SCORTA_MINIMA", 'N', 12, 2}, Number(0, 20, 0)},
             {{"LOTTO_RIORDINO", 'N', 12, 2}, Number(0, 20, 0)},
             {{"GIORNI_RIORDINO", 'I'}, Whole(0, 30)},
             {{"COD_FORNITORE", 'C', 10}, Chance(30, AnyOf(Suppliers, SupplierCode()))},
             {{"COD_ART_FORNITORE", 'C', 30}, Chance(50, Code("FOR-", 4))},
             {{"NUM_DISEGNO", 'C', 30}, Chance(40, Code("DIS-", 5))},
             {{"REVISIONE", 'C', 5}, OneOf({"A", "B", ""})},
             {{"ANNULLATO", 'I'}, Chance(3, Fixed(1), No())}},
            {{{"COD_ARTICOLO", "PESO-MANCA"}, {"PESO", "due"}}},
            {{"COD_ARTICOLO"}}};
}

QVector<Table> StoreTables() {
    return {{"STOCK",
             "magazzino",
             Articles,
             {{{"COD_ARTICOLO", 'C', 50}, ArticleCode()},
              {{"COD_MAGAZZINO", 'C', 5}, OneOf({"M1", "M1", "EST"})},
              {{"GIACENZA", 'N', 12, 2}, Chance(80, Number(0, 500, 1), No())}},
             {{{"COD_ARTICOLO", "NON-CE"}, {"GIACENZA", 7}}}},
            {"MAGAZZINO_1",
             "magazzino",
             Articles,
             {{{"COD_ARTICOLO", 'C', 50}, ArticleCode()},
              {{"COD_UBICAZIONE", 'C', 10}, Chance(40, Code("V-", 4))},
              {{"DES_UBICAZIONE", 'C', 50}, {}}}}};
}

// --- Bills and drawings -------------------------------------------------------------------------------------------

/// The bill of an article holds articles that have none. The first has a revision before.
QVector<Table> BillTables() {
    return {{"DISTINTA_BASE",
             "distinte",
             Times(BillRows, Heads),
             {{{"PADRE", 'C', 50}, OfParent(BillRows, ArticleCode())},
              {{"FIGLIO", 'C', 50}, AnyBehind(Heads, Articles, ArticleCode())},
              {{"POSIZIONE", 'I'}, Line(BillRows)},
              {{"QUANTITA", 'N', 10, 3}, Number(0.5, 9, 1)},
              {{"UM", 'C', 3}, {}},
              {{"NOTE", 'C', 60}, Chance(10, Fixed("destra e sinistra"))},
              {{"REVISIONE", 'C', 5}, Fixed("1")}},
             {{{"PADRE", "VS-00001"}, {"POSIZIONE", 1}, {"REVISIONE", "0"}},
              {{"PADRE", "NON-CE"}, {"POSIZIONE", 1}},
              {{"PADRE", "VS-00002"}, {"FIGLIO", "NON-CE"}, {"POSIZIONE", 9}}},
             {{"PADRE"}}},
            {"CICLI",
             "distinte",
             Heads,
             {{{"COD_ARTICOLO", 'C', 50}, ArticleCode()},
              {{"NUM_FASE", 'I'}, Fixed(10)},
              {{"COD_LAVORAZIONE", 'C', 10}, OneOf({"SALD", "MONT"})},
              {{"TEMPO_ATTR", 'N', 8, 2}, Number(0, 30, 0)},
              {{"TEMPO_UNIT", 'N', 8, 2}, Number(0.5, 20, 1)}},
             {},
             {{"COD_ARTICOLO"}}}};
}

/// Drawings of the first articles.
const Count Drawings = [](const Options& options) { return std::min<qint64>(20, Heads(options)); };

Rule DrawingFile() {
    return [](const Place& place) { return QVariant(ArticleCode()(place).toString() + QStringLiteral(".dwg")); };
}

Table DrawingTable() {
    return {"DISEGNI",
            "disegni",
            Drawings,
            {{{"COD_ARTICOLO", 'C', 50}, ArticleCode()},
             {{"PERCORSO", 'C', 200}, DrawingFile()},
             {{"DESCRIZIONE", 'C', 100}, Chance(50, Fixed("Complessivo"))},
             {{"REVISIONE", 'C', 5}, OneOf({"A", "B"})},
             {{"DATA", 'T'}, Day(360)}},
            {{{"COD_ARTICOLO", "VS-00001"}, {"PERCORSO", "S:\\DISEGNI\\PERDUTO.dwg"}},
             {{"COD_ARTICOLO", "VS-00002"}, {"PERCORSO", ""}},
             {{"COD_ARTICOLO", "NON-CE"}}}};
}

/// The files that the table names by a path of the folder.
void WriteDrawings(const Options& options) {
    for (qint64 row = 0; row < Drawings(options); ++row) {
        const QString name = DrawingFile()({options, row, 0}).toString();
        QFile file(options.folder + u'/' + name);
        const QByteArray text = "Disegno " + name.toLatin1() + "\r\n";
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
            throw ExampleError(QStringLiteral("File '%1': %2").arg(file.fileName(), file.errorString()));
        }
    }
}

// --- Orders -------------------------------------------------------------------------------------------------------

/// The orders of one side. @param side "CLI" or "FOR"
QVector<Table> OrderTables(const QString& side, const Count& orders, const QByteArray& codeColumn, const Rule& code,
                           const QVector<OddRow>& odd) {
    const QString heads = "T_ORDINI_" + side;
    const Amounts amounts(heads.toLatin1(), OrderRows);
    const QStringList key{"ANNO", "NUM_ORDINE"};
    return {{heads,
             "documenti",
             orders,
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"NUM_ORDINE", 'I'}, RowNumber()},
              {{"DATA_REG", 'T'}, Day(360)},
              {{codeColumn, 'C', 10}, code},
              {{"RIF_ORDINE", 'C', 20}, Chance(50, Code("PO ", 1))},
              {{"DATA_RIF", 'T'}, {}},
              {{"COD_PAGAMENTO", 'C', 5}, OneOf({"B30", "B60"})},
              {{"COD_VALUTA", 'C', 3}, Fixed("EUR")},
              {{"NOTE", 'M'}, Chance(10, Fixed("Urgente"))},
              {{"SALDATO", 'I'}, Chance(20, Fixed(1), No())}},
             odd,
             {key}},
            {"R_ORDINI_" + side,
             "documenti",
             // The odd heads have rows as well.
             Times(OrderRows, Sum(orders, Exactly(odd.size()))),
             {{{"ANNO", 'I'}, Fixed(2024)},
              {{"NUM_ORDINE", 'I'}, OfParent(OrderRows, RowNumber())},
              {{"NUM_RIGA", 'I'}, Line(OrderRows)},
              {{"COD_ARTICOLO", 'C', 50}, AnyArticle()},
              {{"DESCRIZIONE", 'C', 100}, {}},
              {{"UM", 'C', 3}, {}},
              {{"QTA", 'N', 12, 3}, amounts.Quantity()},
              {{"QTA_EVASA", 'N', 12, 3}, No()},
              {{"PREZZO", 'N', 12, 4}, amounts.Price()},
              {{"SCONTO_1", 'N', 6, 2}, {}},
              {{"SCONTO_2", 'N', 6, 2}, {}},
              {{"COD_IVA", 'C', 5}, Fixed("22")},
              {{"DATA_CONSEGNA", 'T'}, Day(360)}},
             {},
             {key}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    script.VatCode("22", "IVA 22%", 22);
    script.VatCode("N8", "Non imponibile art. 8", 0);
    for (const char* table : {"A_CLIENTI", "A_FORNITORI"}) {
        script.Translate(table, "COD_PAGAMENTO", "B30", "B30");
        script.Translate(table, "COD_PAGAMENTO", "B60", "B60");
        script.Translate(table, "COD_NAZIONE", "IT", "ITA");
        script.Translate(table, "COD_IVA", "N8", "N8");
        script.Translate(table, "COD_VALUTA", "EUR", "EUR");
    }
    script.Translate("A_ARTICOLI", "UM", "PZ", "NR");
    script.Translate("A_ARTICOLI", "COD_IVA", "22", "22");
    script.Translate("A_ARTICOLI", "COD_CLASSE", "FIN", "PF");
    script.Translate("A_ARTICOLI", "COD_CLASSE", "MAT", "CM");
    script.Translate("A_ARTICOLI", "COD_FAMIGLIA", "MECC", "MECCANICA");
    script.Translate("STOCK", "COD_MAGAZZINO", "M1", "001");
    script.WorkCentre("SALD", "Saldatura");
    script.WorkCentre("MONT", "Montaggio");
    script.DocumentReason("ORD", "ORDCV", "ORD");
    script.DocumentReason("ORD", "ORDFV", "ORD");
    return script;
}

} // namespace

} // namespace visualSpace

Totals MakeVisualSpace(const Options& options) {
    using namespace visualSpace;
    const QVector<OddRow> customerOrders{
        {{"COD_CLIENTE", "C999999"}, {"SALDATO", 0}},
        {{"DATA_REG", QDateTime(QDate(2005, 12, 31), QTime(0, 0), Qt::UTC)}, {"SALDATO", 0}}};
    const QVector<Table> tables =
        CounterpartyTables() + QVector<Table>{ArticleTable(), DrawingTable()} + StoreTables() + BillTables() +
        OrderTables("CLI", CustomerOrders, "COD_CLIENTE", AnyOf(Customers, CustomerCode()), customerOrders) +
        OrderTables("FOR", SupplierOrders, "COD_FORNITORE", AnyOf(Suppliers, SupplierCode()), {});
    if (IsAsked(options, "disegni")) {
        WriteDrawings(options);
    }
    return Write("visualspace.db", tables, options, PreparedFor(options));
}

} // namespace examples
