#pragma once

#include "core/Session.h"

#include <QDir>

/// The lines to database servers: what the settings ask of them, and what the operator is told of them.
namespace modMain {

/// What a settings file says of a line, as it stands there.
struct LineText {
    QString encryption;  ///< "0" off, "1" on, "2" on and verified; empty: as the driver has it
    QString authorities; ///< file of the authorities whose certificates count; empty for those of the system
    QString encryptionKey;
    QString authoritiesKey;
    QString place; ///< what errors name behind the key: "sezione [DATABASE] di '...'"
};

/// Puts it onto a connection. @param folder that the path of a file is counted from. Raises `ImportError` naming the
/// key for a number that is none of the three, for a file that is not there, and for one without encryption.
void SetLine(ovConnection& connection, const LineText& text, const QDir& folder);

/// Reads the two keys of a section of "Quadrix.ini", which are not written there. Raises as `SetLine`.
void ReadLine(Session& session, ovConnection& connection, const QString& section, const QString& encryptionKey,
              const QString& authoritiesKey);

/// Tells the operator, once in a session, that the line of an open connection is not encrypted. Nothing for one that
/// is, or that does not leave this machine.
void TellLine(Session& session, ovConnection& connection);

/// What is to be told of the lines that are open now, target first.
QStringList UnencryptedLines(Session& session);

} // namespace modMain
