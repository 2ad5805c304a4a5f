#include "sql/FileLock.h"

#include <QDir>
#include <QFile>

#include <optional>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr qintptr None = -1;

[[noreturn]] void Fail(const QString& path, const QString& reason) {
    throw ImportError(QStringLiteral("File di blocco '%1': %2").arg(QDir::toNativeSeparators(path), reason));
}

#ifdef Q_OS_WIN

/// The byte that is locked stands where no text reaches: the note can be read beside it.
OVERLAPPED LockedByte() {
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return place;
}

qintptr Open(const QString& path, bool make) {
    const HANDLE file =
        CreateFileW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(path).utf16()),
                    GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    make ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        if (make) {
            Fail(path, qt_error_string(int(GetLastError())));
        }
        return None;
    }
    return reinterpret_cast<qintptr>(file);
}

bool Lock(qintptr file, const QString& path) {
    OVERLAPPED place = LockedByte();
    if (LockFileEx(reinterpret_cast<HANDLE>(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                   &place) != 0) {
        return true;
    }
    if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) {
        Fail(path, qt_error_string(int(GetLastError())));
    }
    return false;
}

/// An open file is not deleted.
bool IsStillThere(qintptr /*file*/, const QString& /*path*/) { return true; }

void Close(qintptr file) noexcept { CloseHandle(reinterpret_cast<HANDLE>(file)); }

/// Refused while somebody else has opened it, who then has the lock.
void LetGo(qintptr file, const QString& path) noexcept {
    Close(file);
    QFile::remove(path);
}

#else

QString Reason() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// A file of another user that may only be read can be locked as well. One that is there is not opened as one to be
/// made, which is refused in folders where everybody may write.
qintptr Open(const QString& path, bool make) {
    constexpr int AnyTries = 100; // it may be deleted between the two
    constexpr mode_t ForAll = 0666;
    const QByteArray name = QFile::encodeName(path);
    for (int attempt = 0; attempt < AnyTries; ++attempt) {
        int file = open(name.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
        if (file < 0 && errno == EACCES) {
            file = open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        }
        if (file < 0 && errno == ENOENT && make) {
            file = open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, ForAll);
            // Whatever the user's mask: one that stays behind must not keep other users out.
            static_cast<void>(file >= 0 && fchmod(file, ForAll) == 0);
        }
        if (file >= 0) {
            return file;
        }
        if (!make) {
            return None;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    Fail(path, errno == ELOOP ? QStringLiteral("è un collegamento simbolico") : Reason());
}

bool Lock(qintptr file, const QString& path) {
    if (flock(int(file), LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK) {
        Fail(path, Reason());
    }
    return false;
}

/// Whoever lets a lock go deletes the file, perhaps after it was opened here: its lock would serve nobody.
bool IsStillThere(qintptr file, const QString& path) {
    struct stat own {};
    struct stat there {};
    return fstat(int(file), &own) == 0 && stat(QFile::encodeName(path).constData(), &there) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

void Close(qintptr file) noexcept { close(int(file)); }

void LetGo(qintptr file, const QString& path) noexcept {
    unlink(QFile::encodeName(path).constData());
    Close(file);
}

#endif

/// The file, locked; none when somebody has its lock.
std::optional<qintptr> OpenLocked(const QString& path) {
    for (;;) {
        const qintptr file = Open(path, true);
        try {
            if (!Lock(file, path)) {
                Close(file);
                return std::nullopt;
            }
        } catch (const ImportError&) {
            Close(file);
            throw;
        }
        if (IsStillThere(file, path)) {
            return file;
        }
        Close(file);
    }
}

} // namespace

std::unique_ptr<FileLock> FileLock::Take(const QString& path, const QString& note) {
    const auto handle = OpenLocked(path);
    if (!handle) {
        return nullptr;
    }
    std::unique_ptr<FileLock> lock(new FileLock(path, *handle));
    QFile file(path); // a note that cannot be written leaves the lock as good as it is
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(note.toUtf8());
    }
    return lock;
}

bool FileLock::IsTaken(const QString& path) {
    const qintptr file = Open(path, false);
    if (file == None) {
        return false;
    }
    bool isFree = false;
    try {
        isFree = Lock(file, path);
    } catch (const ImportError&) { // what cannot be locked is taken for no lock of anybody
        isFree = true;
    }
    Close(file);
    return !isFree;
}

QString FileLock::NoteOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).simplified() : QString();
}

FileLock::~FileLock() { LetGo(m_handle, m_path); }
