#include "core/storedPassword.h"

#include "core/passwordScrambling.h"

#include <QDir>
#include <QFileInfo>

namespace storedPassword {

namespace {

/// What a masked password begins with.
const QString Mark = QStringLiteral("mascherata:");

/// The password of a value of the file.
QString Unmasked(const QString& value) {
    return value.startsWith(Mark) ? ScramblePassword(value.mid(Mark.size()), Scrambling::Unscramble, true) : value;
}

QString Masked(const QString& password) {
    QString masked = Mark + ScramblePassword(password, Scrambling::Scramble, true);
    if (masked.size() > ovConfig::LongestValue) {
        throw ImportError(QStringLiteral("è troppo lunga per essere mascherata"));
    }
    return masked;
}

/// A clear value of the file becomes a masked one; returns what the file holds then.
QString Mask(Session& session, SettingsFile& file, const QString& section, const QString& key) {
    QString value = file.Read(section, key).left(ovConfig::LongestValue);
    if (value.trimmed().isEmpty() || value.startsWith(Mark)) {
        return value;
    }
    try {
        const QString masked = Masked(value);
        file.Write(section, key, masked);
        value = masked;
    } catch (const ImportError& error) {
        TellLegible(session, file, section, key, error.Message());
    }
    return value;
}

} // namespace

QString Variable(const SettingsFile& file, const QString& section, const QString& key) {
    QString name = QString(QFileInfo(file.Path()).completeBaseName() + u'_' + section + u'_' + key).toUpper();
    for (QChar& character : name) {
        const bool isKept = (character >= u'A' && character <= u'Z') || (character >= u'0' && character <= u'9');
        character = isKept ? character : QChar(u'_');
    }
    return name;
}

std::optional<QString> FromEnvironment(const SettingsFile& file, const QString& section, const QString& key) {
    const QByteArray name = Variable(file, section, key).toLatin1();
    return qEnvironmentVariableIsSet(name.constData()) ? std::optional(qEnvironmentVariable(name.constData()))
                                                       : std::nullopt;
}

QString Read(Session& session, SettingsFile& file, const QString& section, const QString& key) {
    if (const auto given = FromEnvironment(file, section, key)) {
        return *given;
    }
    return Unmasked(Mask(session, file, section, key));
}

QString ReadMasked(Session& session, SettingsFile& file, const QString& section, const QString& key) {
    if (const auto given = FromEnvironment(file, section, key); given && !given->isEmpty()) {
        return Masked(*given);
    }
    return Mask(session, file, section, key);
}

void TellLegible(Session& session, const SettingsFile& file, const QString& section, const QString& key,
                 const QString& reason) {
    const QString variable = Variable(file, section, key);
    if (session.LegiblePasswords.contains(variable)) {
        return;
    }
    session.LegiblePasswords.insert(variable);
    session.Person.Message(
        QStringLiteral("La password resta leggibile nelle impostazioni ([%1], %2 di '%3'): %4; si può dare invece "
                       "nella variabile d'ambiente %5")
            .arg(section, key, QDir::toNativeSeparators(file.Path()), reason, variable),
        Icon::Exclamation);
}

} // namespace storedPassword
