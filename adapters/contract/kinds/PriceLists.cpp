#include "adapters/contract/kinds/PriceLists.h"

#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/scaleRows.h"
#include "core/schemaDefaults.h"

namespace contract {

namespace {

/// What becomes of a quantity that a price holds from, for the page; the writer makes it.
Rule UpToTheNext() {
    return {"la quantità fin cui vale: fino a dove comincia il prezzo seguente",
            [](const RuleInput& input) { return RuleValue(input.Value()); }};
}

/// The quantity that a price holds up to, as the source tells it.
Field UpTo(const Field& quantity) {
    if (!quantity.IsSet()) {
        return quantity;
    }
    const MapLine line = quantity.LineTo(QStringLiteral("SCQTA"));
    Rule rule = line.rule;
    rule.text += QStringLiteral("; la quantità fin cui vale");
    return {line.sources.join(QStringLiteral(", ")), rule};
}

bool HoldsFromQuantities(const PriceFields& price) {
    return std::ranges::any_of(price.scales, [](const ScaleFields& scale) { return scale.quantityFrom.IsSet(); });
}

/// Where prices hold from quantities on, those of an article in a list from one day belong together: each ends where
/// the next begins, and without one of them another would hold in its place.
PriceLists Grouped(PriceLists lists) {
    for (const PriceFields& price : lists.prices) {
        if (HoldsFromQuantities(price)) {
            lists.source.group += price.list.Columns() + lists.article.Columns() + price.from.Columns();
        }
    }
    lists.source.group.removeDuplicates();
    return lists;
}

/// The declaration with the mappings that tell it; the procedure and its needs live on it.
class PriceListsKind {
public:
    explicit PriceListsKind(PriceLists lists)
        : declared(Grouped(std::move(lists))) {
        const QString& table = declared.source.table;
        for (const PriceFields& price : declared.prices) {
            Add(FieldMapping("LIS_TES", table,
                             {{"CDLIS", price.list},
                              {"LTTIP", price.direction},
                              {"LTDES", price.description},
                              {"LTVAL", price.currency},
                              {"LTINV", price.since}}));
            Add(FieldMapping("CON_TRO", table, {{"CDCON", price.owner}}));
            Add(FieldMapping(
                "LIS_ART", table,
                {{"CDART", declared.article}, {"LAINV", price.from}, {"LAFIV", price.to}, {"LANOT", price.note}}));
            for (const ScaleFields& scale : price.scales) {
                Add(FieldMapping("LIS_ARS", table, FieldsOf(scale)));
            }
            if (price.scaleRows) {
                pages.push_back(FieldMapping("LIS_ARS", price.scaleRows->rows.table, FieldsOf(price.scaleRows->scale)));
            }
        }
    }

    contract::Needs Needs() const {
        contract::Needs needs;
        for (const Mapping& page : pages) {
            needs = needs + NeedsOf(page);
        }
        for (const PriceFields& price : declared.prices) {
            needs = price.scaleRows ? needs + price.scaleRows->rows.OwnNeeds(declared.source.table) : needs;
            if (price.owner.IsSet()) {
                needs.writes.push_back({"CON_TRO", {"CORAS", "COLSC", "COLSF"}});
            }
        }
        needs.writes = needs.writes + PriceListNeeds();
        return needs;
    }

    PriceLists declared;
    std::vector<Mapping> pages = {};

private:
    void Add(const Mapping& page) {
        for (Mapping& each : declared.source.Mappings(page.targetTable, page.lines)) {
            each.isPart = page.isPart;
            pages.push_back(std::move(each));
        }
    }
    static std::vector<std::pair<QString, Field>> FieldsOf(const ScaleFields& scale) {
        static const QStringList discounts{"SCSCO", "SCSC2", "SCSC3"};
        std::vector<std::pair<QString, Field>> fields{
            {"SCQTA", scale.quantityFrom.IsSet() ? Field(scale.quantityFrom.Columns().join(u','), UpToTheNext())
                                                 : UpTo(scale.quantity)},
            {"SCPRZ", scale.price}};
        for (size_t i = 0; i < std::min<size_t>(discounts.size(), scale.discounts.size()); ++i) {
            fields.emplace_back(discounts.at(static_cast<qsizetype>(i)), scale.discounts[i]);
        }
        return fields;
    }
};

class PriceImporter final : public Importer {
public:
    PriceImporter(ImportRun& run, std::shared_ptr<const PriceListsKind> kind)
        : Importer(run),
          m_kind(std::move(kind)),
          m_writer(run, m_kind->declared.source.table) {}

    RowOutcome Row(const SourceRow& row) override;
    void EndGroup() override { m_writer.EndSteps(); }
    bool End() override {
        m_writer.EndLists();
        return true;
    }

private:
    std::optional<RowOutcome> Write(const SourceRow& row, const PriceFields& price, const QString& article);
    /// A price and whether its quantity is the one that it holds from.
    struct PriceOfRange {
        Scale scale;
        bool isFrom;
    };
    std::vector<PriceOfRange> ScalesOf(const SourceRow& row, const PriceFields& price) const;
    void GiveList(const QString& owner, const QString& direction) const;
    std::optional<PriceOfRange> ScaleOf(const SourceRow& row, const ScaleFields& fields) const;
    QString DirectionOf(const SourceRow& row, const PriceFields& price) const;

    std::shared_ptr<const PriceListsKind> m_kind;
    PriceListWriter m_writer;
};

/// The row is inserted when one of its prices is new, else updated when one is there.
RowOutcome PriceImporter::Row(const SourceRow& row) {
    if (const QString rule = m_kind->declared.leavesOut ? m_kind->declared.leavesOut(row) : QString();
        !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    const QString article = m_kind->declared.article.Text(GetSession(), row);
    if (!IsImported(Run(), article)) {
        m_writer.LeaveOut(article);
        return Run().Skip(ArticleMissing);
    }
    std::optional<RowOutcome> outcome;
    for (const PriceFields& price : m_kind->declared.prices) {
        const auto one = Write(row, price, article);
        outcome = one && outcome != RowOutcome::Inserted ? one : outcome;
    }
    return outcome ? *outcome : Run().Skip(QStringLiteral("riga senza prezzi"));
}

std::optional<RowOutcome> PriceImporter::Write(const SourceRow& row, const PriceFields& price, const QString& article) {
    Session& session = GetSession();
    std::optional<RowOutcome> outcome;
    for (const auto& [scale, isFrom] : ScalesOf(row, price)) {
        const QString owner = price.owner.Text(session, row);
        const QString list = owner.isEmpty() ? price.list.Text(session, row) : owner;
        const QString direction = DirectionOf(row, price);
        Validity validity{price.from.Day(session, row)};
        if (price.to.IsGiven(session, row)) {
            validity.to = WithoutEmptyDay(price.to.Day(session, row));
        }
        const ListHead head = m_writer.Head(list, direction,
                                            owner.isEmpty() ? price.description.Text(session, row)
                                                            : LookUp(session, "CON_TRO", "CDCON", owner, "CORAS"),
                                            price.currency.Text(session, row), price.since.Day(session, row));
        if (!owner.isEmpty()) {
            GiveList(owner, direction);
        }
        const qint64 owning = m_writer.Article(
            head, article, validity,
            price.note.IsGiven(session, row) ? std::optional(price.note.Text(session, row)) : std::nullopt);
        const RowOutcome one = isFrom ? m_writer.AddScaleFrom(owning, scale) : m_writer.AddScale(owning, scale);
        outcome = outcome == RowOutcome::Inserted ? outcome : one;
    }
    return outcome;
}

std::vector<PriceImporter::PriceOfRange> PriceImporter::ScalesOf(const SourceRow& row, const PriceFields& price) const {
    std::vector<PriceOfRange> scales;
    const auto add = [&](const SourceRow& one, const ScaleFields& fields) {
        if (const auto scale = ScaleOf(one, fields)) {
            scales.push_back(*scale);
        }
    };
    if (price.scaleRows) {
        price.scaleRows->rows.ForEach(GetSession(), row,
                                      [&](const SourceRow& one) { add(one, price.scaleRows->scale); });
    }
    if (scales.empty()) {
        for (const ScaleFields& fields : price.scales) {
            add(row, fields);
        }
    }
    return scales;
}

/// Assigns a list to the counterparty whose own it is.
void PriceImporter::GiveList(const QString& owner, const QString& direction) const {
    const QString column = direction == schema::defaults::SalesList ? QStringLiteral("COLSC") : QStringLiteral("COLSF");
    if (LookUp(GetSession(), "CON_TRO", "CDCON", owner, column) == owner) {
        return;
    }
    TargetRow target(Run(), "CON_TRO");
    target.Set(column, owner);
    target.Update("WHERE CDCON = " + Run().Quoted(owner));
}

std::optional<PriceImporter::PriceOfRange> PriceImporter::ScaleOf(const SourceRow& row,
                                                                  const ScaleFields& fields) const {
    Session& session = GetSession();
    if (fields.price.IsLeftOut(session, row)) {
        return std::nullopt;
    }
    const bool isFrom = fields.quantityFrom.IsSet();
    const Field& quantity = isFrom ? fields.quantityFrom : fields.quantity;
    Scale scale{quantity.NumberOrNull(session, row), fields.price.NumberOrNull(session, row)};
    const auto last = std::find_if(fields.discounts.rbegin(), fields.discounts.rend(),
                                   [&](const Field& discount) { return discount.IsGiven(session, row); });
    for (auto discount = fields.discounts.begin(); discount != last.base(); ++discount) {
        scale.discounts.push_back(discount->NumberOrNull(session, row));
    }
    if (!IsPrice(Run(), scale, quantity.Columns(), fields.price.Columns())) {
        return std::nullopt;
    }
    return PriceOfRange{scale, isFrom};
}

QString PriceImporter::DirectionOf(const SourceRow& row, const PriceFields& price) const {
    using namespace schema::defaults;
    const QString direction = price.direction.Text(GetSession(), row).toUpper();
    if (direction.isEmpty()) {
        m_kind->declared.source.CheckPartner(row, price.direction.Columns());
    }
    if (direction != SalesList && direction != PurchaseList) {
        throw ImportError(QStringLiteral("colonna '%1': '%2' non è V (vendite) né A (acquisti)")
                              .arg(price.direction.Columns().join(QStringLiteral("', '")), direction));
    }
    return direction;
}

const Frame UsualPriceLists{.module = {},
                            .procedure = {},
                            .announcement = "Inizio importazione listini",
                            .errors = "Errore: ",
                            .step = "Listini",
                            .completion = "Listini importati correttamente!"};

} // namespace

std::vector<PriceFields> Numbered(int first, int last, const std::function<PriceFields(const QString& number)>& of) {
    std::vector<PriceFields> prices;
    for (int number = first; number <= last; ++number) {
        prices.push_back(of(QString::number(number)));
    }
    return prices;
}

Frame FrameOf(const PriceLists& declared) { return Over(declared.frame, UsualPriceLists); }

ImportPart PartOf(const PriceLists& declared) {
    const auto kind = std::make_shared<const PriceListsKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = kind->declared.source,
            .needs = kind->Needs(),
            .empties = PriceListEmptying(),
            .make = [kind](ImportRun& run, const QString&) { return std::make_unique<PriceImporter>(run, kind); }};
}

} // namespace contract
