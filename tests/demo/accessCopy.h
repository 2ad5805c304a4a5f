#pragma once

#include "sql/ovConnection.h"

/// The tables of a database as an Access file. A column has the type that it is declared with, or is a text where it
/// holds a value that this type cannot hold. Raises `ImportError` naming the table that does not fit into such a file.
QByteArray AccessCopy(ovConnection& database);
