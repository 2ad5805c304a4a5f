#pragma once

#include <QList>
#include <QStringList>

/// The names that someone may have meant who wrote `name`: up to three, the nearest first, compared without case.
QStringList NearNames(const QString& name, const QStringList& names);

/// ": forse 'Arca 2000'?" for the near names, or the empty text without any.
QString DidYouMean(const QString& name, const QStringList& names);

/// Why a name may be the one that was meant, the surest first.
enum class NameGround {
    Equal,      ///< but for case, blanks and signs
    WrittenOut, ///< equal with words written out: "COD_ART" and "CodArticolo"
    Similar,
};

struct GroundedName {
    QString name;
    NameGround ground;
};

/// The names that may be meant by another one, each once, the surest ground first.
QList<GroundedName> GroundedNames(const QString& name, const QStringList& names);

/// The words of a name, written out and in upper case: "COD_ART", "CodArticolo" and "CODART" are all CODICE, ARTICOLO.
QStringList WordsOfName(const QString& name);

/// " (c'è: uguale 'RAG_SOC'; simile 'RagSoc1')": the near names by the ground on which they are told: equal but for
/// case, blanks and signs, equal with words written out ("COD_ART" and "CodArticolo"), similar. Empty without any.
QString GroundedSuggestions(const QString& name, const QStringList& names);
