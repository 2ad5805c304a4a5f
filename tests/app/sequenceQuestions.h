#pragma once

#include <QString>

/// What a sequence asks before it empties.
namespace sequenceQuestions {

inline const QString Empty = "Attenzione: svuotare tutte le tabelle del database dell'azienda prima di effettuare "
                             "l'importazione?";
inline const QString EmptyCam = "Attenzione: desideri svuotare anche il database del software CAM collegato?";

} // namespace sequenceQuestions
