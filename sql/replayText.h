#pragma once

#include <QString>

/// The text of a statement as the command line client of SQLite reads it. That client drops the carriage return at the
/// end of a line, also in a literal: such a literal is written as an expression of the same value.
QString ReplayText(const QString& statement);
