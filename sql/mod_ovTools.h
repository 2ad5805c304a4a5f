#pragma once

#include "sql/types.h"

#include <QString>
#include <QVariant>

// Interface to be completed by its builder (see brief).
namespace mod_ovTools {

QString FormatSqlValue(const QVariant& value, DataType type, Provider provider);

} // namespace mod_ovTools
