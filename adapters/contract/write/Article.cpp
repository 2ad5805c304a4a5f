#include "adapters/contract/write/Article.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeCharacters.h"
#include "adapters/contract/run/TargetRow.h"
#include "core/modImport.h"
#include "core/qdxProduction_articles.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

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

std::vector<TableNeed> LocationNeeds() {
    return {{"UBI_MAG", {"CDMAG", "CDUBI", "UBDES"}}, {"UBI_ART", {CodeColumn, "CDUBI", "UAMAG", "UADEF"}}};
}

Emptying LocationEmptying() { return Deleted({"UBI_ART", "UBI_MAG"}); }

QString ArticleWriter::CodeOf(const QString& table, const QString& field, const QString& sourceCode) const {
    return ArticleCodeOf(m_run.GetSession(), table, field, sourceCode);
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
    });
    return isNew ? RowOutcome::Inserted : RowOutcome::Updated;
}

void ArticleWriter::Text(const QString& article, const QString& column, const QString& text,
                         const QString& language) const {
    const QString written = m_run.Case().upperTexts ? mod_ovTools::UpperChars(text) : text;
    if (m_run.GetSession().Quadrix.SetLanguageTextValue(m_run.FullName(Art), column, article, written, language)) {
        m_run.Inserted(QStringLiteral("SYS_LNG"));
    }
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
        Link(article, supplier, price);
    }
    return supplier;
}

void ArticleWriter::Link(const QString& article, const SupplierLink& link) const {
    Session& session = m_run.GetSession();
    const QString where =
        Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDCON", link.supplier);
    if (!session.Quadrix.IsAbsent("ART_FOR", CodeColumn, article) && IdWhere(session, "ART_FOR", where) != 0) {
        return;
    }
    TargetRow row(m_run, "ART_FOR");
    row.Set(CodeColumn, article);
    row.Set("CDCON", link.supplier);
    row.Set("DTINS", session.UserManager.DataElaborazione);
    row.Set("ARPRZ", link.price);
    row.Set("AFABI", link.preferred);
    for (const auto& [column, value] :
         {std::pair("AFGGR", link.leadDays), std::pair("AFLOR", link.lot), std::pair("AFQTR", link.minimum)}) {
        if (!value.isNull()) {
            row.Set(column, value);
        }
    }
    row.Insert();
}

void ArticleWriter::CodeAtCounterparty(const QString& article, const QString& code, const QString& counterparty,
                                       const QString& description) const {
    Session& session = m_run.GetSession();
    if (IdWhere(session, "ART_COD",
                Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDCOD", code) +
                    QStringLiteral(" AND ") + Equals(session, "COCON", counterparty)) != 0) {
        return;
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

void ArticleWriter::InternalCode(const QString& article, const QString& code) const {
    Session& session = m_run.GetSession();
    if (IdWhere(session, "ART_COD",
                Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDCOD", code) +
                    QStringLiteral(" AND ") + Equals(session, "COTIP", "I")) != 0) {
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

RowOutcome ArticleWriter::Location(const QString& article, const QString& location, const QString& description) const {
    using schema::defaults::Warehouse;
    Session& session = m_run.GetSession();
    if (IdWhere(session, "UBI_MAG",
                Equals(session, "CDMAG", Warehouse) + QStringLiteral(" AND ") + Equals(session, "CDUBI", location)) ==
        0) {
        TargetRow place(m_run, "UBI_MAG");
        place.Set("CDMAG", Warehouse);
        place.Set("CDUBI", location);
        place.Set("UBDES", description.isEmpty() ? location : description);
        place.Insert();
    }
    if (IdWhere(session, "UBI_ART",
                Equals(session, CodeColumn, article) + QStringLiteral(" AND ") + Equals(session, "CDUBI", location)) !=
        0) {
        return m_run.Skip(QStringLiteral("articolo già nell'ubicazione"));
    }
    TargetRow row(m_run, "UBI_ART");
    row.Set(CodeColumn, article);
    row.Set("CDUBI", location);
    row.Set("UAMAG", Warehouse);
    row.Set("UADEF", true);
    row.Insert();
    return RowOutcome::Inserted;
}

} // namespace contract
