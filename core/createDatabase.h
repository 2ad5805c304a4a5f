#pragma once

#include <QString>

class ovConnection;

/// Makes the tables of a Quadrix company and those that all companies share, for trials and tests: only what is
/// missing is made and filled. The shared base tables get the usual codes (VAT, currencies, countries, languages, units
/// of measure), the dictionaries what the schema tells, the company its main warehouse.
/// @param quadrix an open connection to the database
/// @param company letters and digits, the first a letter; put in capitals
/// @param name the company's name, as the window's list shows it
/// Raises `ImportError` when the company exists already, its name is taken or a text is not a company code, and
/// `SqlError` when a statement fails; the database is then as it was, on engines whose CREATE TABLE can be taken back.
void CreateDatabase(ovConnection& quadrix, const QString& company, const QString& name);

/// Makes a table that all companies share (bare name, of the schema) where the database lacks it. Raises `SqlError`,
/// such as for want of the right to make tables.
void CreateSharedTable(ovConnection& quadrix, const QString& bareName);
