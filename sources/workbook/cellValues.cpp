#include "sources/workbook/cellValues.h"

#include <QDateTime>

#include <charconv>
#include <cmath>

namespace sources {

std::optional<double> NumberOf(QStringView text) {
    const QByteArray bytes = text.trimmed().toLatin1();
    double number = 0;
    const auto read = std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), number);
    const bool isWhole = read.ec == std::errc() && read.ptr == bytes.constData() + bytes.size();
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

void Spoil(SheetCell& cell, const QString& why) {
    cell.kind = SheetCell::Kind::Unreadable;
    cell.text = why.toUtf8();
}

void TakeDate(SheetCell& cell, const QString& value) {
    constexpr qsizetype dayLength = 10;
    if (value.size() == dayLength && value.at(4) == u'-' && value.at(7) == u'-' &&
        QDate::fromString(value, Qt::ISODate).isValid()) { // as nearly all are
        cell.kind = SheetCell::Kind::Date;
        cell.text = QString(value).remove(u'-').toLatin1();
        return;
    }
    const bool hasTime = value.contains(u'T');
    const QDateTime moment = hasTime ? QDateTime::fromString(QString(value).remove(u'Z') + u'Z', Qt::ISODate)
                                     : QDateTime(QDate::fromString(value, Qt::ISODate), QTime(0, 0), Qt::UTC);
    if (!moment.isValid()) {
        Spoil(cell, QStringLiteral("'%1' non è una data").arg(value));
        return;
    }
    cell.kind = SheetCell::Kind::Date;
    cell.text =
        moment.toString(moment.time() == QTime(0, 0) ? QStringLiteral("yyyyMMdd") : QStringLiteral("yyyyMMdd hh:mm:ss"))
            .toLatin1();
}

} // namespace sources
