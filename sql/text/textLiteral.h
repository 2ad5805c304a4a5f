#pragma once

#include <QString>

/// A text between single quotes, as the catalogues of every database take it.
inline QString TextLiteral(QString text) { return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\''; }
