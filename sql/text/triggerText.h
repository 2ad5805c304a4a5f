#pragma once

#include <QString>

/// Whether a statement makes one trigger of that name on that table and does nothing else: "CREATE [DEFINER = ..]
/// TRIGGER name .. ON table ..". Names are compared without case, and may be quoted or stand behind that of a database.
bool IsTriggerText(const QString& statement, const QString& name, const QString& table);
