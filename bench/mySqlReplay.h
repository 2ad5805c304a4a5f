#pragma once

#include <string>

/// Sends every statement of a trace to a MySQL or MariaDB server through the plain client, in one connection with the
/// settings that the program uses, and reads every row of every query. Returns the number of statements. Raises
/// `std::runtime_error` with the statement that failed.
/// @param server "host|port|user|password"; further parts are not used
long ReplayMySql(const std::string& server, const std::string& database, const std::string& trace);
