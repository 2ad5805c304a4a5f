#include "sql/ownFile.h"

#include <QDir>
#include <QFileInfo>

#ifndef Q_OS_WIN
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace ownFile {

namespace {

const QString IsLink = QStringLiteral("è un collegamento a un altro file, che non si segue");
const QString IsNoFile = QStringLiteral("non è un file");

#ifndef Q_OS_WIN
QString LinkObstacleOf(const struct stat& facts) {
    if (S_ISLNK(facts.st_mode)) {
        return IsLink;
    }
    return S_ISREG(facts.st_mode) ? QString() : IsNoFile;
}

QString ObstacleOf(const struct stat& facts) {
    if (const QString obstacle = LinkObstacleOf(facts); !obstacle.isEmpty()) {
        return obstacle;
    }
    if (facts.st_nlink > 1) {
        return QStringLiteral("ha un secondo nome (hard link)");
    }
    return facts.st_uid == geteuid() ? QString() : QStringLiteral("è di un altro utente");
}

QString SystemWords() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// The file is looked at once it is open: what stood there before may be another one.
QString OpenHandle(const QString& path, Start start, int& handle) {
    constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
    // A pipe that nobody reads would keep the program waiting.
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    handle = open(QFile::encodeName(path).constData(), flags | (start == Start::Append ? O_APPEND : 0), ownerOnly);
    if (handle < 0) {
        return errno == ELOOP ? IsLink : SystemWords();
    }
    struct stat facts {};
    QString obstacle = fstat(handle, &facts) == 0 ? ObstacleOf(facts) : SystemWords();
    if (obstacle.isEmpty() && start == Start::Anew && ftruncate(handle, 0) != 0) {
        obstacle = SystemWords();
    }
    if (!obstacle.isEmpty()) {
        close(handle);
    }
    return obstacle;
}
#endif

} // namespace

QString FolderObstacle(const QString& path) {
    const QString folder = QFileInfo(path).absolutePath();
    return QFileInfo(folder).isDir() ? QString()
                                     : QStringLiteral("la cartella '%1' non c'è").arg(QDir::toNativeSeparators(folder));
}

#ifdef Q_OS_WIN
QString Open(QFile& file, const QString& path, Start start, QIODevice::OpenMode mode) {
    const QString obstacle = Obstacle(path);
    if (!obstacle.isEmpty()) {
        return obstacle;
    }
    file.setFileName(path);
    const QIODevice::OpenMode from = start == Start::Append ? QIODevice::Append : QIODevice::Truncate;
    return file.open(QIODevice::WriteOnly | from | mode) ? QString() : file.errorString();
}

QString Obstacle(const QString& path) { return LinkObstacle(path); }

QString LinkObstacle(const QString& path) {
    const QFileInfo info(path);
    if (info.isSymLink() || info.isJunction()) {
        return IsLink;
    }
    return info.exists() && !info.isFile() ? IsNoFile : QString();
}
#else
QString Open(QFile& file, const QString& path, Start start, QIODevice::OpenMode mode) {
    int handle = -1;
    QString obstacle = OpenHandle(path, start, handle);
    if (!obstacle.isEmpty()) {
        return obstacle;
    }
    const QIODevice::OpenMode from = start == Start::Append ? QIODevice::Append : QIODevice::Truncate;
    if (!file.open(handle, QIODevice::WriteOnly | from | mode, QFileDevice::AutoCloseHandle)) {
        close(handle);
        return file.errorString();
    }
    return {};
}

QString Obstacle(const QString& path) {
    struct stat facts {};
    return lstat(QFile::encodeName(path).constData(), &facts) == 0 ? ObstacleOf(facts) : QString();
}

QString LinkObstacle(const QString& path) {
    struct stat facts {};
    return lstat(QFile::encodeName(path).constData(), &facts) == 0 ? LinkObstacleOf(facts) : QString();
}
#endif

} // namespace ownFile
