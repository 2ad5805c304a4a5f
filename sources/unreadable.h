#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>

namespace sources {

/// What stands in a private database in the place of a value that its file does not give: the reason. Who asks for the
/// value gets the reason as an `ImportError`, which ends his row and no other.
QByteArray UnreadableValue(const QString& reason);
/// The reason, when a value is one that cannot be read.
std::optional<QString> ReasonOfUnreadable(const QVariant& value);

} // namespace sources
