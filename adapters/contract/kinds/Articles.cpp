#include "adapters/contract/kinds/Articles.h"

#include "adapters/contract/kinds/articlesTold.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/cutTexts.h"
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
          m_writer(run),
          m_attributes(run),
          m_remains(run) {}

    QString Condition() const override {
        return m_kind->declared.condition ? m_kind->declared.condition(GetSession()) : QString();
    }
    void Begin() override {
        const QString condition = Condition();
        if (!condition.isEmpty() && !Run().IsPart()) {
            Run().Tell(QStringLiteral("Condizione delle impostazioni: si leggono gli articoli con %1").arg(condition));
        }
        m_remains.Begin(ToldBy(GetSession(), m_kind->declared));
        m_tellsUnits = TellsUnits(GetSession(), m_kind->declared);
    }
    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        m_remains.Close();
        return true;
    }

private:
    bool SetUnits(const SourceRow& row, TargetRow& target, SourceCodes* sourceCodes = nullptr) const;
    void TellCancelled(const SourceRow& row) const;
    void ClearUnits(const QString& article, bool hasRows, TargetRow& target) const;
    void Claim(const SourceRow& row, const QString& article);
    void WriteLink(SupplierLinks& links, const QString& article, const FoundSupplier& supplier);
    void LinkSuppliers(const SourceRow& row, const QString& article);
    SupplierLink LinkOf(const SourceRow& row, const SupplierOfArticle& of, const QString& supplier, bool isFirst) const;
    QString DescriptionThere(const SourceRow& row, const Field& description) const;
    void WriteCode(const QString& article, const QString& code, const QString& counterparty,
                   const QString& description);
    void WriteAlias(const SourceRow& row, const Aliases& alias, const QString& article);
    void WriteChildren(const SourceRow& row, const QString& article);
    RowOutcome FillCodesOf(const SourceRow& row, const Facts& facts) const;

    std::shared_ptr<const ArticlesKind> m_kind;
    ArticleWriter m_writer;
    FreeAttributeWriter m_attributes;
    ArticleRemains m_remains;
    QString m_last; ///< CDART of the article carried over last
    bool m_tellsUnits = false;
};

RowOutcome ArticleImporter::Row(const SourceRow& row) {
    const Articles& declared = m_kind->declared;
    if (const QString rule = declared.leavesOut ? declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    if (const QString rule = declared.cancelled ? declared.cancelled(row) : QString(); !rule.isEmpty()) {
        TellCancelled(row);
        return Run().Skip(rule);
    }
    const Facts facts{declared.code.RequiredText(GetSession(), row)};
    if (declared.there == ArticleThere::Rewritten) {
        Claim(row, facts.code);
    }
    if (!declared.furtherRows.isEmpty() &&
        (facts.code == m_last || (m_last.isEmpty() && IsWrittenBefore(Run(), facts.code)))) {
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
    m_remains.RowBegins(facts.code);
    const RowOutcome outcome = m_writer.Write(m_kind->mappings.front(), row, facts, [&](TargetRow& target) {
        for (size_t i = 1; i < m_kind->mappings.size(); ++i) {
            m_kind->mappings[i].Apply(target, GetSession(), row, facts);
        }
        ClearUnits(facts.code, SetUnits(row, target), target);
        if (declared.more) {
            declared.more(Run(), row, target);
        }
        for (size_t i = 1; i < m_kind->mappings.size(); ++i) {
            TellCut(Run(), m_kind->mappings[i], row, target);
        }
    });
    m_writer.Texts(facts.code, declared.description.Text(GetSession(), row));
    LinkSuppliers(row, facts.code);
    WriteChildren(row, facts.code);
    if (declared.after) {
        declared.after(Run(), row, facts.code);
    }
    if (declared.attributes) {
        declared.attributes(Run(), m_attributes, row, facts.code);
    }
    m_remains.RowEnds(facts.code);
    Run().Restores(m_last);
    m_last = facts.code;
    return outcome;
}

void ArticleImporter::TellCancelled(const SourceRow& row) const {
    const QString article = m_kind->declared.code.Text(GetSession(), row);
    const QString inUse = Equals(GetSession(), "CDART", article) + QStringLiteral(" AND COALESCE(ARANN, 0) = 0");
    if (!FillsCodes(Run()) && IdWhere(GetSession(), "ART_ICO", inUse) != 0) {
        Run().Log(
            QStringLiteral("ANNULLATA NELL'ORIGINE: %1: l'articolo '%2' non è annullato in Quadrix, e resta com'è")
                .arg(Run().RowKey(), article));
    }
}

/// An article that is there gets the codes that it lacks, and nothing else.
RowOutcome ArticleImporter::FillCodesOf(const SourceRow& row, const Facts& facts) const {
    const MissingCodes missing(Run(), QStringLiteral("ART_ICO"), facts);
    TargetRow target(Run(), "ART_ICO");
    for (const Mapping& mapping : m_kind->mappings) {
        missing.Apply(mapping, row, target);
    }
    TargetRow further(Run(), "ART_ICO");
    SourceCodes unitCodes;
    SetUnits(row, further, &unitCodes);
    if (m_kind->declared.more) {
        m_kind->declared.more(Run(), row, further);
    }
    missing.Take(further, m_kind->declared.further.mappings, target, unitCodes);
    return missing.Write(target);
}

/// @param sourceCodes what the source has for the columns of units
/// @return whether it has rows of units of the article
bool ArticleImporter::SetUnits(const SourceRow& row, TargetRow& target, SourceCodes* sourceCodes) const {
    Session& session = GetSession();
    bool hasRows = false;
    for (const UnitsOfArticle& each : m_kind->declared.units) {
        bool hasSecond = !target.Value("ARUM2").toString().isEmpty();
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            hasRows = true;
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
                for (const QString& column : sourceCodes == nullptr ? QStringList() : each.unit.Columns()) {
                    (*sourceCodes)[place].append(one.Text(column));
                }
                if (isSecond && each.factor.IsGiven(session, one)) {
                    target.Set("ARCOE", each.factor.Value(session, one));
                }
                hasSecond = hasSecond || isSecond;
            }
        });
    }
    return hasRows;
}

/// What neither rows nor lines tell of the units of an article that is there, the source has cleared where it has rows
/// of the article, and imports alone have written there. Else it may be somebody's own: it stays, and so does the name
/// of who changed the article, by which the next import knows it.
void ArticleImporter::ClearUnits(const QString& article, bool hasRows, TargetRow& target) const {
    Session& session = GetSession();
    const std::vector<UnitsOfArticle>& units = m_kind->declared.units;
    if (units.empty() || !m_tellsUnits || session.Quadrix.IsAbsent("ART_ICO", "CDART", article)) {
        return;
    }
    QStringList columns{"ARUM2", "ARCOE"};
    if (std::ranges::any_of(units, [](const UnitsOfArticle& each) { return each.places.IsSet(); })) {
        columns += QStringList{"ARUMP", "ARUMV"};
    }
    columns.removeIf([&target](const QString& column) { return target.Value(column).isValid(); });
    Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT ARUM2, ARCOE, ARUMP, ARUMV, USINS, DTINS, USMDF, DTMDF FROM %1 WHERE ")
            .arg(Run().FullName("ART_ICO")) +
        Equals(session, "CDART", article));
    const SourceRow there(found);
    columns.removeIf([&](const QString& column) { return found.Eof() || there.IsBlank(column); });
    if (columns.isEmpty()) {
        return;
    }
    QStringList values;
    for (const QString& column : std::as_const(columns)) {
        values.append(QStringLiteral("%1 '%2'").arg(column, there.Text(column)));
    }
    const bool isChanged = !there.IsBlank("USMDF");
    const QString user = there.Text(isChanged ? "USMDF" : "USINS");
    if (hasRows && IsImportUser(user)) {
        for (const QString& column : std::as_const(columns)) {
            target.Set(column, QVariant());
        }
        Run().Log(QStringLiteral("UNITÀ DI MISURA TOLTA: %1: %2").arg(Run().RowKey(), values.join(u", ")));
        return;
    }
    if (!IsImportUser(user)) {
        target.Set("USMDF", user);
        target.Set("DTMDF", there.Value(isChanged ? "DTMDF" : "DTINS"));
    }
    Run().Log(QStringLiteral("UNITÀ DI MISURA RIMASTA: %1: %2").arg(Run().RowKey(), values.join(u", ")));
}

void ArticleImporter::Claim(const SourceRow& row, const QString& article) {
    QStringList codes;
    for (const QString& column : m_kind->declared.code.Columns()) {
        codes.append(row.Text(column));
    }
    m_writer.Claim(article, codes.join(u' '));
}

/// Whether a row names a supplier, who may not be there; zero names none.
bool NamesOne(const Field& supplier, const SourceRow& row) {
    return std::ranges::any_of(supplier.Columns(), [&row](const QString& column) {
        return !row.IsBlank(column) && mod_ovTools::ReadNumber(row.Value(column)) != 0.0;
    });
}

/// Rows of the source that tell one article tell its suppliers together.
void ArticleImporter::LinkSuppliers(const SourceRow& row, const QString& article) {
    Session& session = GetSession();
    SupplierLinks links(Run(), article);
    bool isFirst = true;
    for (const SupplierOfArticle& each : m_kind->declared.suppliers) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            const QString supplier = each.supplier.Text(session, one);
            if (!supplier.isEmpty()) {
                const QString code = each.ownCode.Text(session, one);
                const QString description = code.isEmpty() ? code : DescriptionThere(one, each.ownDescription);
                WriteLink(links, article, {LinkOf(one, each, supplier, isFirst), code, description});
                isFirst = false;
            } else if (NamesOne(each.supplier, one)) {
                m_remains.ShowsUnknownSupplier(article, each.ownCode.Text(session, one));
            }
        });
    }
    if (m_kind->declared.foundSuppliers) {
        for (const FoundSupplier& supplier : m_kind->declared.foundSuppliers(Run(), row)) {
            WriteLink(links, article, supplier);
        }
    }
    if (article != m_last) {
        links.Close();
    }
}

void ArticleImporter::WriteLink(SupplierLinks& links, const QString& article, const FoundSupplier& supplier) {
    const QString& counterparty = supplier.link.supplier;
    if (counterparty.isEmpty()) {
        m_remains.ShowsUnknownSupplier(article, supplier.ownCode);
        return;
    }
    links.Add(supplier.link);
    m_remains.ShowsSupplier(article, counterparty);
    if (!supplier.ownCode.isEmpty()) {
        WriteCode(article, supplier.ownCode, counterparty, supplier.ownDescription);
    }
}

/// What the source asks for an article; none where it lacks the columns, or one of them and the others tell no price.
QVariant PriceOf(Session& session, const SourceRow& row, const Field& price) {
    const double number = price.Number(session, row);
    const bool lacksOne =
        std::ranges::any_of(price.Columns(), [&row](const QString& column) { return row.IsMissing(column); });
    return price.IsGiven(session, row) && (number != 0 || !lacksOne) ? QVariant(number) : QVariant();
}

SupplierLink ArticleImporter::LinkOf(const SourceRow& row, const SupplierOfArticle& of, const QString& supplier,
                                     bool isFirst) const {
    Session& session = GetSession();
    const auto number = [&](const Field& field) {
        const QVariant told = field.NumberOrNull(session, row);
        return told.isNull() && field.IsGiven(session, row) ? QVariant(QMetaType::fromType<double>()) : told;
    };
    std::optional<bool> preferred;
    if (!of.preferred.IsSet()) {
        preferred = isFirst;
    } else if (of.preferred.IsGiven(session, row)) {
        preferred = mod_ovTools::ToBoolean(of.preferred.Value(session, row));
    }
    return {.supplier = supplier,
            .price = PriceOf(session, row, of.price),
            .preferred = preferred,
            .leadDays = number(of.leadDays),
            .lot = number(of.lot),
            .minimum = number(of.minimum),
            .isFirst = isFirst};
}

/// What the article is called there; what its column does not hold is told.
QString ArticleImporter::DescriptionThere(const SourceRow& row, const Field& description) const {
    const QString text = description.Text(GetSession(), row);
    if (const QStringList columns = description.Columns(); columns.size() == 1) {
        if (const QString all = row.Text(columns.first()); all.startsWith(text)) {
            TellCut(Run(), columns, text, all);
        }
    }
    return text;
}

/// @param counterparty CDCON; empty for a code of the company's own
void ArticleImporter::WriteCode(const QString& article, const QString& code, const QString& counterparty,
                                const QString& description) {
    if (counterparty.isEmpty()) {
        m_writer.InternalCode(article, code);
    } else {
        m_writer.CodeAtCounterparty(article, code, counterparty, description);
    }
    m_remains.Shows(article, code, counterparty);
}

void ArticleImporter::WriteAlias(const SourceRow& row, const Aliases& alias, const QString& article) {
    Session& session = GetSession();
    const QString code = alias.code.Text(session, row);
    const QString counterparty = alias.counterparty.Text(session, row);
    if (code.isEmpty()) {
        return;
    }
    if (!alias.counterparty.IsSet() || !counterparty.isEmpty()) {
        WriteCode(article, code, counterparty, DescriptionThere(row, alias.ownDescription));
    } else if (alias.counterparty.IsBlank(row)) { // one that is not there its rule tells
        Run().Log(QStringLiteral("CODICE SENZA CONTROPARTE: %1: '%2'").arg(Run().RowKey(), code));
    }
}

void ArticleImporter::WriteChildren(const SourceRow& row, const QString& article) {
    Session& session = GetSession();
    for (const Aliases& each : m_kind->declared.aliases) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) { WriteAlias(one, each, article); });
    }
    for (const LanguageTexts& each : m_kind->declared.languages) {
        each.rows.ForEach(session, row, [&](const SourceRow& one) {
            const QString language = each.language.Text(session, one);
            if (const QString text = each.text.Text(session, one); !text.isEmpty() && !language.isEmpty()) {
                m_writer.Text(article, QStringLiteral("ARDES"), text, language);
                m_remains.ShowsText(article, language);
            }
        });
    }
    if (const QString location = m_kind->declared.location.Text(session, row); !location.isEmpty()) {
        m_writer.OwnLocation(article, location);
        m_remains.ShowsLocation(article);
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
    const QVariant price = article.Value("ARPRZ");
    if (!price.isValid()) {
        return;
    }
    const QVariant markUp =
        price.isNull() ? QVariant() : QVariant(MarkUpOf(price.toDouble(), article.Value("ARCOS").toDouble()));
    const bool isTold = article.IsSet("ARPRZ") && (price.isNull() || article.IsSet("ARCOS"));
    isTold ? article.Set("ARRIC", markUp) : article.SetWhenNew("ARRIC", markUp);
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
