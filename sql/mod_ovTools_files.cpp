#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryFile>

#ifndef Q_OS_WIN
#include <pwd.h>
#include <unistd.h>
#endif

namespace mod_ovTools {

QString AddBackslash(const QString& path, bool add) {
    QString result = path.trimmed();
    result.replace(u'/', u'\\');
    if (result.isEmpty()) {
        return result;
    }
    const bool ended = result.endsWith(u'\\');
    if (add && !ended) {
        result += u'\\';
    } else if (!add && ended) {
        result.chop(1);
    }
    return result;
}

bool FileExists(const QString& path) { return QFileInfo::exists(path); }

QString GetTempFolder() {
    const QString folder = qEnvironmentVariable("TEMP");
    return folder.isEmpty() ? QDir::tempPath() : folder;
}

QString GetTempFile(const QString& folder) {
    const QDir directory(folder.isEmpty() ? GetTempFolder() : folder);
    QTemporaryFile file(directory.filePath(QStringLiteral("QuadrixXXXXXX.tmp")));
    file.setAutoRemove(false);
    return file.open() ? file.fileName() : QString();
}

bool ShellAndWait(const QString& commandLine) {
    QStringList arguments = QProcess::splitCommand(commandLine);
    if (arguments.isEmpty()) {
        return false;
    }
    QProcess process;
    process.setProgram(arguments.takeFirst());
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(-1)) {
        return false;
    }
    process.waitForFinished(-1);
    return true;
}

QString GetUserName() {
#ifdef Q_OS_WIN
    return qEnvironmentVariable("USERNAME");
#else
    const passwd* user = getpwuid(geteuid());
    return user != nullptr ? QString::fromLocal8Bit(user->pw_name) : qEnvironmentVariable("USER");
#endif
}

} // namespace mod_ovTools
