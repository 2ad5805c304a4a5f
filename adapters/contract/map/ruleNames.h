#pragma once

#include "adapters/contract/map/rules.h"
#include "core/Schema.h"

namespace contract {

/// The rule that a text names, with its arguments: "Primi(35)", "Parte(3, 2)", "Tradotto", or as the functions of
/// `rules` are called, "First(35)". @param sourceTable,sourceColumn what codes are translated under. Raises
/// `ImportError` for a name that is none, with those that are near, and for arguments that it does not take.
Rule RuleOf(const QString& text, const QString& sourceTable, const QString& sourceColumn);

/// How each of the rules that `RuleOf` knows is written, in their order: "Testo", "Primi(n)", "Parte(n, n)".
QStringList RuleForms();

/// The rule for a column where none is named: a text as it is, a number, a yes or no, a date.
Rule UsualRule(const schema::Column& target);

} // namespace contract
