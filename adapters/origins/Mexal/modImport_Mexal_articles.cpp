// Articles of Mexal with their suppliers, stock and locations: ART_MAG holds a row for each article (for each
// warehouse, as far as stock goes).

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/map/lookups.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

#include <QRegularExpression>

using namespace contract;
using namespace contract::rules;

namespace modImport_Mexal {

namespace {

/// Why a further row of an article is left out.
const QString OtherWarehouse = QStringLiteral("articolo già letto, riga di un altro magazzino");

/// The rows of the articles, or of a single one. Of those of an article the first one tells what it is, and stands for
/// the others when it cannot be carried over.
ImportRun::Loop ArticleRows(const ImportRun& run, const QString& step, const QString& singleCode) {
    const QString from = " FROM ART_MAG" + run.OnlyCode(" WHERE", "[_ARCOD]", singleCode);
    return {step,      ArtMag, "_ARCOD", "SELECT COUNT(*)" + from, "SELECT *" + from + " ORDER BY [_ARCOD], NUMMAG",
            {"_ARCOD"}};
}

// --- Hooks and rules ----------------------------------------------------------------------------------------------

constexpr int Suppliers = 9; ///< of an article, the first one preferred

/// Column of a supplier of the article: "_ARFOR(1)".
QString OfSupplier(const char* column, int supplier) {
    return QString::fromLatin1(column) + '(' + QString::number(supplier) + ')';
}

/// The goods group, or the category of the statistics where an article has none.
Rule FamilyOf() {
    return {"translated through SYS_IMP (ART_MAG, GRPMERCE); without one through SYS_IMP (ART_MAG, _ARCTG)",
            [](const RuleInput& input) -> RuleValue {
                for (const QString& column : input.columns) {
                    const QString family =
                        modImport::GetNewCode(input.session, ArtMag, column, input.row.Text(column), true);
                    if (!family.isEmpty()) {
                        return family;
                    }
                }
                return std::nullopt;
            }};
}

/// What a refresh of costs and prices sets.
const Mapping& CostiPrezzi() {
    static const Mapping mapping{
        "ART_ICO",
        ArtMag,
        {
            {"ARCOS", "_ARCUL, _ARCOS", FirstNotZero()},
            {"ARPRZ", "_ARPRZ(1)", RoundedTo(6)},
            {"ARRIC", "_ARPRZ(1), _ARCUL, _ARCOS", MarkUp()},
        },
    };
    return mapping;
}

/// Columns of the suppliers: code, own code of the article, price; lead days, lot and least quantity of an order
/// stand in the exports of some installations only.
std::vector<TableNeed> SupplierReads() {
    QStringList columns;
    for (int supplier = 1; supplier <= Suppliers; ++supplier) {
        columns +=
            QStringList{OfSupplier("_ARFOR", supplier), OfSupplier("_ARCOF", supplier), OfSupplier("_ARFPR", supplier)};
    }
    return {{ArtMag, columns}};
}

/// What is no article, such as an index of the catalogue, stays behind; services and labour are articles.
QString LeftOut(const SourceRow& row) {
    static const QStringList kinds{"A", "S", "L"};
    const bool isArticle = row.IsBlank("_ARTIP") || kinds.contains(row.Text("_ARTIP").toUpper());
    return isArticle ? QString() : QStringLiteral("riga che non è un articolo");
}

/// The discount category is a discount only where it is a number; any other one is none.
void SetDiscount(ImportRun& /*run*/, const SourceRow& row, TargetRow& target) {
    static const QRegularExpression number(QStringLiteral("^[0-9]+([.,][0-9]*)?$"));
    const bool isDiscount = number.match(row.Text("_ARSCO")).hasMatch();
    target.Set("ARSCO", isDiscount ? QVariant(RoundedTo(NumberOf(row, "_ARSCO"), 2)) : QVariant());
}

/// A number of a supplier; not valid where the source lacks the column, Null where it is blank.
QVariant NumberOfSupplier(const SourceRow& row, const QString& column) {
    if (!row.HasColumn(column) || row.IsMissing(column)) {
        return {};
    }
    return row.IsBlank(column) ? QVariant(QMetaType::fromType<double>()) : QVariant(NumberOf(row, column));
}

std::vector<FoundSupplier> SuppliersOf(ImportRun& run, const SourceRow& row) {
    std::vector<FoundSupplier> suppliers;
    for (int number = 1; number <= Suppliers; ++number) {
        const QString code = row.Text(OfSupplier("_ARFOR", number));
        if (code.isEmpty()) {
            continue;
        }
        const QString supplier = GetControparteMexal(run.GetSession(), code, false);
        if (supplier.isEmpty()) {
            run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(run.RowKey(), code));
        }
        suppliers.push_back({{.supplier = supplier,
                              .price = NumberOf(row, OfSupplier("_ARFPR", number)),
                              .preferred = number == 1,
                              .leadDays = NumberOfSupplier(row, OfSupplier("_ARGGR", number)),
                              .lot = NumberOfSupplier(row, OfSupplier("_ARLOT", number)),
                              .minimum = NumberOfSupplier(row, QStringLiteral("_ARQTA(%1,1)").arg(number))},
                             row.Text(OfSupplier("_ARCOF", number))});
    }
    return suppliers;
}

/// The company's own description and the one in English.
const QString Description = QStringLiteral("_ARDES, _ARAGG");

} // namespace

// --- Articles -----------------------------------------------------------------------------------------------------

/// Of the rows of an article the first one tells what it is, and stands for the others when it cannot be carried over.
Articles Articoli() {
    return {
        .frame = {.module = Module, .procedure = "ImportArticoliMEX"},
        .source = {.table = ArtMag, .key = "[_ARCOD]", .order = "[_ARCOD], NUMMAG", .group = {"_ARCOD"}},
        .code = {"_ARCOD", Article()},
        .description = Description,
        .lines =
            {
                {"CDEXT", "_ARCOD", First(50)},
                {"DTINS", "_ARDTC", NotBlank(MomentOrNow())},
                {"ARCLA", "_ARDBP", Choice({{"S", "PF"}}, "CM")},
                {"ARFAM", "GRPMERCE, _ARCTG", FamilyOf()},
                {"ARANN", "_ARANN", Flag()},
                {"ARUMS", "_ARUM1", TranslatedOrUpper(ArtMag, "_ARUM1", schema::defaults::Unit)},
                {"ARUM2", "_ARUM2", TranslatedOrUpper(ArtMag, "_ARUM1", "")},
                {"ARCOE", "_ARKOEPTA", NotZero()},
                {"ARIVA", "_ARIVA", VatCode(ArtMag, "_ARIVA")},
                {"ARSMN", "_ARSMI", RoundedTo(6)},
                {"ARSMX", "_ARSMA", RoundedTo(6)},
                {"ARLOR", "_ARLOT(1)", RoundedTo(6)},
                {"ARGGA", "_ARGGR(1)", RoundedTo(0)},
                {"ARPSN", "_ARPES", RoundedTo(3)},
                {"ARCOS", "_ARCUL, _ARCOS", FirstNotZero()},
                {"ARPRZ", "_ARPRZ(1)", RoundedTo(6)},
                {"ARRIC", "_ARPRZ(1), _ARCUL, _ARCOS", MarkUp()},
            },
        .foundSuppliers = SuppliersOf,
        .aliases = {{.code = "_ARALT"}},
        .languages = {{.language = Fixed("EN"), .text = "_ARDSL(1)"}},
        .furtherRows = OtherWarehouse,
        .leavesOut = LeftOut,
        .more = SetDiscount,
        .further = {{},
                    SupplierReads() + std::vector<TableNeed>{{ArtMag, {"_ARTIP", "_ARSCO"}}},
                    {{"ART_ICO", {"ARSCO"}}}},
    };
}

// --- Costs and prices ---------------------------------------------------------------------------------------------

namespace {

/// @param last as of `ImportArticolo`
RowOutcome RefreshArticle(ImportRun& run, const SourceRow& row, QString& last) {
    Session& session = run.GetSession();
    const QString article = ArticleCodeOf(run.GetSession(), ArtMag, "_ARCOD", row.Text("_ARCOD"));
    if (article == last) {
        return run.Skip(OtherWarehouse);
    }
    if (!IsThere(session, "ART_ICO", "CDART", article)) {
        return run.Skip(ArticleMissing);
    }
    TargetRow target(run, "ART_ICO");
    CostiPrezzi().Apply(target, session, row, {article});
    target.Update("WHERE " + Equals(session, "CDART", article));
    run.Restores(last);
    last = article;
    return RowOutcome::Updated;
}

} // namespace

const Needs& CostiPrezziNeeds() {
    static const Needs needs{{&CostiPrezzi()}, {{ArtMag, {"_ARCOD", "NUMMAG"}}}, {{"ART_ICO", {"CDART"}}}};
    return needs;
}

/// Refreshes articles that are there: nothing is emptied.
void ImportaCostiPrezziFromMEX(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "ImportaCostiPrezziFromMEX", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Costi/Prezzi");
        run.Preflight(CostiPrezziNeeds());
        QString last;
        run.Rows(ArticleRows(run, "Costi/Prezzi", singleCode),
                 [&](const SourceRow& row) { return RefreshArticle(run, row, last); });
        run.Complete("Costi/Prezzi importati correttamente!");
    });
}

// --- Stock --------------------------------------------------------------------------------------------------------

namespace {

/// The warehouse of its number in the source: 1 is "001".
QString WarehouseOf(Session& session, const SourceRow& row) {
    const QString number = row.Text("NUMMAG");
    const QString known = modImport::GetNewCode(session, ArtMag, "NUMMAG", number, false);
    if (!known.isEmpty() || number.isEmpty()) {
        return known.isEmpty() ? schema::defaults::Warehouse : known;
    }
    return QStringLiteral("%1").arg(WholeNumberOf(row, "NUMMAG"), 3, 10, QLatin1Char('0'));
}

RowOutcome ImportSaldo(ImportRun& run, StockWriter& writer, const SourceRow& row, QSet<QString>& seen) {
    const QString warehouse = WarehouseOf(run.GetSession(), row);
    const QString article = ArticleCodeOf(run.GetSession(), ArtMag, "_ARCOD", row.Text("_ARCOD"));
    const QString key = warehouse + '\n' + article;
    if (seen.contains(key)) {
        return run.Skip("riga ripetuta nell'esportazione");
    }
    const double quantity = NumberOf(row, "QTAINVENT") + NumberOf(row, "QTACARICO") - NumberOf(row, "QTASCARIC");
    const RowOutcome outcome = writer.Balance(warehouse, article, RoundedTo(quantity, 6));
    run.Remember(seen, key);
    return outcome;
}

} // namespace

const Needs& SaldiNeeds() {
    static const Needs needs{{},
                             {{ArtMag, {"_ARCOD", "NUMMAG", "QTAINVENT", "QTACARICO", "QTASCARIC"}}},
                             StockNeeds(),
                             {{.list = ArtMag, .field = "NUMMAG", .table = "MOV_MAR", .column = "MRMAG"}}};
    return needs;
}

void ImportSaldiMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportSaldiMEX", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Saldi di Magazzino");
        run.Preflight(SaldiNeeds());
        Empty(run, reset, StockEmptying());
        StockWriter writer(run);
        writer.WritesLike({});
        QSet<QString> seen;
        const QString from = " FROM ART_MAG" + run.OnlyCode(" WHERE", "[_ARCOD]", singleCode);
        const bool toTheEnd = run.Rows({"Saldi di Magazzino",
                                        ArtMag,
                                        "NUMMAG, _ARCOD",
                                        "SELECT COUNT(*)" + from,
                                        "SELECT *" + from + " ORDER BY NUMMAG, [_ARCOD]",
                                        {"NUMMAG", "_ARCOD"}},
                                       [&](const SourceRow& row) { return ImportSaldo(run, writer, row, seen); });
        if (toTheEnd) {
            writer.TellRowsLeft();
        }
        run.Complete("Saldi di Magazzino importati correttamente!");
    });
}

// --- Locations ----------------------------------------------------------------------------------------------------

Locations Ubicazioni() {
    return {
        .frame = {.module = Module, .procedure = "ImportUbicazioniMEX", .log = LogStart::Behind},
        .source = {.table = ArtMag, .key = "[_ARCOD]", .order = "[_ARCOD]", .where = "[_ARUBI] > ''"},
        .article = {"_ARCOD", Article()},
        .location = "_ARUBI",
    };
}

} // namespace modImport_Mexal
