#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/SourceRow.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Document.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

#include <cmath>

namespace contract {

namespace {

constexpr int SamePlace = 1;
constexpr int SameAmounts = 2;
constexpr int SameText = 4;
constexpr int SameArticle = 8;
constexpr int Same = SameArticle + SameText + SameAmounts;

bool IsSameText(const TargetRow& row, const SourceRow& there, const QString& column) {
    return mod_ovTools::ToText(row.Value(column)).trimmed().compare(there.Text(column), Qt::CaseInsensitive) == 0;
}

bool IsSameNumber(const TargetRow& row, const SourceRow& there, const QString& column) {
    constexpr double least = 0.000001; // quantities and prices have 6 decimals
    return std::abs(mod_ovTools::ToDouble(row.Value(column)) - mod_ovTools::ToDouble(there.Value(column))) < least / 2;
}

/// How much of a row is the same in one that is there; 0: it is another row.
int LikenessOf(const TargetRow& row, const SourceRow& there) {
    const bool isText = IsSameText(row, there, "DRDES");
    const bool isAmounts = IsSameNumber(row, there, "DRQTR") && IsSameNumber(row, there, "DRPRZ");
    const bool isPlace = IsSameNumber(row, there, "DRNUM") && mod_ovTools::ToDouble(there.Value("DRNUM")) != 0;
    const bool isNamed = isText && !there.IsBlank("DRDES");
    const bool isArticle = IsSameCode(mod_ovTools::ToText(row.Value("DRART")).trimmed(), there.Text("DRART")) &&
                           (!there.IsBlank("DRART") || isNamed);
    const bool isOther = isArticle ? !isText && !isAmounts && !isPlace : !isAmounts || (!isNamed && !isPlace);
    if (isOther) {
        return 0;
    }
    return (isArticle ? SameArticle : 0) + (isText ? SameText : 0) + (isAmounts ? SameAmounts : 0) +
           (isPlace ? SamePlace : 0);
}

} // namespace

LikeRow DocumentWriter::FindRowLike(qint64 head, const TargetRow& row, const QSet<qint64>& but) const {
    LikeRow best;
    int most = 0;
    int ofArticle = 0;
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, DRNUM, DRART, DRDES, DRQTR, DRPRZ FROM ") + m_run.FullName(m_family.row) +
        QStringLiteral(" WHERE ") + Equals("IDTES", head) + QStringLiteral(" AND ") + OfImports(m_run.GetSession()) +
        QStringLiteral(" ORDER BY DRNUM, RECORD_ID"));
    for (const SourceRow there(rows); !rows.Eof(); rows.MoveNext()) {
        const qint64 id = there.Value("RECORD_ID").toLongLong();
        const int likeness = but.contains(id) ? 0 : LikenessOf(row, there);
        ofArticle += likeness >= SameArticle ? 1 : 0;
        if (likeness > most) {
            most = likeness;
            best = {id, there.Value("DRNUM").toInt(), there.Text("DRART")};
        }
    }
    best.isCertain = most >= Same || (most >= SameArticle && ofArticle == 1);
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
