#pragma once

#include <QString>

/// Writes a page whole, or leaves the file as it was; false, and a line on standard error, when it cannot be written.
bool WritePage(const QString& path, const QString& page);
