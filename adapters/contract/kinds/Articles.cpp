#include "adapters/contract/kinds/Articles.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

using namespace rules;

constexpr int TextSize = 100;

std::vector<MapLine> UsualLines(const Articles& declared) {
    const QString description = declared.description.Columns().join(QStringLiteral(", "));
    return {
        {"ARDES", description, First(TextSize)},
        {"ARCDR", description, CodeAndText(TextSize)},
        {"ARTPG", "", Constant(schema::defaults::ArticleKind)},
        {"ARLAM", "", Constant(false)},
        {"ARMAG", "", Constant(true)},
        {"ARMAD", "", Constant(schema::defaults::Warehouse)},
    };
}

/// The declaration with what follows from it; the procedure and its needs live on it.
class ArticlesKind {
public:
    explicit ArticlesKind(Articles articles)
        : declared(std::move(articles)),
          mappings(declared.source.Mappings("ART_ICO", declared.lines.Over(UsualLines(declared)))) {
        AddPages();
    }

    contract::Needs Needs() const;

    Articles declared;
    std::vector<Mapping> mappings;   ///< one for each table that is read
    std::vector<Mapping> pages = {}; ///< of what hangs on an article, for the page and the check

private:
    void AddPages();
};

void ArticlesKind::AddPages() {
    const QString& table = declared.source.table;
    const auto tableOf = [&table](const ChildTable& rows) { return rows.table.isEmpty() ? table : rows.table; };
    const auto addOwn = [this](const ChildTable& rows, const Mapping& page) {
        if (!rows.table.isEmpty()) {
            pages.push_back(page);
            return;
        }
        for (Mapping& each : declared.source.Mappings(page.targetTable, page.lines)) {
            each.isPart = page.isPart;
            pages.push_back(std::move(each));
        }
    };
    for (const SupplierOfArticle& each : declared.suppliers) {
        addOwn(each.rows, FieldMapping("ART_FOR", tableOf(each.rows),
                                       {{"CDCON", each.supplier},
                                        {"ARPRZ", each.price},
                                        {"AFABI", each.preferred},
                                        {"AFGGR", each.leadDays},
                                        {"AFLOR", each.lot},
                                        {"AFQTR", each.minimum}}));
        addOwn(each.rows,
               FieldMapping("ART_COD", tableOf(each.rows), {{"CDCOD", each.ownCode}, {"CODES", each.ownDescription}}));
    }
    addOwn({}, FieldMapping("UBI_ART", table, {{"CDUBI", declared.location}}));
    for (const Aliases& each : declared.aliases) {
        addOwn(each.rows,
               FieldMapping("ART_COD", tableOf(each.rows),
                            {{"CDCOD", each.code}, {"CODES", each.ownDescription}, {"COCON", each.counterparty}}));
    }
    for (const UnitsOfArticle& each : declared.units) {
        pages.push_back(FieldMapping("ART_ICO", tableOf(each.rows), {{"ARUM2", each.unit}, {"ARCOE", each.factor}}));
    }
    for (const LanguageTexts& each : declared.languages) {
        pages.push_back(FieldMapping("SYS_LNG", tableOf(each.rows), {{"LNLNG", each.language}, {"LNTXT", each.text}}));
    }
}

contract::Needs ArticlesKind::Needs() const {
    const QString& table = declared.source.table;
    contract::Needs needs = declared.source.NeedsOf({declared.code, declared.description});
    for (const auto* all : {&mappings, &pages}) {
        for (const Mapping& mapping : *all) {
            needs = needs + NeedsOf(mapping);
        }
    }
    for (const SupplierOfArticle& each : declared.suppliers) {
        needs = needs + each.rows.OwnNeeds(table);
    }
    for (const Aliases& each : declared.aliases) {
        needs = needs + each.rows.OwnNeeds(table);
    }
    for (const UnitsOfArticle& each : declared.units) {
        needs = needs + each.rows.OwnNeeds(table) + each.rows.NeedsOf(table, {each.places});
        needs.writes.push_back({"ART_ICO", {"ARUMS", "ARUMP", "ARUMV"}});
    }
    for (const LanguageTexts& each : declared.languages) {
        needs = needs + each.rows.OwnNeeds(table);
    }
    needs.writes = needs.writes + ArticleNeeds();
    if (declared.location.IsSet()) {
        needs.writes = needs.writes + LocationNeeds();
    }
    return needs + declared.further;
}

class ArticleImporter final : public Importer {
public:
    ArticleImporter(ImportRun& run, std::shared_ptr<const ArticlesKind> kind)
        : Importer(run),
          m_kind(std::move(kind)),
          m_writer(run) {}

    QString Condition() const override {
        return m_kind->declared.condition ? m_kind->declared.condition(GetSession()) : QString();
    }
    void Begin() override {
        const QString condition = Condition();
        if (!condition.isEmpty() && !Run().IsPart()) {
            Run().Tell(QStringLiteral("Condizione delle impostazioni: si leggono gli articoli con %1").arg(condition));
        }
    }
    RowOutcome Row(const SourceRow& row) override;

private:
    void SetUnits(const SourceRow& row, TargetRow& target) const;
    void TellCut(const SourceRow& row, const TargetRow& target) const;
    void Claim(const SourceRow& row, const QString& article);
    void LinkSuppliers(const SourceRow& row, const QString& article) const;
    SupplierLink LinkOf(const SourceRow& row, const SupplierOfArticle& of, const QString& supplier, bool isFirst) const;
    void WriteAlias(const SourceRow& row, const Aliases& alias, const QString& article) const;
    void WriteChildren(const SourceRow& row, const QString& article) const;
    RowOutcome FillCodesOf(const SourceRow& row, const Facts& facts) const;

    std::shared_ptr<const ArticlesKind> m_kind;
    ArticleWriter m_writer;
    QString m_last; ///< CDART of the article carried over last
};

RowOutcome ArticleImporter::Row(const SourceRow& row) {
    const Articles& declared = m_kind->declared;
    if (const QString rule = declared.leavesOut ? declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    const Facts facts{declared.code.RequiredText(GetSession(), row)};
    if (declared.there == ArticleThere::Rewritten) {
        Claim(row, facts.code);
    }
    if (!declared.furtherRows.isEmpty() && facts.code == m_last) {
        return Run().Skip(declared.furtherRows);
    }
    if (declared.each) {
        declared.each(Run(), row);
    }
    if (declared.there == ArticleThere::Kept && IsThere(GetSession(), "ART_ICO", "CDART", facts.code)) {
        return Run().Skip(QStringLiteral("articolo già presente"));
    }
    if (FillsCodes(Run())) {
        return IsThere(GetSession(), "ART_ICO", "CDART", facts.code) ? FillCodesOf(row, facts) : SkipGone(Run());
    }
    const RowOutcome outcome = m_writer.Write(m_kind->mappings.front(), row, facts, [&](TargetRow& target) {
        for (size_t i = 1; i < m_kind->mappings.size(); ++i) {
            m_kind->mappings[i].Apply(target, GetSession(), row, facts);
        }
        SetUnits(row, target);
        if (declared.more) {
            declared.more(Run(), row, target);
        }
        TellCut(row, target);
    });
    m_writer.Texts(facts.code, declared.description.Text(GetSession(), row));
    LinkSuppliers(row, facts.code);
    WriteChildren(row, facts.code);
    if (declared.after) {
        declared.after(Run(), row, facts.code);
    }
    Run().Restores(m_last);
    m_last = facts.code;
    return outcome;
}

/// An article that is there gets the codes that it lacks, and nothing else.
RowOutcome ArticleImporter::FillCodesOf(const SourceRow& row, const Facts& facts) const {
    const MissingCodes missing(Run(), QStringLiteral("ART_ICO"), facts);
    TargetRow target(Run(), "ART_ICO");
    for (const Mapping& mapping : m_kind->mappings) {
        missing.Apply(mapping, row, target);
    }
    TargetRow further(Run(), "ART_ICO");
    SetUnits(row, further);
    if (m_kind->declared.more) {
        m_kind->declared.more(Run(), row, further);
    }
    missing.Take(further, m_kind->declared.further.mappings, target);
    return missing.Write(target);
}

/// A long description is a text of any length in the source: what its column does not hold, and no note gets, is told.
void ArticleImporter::TellCut(const SourceRow& row, const TargetRow& target) const {
    const QString column = QStringLiteral("ARDEC");
    const schema::Table& articles = *schema::FindTable("ART_ICO");
    for (const Mapping& mapping : m_kind->mappings) {
        for (const MapLine& line : mapping.lines) {
            if (line.target != column || line.sources.size() != 1) {
                continue;
            }
            const QString& source = line.sources.first();
            const auto isNote = [&](const MapLine& one) {
                return one.sources.contains(source) && articles.FindColumn(one.target)->size == 0;
            };
            const qsizetype written = target.Value(column).toString().size();
            const qsizetype all = row.Text(source).size();
            if (written < all && written == articles.FindColumn(column)->size &&
                std::none_of(mapping.lines.begin(), mapping.lines.end(), isNote)) {
                Run().Log(QStringLiteral("TESTO RIDOTTO: %1, colonna '%2': scritti %3 caratteri di %4")
                              .arg(Run().RowKey(), source, QString::number(written), QString::number(all)));
            }
        }
    }
}

void ArticleImporter::SetUnits(const SourceRow& row, TargetRow& target) const {
    Session& session = GetSession();
    for (const UnitsOfArticle& each : m_kind->declared.units) {
        bool hasSecond = !target.Value("ARUM2").toString().isEmpty();
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            const QString unit = each.unit.Text(session, one);
            const QString places = each.places.IsSet() ? each.places.Text(session, one) : QStringLiteral("ARUM2");
            for (const QString& place : places.split(u' ', Qt::SkipEmptyParts)) {
                const bool isSecond = place == u"ARUM2";
                if (isSecond && hasSecond) {
                    Run().Log(QStringLiteral("UNITÀ DI MISURA ULTERIORE: %1: '%2' (fattore %3) non ha posto "
                                             "nell'articolo, che ne tiene due")
                                  .arg(Run().RowKey(), one.Text(each.unit.Columns().value(0)),
                                       each.factor.Text(session, one)));
                    continue;
                }
                target.Set(place, unit);
                if (isSecond && each.factor.IsSet()) {
                    target.Set("ARCOE", each.factor.Value(session, one));
                }
                hasSecond = hasSecond || isSecond;
            }
        });
    }
}

void ArticleImporter::Claim(const SourceRow& row, const QString& article) {
    QStringList codes;
    for (const QString& column : m_kind->declared.code.Columns()) {
        codes.append(row.Text(column));
    }
    m_writer.Claim(article, codes.join(u' '));
}

/// Rows of the source that tell one article tell its suppliers together.
void ArticleImporter::LinkSuppliers(const SourceRow& row, const QString& article) const {
    Session& session = GetSession();
    SupplierLinks links(Run(), article);
    bool isFirst = true;
    for (const SupplierOfArticle& each : m_kind->declared.suppliers) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            const QString supplier = each.supplier.Text(session, one);
            if (supplier.isEmpty()) {
                return;
            }
            links.Add(LinkOf(one, each, supplier, isFirst));
            isFirst = false;
            if (const QString code = each.ownCode.Text(session, one); !code.isEmpty()) {
                m_writer.CodeAtCounterparty(article, code, supplier, each.ownDescription.Text(session, one));
            }
        });
    }
    if (article != m_last) {
        links.Close();
    }
}

SupplierLink ArticleImporter::LinkOf(const SourceRow& row, const SupplierOfArticle& of, const QString& supplier,
                                     bool isFirst) const {
    Session& session = GetSession();
    const auto number = [&](const Field& field) {
        const QVariant told = field.NumberOrNull(session, row);
        return told.isNull() && field.IsSet() ? QVariant(QMetaType::fromType<double>()) : told;
    };
    return {.supplier = supplier,
            .price = of.price.IsSet() ? QVariant(of.price.Number(session, row)) : QVariant(),
            .preferred = of.preferred.IsSet() ? mod_ovTools::ToBoolean(of.preferred.Value(session, row)) : isFirst,
            .leadDays = number(of.leadDays),
            .lot = number(of.lot),
            .minimum = number(of.minimum)};
}

void ArticleImporter::WriteAlias(const SourceRow& row, const Aliases& alias, const QString& article) const {
    Session& session = GetSession();
    const QString code = alias.code.Text(session, row);
    const QString counterparty = alias.counterparty.Text(session, row);
    if (code.isEmpty()) {
        return;
    }
    if (!alias.counterparty.IsSet()) {
        m_writer.InternalCode(article, code);
    } else if (!counterparty.isEmpty()) {
        m_writer.CodeAtCounterparty(article, code, counterparty, alias.ownDescription.Text(session, row));
    } else if (alias.counterparty.IsBlank(row)) { // one that is not there its rule tells
        Run().Log(QStringLiteral("CODICE SENZA CONTROPARTE: %1: '%2'").arg(Run().RowKey(), code));
    }
}

void ArticleImporter::WriteChildren(const SourceRow& row, const QString& article) const {
    Session& session = GetSession();
    for (const Aliases& each : m_kind->declared.aliases) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) { WriteAlias(one, each, article); });
    }
    for (const LanguageTexts& each : m_kind->declared.languages) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            const QString language = each.language.Text(session, one);
            if (const QString text = each.text.Text(session, one); !text.isEmpty() && !language.isEmpty()) {
                m_writer.Text(article, QStringLiteral("ARDES"), text, language);
            }
        });
    }
    if (const QString location = m_kind->declared.location.Text(session, row); !location.isEmpty()) {
        m_writer.OwnLocation(article, location);
    }
}

const Frame UsualArticles{.module = {},
                          .procedure = {},
                          .announcement = "Inizio importazione articoli",
                          .errors = "Errore: ",
                          .step = "Articoli",
                          .completion = "Articoli importati correttamente!"};

} // namespace

void SetMarkUp(ImportRun& /*run*/, const SourceRow& /*row*/, TargetRow& article) {
    if (const QVariant price = article.Value("ARPRZ"); price.isValid()) {
        article.Set("ARRIC", price.isNull() ? QVariant()
                                            : QVariant(MarkUpOf(price.toDouble(), article.Value("ARCOS").toDouble())));
    }
}

Frame FrameOf(const Articles& declared) { return Over(declared.frame, UsualArticles); }

ImportPart PartOf(const Articles& declared) {
    const auto kind = std::make_shared<const ArticlesKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = kind->Needs(),
            .empties = declared.empties,
            .make = [kind](ImportRun& run, const QString&) { return std::make_unique<ArticleImporter>(run, kind); }};
}

} // namespace contract
