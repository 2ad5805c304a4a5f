#include "core/RejectLimit.h"

std::optional<RejectLimit> RejectLimit::Of(const QString& text) {
    bool isNumber = false;
    if (text.endsWith(u'%')) {
        const double percent = text.chopped(1).toDouble(&isNumber);
        return isNumber && percent > 0 && percent <= 100 ? std::optional(RejectLimit{0, percent}) : std::nullopt;
    }
    const qint64 rows = text.toLongLong(&isNumber);
    return isNumber && rows > 0 ? std::optional(RejectLimit{rows, 0}) : std::nullopt;
}

QString RejectLimit::Text() const {
    if (percent > 0) {
        return QString::number(percent) + u'%';
    }
    return rows > 0 ? QString::number(rows) : QString();
}

bool RejectLimit::IsReached(qint64 givenUp, qint64 done) const {
    if (percent > 0) {
        return done >= LeastRows && static_cast<double>(givenUp) * 100 >= percent * static_cast<double>(done);
    }
    return rows > 0 && givenUp >= rows;
}
