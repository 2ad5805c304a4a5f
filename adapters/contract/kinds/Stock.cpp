#include "adapters/contract/kinds/Stock.h"

#include "adapters/contract/write/Warehouses.h"

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

RowOutcome WriteLocation(ImportRun& run, const Locations& declared, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString article = declared.article.Text(session, row);
    const QString location = declared.location.Text(session, row);
    if (location.isEmpty()) {
        return run.Skip(QStringLiteral("riga senza ubicazione"));
    }
    if (!IsImported(run, article)) {
        return run.Skip(ArticleMissing);
    }
    return ArticleWriter(run).Location(article, location, declared.description.Text(session, row));
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
            .make = Importing(
                // The pages go along: the needs point to them.
                [declared, page, place](ImportRun& run, const SourceRow& row) {
                    return WriteLocation(run, declared, row);
                })};
}

} // namespace contract
