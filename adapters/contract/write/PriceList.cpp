#include "adapters/contract/write/PriceList.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QStringList ScaleColumns{"IDLSD", "SCQTA", "SCPRZ", "SCSCO", "SCSC2", "SCSC3"};

QVariant QuantityOf(const Scale& scale) {
    const auto quantity = mod_ovTools::ReadNumber(scale.quantity);
    const bool isBlank = mod_ovTools::ToText(scale.quantity).trimmed().isEmpty();
    return isBlank || quantity == 0.0 ? QVariant(schema::defaults::AnyQuantity) : scale.quantity;
}

/// A scale row; prices of articles and costs of works differ in the column of the amount alone.
TargetRow ScaleRow(ImportRun& run, const QString& table, const QString& amountColumn, qint64 owner,
                   const Scale& scale) {
    TargetRow row(run, table);
    row.Set("IDLSD", owner);
    row.Set("SCQTA", QuantityOf(scale));
    row.Set(amountColumn, scale.price);
    static const std::array<QString, 3> columns{"SCSCO", "SCSC2", "SCSC3"};
    for (size_t i = 0; i < columns.size(); ++i) {
        if (!scale.discounts[i].isNull()) {
            row.Set(columns[i], scale.discounts[i]);
        }
    }
    return row;
}

} // namespace

std::vector<TableNeed> PriceListNeeds() {
    return {{"LIS_TES", {"CDLIS", "LTDES", "LTTIP", "LTTYP", "LTVAL", "LTINV"}},
            {"LIS_ART", {"CDLIS", "CDART", "LAINV", "LAFIV"}},
            {"LIS_ARS", ScaleColumns}};
}

std::vector<TableNeed> WorkListNeeds() {
    return {{"LIS_LAV", {"CDLAV", "CDART", "CDFOR", "LLTYP", "LLINV", "LLFIV", "LLVAL"}},
            {"LIS_LAS", {"IDLSD", "SCQTA", "SCCOS", "SCSCO", "SCSC2", "SCSC3"}}};
}

Emptying PriceListEmptying() { return Truncated({"LIS_TES", "LIS_ART", "LIS_ARS"}); }

qint64 PriceListWriter::Head(const QString& list, const QString& direction, const QString& description,
                             const QString& currency, const QVariant& since) const {
    Session& session = m_run.GetSession();
    const qint64 known =
        IdWhere(session, "LIS_TES",
                Equals(session, "CDLIS", list) + QStringLiteral(" AND ") + Equals(session, "LTTIP", direction));
    if (known != 0) {
        return known;
    }
    TargetRow row(m_run, "LIS_TES");
    row.Set("CDLIS", list);
    row.Set("LTDES", description);
    row.Set("LTTIP", direction);
    row.Set("LTINV", since.isNull() ? QVariant(session.UserManager.DataElaborazione) : since);
    row.Set("LTTYP", schema::defaults::PriceListType);
    row.Set("LTVAL", currency.isEmpty() ? schema::defaults::Currency : currency);
    row.Insert();
    return m_run.LastId("LIS_TES");
}

qint64 PriceListWriter::Article(const QString& list, const QString& article, const Validity& validity,
                                const QString& note) const {
    Session& session = m_run.GetSession();
    const qint64 known =
        IdWhere(session, "LIS_ART",
                Equals(session, "CDLIS", list) + QStringLiteral(" AND ") + Equals(session, "CDART", article) +
                    QStringLiteral(" AND ") + OnDay(session, "LAINV", validity.from));
    if (known != 0) {
        return known;
    }
    TargetRow row(m_run, "LIS_ART");
    row.Set("CDLIS", list);
    row.Set("CDART", article);
    row.Set("LAINV", validity.from);
    row.Set("LAFIV", validity.to);
    if (!note.isEmpty()) {
        row.Set("LANOT", note);
    }
    row.Insert();
    return m_run.LastId("LIS_ART");
}

RowOutcome PriceListWriter::AddScale(qint64 articleRow, const Scale& scale) const {
    Session& session = m_run.GetSession();
    TargetRow row = ScaleRow(m_run, "LIS_ARS", "SCPRZ", articleRow, scale);
    const QString quantity =
        mod_ovTools::FormatSqlValue(QuantityOf(scale), DataType::Double, session.Quadrix.ProviderType);
    Recordset known = session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, SCPRZ FROM " +
                                                session.Quadrix.GetFullTableName(QStringLiteral("LIS_ARS")) +
                                                u" WHERE " + Equals("IDLSD", articleRow) + u" AND SCQTA = " + quantity);
    if (known.Eof()) {
        row.Insert();
        return RowOutcome::Inserted;
    }
    const qint64 id = known.Value("RECORD_ID").toLongLong();
    LogReplacedPrice(known.Value("SCPRZ"), scale);
    known.Close();
    row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", id));
    return RowOutcome::Updated;
}

RowOutcome PriceListWriter::AddScaleFrom(qint64 articleRow, const Scale& scale) {
    const double from = mod_ovTools::ReadNumber(scale.quantity).value_or(0);
    const bool isFirst = !m_lowest.contains(articleRow);
    if (isFirst) {
        m_lowest.insert(articleRow, from);
        m_run.WhenTakenBack([this, articleRow] { m_lowest.remove(articleRow); });
    }
    const bool isLowest = from <= m_lowest.value(articleRow);
    if (isFirst && from > 1) {
        m_run.Log(QStringLiteral("PREZZO ANCHE PER MENO: %1: vale da %2, Quadrix lo applica anche sotto")
                      .arg(m_run.RowKey(), mod_ovTools::ToText(scale.quantity)));
    }
    return AddScale(articleRow,
                    {isLowest ? UpToOfLowest(articleRow) : UpToOf(articleRow, from), scale.price, scale.discounts});
}

/// Where the lowest scale ends that an earlier import has written; Null when there is none.
QVariant PriceListWriter::UpToOfLowest(qint64 articleRow) const {
    return First(u"SELECT MIN(SCQTA) FROM " + m_run.FullName("LIS_ARS") + u" WHERE " + Equals("IDLSD", articleRow));
}

/// Where a scale ends that begins at a quantity. The one that it begins in, unless it is itself, ends before it.
QVariant PriceListWriter::UpToOf(qint64 articleRow, double from) const {
    constexpr double step = 0.000001; // of quantities, which have 6 decimals
    const Provider provider = m_run.GetSession().Quadrix.ProviderType;
    const auto number = [&](double value) { return mod_ovTools::FormatSqlValue(value, DataType::Double, provider); };
    const QString scales = u" FROM " + m_run.FullName("LIS_ARS") + u" WHERE " + Equals("IDLSD", articleRow);
    const QVariant upTo = First(u"SELECT MIN(SCQTA)" + scales + u" AND SCQTA >= " + number(from));
    const QVariant below = First(u"SELECT MAX(SCQTA)" + scales + u" AND SCQTA < " + number(from));
    if (below.isNull() || from - mod_ovTools::ToDouble(below) >= 2 * step) {
        TargetRow shortened(m_run, "LIS_ARS");
        shortened.Set("SCQTA", RoundedTo(from - step, 6));
        shortened.Update(QStringLiteral("WHERE ") + Equals("IDLSD", articleRow) + u" AND SCQTA = " +
                         number(mod_ovTools::ToDouble(upTo)));
    }
    return upTo;
}

QVariant PriceListWriter::First(const QString& query) const {
    return m_run.GetSession().Quadrix.ExecuteWC(query).Fields(0).Value();
}

void PriceListWriter::LogReplacedPrice(const QVariant& before, const Scale& scale) const {
    const auto old = mod_ovTools::ReadNumber(before);
    const auto now = mod_ovTools::ReadNumber(scale.price);
    if (old != now) {
        m_run.Log(QStringLiteral("PREZZO SOSTITUITO: %1: stesso listino, articolo, decorrenza e quantità; prezzo %2, "
                                 "prima %3")
                      .arg(m_run.RowKey(), mod_ovTools::ToText(scale.price), mod_ovTools::ToText(before)));
    }
}

/// A price that was written before its work or its supplier was known has none of them.
PriceListWriter::KnownWork PriceListWriter::FindWork(const WorkPrice& price) const {
    Session& session = m_run.GetSession();
    if (session.Quadrix.IsAbsent("LIS_LAV", "CDART", price.article)) {
        return {};
    }
    const auto sameOrBlank = [&](const QString& column, const QString& value) {
        const QString text = QStringLiteral("COALESCE(%1, '')").arg(column);
        return QString(u'(' + Equals(session, text, value) + u" OR " + text + u" = '')");
    };
    Recordset rows = session.Quadrix.ExecuteWC(
        u"SELECT L.RECORD_ID, S.RECORD_ID SCALE_ID FROM " + m_run.FullName("LIS_LAV") + u" L JOIN " +
        m_run.FullName("LIS_LAS") + u" S ON S.IDLSD = L.RECORD_ID WHERE " + Equals(session, "L.CDART", price.article) +
        u" AND " + OnDay(session, "L.LLINV", price.validity.from) + u" AND S.SCQTA = " +
        mod_ovTools::FormatSqlValue(QuantityOf(price.scale), DataType::Double, session.Quadrix.ProviderType) +
        u" AND " + sameOrBlank("L.CDLAV", price.work) + u" AND " + sameOrBlank("L.CDFOR", price.supplier) +
        u" ORDER BY L.CDFOR DESC, L.CDLAV DESC, L.RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        const KnownWork known{rows.Fields(0).Value().toLongLong(), rows.Fields(1).Value().toLongLong()};
        if (!m_works.contains(known.price)) {
            return known;
        }
    }
    return {};
}

void PriceListWriter::Work(const WorkPrice& price) {
    KnownWork known = FindWork(price);
    TargetRow row(m_run, "LIS_LAV");
    if (!price.work.isEmpty()) {
        row.Set("CDLAV", price.work);
    }
    row.Set("CDART", price.article);
    if (!price.supplier.isEmpty()) {
        row.Set("CDFOR", price.supplier);
    }
    row.Set("LLTYP", schema::defaults::WorkListType);
    row.Set("LLINV", price.validity.from);
    row.Set("LLFIV", price.validity.to);
    row.Set("LLVAL", schema::defaults::Currency);
    const auto write = [&](TargetRow& target, qint64 id) {
        if (id != 0) {
            target.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", id));
            return;
        }
        if (!price.created.isNull()) {
            target.Set("DTINS", price.created);
        }
        target.Insert();
    };
    write(row, known.price);
    if (known.price == 0) {
        known.price = m_run.LastId("LIS_LAV");
    }
    m_works.insert(known.price);
    TargetRow scale = ScaleRow(m_run, "LIS_LAS", "SCCOS", known.price, price.scale);
    write(scale, known.scale);
}

} // namespace contract
