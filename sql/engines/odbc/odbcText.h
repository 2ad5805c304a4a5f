#pragma once

#include "sql/connectionParts.h"
#include "sql/engine.h"
#include "sql/types.h"

/// Connection strings in the words of ODBC.
namespace odbc {

/// The connection string of settings. One that is given is honoured; that of an OLE DB provider for ODBC data sources
/// or for SQL Server is said in the words of ODBC. Else it is made of the DSN, or of the driver that `settings` names
/// or that is usual for the provider, with server, database and sign-on. Raises `ImportError` when there is nothing to
/// make it of, and for values or encryption that the driver cannot be told of.
QString ConnectionText(const ConnectionSettings& settings, Provider provider);
/// What a connection string leads to, as an operator knows it: "Database 'Q' sul server 'S'", "Origine dati ODBC 'D'".
/// One that names nothing of the kind comes as it is, its passwords covered.
QString PlaceOf(const QString& text);
/// Name of the driver, or file of its library, that a connection string leads to, also by its data source; empty when
/// it is not known.
QString DriverOf(const Parts& parts);
/// Name of the driver, or else of the data source, of a connection string; empty when it names neither.
QString DriverOrDsn(const QString& text);

} // namespace odbc
