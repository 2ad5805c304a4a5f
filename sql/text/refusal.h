#pragma once

#include "sql/errors.h"

/// What an engine says when the values of a statement break a rule of their table.
namespace refusal {

/// Whether the engine refused the values themselves, so that the same statement will be refused again.
bool IsOfValues(const SqlError& error);

/// What is wrong with which value, in Italian: "tabella X01_CON_TRO, colonna CORAS: il valore 'Rossi' è già presente";
/// empty where the engine's words do not tell it.
QString Explain(const SqlError& error);

} // namespace refusal
