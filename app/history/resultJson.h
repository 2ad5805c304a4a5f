#pragma once

#include "core/RunResult.h"

#include <QJsonObject>

namespace history {

/// What a procedure did, as the history keeps it, and back.
QJsonObject ToJson(const RunResult& result);
RunResult ResultFrom(const QJsonObject& json);

} // namespace history
