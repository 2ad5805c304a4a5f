// Articles of Mexal with their suppliers, stock and locations: ART_MAG holds a row for each article (for each
// warehouse, as far as stock goes).

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Stock.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Mexal {

namespace {

/// The rows of the articles, or of a single one. Of those of an article the first one tells what it is, and stands for
/// the others when it cannot be carried over.
ImportRun::Loop ArticleRows(const ImportRun& run, const QString& step, const QString& singleCode) {
    const QString from = " FROM ART_MAG" + run.OnlyCode(" WHERE", "[_ARCOD]", singleCode);
    return {step,      ArtMag, "_ARCOD", "SELECT COUNT(*)" + from, "SELECT *" + from + " ORDER BY [_ARCOD], NUMMAG",
            {"_ARCOD"}};
}

// --- Mappings -----------------------------------------------------------------------------------------------------

constexpr int Suppliers = 9; ///< of an article, the first one preferred

/// Column of a supplier of the article: "_ARFOR(1)".
QString OfSupplier(const char* column, int supplier) {
    return QString::fromLatin1(column) + '(' + QString::number(supplier) + ')';
}

/// The goods group, or the category of the statistics where an article has none.
Rule FamilyOf() {
    return {"translated through SYS_IMP (ART_MAG, GRPMERCE); without one through (ART_MAG, _ARCTG)",
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

const Mapping& Articoli() {
    static const Mapping mapping{
        "ART_ICO",
        ArtMag,
        {
            {"CDEXT", "_ARCOD", First(50)},
            {"DTINS", "_ARDTC", NotBlank(MomentOrNow())},
            {"ARDES", "_ARDES, _ARAGG", First(100)},
            {"ARCDR", "_ARDES, _ARAGG", CodeAndText(100)},
            {"ARCLA", "_ARDBP", Choice({{"S", "PF"}}, "CM")},
            {"ARFAM", "GRPMERCE, _ARCTG", FamilyOf()},
            {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
            {"ARLAM", "", Constant(false)},
            {"ARANN", "_ARANN", Flag()},
            {"ARUMS", "_ARUM1", TranslatedOrUpper(ArtMag, "_ARUM1", schema::defaults::Unit)},
            {"ARUM2", "_ARUM2", TranslatedOrUpper(ArtMag, "_ARUM1", "")},
            {"ARCOE", "_ARKOEPTA", RoundedTo(6)},
            {"ARIVA", "_ARIVA", VatCode(ArtMag, "_ARIVA")},
            {"ARMAG", "", Constant(true)},
            {"ARMAD", "", Constant(schema::defaults::Warehouse)},
            {"ARSMN", "_ARSMI", RoundedTo(6)},
            {"ARSMX", "_ARSMA", RoundedTo(6)},
            {"ARLOR", "_ARLOT(1)", RoundedTo(6)},
            {"ARGGA", "_ARGGR(1)", RoundedTo(0)},
            {"ARPSN", "_ARPES", RoundedTo(3)},
            {"ARCOS", "_ARCUL, _ARCOS", FirstNotZero()},
            {"ARPRZ", "_ARPRZ(1)", RoundedTo(6)},
            {"ARRIC", "_ARPRZ(1), _ARCUL, _ARCOS", MarkUp()},
        },
    };
    return mapping;
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

} // namespace

QString ArticleOf(ImportRun& run, const QString& sourceCode) {
    return ArticleWriter(run).CodeOf(ArtMag, "_ARCOD", sourceCode);
}

// --- Articles -----------------------------------------------------------------------------------------------------

namespace {

/// What is no article, such as an index of the catalogue, stays behind; services and labour are articles.
bool IsArticle(const SourceRow& row) {
    static const QStringList kinds{"A", "S", "L"};
    return row.IsBlank("_ARTIP") || kinds.contains(row.Text("_ARTIP").toUpper());
}

void LinkSuppliers(ImportRun& run, const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    for (int number = 1; number <= Suppliers; ++number) {
        const QString code = row.Text(OfSupplier("_ARFOR", number));
        if (code.isEmpty()) {
            continue;
        }
        const QString supplier = GetControparteMexal(run.GetSession(), code, false);
        if (supplier.isEmpty()) {
            run.Log(QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(run.RowKey(), code));
            continue;
        }
        const auto numberIn = [&row](const QString& column) {
            const bool told = row.HasColumn(column) && !row.IsBlank(column);
            return told ? QVariant(NumberOf(row, column)) : QVariant();
        };
        writer.Link(article, {supplier, NumberOf(row, OfSupplier("_ARFPR", number)), number == 1,
                              numberIn(OfSupplier("_ARGGR", number)), numberIn(OfSupplier("_ARLOT", number)),
                              numberIn(QStringLiteral("_ARQTA(%1,1)").arg(number))});
        if (const QString own = row.Text(OfSupplier("_ARCOF", number)); !own.isEmpty()) {
            writer.CodeAtCounterparty(article, own, supplier);
        }
    }
}

void WriteTexts(const ArticleWriter& writer, const SourceRow& row, const QString& article) {
    writer.Texts(article, QString(row.Text("_ARDES") + ' ' + row.Text("_ARAGG")).trimmed());
    if (const QString english = row.Text("_ARDSL(1)"); !english.isEmpty()) {
        writer.Text(article, "ARDES", english, "EN");
    }
}

/// Why a further row of an article is left out.
const QString OtherWarehouse = QStringLiteral("articolo già letto, riga di un altro magazzino");

/// @param last CDART of the article carried over last: its further rows are those of other warehouses
RowOutcome ImportArticolo(ImportRun& run, const SourceRow& row, QString& last) {
    if (!IsArticle(row)) {
        return run.Skip("riga che non è un articolo");
    }
    const ArticleWriter writer(run);
    const Facts facts{ArticleOf(run, row.Text("_ARCOD"))};
    if (facts.code == last) {
        return run.Skip(OtherWarehouse);
    }
    const RowOutcome outcome = writer.Write(Articoli(), row, facts, [&row](TargetRow& target) {
        // The discount category is a discount only where it is a number.
        bool isNumber = false;
        const double discount = row.Text("_ARSCO").replace(',', '.').toDouble(&isNumber);
        if (isNumber) {
            target.Set("ARSCO", discount);
        }
    });
    WriteTexts(writer, row, facts.code);
    LinkSuppliers(run, writer, row, facts.code);
    if (!row.IsBlank("_ARALT")) {
        writer.InternalCode(facts.code, row.Text("_ARALT"));
    }
    run.Restores(last);
    last = facts.code;
    return outcome;
}

} // namespace

const Needs& ArticoliNeeds() {
    static const Needs needs = [] {
        Needs all{{&Articoli()}, SupplierReads(), ArticleNeeds()};
        all.reads.push_back({ArtMag, {"_ARTIP", "_ARALT", "_ARDSL(1)", "_ARSCO"}});
        all.writes.push_back({"ART_COD", {"CDART", "CDCOD", "COTIP", "COTPC", "COCON"}});
        all.writes.push_back({"ART_ICO", {"ARSCO"}});
        return all;
    }();
    return needs;
}

void ImportArticoliMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportArticoliMEX", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione articoli");
        run.Preflight(ArticoliNeeds());
        EmptyArticles(run, reset);
        QString last;
        run.Rows(ArticleRows(run, "Articoli", singleCode),
                 [&](const SourceRow& row) { return ImportArticolo(run, row, last); });
        run.Complete("Articoli importati correttamente!");
    });
}

// --- Costs and prices ---------------------------------------------------------------------------------------------

namespace {

/// @param last as of `ImportArticolo`
RowOutcome RefreshArticle(ImportRun& run, const SourceRow& row, QString& last) {
    Session& session = run.GetSession();
    const QString article = ArticleOf(run, row.Text("_ARCOD"));
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
    static const Needs needs{{&CostiPrezzi()}, {{ArtMag, {"_ARCOD"}}}, {{"ART_ICO", {"CDART"}}}};
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
    return QStringLiteral("%1").arg(static_cast<int>(NumberOf(row, "NUMMAG")), 3, 10, QLatin1Char('0'));
}

RowOutcome ImportSaldo(ImportRun& run, StockWriter& writer, const SourceRow& row, QSet<QString>& seen) {
    const QString warehouse = WarehouseOf(run.GetSession(), row);
    const QString article = ArticleOf(run, row.Text("_ARCOD"));
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
    static const Needs needs{{}, {{ArtMag, {"_ARCOD", "NUMMAG", "QTAINVENT", "QTACARICO", "QTASCARIC"}}}, StockNeeds()};
    return needs;
}

void ImportSaldiMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportSaldiMEX", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Saldi di Magazzino");
        run.Preflight(SaldiNeeds());
        EmptyStock(run, reset);
        StockWriter writer(run);
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

namespace {

RowOutcome ImportUbicazione(ImportRun& run, const SourceRow& row) {
    const QString article = ArticleOf(run, row.Text("_ARCOD"));
    return IsImported(run, article) ? ArticleWriter(run).Location(article, row.Text("_ARUBI"))
                                    : run.Skip(ArticleMissing);
}

} // namespace

const Needs& UbicazioniNeeds() {
    static const Needs needs{{}, {{ArtMag, {"_ARCOD", "_ARUBI"}}}, LocationNeeds()};
    return needs;
}

void ImportUbicazioniMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportUbicazioniMEX", singleCode);
    run.Guard([&] {
        run.AnnounceAppending("Inizio importazione Ubicazioni Articolo");
        run.Preflight(UbicazioniNeeds());
        EmptyLocations(run, reset);
        const QString from =
            " FROM ART_MAG" + QString(" WHERE [_ARUBI] > ''") + run.OnlyCode(" AND", "[_ARCOD]", singleCode);
        run.Rows({"Ubicazioni Articolo", ArtMag, "_ARCOD", "SELECT COUNT(*)" + from,
                  "SELECT *" + from + " ORDER BY [_ARCOD]"},
                 [&](const SourceRow& row) { return ImportUbicazione(run, row); });
        run.Complete("Ubicazioni importate correttamente!");
    });
}

} // namespace modImport_Mexal
