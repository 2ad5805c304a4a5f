#pragma once

#include "sql/connectionParts.h"
#include "sql/engine.h"
#include "sql/engines/odbc/odbcApi.h"

/// Encryption of the line to a server, in the words of its ODBC driver.
namespace odbc {

/// Adds what the settings ask to a connection string, in place of what it says itself. Nothing where nothing is asked,
/// or where the driver reads files. Raises `ImportError` with what can be done instead for what the driver cannot be
/// asked: it is never asked for less.
/// @param driver name of the driver, or file of its library
void AskForEncryption(Parts& parts, const QString& driver, const ConnectionSettings& settings);

/// Whether a connection string makes its driver encrypt the line, also by the driver's own way without being asked.
bool AsksForEncryption(const Parts& parts, const QString& driver);

/// Whether it asks the drivers of MariaDB and MySQL for it, which may go on without.
bool AsksMySqlForEncryption(const Parts& parts);

/// What the refusal of a line means where encryption, or its lack, is the reason; null when it is not.
const char* MeaningOfLine(const Parts& parts, const QVector<Diagnosis>& diagnoses);

} // namespace odbc
