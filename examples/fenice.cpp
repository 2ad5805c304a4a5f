// Fenice: bills of materials with phases and components, some in two revisions; their articles and suppliers are in
// Quadrix.

#include "examples/plainTables.h"

namespace examples {

namespace fenice {

namespace {

using namespace described;

constexpr qint64 Lines = 4;
constexpr qint64 Phases = 2;
constexpr qint64 KnownSuppliers = 20;

const Count Heads = [](const Options& options) { return options.rows; };
const Count SecondRevisions = EachOf(6);
const Count Billed = Sum(Heads, SecondRevisions);
const Stages Parts{.products = EachOf(2), .heads = Heads, .articles = Times(2, Heads)};

const QString Special = QStringLiteral("FE-SPECIALE"); ///< its bill cannot be read
constexpr qint64 SpecialBill = 900000001;

Rule ArticleCode() { return Code("FE-", 5); }
Rule SupplierCode() { return Code("F", 3); }
Rule AnySupplier() { return AnyOf(Exactly(KnownSuppliers), SupplierCode()); }
/// The second revisions stand behind the first ones of all articles, and are those of the first of them.
Rule ByRevision(const Rule& first, const Rule& second) { return Kinds({{Heads, first}, {SecondRevisions, second}}); }

QVector<Table> BillTables() {
    const Rule component = Component(Parts, Lines, ArticleCode());
    return {
        {"DISTINTA",
         "distinte",
         Billed,
         {{{"IDDIST", 'I'}, RowNumber()},
          {{"CODART", 'C', 60}, ByRevision(ArticleCode(), ArticleCode())},
          {{"REVIS", 'C', 4}, ByRevision(Fixed("1"), Fixed("2"))},
          {{"FLGATT", 'C', 1}, ByRevision(Fixed("S"), Chance(70, Fixed("S"), Fixed("N")))},
          {{"NOTE", 'M'}, ByRevision(Chance(10, Fixed("Montare in dima")), Fixed("Componenti rivisti"))},
          {{"DATCRE", 'T'}, Day(300)}},
         {{{"IDDIST", SpecialBill}, {"CODART", Special}},
          {{"IDDIST", SpecialBill + 1}, {"CODART", "NON-CE"}},
          {{"IDDIST", SpecialBill + 2}, {"REVIS", "A"}}},
         {{"CODART"}, {"IDDIST"}}},
        {"DISTFASI",
         "distinte",
         Times(Phases, Billed),
         {{{"IDDIST", 'I'}, OfParent(Phases, RowNumber())},
          {{"NUMFAS", 'I'}, Each({10, 20})},
          {{"CODLAV", 'C', 6}, Turn(1, {OneOf({"TAG", "PIEG"}), OneOf({"SALD", "ZINC"})})},
          {{"CODMAC", 'C', 6}, Turn(1, {OneOf({"LASER", "PRESSA"}), {}})},
          {{"TEMATT", 'N', 10, 2}, Whole(0, 30)},
          {{"TEMLAV", 'N', 10, 4}, Number(0.5, 25, 1)},
          {{"COSORA", 'N', 10, 2}, OneOf({35, 42, 60})},
          {{"CODFOR", 'C', 8}, Turn(1, {{}, Chance(30, AnySupplier())})},
          {{"NOTE", 'C', 60}, Chance(10, Fixed("Controllare il primo pezzo"))}},
         {{{"IDDIST", 1}, {"NUMFAS", 30}, {"CODFOR", "F999"}}},
         {{"IDDIST"}}},
        {"DISTRIGHE",
         "distinte",
         Times(Lines, Billed),
         {{{"IDDIST", 'I'}, OfParent(Lines, RowNumber())},
          {{"NUMRIG", 'I'}, Line(Lines)},
          {{"CODCOM", 'C', 60}, Kinds({{Times(Lines, Heads), component}, {Times(Lines, SecondRevisions), component}})},
          {{"QTAUTI", 'N', 12, 4}, Number(0.5, 9, 1)},
          {{"UNIMIS", 'C', 3}, Fixed("PZ")},
          {{"LUNGHE", 'N', 10, 2}, Chance(30, Whole(50, 3000))},
          {{"LARGHE", 'N', 10, 2}, Chance(30, Whole(20, 1500))},
          {{"CODFOR", 'C', 8}, Chance(10, AnySupplier())},
          {{"NOTE", 'C', 60}, Chance(10, Fixed("Zincata"))},
          {{"NUMFAS", 'I'}, Each({10, 10, 20, 0})},
          {{"PERSFR", 'N', 6, 2}, Chance(30, Whole(1, 8))}},
         {{{"IDDIST", SpecialBill}, {"CODCOM", "FE-00002"}, {"QTAUTI", "due"}},
          {{"IDDIST", 1}, {"NUMRIG", 9}, {"CODCOM", "NON-CE"}}},
         {{"IDDIST"}}},
    };
}

Table KnownArticles() {
    return {"ART_ICO",
            {},
            Parts.articles,
            {{{"CDART", 'C', 50}, ArticleCode()},
             {{"ARDES", 'C', 100}, ArticleText()},
             {{"ARUMS", 'C', 5}, Fixed("NR")},
             {{"ARCOS", 'N', 12, 2}, Cost()},
             {{"ARRIC", 'N', 12, 2}, Fixed(40)},
             {{"ARPRZ", 'N', 12, 2}, SalesPrice()}}};
}

QuadrixScript PreparedFor(const Options& options) {
    QuadrixScript script(options.company);
    Prepare(script, KnownArticles(), options);
    script.Rows("ART_ICO", {"CDART", "ARDES"}, {{Special, "Macchina speciale"}});
    PrepareSuppliers(script, KnownSuppliers, SupplierCode(), options);
    const QVector<QPair<QString, QString>> works{
        {"TAG", "Taglio"}, {"PIEG", "Piegatura"}, {"SALD", "Saldatura"}, {"ZINC", "Zincatura"}};
    for (const auto& [code, name] : works) {
        script.Translate("DISTFASI", "CODLAV", code, code);
        script.WorkCentre(code, name);
    }
    script.Keep("DISTFASI", "CODMAC", {"LASER", "PRESSA"});
    return script;
}

} // namespace

} // namespace fenice

Totals MakeFenice(const Options& options) {
    using namespace fenice;
    return Write("fenice.db", BillTables(), options, PreparedFor(options));
}

} // namespace examples
