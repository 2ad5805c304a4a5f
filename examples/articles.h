#pragma once

#include "examples/random.h"

#include <QString>

namespace examples {

/// The code of an article by its number from 0, none twice: "AA000000", "AB000001", ...
QString ArticleCode(qint64 number);
/// What an article is, e.g. "Flangia acciaio inox Ø 40".
QString ArticleName(Random& random);

} // namespace examples
