#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

namespace manual {

/// The kinds of annotation that the code writes, each with the origins whose module writes it; one that every origin
/// may write has an empty name among them. What a call fills in stands as "…": "… NON TROVATO".
using Annotations = QMap<QString, QSet<QString>>;

/// Adds those of a source file. @param path of the file, below the root of the project
void AddAnnotationsOf(const QString& code, const QString& path, Annotations& annotations);

/// Adds those that stand in logs which the tests expect. @param log lines "05/03/2024 10:20:30 - KIND: text"
void AddAnnotationsOfLog(const QString& log, Annotations& annotations);

/// Whether the kind of an entry ("CLIENTE NON TROVATO") is one with a part that is filled in ("… NON TROVATO").
bool IsFilledFrom(const QString& kind, const QString& pattern);

} // namespace manual
