#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/SourceRow.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Document.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace contract {

namespace {

constexpr int SamePlace = 1;
constexpr int SameAmounts = 2;
constexpr int SameText = 4;
constexpr int SameArticle = 8;
constexpr int Same = SameArticle + SameText + SameAmounts;

/// How far a number may be from the one that a column keeps of it: half a unit of its last digit.
double ToleranceOf(const ColumnBounds& column) {
    constexpr int most = 6; // decimals of quantities and prices
    constexpr int ofShortFloat = 4;
    constexpr double noise = 1.001;
    const int decimals = column.decimals >= 0 ? column.decimals : column.isRounding ? ofShortFloat : most;
    return std::pow(10, -std::min(decimals, most)) / 2 * noise;
}

/// What the columns of a table of rows keep of quantities and prices, asked once in a run.
struct KeptDigits {
    struct Tolerance {
        double quantity = 5e-7;
        double price = 5e-7;
    };
    QHash<QString, Tolerance> tolerances; ///< by physical name
};

KeptDigits::Tolerance ToleranceIn(ImportRun& run, const QString& table) {
    const auto known = run.Shared<KeptDigits>();
    if (const auto found = known->tolerances.constFind(table); found != known->tolerances.cend()) {
        return *found;
    }
    KeptDigits::Tolerance tolerance;
    for (const ColumnBounds& column : run.GetSession().Quadrix.GetBounds(table)) {
        if (column.name.compare(QLatin1String("DRQTR"), Qt::CaseInsensitive) == 0) {
            tolerance.quantity = ToleranceOf(column);
        } else if (column.name.compare(QLatin1String("DRPRZ"), Qt::CaseInsensitive) == 0) {
            tolerance.price = ToleranceOf(column);
        }
    }
    return *known->tolerances.insert(table, tolerance);
}

/// How much of a row is the same in one that is there; 0: it is another row.
int LikenessOf(const LikeRow& row, const LikeRow& one, const ImportedRows& all) {
    const bool isText = !all.hasTexts || row.text.compare(one.text, Qt::CaseInsensitive) == 0;
    const bool isAmounts =
        std::abs(row.quantity - one.quantity) <= all.ofQuantity && std::abs(row.price - one.price) <= all.ofPrice;
    const bool isPlace = row.number == one.number && one.number != 0;
    const bool isCode = row.article == one.article || IsSameCode(row.article, one.article);
    const int place = isPlace ? SamePlace : 0;
    if (isCode && isText && isAmounts) {
        return Same + place; // whatever is blank
    }
    const bool isNamed = isText && all.hasTexts && !one.text.isEmpty();
    const bool isArticle = isCode && (!one.article.isEmpty() || isNamed);
    const bool isOther = isArticle ? !isText && !isAmounts && !isPlace : !isAmounts || (!isNamed && !isPlace);
    if (isOther) {
        return 0;
    }
    return (isArticle ? SameArticle : 0) + (isText ? SameText : 0) + (isAmounts ? SameAmounts : 0) + place;
}

} // namespace

ImportedRows DocumentWriter::RowsOfImports(qint64 head, const QStringList& lacking) const {
    Session& session = m_run.GetSession();
    const QString table = m_run.FullName(m_family.row);
    ImportedRows all;
    all.hasTexts = !lacking.contains(QLatin1String("DRDES"));
    const KeptDigits::Tolerance tolerance = ToleranceIn(m_run, table);
    all.ofQuantity = tolerance.quantity;
    all.ofPrice = lacking.contains(QLatin1String("DRPRZ")) ? std::numeric_limits<double>::infinity() : tolerance.price;
    Recordset rows =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID, DRNUM, DRART, DRDES, DRQTR, DRPRZ FROM ") + table +
                                  QStringLiteral(" WHERE ") + Equals("IDTES", head) + QStringLiteral(" AND ") +
                                  OfImports(session) + QStringLiteral(" ORDER BY DRNUM, RECORD_ID"));
    for (const SourceRow one(rows); !rows.Eof(); rows.MoveNext()) {
        all.rows.append({one.Value("RECORD_ID").toLongLong(), one.Value("DRNUM").toInt(), one.Text("DRART"),
                         one.Text("DRDES"), mod_ovTools::ToDouble(one.Value("DRQTR")),
                         mod_ovTools::ToDouble(one.Value("DRPRZ"))});
    }
    return all;
}

LikeRow FindRowLike(const ImportedRows& all, const TargetRow& row, const QSet<qint64>& but) {
    const auto text = [&row](const char* column) {
        return mod_ovTools::ToText(row.Value(QLatin1String(column))).trimmed();
    };
    const auto number = [&row](const char* column) { return mod_ovTools::ToDouble(row.Value(QLatin1String(column))); };
    const LikeRow wanted{
        0, static_cast<int>(number("DRNUM")), text("DRART"), text("DRDES"), number("DRQTR"), number("DRPRZ")};
    const int nothingMore = Same + (wanted.number != 0 ? SamePlace : 0);
    LikeRow best;
    int most = 0;
    for (const LikeRow& one : all.rows) {
        const int likeness = but.contains(one.id) ? 0 : LikenessOf(wanted, one, all);
        if (likeness > most) {
            most = likeness;
            best = one;
        }
        if (most == nothingMore) {
            break;
        }
    }
    best.isSame = most >= Same;
    return best;
}

int DocumentWriter::FreeNumber(qint64 head, int number) const {
    constexpr int step = 10;
    const auto isTaken = [&](int one) {
        return IdWhere(m_run.GetSession(), m_family.row,
                       Equals("IDTES", head) + QStringLiteral(" AND ") + Equals("DRNUM", one)) != 0;
    };
    int free = number;
    while (free != 0 && isTaken(free)) {
        free += step;
    }
    return free;
}

} // namespace contract
