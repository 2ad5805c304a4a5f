#pragma once

#include "app/history/History.h"

/// The runs of the history in the operator's words, for lists.
namespace history {

/// Headings of `ProcedureCells`.
const QStringList& ProcedureHeadings();
/// What a procedure did: its title, rows read, inserted, updated, skipped with their reasons, given up and not reached,
/// seconds of work, how it ended. Numbers of a procedure that was killed are left out, but for what it had written.
QStringList ProcedureCells(const ProcedureRun& procedure);

/// Headings of `RunCells`.
const QStringList& RunHeadings();
/// A run: number, when it began, how it ended, rows given up, what was done, company, rows inserted and updated, who.
QStringList RunCells(const Run& run);

/// A run as the head of its window: what it was, of which company, from where, by whom, from when to when, with what.
QStringList HeadLines(const Run& run);

} // namespace history
