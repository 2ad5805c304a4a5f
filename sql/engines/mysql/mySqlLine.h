#pragma once

#include "sql/engine.h"
#include "sql/errors.h"

struct st_mysql;

/// The line to a MySQL or MariaDB server: where it leads, and what may go over it.
struct MySqlLine {
    QByteArray host;
    QByteArray socket;
    unsigned port = 0; ///< 0 is the usual one
};

/// Reads a server as "host", "host:port", "[IPv6 address]:port", an IPv6 address, or the path of a local socket. Raises
/// `ImportError` for a port that is none: another server of that machine may listen on the usual one.
MySqlLine ReadMySqlLine(const QString& server);

/// Sets what the settings ask of a line that is still to be built: encryption, and no password in clear to anybody who
/// is not known to be the server. No file of this machine is ever sent.
void SetMySqlLine(st_mysql* handle, const ConnectionSettings& settings);

/// Whether a line that was built is encrypted.
bool IsMySqlLineEncrypted(st_mysql* handle);

/// Tells of a line that was not built what it is that the server asks for, or what is wrong with it.
/// @param encrypted whether the line was encrypted, or was to be
void ExplainMySqlLine(SqlError& error, bool encrypted);
