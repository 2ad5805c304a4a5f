#pragma once

#include "sources/Dbf.h"

namespace sources {

/// The columns of a table under the names by which programs ask for them: a header holds ten characters of a name, the
/// whole one stands in the database container (.dbc) that the table belongs to. Without a container, or when its file
/// was not copied along, the names are those of the header.
/// Raises `ImportError` naming the container when it describes other columns than the table has.
QVector<DbfField> WithLongNames(const DbfFile& table);

} // namespace sources
