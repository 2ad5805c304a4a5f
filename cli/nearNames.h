#pragma once

#include <QStringList>

namespace cli {

/// The names that someone may have meant who wrote `name`: up to three, the nearest first, compared without case.
QStringList NearNames(const QString& name, const QStringList& names);

/// ": forse 'Arca 2000'?" for the near names, or the empty text without any.
QString Suggestion(const QString& name, const QStringList& names);

} // namespace cli
