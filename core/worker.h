#pragma once

#include <QDateTime>
#include <QString>

/// "anna (PC-UFFICIO)": who works at which machine.
QString WorkerText();
/// "anna (PC-UFFICIO), processo 4711, dal 25/11/2026 18:03:12: importazione da Gescom": the same for a piece of work
/// that this program does.
/// @param since when it was begun @param work what it is, in words for the operator
QString WorkText(const QDateTime& since, const QString& work);
