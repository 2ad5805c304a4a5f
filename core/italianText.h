#pragma once

#include <QDateTime>
#include <QLocale>

/// Numbers and times as the operator reads them, whatever language the machine speaks.
namespace italian {

const QLocale& Locale();

/// A number of things, its thousands apart: "12.345".
QString NumberText(qint64 number);
/// "31/12/2024"; empty for a day that is none, as the others below.
QString DayText(const QDate& day);
/// "31/12/2024 18:05"
QString MinuteText(const QDateTime& moment);
/// "31/12/2024 18:05:59"
QString MomentText(const QDateTime& moment);

} // namespace italian
