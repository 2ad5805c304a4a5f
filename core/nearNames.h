#pragma once

#include <QStringList>

/// The names that someone may have meant who wrote `name`: up to three, the nearest first, compared without case.
QStringList NearNames(const QString& name, const QStringList& names);

/// ": forse 'Arca 2000'?" for the near names, or the empty text without any.
QString Suggestion(const QString& name, const QStringList& names);

/// " (c'è: uguale 'RAG_SOC'; simile 'RagSoc1')": the near names by the ground on which they are told: equal but for
/// case, blanks and signs, equal with words written out ("COD_ART" and "CodArticolo"), similar. Empty without any.
QString GroundedSuggestions(const QString& name, const QStringList& names);
