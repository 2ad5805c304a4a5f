#pragma once

#include "sql/ovConnection.h"

/// Opens a SQLite database, which is made when it is not there.
inline ovConnection& OpenEmbedded(ovConnection& connection, const QString& path = ":memory:") {
    connection.Embedded = true;
    connection.DatabaseName = path;
    connection.OpenConnection();
    return connection;
}
