#include "adapters/contract/kinds/Stock.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/ImportingModules.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/contract/write/Warehouses.h"
#include "sql/mod_ovTools.h"

#include <QSet>

namespace contract {

namespace {

class BalanceImporter final : public Importer {
public:
    BalanceImporter(ImportRun& run, Balances declared)
        : Importer(run),
          m_declared(std::move(declared)),
          m_writer(run),
          m_warehouses(run, m_declared.source.table, m_declared.warehouse.Columns().value(0)) {
        m_writer.WritesLike({});
    }

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_writer.TellRowsLeft();
        return true;
    }

private:
    Balances m_declared;
    StockWriter m_writer;
    Warehouses m_warehouses;
};

RowOutcome BalanceImporter::Row(const SourceRow& row) {
    if (const QString rule = m_declared.leavesOut ? m_declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    Session& session = GetSession();
    const QString warehouse = m_declared.warehouse.Text(session, row);
    StockLine line{m_warehouses.CodeOf(warehouse), m_declared.article.Text(session, row),
                   m_declared.quantity.Number(session, row)};
    line.unit = m_declared.unit.Text(session, row);
    line.price = m_declared.price.NumberOrNull(session, row);
    line.location = m_declared.location.Text(session, row);
    line.left = m_warehouses.LeftBy(warehouse);
    return m_writer.Balance(line);
}

class LocationImporter final : public Importer {
public:
    LocationImporter(ImportRun& run, Locations declared)
        : Importer(run),
          m_declared(std::move(declared)),
          m_modules(run, QStringLiteral("UBI_ART")) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override;

private:
    /// A row of UBI_ART that is to change.
    struct Place {
        QString id;
        QString article;
        QString location;
        bool isShown;
    };
    static size_t DigestOf(const QString& article, const QString& location = {}) {
        return qHash(mod_ovTools::UpperChars(article + QChar(u'\x1f') + location));
    }
    std::vector<Place> ChangedPlaces() const;

    Locations m_declared;
    ImportingModules m_modules;
    QSet<size_t> m_articles; ///< of the run, in digests
    QSet<size_t> m_leftOut;  ///< those that are not there
    QSet<size_t> m_shown;    ///< with each of their locations
};

RowOutcome LocationImporter::Row(const SourceRow& row) {
    Session& session = GetSession();
    const QString article = m_declared.article.Text(session, row);
    const QString location = m_declared.location.Text(session, row);
    if (location.isEmpty()) {
        return Run().Skip(QStringLiteral("riga senza ubicazione"));
    }
    if (!IsImported(Run(), article)) {
        Run().Remember(m_leftOut, DigestOf(article));
        return Run().Skip(ArticleMissing);
    }
    m_modules.Keep();
    Run().Remember(m_articles, DigestOf(article));
    Run().Remember(m_shown, DigestOf(article, location));
    return ArticleWriter(Run()).Location(article, location, m_declared.description.Text(session, row));
}

/// The locations that imports have given to articles: default ones that the run has not shown, and those that it has
/// shown and an import has put aside.
std::vector<LocationImporter::Place> LocationImporter::ChangedPlaces() const {
    std::vector<Place> changed;
    Recordset rows = GetSession().Quadrix.ExecuteWC(u"SELECT RECORD_ID, CDART, CDUBI, UADEF, USMDF FROM " +
                                                    Run().FullName("UBI_ART") + u" WHERE " + OfImports(GetSession()) +
                                                    u" ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const Place place{row.Text("RECORD_ID"), row.Text("CDART"), row.Text("CDUBI"),
                          m_shown.contains(DigestOf(row.Text("CDART"), row.Text("CDUBI")))};
        const bool isDefault = mod_ovTools::ToBoolean(row.Value("UADEF"));
        const bool isPutAside = !isDefault && IsImportUser(row.Text("USMDF"));
        if (place.isShown ? isPutAside : isDefault && !m_leftOut.contains(DigestOf(place.article))) {
            changed.push_back(place);
        }
    }
    return changed;
}

/// An article has the locations that the source shows of it; what else imports have given it is none of its default
/// ones, unless a row that was given up may have shown it. One of which the source shows none keeps what it has.
bool LocationImporter::End() {
    if (Run().IsPart()) {
        return true;
    }
    const QString locations = QStringLiteral("ubicazioni");
    const std::vector<Place> changed = ChangedPlaces();
    const auto isMet = [this](const Place& place) { return m_articles.contains(DigestOf(place.article)); };
    const auto hasGone = [&](bool ofMet) {
        return std::any_of(changed.begin(), changed.end(),
                           [&](const Place& place) { return !place.isShown && isMet(place) == ofMet; });
    };
    const bool isAlone = (hasGone(true) || hasGone(false)) && m_modules.IsAlone(locations);
    // Those of an article that no row shows may be of who imports the articles.
    const bool tellsOthers =
        isAlone && hasGone(false) && ImportingModules(Run(), QStringLiteral("ART_ICO")).IsAlone(locations);
    for (const Place& place : changed) {
        const bool isGone = !place.isShown && (isMet(place) ? isAlone : tellsOthers);
        if (place.isShown || (isGone && isMet(place) && !Run().HasGivenUp())) {
            TargetRow row(Run(), "UBI_ART");
            row.Set("UADEF", place.isShown);
            row.Update(QStringLiteral("WHERE RECORD_ID = ") + place.id);
        }
        if (isGone) {
            TellNotMetAgain(Run(), QStringLiteral("UBICAZIONI"),
                            QStringLiteral("articolo '%1', '%2'").arg(place.article, place.location), 1);
        }
    }
    return true;
}

class StockRows final : public Importer {
public:
    StockRows(ImportRun& run, EachBalance row, const StockLine& like)
        : Importer(run),
          m_row(std::move(row)),
          m_stock(run) {
        m_stock.WritesLike(like);
    }
    RowOutcome Row(const SourceRow& row) override { return m_row(Run(), m_stock, row); }
    bool End() override {
        m_stock.TellRowsLeft();
        return true;
    }

private:
    EachBalance m_row;
    StockWriter m_stock;
};

} // namespace

MakeImporter ImportingStock(EachBalance row, const StockLine& like) {
    return [row = std::move(row), like](ImportRun& run, const QString&) {
        return std::make_unique<StockRows>(run, row, like);
    };
}

Frame FrameOf(const Balances& declared) {
    return Over(declared.frame, {.announcement = "Inizio importazione Saldi di Magazzino",
                                 .step = "Saldi di Magazzino",
                                 .completion = "Saldi di Magazzino importati correttamente!"});
}

ImportPart PartOf(const Balances& declared) {
    const QString warehouse = declared.warehouse.Columns().join(QStringLiteral(", "));
    const Field place =
        warehouse.isEmpty()
            ? declared.warehouse
            : Field(warehouse, WarehouseWritten(declared.source.table, declared.warehouse.Columns().first()));
    const auto page = std::make_shared<const Mapping>(FieldMapping("MOV_MAR", declared.source.table,
                                                                   {{"MRMAG", place},
                                                                    {"MRART", declared.article},
                                                                    {"MRQTA", declared.quantity},
                                                                    {"MRUMS", declared.unit},
                                                                    {"MRPRZ", declared.price},
                                                                    {"MRUBI", declared.location}}));
    Needs needs = NeedsOf(*page);
    needs.writes = StockNeeds() + std::vector<TableNeed>{LookedUp("MAG_AZZ", {"CDMAG"}), {"MOV_MAR", {"MRUBI"}}};
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = needs,
            .empties = StockEmptying(),
            .make = [declared, page](ImportRun& run, const QString&) {
                return std::make_unique<BalanceImporter>(run, declared);
            }};
}

Frame FrameOf(const Locations& declared) {
    return Over(declared.frame, {.announcement = "Inizio importazione Ubicazioni Articolo",
                                 .step = "Ubicazioni Articolo",
                                 .completion = "Ubicazioni importate correttamente!"});
}

ImportPart PartOf(const Locations& declared) {
    const auto page = std::make_shared<const Mapping>(
        FieldMapping("UBI_ART", declared.source.table, {{"CDART", declared.article}, {"CDUBI", declared.location}}));
    const auto place = std::make_shared<const Mapping>(FieldMapping(
        "UBI_MAG", declared.source.table, {{"CDUBI", declared.location}, {"UBDES", declared.description}}));
    Needs needs = NeedsOf(*page) + NeedsOf(*place);
    needs.writes = LocationNeeds();
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = needs,
            .empties = LocationEmptying(),
            // The pages go along: the needs point to them.
            .make = [declared, page, place](ImportRun& run, const QString&) {
                return std::make_unique<LocationImporter>(run, declared);
            }};
}

} // namespace contract
