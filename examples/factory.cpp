// Factory: what a workshop knows of its articles: bills with phases, checks, open jobs, stock, attached sheets and
// prices; its customers and suppliers are in Quadrix.

#include "examples/plainTables.h"

#include <QDir>

namespace examples {

namespace factory {

namespace {

using namespace described;

constexpr qint64 Lines = 4;
constexpr qint64 Phases = 2;
constexpr qint64 JobLines = 3; ///< two articles and a line of text
constexpr qint64 Checks = 2;
constexpr qint64 Known = 40; ///< customers, and as many suppliers

const Count Articles = [](const Options& options) { return 2 * options.rows; };
const Count Products = EachOf(4);
const Count Heads = EachOf(2);
const Count SecondRevisions = EachOf(10);
const Count Billed = Sum(Heads, SecondRevisions);
const Count Jobs = EachOf(3);
const Stages Parts{.products = Products, .heads = Heads, .articles = Articles};

const QString SheetFolder = QStringLiteral("allegati");
const QStringList Sheets{"montaggio.txt", "saldatura.txt", "imballo.txt", "verniciatura.txt"};

Rule ArticleCode() { return Code("FA-", 5); }
Rule SupplierCode() {
    return With([](qint64 row) { return row % Known; }, Code("F", 3));
}
/// What is bought comes in turns: parts, sheets and tubes. The measures are those of the last two.
Rule ByKind(const Rule& head, const Rule& part, const Rule& sheet, const Rule& tube) {
    return Kinds({{Heads, head}, {Articles, Turn(1, {part, part, part, sheet, tube})}});
}

Table ArticleTable() {
    const Rule kindOfHead = Kinds({{Products, Fixed("P")}, {Heads, Fixed("S")}});
    const Rule drawing = [](const Place& place) { return QVariant(ArticleCode()(place).toString() + u".dwg"); };
    return {"ARTICOLI",
            "articoli",
            Articles,
            QVector<Field>{{{"CODART", 'C', 30}, ArticleCode()},
                           {{"IDART", 'I'}, RowNumber()},
                           {{"TIPO", 'C', 1}, ByKind(kindOfHead, OneOf({"A", "M"}), Fixed("L"), Fixed("T"))},
                           {{"MATERIALE", 'C', 10}, ByKind({}, {}, OneOf({"FE360", "AISI304"}), Fixed("FE360"))},
                           {{"LUNGH", 'N', 10, 2}, ByKind({}, {}, OneOf({2000, 2500, 3000}), Fixed(6000))},
                           {{"LARGH", 'N', 10, 2}, ByKind({}, {}, OneOf({1000, 1250, 1500}), OneOf({20, 40}))},
                           {{"SPESS", 'N', 10, 2}, ByKind({}, {}, OneOf({1, 1.5, 3}), OneOf({20, 40}))},
                           {{"DISEGNO", 'C', 60}, ByKind(drawing, {}, {}, {})},
                           {{"REV", 'C', 5}, ByKind(OneOf({"A", "B"}), {}, {}, {})},
                           {{"OBSOLETO", 'L'}, Flag(3)}} +
                ArticleColumns({.description = "DESCRIZIONE",
                                .description2 = "DESCRIZIONE2",
                                .unit = "UM",
                                .unit2 = "UMACQ",
                                .factor = "COEFF",
                                .vatCode = "CODIVA",
                                .family = "FAMIGLIA",
                                .lastCost = "COSTOULT",
                                .standardCost = "COSTO",
                                .price = "PREZZO",
                                .netWeight = "PESO",
                                .lowestStock = "SCORTAMIN",
                                .lot = "LOTTO",
                                .leadDays = "LEADTIME",
                                .supplier = "CODFOR",
                                .supplierCode = "CODARTFOR",
                                .location = "UBICAZIONE",
                                .note = "NOTE"},
                               SupplierCode()),
            {{{"CODART", "PESO-ERRATO"}, {"PESO", "due"}}, {{"CODART", "FORN-MANCA"}, {"CODFOR", "F999"}}},
            {{"CODART"}}};
}

QVector<Table> CheckTables() {
    return {{"CARATTERISTICHE",
             "controlli",
             Exactly(3),
             {{{"CODICE", 'C', 10}, Each({"DIAM", "PESO", "VISI"})},
              {{"DESCRIZIONE", 'C', 60}, Each({"Diametro del foro", "Peso", "Aspetto"})},
              {{"UM", 'C', 3}, Each({"MM", "KG", {}})},
              {{"TIPO", 'C', 10}, Each({"N", "N", "A"})}},
             {{{"CODICE", "ERR"}, {"TIPO", "NUMERICO"}}},
             {{"CODICE"}}},
            {"CONTROLLI",
             "controlli",
             Times(Checks, Products),
             {{{"CODART", 'C', 30}, OfParent(Checks, ArticleCode())},
              {{"FASE", 'C', 10}, Fixed("10")},
              {{"PROGR", 'I'}, Line(Checks)},
              {{"CODCAR", 'C', 10}, Each({"DIAM", "VISI"})},
              {{"VALNOM", 'C', 20}, Turn(1, {OneOf({"8", "10", "12"}), Fixed("senza graffi")})},
              {{"TOLMIN", 'N', 10, 2}, Turn(1, {Fixed(-0.1), {}})},
              {{"TOLMAX", 'N', 10, 2}, Turn(1, {Fixed(0.1), {}})},
              {{"NOTE", 'M'}, Chance(10, Fixed("Con calibro"))}},
             {{{"CODART", "NON-CE"}, {"PROGR", 1}}, {{"PROGR", 9}, {"TOLMIN", "poco"}}},
             {{"CODART"}}}};
}

/// The second revisions stand behind the first ones of all articles, and are those of the first of them.
Rule ByRevision(const Rule& first, const Rule& second) { return Kinds({{Heads, first}, {SecondRevisions, second}}); }

QVector<Table> BillTables() {
    const Rule component = Component(Parts, Lines, ArticleCode());
    return {
        {"DISTINTE",
         "distinte",
         Billed,
         {{{"IDDIST", 'I'}, RowNumber()},
          {{"CODART", 'C', 30}, ByRevision(ArticleCode(), ArticleCode())},
          {{"REV", 'C', 4}, ByRevision(Fixed("0"), Fixed("1"))},
          {{"ATTIVA", 'L'},
           [](const Place& place) {
               const bool isReplaced = place.row < SecondRevisions(place.options);
               return QVariant(!isReplaced || place.row >= Heads(place.options));
           }},
          {{"NOTE", 'M'}, Chance(10, Fixed("Montare in dima"))}},
         {{{"CODART", "NON-CE"}}, {{"CODART", "FORN-MANCA"}, {"REV", "A"}}},
         {{"CODART"}, {"IDDIST"}}},
        {"DISTCOMP",
         "distinte",
         Times(Lines, Billed),
         {{{"IDDIST", 'I'}, OfParent(Lines, RowNumber())},
          {{"POS", 'I'}, Line(Lines)},
          {{"CODCOMP", 'C', 30}, Kinds({{Times(Lines, Heads), component}, {Times(Lines, SecondRevisions), component}})},
          {{"QTA", 'N', 10, 4}, Number(0.5, 9, 1)},
          {{"LUNGH", 'N', 10, 2}, Chance(30, Whole(50, 3000))},
          {{"LARGH", 'N', 10, 2}, Chance(30, Whole(20, 1500))},
          {{"SEQFASE", 'I'}, Each({10, 10, 20, 0})},
          {{"NOTE", 'M'}, Chance(10, Fixed("tagliare a 45°"))}},
         {{{"IDDIST", 1}, {"POS", 9}, {"CODCOMP", "NON-CE"}}},
         {{"IDDIST"}}},
        {"CICLI",
         "distinte",
         Times(Phases, Billed),
         {{{"IDDIST", 'I'}, OfParent(Phases, RowNumber())},
          {{"SEQ", 'I'}, Each({10, 20})},
          {{"CODLAV", 'C', 10}, Turn(1, {OneOf({"TAGL", "PIEG"}), OneOf({"SALD", "ZINC"})})},
          {{"CODMAC", 'C', 10}, Turn(1, {OneOf({"LASER", "PRESSA"}), {}})},
          {{"TATTR", 'N', 8, 2}, Whole(0, 30)},
          {{"TUNIT", 'N', 8, 2}, Number(0.5, 25, 1)},
          {{"COSTO", 'N', 8, 2}, OneOf({35, 42, 60})},
          {{"CODFOR", 'C', 10}, Turn(1, {{}, Chance(30, AnyOf(Exactly(Known), SupplierCode()))})},
          {{"NOTE", 'M'}, Chance(10, Fixed("Controllare il primo pezzo"))}},
         {},
         {{"IDDIST"}}}};
}

QVector<Table> JobTables() {
    const Amounts amounts("COMMRIGHE", JobLines);
    const Rule state = Each({"A", "A", "P", "C"});
    const Rule article = AnyOf(Articles, ArticleCode());
    const auto ofArticle = [](const Rule& rule) { return Turn(1, {rule, rule, {}}); };
    /// Half of it, where the job has begun.
    const Rule delivered = [=](const Place& place) {
        const bool hasBegun = OfParent(JobLines, state)(place) == QVariant("P");
        return QVariant(hasBegun ? amounts.Quantity()(place).toLongLong() / 2 : 0);
    };
    return {{"COMMESSE",
             "commesse",
             Jobs,
             {{{"IDCOMM", 'I'}, RowNumber()},
              {{"ANNO", 'I'}, Fixed(2024)},
              {{"NUMERO", 'I'}, RowNumber()},
              {{"DATA", 'T'}, Day(200)},
              {{"STATO", 'C', 1}, state},
              {{"CODCLI", 'C', 10}, AnyOf(Exactly(Known), Code("C", 3))},
              {{"RIFCLI", 'C', 40}, Chance(80, Code("Ordine ", 1, 100))},
              {{"DATARIF", 'T'}, {}},
              {{"CONSEGNA", 'T'}, Day(360)},
              {{"NOTE", 'M'}, Chance(10, Fixed("Urgente"))}},
             {{{"IDCOMM", 900000001}, {"STATO", "A"}, {"CODCLI", "C999"}},
              {{"IDCOMM", 900000002}, {"STATO", "P"}, {"NOTE", "Senza righe"}}},
             {{"IDCOMM"}}},
            {"COMMRIGHE",
             "commesse",
             Times(JobLines, Jobs),
             {{{"IDCOMM", 'I'}, OfParent(JobLines, RowNumber())},
              {{"RIGA", 'I'}, Line(JobLines)},
              {{"CODART", 'C', 30}, ofArticle(article)},
              {{"DESCRIZIONE", 'C', 60}, Turn(1, {{}, {}, Fixed("Trasporto a mezzo vettore")})},
              {{"UM", 'C', 3}, ofArticle(Fixed("PZ"))},
              {{"QTA", 'N', 10, 2}, ofArticle(amounts.Quantity())},
              {{"QTAEVASA", 'N', 10, 2}, ofArticle(delivered)},
              {{"PREZZO", 'N', 12, 4}, ofArticle(amounts.Price())},
              {{"SCONTO", 'N', 6, 2}, ofArticle(OneOf({0, 0, 5, 10}))},
              {{"CODIVA", 'C', 3}, ofArticle(Fixed("22"))},
              {{"CONSEGNA", 'T'}, ofArticle(Day(360))}},
             {{{"IDCOMM", 900000001}, {"CODART", "FA-00001"}, {"QTA", 1}}},
             {{"IDCOMM"}}}};
}

/// All articles are in the first warehouse, some in the second one as well.
Table StockTable() {
    const Count second = EachOf(4);
    return {"GIACENZE",
            "magazzino",
            Sum(Articles, second),
            {{{"CODART", 'C', 30}, Kinds({{Articles, ArticleCode()}, {second, ArticleCode()}})},
             {{"CODMAG", 'C', 5}, Kinds({{Articles, Fixed("M1")}, {second, Fixed("M2")}})},
             {{"QTA", 'N', 10, 2}, Chance(80, Whole(1, 500), Fixed(0))},
             {{"UBICAZIONE", 'C', 15}, {}}},
            {{{"CODART", "NON-CE"}, {"QTA", 5}},
             {{"CODART", "FA-00001"}, {"CODMAG", "M9"}, {"QTA", 7}},
             {{"QTA", "tanti"}}}};
}

QVector<Table> PriceTables() {
    return {ListTable("LISTINI", {.code = "CODLIS", .description = "DESCR", .kind = "TIPO"}, "Ven", "Acq"),
            {"LISTRIGHE",
             "listini",
             Prices(Articles),
             PriceColumns({.list = "CODLIS",
                           .article = "CODART",
                           .from = "DATAINI",
                           .to = "DATAFIN",
                           .quantity = "QTADA",
                           .price = "PREZZO",
                           .discount1 = "SC1",
                           .discount2 = "SC2",
                           .discount3 = "SC3"},
                          Articles, ArticleCode()),
             {{{"CODART", "NON-CE"}}, {{"CODART", "FA-00001"}, {"PREZZO", "poco"}}},
             {{"CODLIS"}, {"CODART"}}}};
}

/// The sheets stand in a folder beside the database.
Table AttachmentTable() {
    return {"ALLEGATI",
            "allegati",
            Products,
            {{{"CODART", 'C', 30}, ArticleCode()},
             {{"PROGR", 'I'}, Fixed(1)},
             {{"NOMEFILE", 'C', 60}, OneOf(QVariantList(Sheets.begin(), Sheets.end()))},
             {{"DESCRIZIONE", 'C', 60}, Chance(50, Fixed("Istruzioni per l'officina"))},
             {{"PERCORSO", 'C', 120}, Fixed(QString(u'\\' + SheetFolder))},
             {{"REV", 'C', 5}, OneOf({"A", "B"})}},
            {{{"CODART", "NON-CE"}}, {{"CODART", "FA-00001"}, {"PROGR", 2}, {"NOMEFILE", "manca.txt"}}}};
}

void WriteSheets(const QString& source) {
    const QString folder = source + u'/' + SheetFolder;
    QDir().mkpath(folder);
    for (const QString& name : Sheets) {
        const QByteArray text = "Istruzioni per l'officina: " + name.section(u'.', 0, 0).toUtf8() + "\r\n";
        WriteText(folder + u'/' + name, text);
    }
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    PrepareArticles(script, "ARTICOLI", {.unit = "UM", .family = "FAMIGLIA"});
    script.Translate("ARTICOLI", "MATERIALE", "FE360", "S235");
    script.Translate("ARTICOLI", "MATERIALE", "AISI304", "INOX");
    script.Keep("Lavorazioni", "CODLAV", {"TAGL", "PIEG", "SALD", "ZINC"});
    script.Translate("GIACENZE", "CODMAG", "M1", "001");
    script.Translate("GIACENZE", "CODMAG", "M2", "002");
    script.DocumentReason("ORD", "ORDCL", "ORD");
    script.Warehouse("002", "Magazzino 2");
    PrepareCustomers(script, Known, Code("C", 3), options);
    PrepareSuppliers(script, Known, Code("F", 3), options);
    return script;
}

} // namespace

} // namespace factory

Totals MakeFactory(const Options& options) {
    using namespace factory;
    const QVector<Table> tables = QVector<Table>{ArticleTable(), StockTable(), AttachmentTable()} + CheckTables() +
                                  BillTables() + JobTables() + PriceTables();
    const Totals totals = Write("factory.db", tables, options, PreparedFor(options));
    if (IsAsked(options, "allegati")) {
        WriteSheets(options.folder);
    }
    return totals;
}

} // namespace examples
