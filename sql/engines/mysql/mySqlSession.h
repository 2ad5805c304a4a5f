#pragma once

/// What a session with a MySQL or MariaDB server begins with, whichever way it is reached. Literals as SQL Server reads
/// them (a backslash is a character like any other, double quotes hold names), no value cut or changed silently, no
/// table kept by another engine than the one asked for, and a server that waits for an operator who thinks about a
/// question.
inline constexpr const char* MySqlSession =
    "SET SESSION sql_mode = 'STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,ANSI_QUOTES,NO_ENGINE_SUBSTITUTION', "
    "SESSION wait_timeout = 2147483, SESSION net_write_timeout = 86400, SESSION net_read_timeout = 3600";

/// What it goes on with when nothing is to be written: whatever a query calls, the server changes no table.
inline constexpr const char* MySqlReadOnly = "SET SESSION TRANSACTION READ ONLY";
/// Lets the session write again, for a table of its own.
inline constexpr const char* MySqlReadWrite = "SET SESSION TRANSACTION READ WRITE";
