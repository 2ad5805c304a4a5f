#include "core/italianText.h"

namespace italian {

const QLocale& Locale() {
    static const QLocale locale(QLocale::Italian, QLocale::Italy);
    return locale;
}

QString NumberText(qint64 number) { return Locale().toString(number); }

QString DayText(const QDate& day) { return day.toString(QStringLiteral("dd/MM/yyyy")); }

QString MinuteText(const QDateTime& moment) { return moment.toString(QStringLiteral("dd/MM/yyyy HH:mm")); }

QString MomentText(const QDateTime& moment) { return moment.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")); }

} // namespace italian
