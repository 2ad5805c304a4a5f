#pragma once

#include "app/report/Proof.h"

namespace proof {

/// How every page begins, by which a file is known as one.
inline const QString FirstLine = QStringLiteral("<!DOCTYPE html><!-- Quadrix/IMPORT: verbale di quadratura -->");

/// The page: a whole file that needs nothing beside it, for the screen and for A4.
QString Html(const Proof& proof);

} // namespace proof
