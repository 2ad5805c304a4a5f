#pragma once

/// Reads so many rows from SQLite and from MariaDB, each through its own client and over ODBC, while other statements
/// run on the same connection, and prints time and memory, beside those of a twentieth of the rows. The server is that
/// of QUADRIX_TEST_MARIADB; without it SQLite is measured alone. Returns false when memory grows with the rows.
bool MeasureStreaming(long rows);
