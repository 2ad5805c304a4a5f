#pragma once

#include <QString>

/// Raises `ImportError` naming a company code that cannot stand in a table's name as it is: anything but letters
/// without accents, digits and "_", or nothing at all. The list of companies is a table like any other, and what stands
/// in it would go into every statement.
void CheckCompanyCode(const QString& code);
