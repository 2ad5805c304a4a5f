#pragma once

#include <QString>

/// A text between single quotes, as the catalogues of every database take it.
inline QString CatalogLiteral(QString text) { return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\''; }
