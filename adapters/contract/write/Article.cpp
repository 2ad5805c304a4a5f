#include "adapters/contract/write/Article.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/cutTexts.h"
#include "core/modImport.h"
#include "core/qdxProduction_articles.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <algorithm>

namespace contract {

namespace {

const QString Art = QStringLiteral("ART_ICO");
const QString CodeColumn = QStringLiteral("CDART");

} // namespace

std::vector<TableNeed> ArticleNeeds() {
    return {{Art, {CodeColumn, "ARANN", "ARINV"}},
            {"ART_FOR", {CodeColumn, "CDCON", "ARPRZ", "AFABI", "AFGGR", "AFLOR", "AFQTR"}},
            {"ART_COD", {CodeColumn, "CDCOD", "COTIP", "COTPC", "COCON"}},
            {"STO_COS", {CodeColumn, "STDAT", "STCOS", "STSC1", "STNOT"}},
            {"STO_PRZ", {CodeColumn, "STDAT", "STPRZ", "STSC1", "STNOT"}}};
}

Emptying ArticleEmptying() {
    const Emptied texts{.table = "SYS_LNG", .way = Emptied::Way::Delete, .where = "LNTBL = '{ART_ICO}'"};
    return Truncated({Art, "STO_COS", "STO_PRZ", "ART_FOR", "ART_COD", "ART_SAL", "UBI_MAG", "UBI_ART", "LIS_LAS",
                      "LIS_LAV"}) +
           Emptying{texts};
}

bool IsImported(ImportRun& run, const QString& article, const QString& rowName) {
    const bool there = IsThere(run.GetSession(), Art, CodeColumn, article);
    if (!there) {
        run.Log(
            QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(rowName.isEmpty() ? run.RowKey() : rowName, article));
    }
    return there;
}

bool IsWrittenBefore(ImportRun& run, const QString& article) {
    Session& session = run.GetSession();
    return run.GoesOn() && run.HasWrittenBefore(Art, IdWhere(session, Art, Equals(session, CodeColumn, article)));
}

std::vector<TableNeed> LocationNeeds() {
    return {{"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}}, {"UBI_ART", {CodeColumn, "CDUBI", "UAMAG", "UADEF"}}};
}

Emptying LocationEmptying() { return Deleted({"UBI_ART", "UBI_MAG"}); }

QString ArticleWriter::CodeOf(const QString& table, const QString& field, const QString& sourceCode) const {
    return ArticleCodeOf(m_run.GetSession(), table, field, sourceCode);
}

namespace {

/// What is kept of a source code, to tell another one of the same article from it.
constexpr quint64 CodeMask = 0xffffffff00000000; ///< of its letters, in any case
constexpr quint64 OwnMask = 1;                   ///< whether the article's code is it, as far as it goes

quint64 DigestOf(const QString& sourceCode, bool isOwn) {
    constexpr int codeBits = 32;
    const quint64 code = static_cast<quint64>(qHash(mod_ovTools::UpperChars(sourceCode))) << codeBits;
    return code | (static_cast<quint64>(qHash(sourceCode)) & ~CodeMask & ~OwnMask) | (isOwn ? OwnMask : 0);
}

} // namespace

void ArticleWriter::Claim(const QString& article, const QString& sourceCode) {
    Session& session = m_run.GetSession();
    const int size = schema::FindTable(Art)->FindColumn(CodeColumn)->size;
    const bool isOwn = article == modImport::FormatKeyField(session, FirstOf(sourceCode, size));
    const quint64 digest = DigestOf(sourceCode, isOwn);
    const size_t key = qHash(mod_ovTools::UpperChars(article));
    const auto there = m_claimed.find(key);
    if (there == m_claimed.end()) {
        m_run.RestoresEntry(m_claimed, key);
        m_claimed.insert(key, {digest});
        return;
    }
    if (there->code == digest) {
        return;
    }
    if ((there->code & CodeMask) != (digest & CodeMask) && (there->code & digest & OwnMask) != 0) {
        throw ImportError(QStringLiteral("il codice '%1', tagliato a %2 caratteri, è quello di un'altra riga")
                              .arg(sourceCode, QString::number(size)));
    }
    m_run.Log(QStringLiteral("ARTICOLO DOPPIO: %1: '%2' e un altro codice dell'origine sono lo stesso articolo '%3'")
                  .arg(m_run.RowKey(), sourceCode, article));
    m_run.RestoresEntry(m_claimed, key);
    m_claimed[key].values = 0; // that the two rows differ is told with it
}

namespace {

/// A factor that the source tells of some articles is none of the others: that of before would make other quantities.
void ClearFactor(Session& session, const Mapping& mapping, const SourceRow& row, TargetRow& target) {
    const QString factor = QStringLiteral("ARCOE");
    const bool isTold = std::any_of(mapping.lines.begin(), mapping.lines.end(), [&](const MapLine& line) {
        return line.target == factor && !line.IsLackingIn(session, row);
    });
    if (isTold && !target.Value(factor).isValid()) {
        target.Set(factor, QVariant());
    }
}

} // namespace

/// A source that has a code twice, as sheets have, tells two things of one article: the later one counts.
void ArticleWriter::TellOther(const Mapping& mapping, const TargetRow& target, const QString& article) const {
    const auto claimed = m_claimed.find(qHash(mod_ovTools::UpperChars(article)));
    if (claimed == m_claimed.end()) {
        return;
    }
    size_t values = 1;
    for (const MapLine& line : mapping.lines) {
        values = qHashMulti(values, line.target, mod_ovTools::ToText(target.Value(line.target)));
    }
    if (claimed->values != 0 && claimed->values != values) {
        m_run.Log(
            QStringLiteral("ARTICOLO DOPPIO: %1: una riga di prima ha scritto altro dell'articolo '%2': vale questa")
                .arg(m_run.RowKey(), article));
    }
    m_run.RestoresEntry(m_claimed, claimed.key());
    claimed->values = values;
}

RowOutcome ArticleWriter::Write(const Mapping& mapping, const SourceRow& row, const Facts& facts,
                                const std::function<void(TargetRow&)>& more) const {
    Session& session = m_run.GetSession();
    TargetRow target(m_run, Art);
    const bool isNew = qdxProduction::qdxInsertUpdateArticolo(session, facts.code, target, [&] {
        mapping.Apply(target, session, row, facts);
        if (more) {
            more(target);
        }
        ClearFactor(m_run.GetSession(), mapping, row, target);
        TellCut(m_run, mapping, row, target);
        TellOther(mapping, target, facts.code);
    });
    return isNew ? RowOutcome::Inserted : RowOutcome::Updated;
}

namespace {

void WriteText(ImportRun& run, const ovQueryConstructor& text) {
    TargetRow row(run, "SYS_LNG");
    for (int i = 0; i <= text.GetFieldsCount(); ++i) {
        row.Set(text.Field(i).Name, text.Field(i).Value);
    }
    text.WhereString.isEmpty() ? row.Insert() : row.Update(text.WhereString);
}

} // namespace

void ArticleWriter::Text(const QString& article, const QString& column, const QString& text,
                         const QString& language) const {
    const QString written = m_run.Case().upperTexts ? mod_ovTools::UpperChars(text) : text;
    m_run.GetSession().Quadrix.SetLanguageTextValue(m_run.FullName(Art), column, article, written, language,
                                                    [this](const ovQueryConstructor& row) { WriteText(m_run, row); });
}

void ArticleWriter::Texts(const QString& article, const QString& description) const {
    constexpr int size = 100;
    const QString text = mod_ovTools::UpperChars(FirstOf(description, size));
    for (const QString& column : {QStringLiteral("ARDES"), QStringLiteral("ARDEC")}) {
        Text(article, column, text);
    }
}

QString ArticleWriter::Supplier(const QString& article, const QString& supplierSourceCode, double price) const {
    const QString supplier = supplierSourceCode.isEmpty()
                                 ? QString()
                                 : LookUp(m_run.GetSession(), "CON_TRO", "COFGE", supplierSourceCode, "CDCON");
    if (!supplier.isEmpty()) {
        SupplierLinks links(m_run, article);
        links.Add({supplier, price});
        links.Close();
    }
    return supplier;
}

void ArticleWriter::CodeAtCounterparty(const QString& article, const QString& code, const QString& counterparty,
                                       const QString& description) const {
    const Session& session = m_run.GetSession();
    {
        Recordset there = m_run.GetSession().Quadrix.ExecuteWC(
            QStringLiteral("SELECT RECORD_ID, CDCOD, CODES, USINS FROM %1 WHERE ").arg(m_run.FullName("ART_COD")) +
            Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDCOD", code) +
            QStringLiteral(" AND ") + Equals(session, "COCON", counterparty) + QStringLiteral(" ORDER BY RECORD_ID"));
        if (StepToCode(there, "CDCOD", code)) {
            Describe(SourceRow(there), description);
            return;
        }
    }
    TargetRow row(m_run, "ART_COD");
    row.Set(CodeColumn, article);
    row.Set("CDCOD", code);
    row.Set("COTIP", "C");
    row.Set("COTPC", "PER");
    row.Set("COCON", counterparty);
    if (!description.isEmpty()) {
        row.Set("CODES", description);
    }
    row.Insert();
}

/// Brings the description of a code that an import has written up to date; somebody's own stays.
void ArticleWriter::Describe(const SourceRow& there, const QString& description) const {
    TargetRow row(m_run, "ART_COD");
    row.Set("CODES", description);
    const bool isByImport = IsImportUser(there.Text("USINS"));
    if (isByImport && !description.isEmpty() && there.Text("CODES") != row.Value("CODES").toString().trimmed()) {
        row.Update(QStringLiteral("WHERE RECORD_ID = ") + there.Text("RECORD_ID"));
    }
}

void ArticleWriter::InternalCode(const QString& article, const QString& code) const {
    Session& session = m_run.GetSession();
    if (IdOfCode(session.Quadrix, "ART_COD",
                 Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDCOD", code) +
                     QStringLiteral(" AND ") + Equals(session, "COTIP", "I"),
                 "CDCOD", code) != 0) {
        return;
    }
    TargetRow row(m_run, "ART_COD");
    row.Set(CodeColumn, article);
    row.Set("CDCOD", code);
    row.Set("COTIP", "I");
    row.Insert();
}

void ArticleWriter::History(const QString& table, const QString& amountColumn, const HistoryLine& line) const {
    Session& session = m_run.GetSession();
    const qint64 present =
        session.Quadrix.IsAbsent(table, CodeColumn, line.article)
            ? 0
            : session.Quadrix.ExecuteCommand(QStringLiteral("Select count(*) from ") + m_run.FullName(table) +
                                             QStringLiteral(" WHERE ") + Equals(session, CodeColumn, line.article) +
                                             QStringLiteral(" AND ") + OnDay(session, "STDAT", line.day));
    if (present > 0) {
        return;
    }
    constexpr int noteSize = 255;
    TargetRow row(m_run, table);
    row.Set(CodeColumn, line.article);
    row.Set("STDAT", line.day);
    row.Set(amountColumn, line.amount);
    row.Set("STSC1", line.discount);
    row.Set("STNOT", FirstOf(line.note, noteSize));
    row.Set("USMDF", schema::defaults::ImportUser);
    row.Set("DTMDF", line.changed.isNull() ? QVariant(session.Now()) : line.changed);
    row.Insert();
}

namespace {

/// Gives a location (RECORD_ID) the description that a row has of it, where an import wrote its code for want of one.
/// Returns whether it did.
bool DescribePlace(ImportRun& run, qint64 place, const QString& location, const QString& description) {
    if (description.isEmpty() || description.compare(location, Qt::CaseInsensitive) == 0) {
        return false;
    }
    {
        Recordset there = run.GetSession().Quadrix.ExecuteWC(
            QStringLiteral("SELECT UBDES, USINS FROM %1 WHERE ").arg(run.FullName("UBI_MAG")) +
            Equals("RECORD_ID", place));
        const SourceRow row(there);
        const QString known = row.Text("UBDES");
        const bool isNone = known.isEmpty() || known.compare(location, Qt::CaseInsensitive) == 0;
        if (!isNone || !IsImportUser(row.Text("USINS"))) {
            return false;
        }
    }
    TargetRow row(run, "UBI_MAG");
    row.Set("UBDES", description);
    row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", place));
    return true;
}

} // namespace

RowOutcome ArticleWriter::Location(const QString& article, const QString& location, const QString& description) const {
    using schema::defaults::Warehouse;
    Session& session = m_run.GetSession();
    const qint64 known =
        IdOfCode(session.Quadrix, "UBI_MAG",
                 Equals(session, "CDMAG", Warehouse) + QStringLiteral(" AND ") + Equals(session, "CDUBI", location),
                 "CDUBI", location);
    const bool isDescribed = known != 0 && DescribePlace(m_run, known, location, description);
    if (known == 0) {
        TargetRow place(m_run, "UBI_MAG");
        place.Set("CDMAG", Warehouse);
        place.Set("CDUBI", location);
        place.Set("UBDES", description.isEmpty() ? location : description);
        place.Insert();
    }
    if (IdOfCode(session.Quadrix, "UBI_ART",
                 Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDUBI", location),
                 "CDUBI", location) != 0) {
        return isDescribed ? RowOutcome::Updated : m_run.Skip(QStringLiteral("articolo già nell'ubicazione"));
    }
    TargetRow row(m_run, "UBI_ART");
    row.Set(CodeColumn, article);
    row.Set("CDUBI", location);
    row.Set("UAMAG", Warehouse);
    row.Set("UADEF", true);
    row.Insert();
    return RowOutcome::Inserted;
}

void ArticleWriter::OwnLocation(const QString& article, const QString& location) const {
    Location(article, location);
    const Session& session = m_run.GetSession();
    const QString others = Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + OfImports(session);
    std::vector<std::pair<QString, bool>> changed; // RECORD_ID, and whether it is the default one now
    {
        Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
            QStringLiteral("SELECT RECORD_ID, CDUBI, UADEF FROM %1 WHERE ").arg(m_run.FullName("UBI_ART")) + others);
        for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
            const bool isIt = row.Text("CDUBI").compare(location, Qt::CaseInsensitive) == 0;
            if (isIt != mod_ovTools::ToBoolean(row.Value("UADEF"))) {
                changed.emplace_back(row.Text("RECORD_ID"), isIt);
            }
        }
    }
    for (const auto& [id, isDefault] : changed) {
        TargetRow row(m_run, "UBI_ART");
        row.Set("UADEF", isDefault);
        row.Update(QStringLiteral("WHERE RECORD_ID = ") + id);
    }
}

// --- Suppliers ----------------------------------------------------------------------------------------------------

namespace {

const QString LinkTable = QStringLiteral("ART_FOR");

/// The columns of what a link tells beside whose it is.
const std::array<QString, SupplierLink::Values> LinkColumns{"ARPRZ", "AFGGR", "AFLOR", "AFQTR"};

std::array<QVariant, SupplierLink::Values> ValuesOf(const SupplierLink& link) {
    return {link.price, link.leadDays, link.lot, link.minimum};
}

} // namespace

SupplierLinks::SupplierLinks(ImportRun& run, QString article)
    : m_run(run),
      m_article(std::move(article)) {}

void SupplierLinks::ReadThere() {
    const Session& session = m_run.GetSession();
    if (m_isRead || m_run.GetSession().Quadrix.IsAbsent(LinkTable, CodeColumn, m_article)) {
        m_isRead = true;
        return;
    }
    m_isRead = true;
    Recordset rows =
        m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM %1 WHERE ").arg(m_run.FullName(LinkTable)) +
                                             Equals(session, CodeColumn, m_article));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        There there{row.Text("RECORD_ID"), false, IsImportUser(row.Text("USINS")), row.Text("CDCON"),
                    mod_ovTools::ToBoolean(row.Value("AFABI"))};
        for (size_t i = 0; i < LinkColumns.size(); ++i) {
            there.values[i] = row.Value(LinkColumns[i]);
        }
        m_there.push_back(there);
    }
}

void SupplierLinks::Add(const SupplierLink& link) {
    ReadThere();
    const auto isIt = [&link](const QString& supplier) {
        return supplier.compare(link.supplier, Qt::CaseInsensitive) == 0;
    };
    if (std::any_of(m_new.begin(), m_new.end(), isIt)) {
        return;
    }
    const auto there =
        std::find_if(m_there.begin(), m_there.end(), [&](const There& one) { return isIt(one.supplier); });
    if (there == m_there.end()) {
        Insert(link);
        m_new.append(link.supplier);
    } else if (!there->hasCome) {
        there->hasCome = true;
        Rewrite(*there, link);
    }
    m_hasPreferred = m_hasPreferred || link.preferred.value_or(false);
}

void SupplierLinks::Insert(const SupplierLink& link) const {
    TargetRow row(m_run, LinkTable);
    row.Set(CodeColumn, m_article);
    row.Set("CDCON", link.supplier);
    row.Set("DTINS", m_run.GetSession().UserManager.DataElaborazione);
    row.Set("ARPRZ", link.price.isNull() ? QVariant(0) : link.price);
    const bool hasOther = std::ranges::any_of(m_there, &There::isPreferred);
    row.Set("AFABI", link.preferred.value_or(link.isFirst && !hasOther));
    const std::array values = ValuesOf(link);
    for (size_t i = 1; i < values.size(); ++i) {
        if (!values[i].isNull()) {
            row.Set(LinkColumns[i], values[i]);
        }
    }
    row.Insert();
}

/// Writes what is another than it was, and nothing where nothing is.
void SupplierLinks::Rewrite(const There& there, const SupplierLink& link) const {
    if (!there.isByImport) {
        return;
    }
    TargetRow row(m_run, LinkTable);
    bool hasChanged = there.isPreferred != link.preferred.value_or(there.isPreferred);
    if (hasChanged) {
        row.Set("AFABI", *link.preferred);
    }
    const std::array values = ValuesOf(link);
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i].isValid() && mod_ovTools::ReadNumber(there.values[i]) != mod_ovTools::ReadNumber(values[i])) {
            row.Set(LinkColumns[i], values[i]);
            hasChanged = true;
        }
    }
    if (hasChanged) {
        row.Update(QStringLiteral("WHERE RECORD_ID = ") + there.id);
    }
}

void SupplierLinks::Close() const {
    for (const There& there : m_there) {
        if (m_hasPreferred && there.isPreferred && there.isByImport && !there.hasCome) {
            TargetRow row(m_run, LinkTable);
            row.Set("AFABI", false);
            row.Update(QStringLiteral("WHERE RECORD_ID = ") + there.id);
        }
    }
}

} // namespace contract
