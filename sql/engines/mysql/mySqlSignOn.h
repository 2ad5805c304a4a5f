#pragma once

/// From now on no line of this program shows its password to a MySQL or MariaDB server that asks for it in clear,
/// unless the server has proved by its certificate to be the one meant, or sits behind a local socket. It holds for
/// every line over the client library, also for those of an ODBC driver that uses the same one, which offers no such
/// setting.
void GuardMySqlPasswords();
