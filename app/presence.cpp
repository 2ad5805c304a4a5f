#include "app/presence.h"

#include "core/worker.h"
#include "sql/FileLock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

namespace modMain {

namespace {

/// "Quadrix.PC-UFFICIO-4711.lock" beside "Quadrix.ini"; "*" stands for any program.
QString NameFor(const QString& settingsFile, const QString& program) {
    return QFileInfo(settingsFile).completeBaseName() + u'.' + program + QStringLiteral(".lock");
}

/// The number alone could be that of a program of another machine.
QString OwnName(const QString& settingsFile) {
    return NameFor(settingsFile,
                   QSysInfo::machineHostName() + u'-' + QString::number(QCoreApplication::applicationPid()));
}

} // namespace

void AnnouncePresence(Session& session, const QString& settingsFile) {
    const QDir folder = QFileInfo(settingsFile).absoluteDir();
    session.Presence.reset();
    try {
        session.Presence = FileLock::Take(folder.filePath(OwnName(settingsFile)),
                                          WorkText(session.Now(), QCoreApplication::applicationName()));
    } catch (const ImportError&) {
        return;
    }
}

QStringList OthersAtWork(const QString& settingsFile) {
    const QDir folder = QFileInfo(settingsFile).absoluteDir();
    QStringList others;
    for (const QString& name : folder.entryList({NameFor(settingsFile, QStringLiteral("*"))}, QDir::Files)) {
        const QString path = folder.filePath(name);
        if (name == OwnName(settingsFile)) {
            continue;
        }
        if (FileLock::IsTaken(path)) {
            others.append(FileLock::NoteOf(path));
        } else {
            QFile::remove(path); // of a program that was killed
        }
    }
    return others;
}

} // namespace modMain
