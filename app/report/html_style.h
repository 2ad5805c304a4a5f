#pragma once

#include <QString>

namespace proof::html {

/// The style sheet of the page, for the screen and for A4.
QString Style();

} // namespace proof::html
