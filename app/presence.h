#pragma once

#include "core/Session.h"

namespace modMain {

/// Leaves word beside the settings file, for as long as the session lives, that this program works with it. Where that
/// cannot be written others are not told.
void AnnouncePresence(Session& session, const QString& settingsFile);

/// The other programs that work with the settings file now, each in words for the operator.
QStringList OthersAtWork(const QString& settingsFile);

} // namespace modMain
