// The price lists of works: what each supplier asks for a work on an article.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/noLongerThere.h"
#include "adapters/contract/write/scaleRows.h"
#include "core/italianText.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

/// A price that was written before its work or its supplier was known has none of them; one of this run had them told.
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
        u"SELECT L.RECORD_ID, S.RECORD_ID SCALE_ID, L.CDLAV, L.CDFOR FROM " + m_run.FullName("LIS_LAV") + u" L JOIN " +
        m_run.FullName("LIS_LAS") + u" S ON S.IDLSD = L.RECORD_ID WHERE " + Equals(session, "L.CDART", price.article) +
        u" AND " + OnDay(session, "L.LLINV", price.validity.from) + u" AND S.SCQTA = " +
        mod_ovTools::FormatSqlValue(QuantityOf(price.scale), DataType::Double, session.Quadrix.ProviderType) +
        u" AND " + sameOrBlank("L.CDLAV", price.work) + u" AND " + sameOrBlank("L.CDFOR", price.supplier) +
        u" ORDER BY L.CDFOR DESC, L.CDLAV DESC, L.RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const KnownWork known{row.Value("RECORD_ID").toLongLong(), row.Value("SCALE_ID").toLongLong()};
        const bool isExact = IsSameCode(row.Text("CDLAV"), price.work) && IsSameCode(row.Text("CDFOR"), price.supplier);
        const bool isOfImport = m_works.contains(known.price) || m_run.HasWrittenBefore("LIS_LAV", known.price);
        if (!m_worksOfRow.contains(known.price) && (isExact || !isOfImport)) {
            return known;
        }
    }
    return {};
}

void PriceListWriter::BeginWorks(const QString& article) {
    m_worksOfRow.clear();
    if (!m_run.GetSession().Quadrix.IsAbsent("LIS_LAV", "CDART", article)) {
        m_run.Remember(m_worked, article);
    }
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
    if (price.validity.to) {
        row.Set("LLFIV", *price.validity.to);
    }
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
    m_run.Remember(m_works, known.price);
    m_run.Remember(m_worksOfRow, known.price);
    m_run.Remember(m_worked, price.article);
    TargetRow scale = ScaleRow(m_run, "LIS_LAS", "SCCOS", price.scale);
    scale.Set("IDLSD", known.price);
    write(scale, known.scale);
}

namespace {

/// A price of a work as it is there, with one of its scales.
struct WorkThere {
    qint64 id;
    QString work;
    QString supplier;
    QDate from;
    bool holds;       ///< today, or later
    bool isUntouched; ///< by a hand, since an import has written it
    QVariant quantity;

    explicit WorkThere(const SourceRow& row, const QDate& today)
        : id(row.Value("RECORD_ID").toLongLong()),
          work(row.Text("CDLAV")),
          supplier(row.Text("CDFOR")),
          holds(true),
          isUntouched(true),
          quantity(row.Value("SCQTA")) {
        const auto day = [&row](const char* column) {
            const auto moment = mod_ovTools::ReadDate(row.Value(column));
            return moment ? moment->date() : QDate();
        };
        from = day("LLINV");
        holds = !day("LLFIV").isValid() || day("LLFIV") >= today;
        for (const char* column : {"USINS", "USMDF", "SCALE_USINS", "SCALE_USMDF"}) {
            isUntouched = isUntouched && (row.IsBlank(column) || IsImportUser(row.Text(column)));
        }
    }
    /// Whether it is the price of the same work from the same day; one may have been written before its work was known.
    bool IsSame(const WorkThere& other) const {
        return supplier == other.supplier && from == other.from && (work.isEmpty() || work == other.work);
    }
};

} // namespace

void PriceListWriter::EndWorks() {
    if (m_run.IsPart()) {
        return;
    }
    QStringList articles(m_worked.cbegin(), m_worked.cend());
    articles.sort();
    for (const QString& article : std::as_const(articles)) {
        EndWorksOf(article);
    }
}

void PriceListWriter::EndWorksOf(const QString& article) {
    Session& session = m_run.GetSession();
    std::vector<WorkThere> met;
    std::vector<WorkThere> left;
    Recordset rows = session.Quadrix.ExecuteWC(u"SELECT L.RECORD_ID, L.CDLAV, L.CDFOR, L.LLINV, L.LLFIV, L.USINS, "
                                               u"L.USMDF, S.SCQTA, S.USINS SCALE_USINS, S.USMDF "
                                               u"SCALE_USMDF FROM " +
                                               m_run.FullName("LIS_LAV") + u" L LEFT JOIN " +
                                               m_run.FullName("LIS_LAS") + u" S ON S.IDLSD = L.RECORD_ID WHERE " +
                                               Equals(session, "L.CDART", article) + u" ORDER BY L.RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const WorkThere one(row, session.UserManager.DataElaborazione);
        if (m_works.contains(one.id)) {
            met.push_back(one);
        } else if (IsImportUser(row.Text("USINS"))) {
            left.push_back(one);
        }
    }
    rows.Close();
    QSet<qint64> told;
    for (const WorkThere& one : left) {
        const bool isReplaced = std::ranges::any_of(met, [&one](const WorkThere& other) { return one.IsSame(other); });
        const auto isOfIt = [&one](const WorkThere& other) { return other.id == one.id; };
        const bool isWhole = one.isUntouched && std::ranges::count_if(left, isOfIt) == 1; // a hand has added a scale
        if (isReplaced && isWhole && !m_run.HasGivenUp()) {
            m_run.DeleteRows("LIS_LAS", Equals("IDLSD", one.id));
            m_run.DeleteRows("LIS_LAV", Equals("RECORD_ID", one.id));
            TellWorkGone(article, one.supplier, one.from, one.quantity);
        } else if (one.holds) {
            told.insert(one.id);
        }
    }
    TellNotMetAgain(m_run, QStringLiteral("PREZZI"), QStringLiteral("lavorazioni dell'articolo '%1'").arg(article),
                    told.size());
}

/// Tells of the price that another one of the same day has replaced.
void PriceListWriter::TellWorkGone(const QString& article, const QString& supplier, const QDate& from,
                                   const QVariant& quantity) const {
    const auto limit = mod_ovTools::ReadNumber(quantity).value_or(schema::defaults::AnyQuantity);
    const QString which = limit < schema::defaults::AnyQuantity
                              ? QStringLiteral("il prezzo fino a ") + mod_ovTools::NumberText(limit)
                              : QStringLiteral("il prezzo per ogni quantità");
    m_run.Log(
        QStringLiteral("PREZZO TOLTO: lavorazione dell'articolo '%1', fornitore '%2', dal %3: l'origine non ha più "
                       "%4")
            .arg(article, supplier, italian::DayText(from), which));
}

} // namespace contract
