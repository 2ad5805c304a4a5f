#include "core/lineSettings.h"

#include "sql/mod_ovTools.h"

#include <QFileInfo>

namespace modMain {

namespace {

[[noreturn]] void Refuse(const QString& key, const LineText& text, const QString& reason) {
    throw ImportError(QStringLiteral("Chiave %1, %2: %3").arg(key, text.place, reason));
}

Encryption ReadEncryption(const LineText& text) {
    if (text.encryption.isEmpty()) {
        return Encryption::DriversOwn;
    }
    const auto number = mod_ovTools::ReadNumber(text.encryption);
    for (const Encryption known : {Encryption::Off, Encryption::On, Encryption::Verified}) {
        if (number == static_cast<double>(known)) {
            return known;
        }
    }
    Refuse(text.encryptionKey, text,
           QStringLiteral("'%1' non è 0 (non cifrata), 1 (cifrata) o 2 (cifrata e verificata)").arg(text.encryption));
}

QString ReadAuthorities(const LineText& text, Encryption encryption, const QDir& folder) {
    if (text.authorities.isEmpty()) {
        return {};
    }
    if (encryption != Encryption::On && encryption != Encryption::Verified) {
        Refuse(text.authoritiesKey, text,
               QStringLiteral("serve solo a una connessione cifrata: impostare %1=2").arg(text.encryptionKey));
    }
    const QString file = QDir::cleanPath(folder.absoluteFilePath(text.authorities));
    if (!QFileInfo(file).isFile()) {
        Refuse(text.authoritiesKey, text,
               QStringLiteral("il file '%1' non esiste").arg(QDir::toNativeSeparators(file)));
    }
    return file;
}

} // namespace

void SetLine(ovConnection& connection, const LineText& text, const QDir& folder) {
    connection.Encrypted = ReadEncryption(text);
    connection.EncryptionCA = ReadAuthorities(text, connection.Encrypted, folder);
}

void ReadLine(Session& session, ovConnection& connection, const QString& section, const QString& encryptionKey,
              const QString& authoritiesKey) {
    const QString file = session.Config.ConfigFile();
    SetLine(connection,
            {session.Config.PeekAppConfig(section, encryptionKey),
             session.Config.PeekAppConfig(section, authoritiesKey), encryptionKey, authoritiesKey,
             QStringLiteral("sezione [%1] di '%2'").arg(section, QDir::toNativeSeparators(file))},
            QFileInfo(file).absoluteDir());
}

void TellLine(Session& session, ovConnection& connection) {
    const QString warning = connection.LineWarning();
    if (!warning.isEmpty() && !session.ToldLines.contains(warning)) {
        session.ToldLines.append(warning);
        session.Person.Note(warning);
    }
}

QStringList UnencryptedLines(Session& session) {
    QStringList lines{session.Quadrix.LineWarning(), session.Source ? session.Source->LineWarning() : QString()};
    lines.removeAll(QString());
    lines.removeDuplicates();
    return lines;
}

} // namespace modMain
