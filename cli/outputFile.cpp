#include "cli/outputFile.h"

#include "sql/errors.h"
#include "sql/ownFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace cli {

namespace {

/// Whether a file may be written over without a loss.
bool IsOfKind(const QString& path, const QString& firstLine) {
    QFile file(path);
    if (!QFileInfo::exists(path) || QFileInfo(path).size() == 0) {
        return true;
    }
    const QByteArray begin = firstLine.toUtf8() + '\n';
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(begin.size()) == begin;
}

/// An absolute path without links in its folders, which may not be there.
QString Plain(const QString& path) {
    const QFileInfo info(path);
    const QString folder = info.absoluteDir().canonicalPath();
    return folder.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : QDir(folder).filePath(info.fileName());
}

bool IsTaken(const QString& path, const QStringList& taken) {
    return std::any_of(taken.cbegin(), taken.cend(), [plain = Plain(path)](const QString& each) {
        return Plain(each).compare(plain, Qt::CaseInsensitive) == 0;
    });
}

[[noreturn]] void Refuse(const QString& path, const OutputKind& kind, const QString& why) {
    throw ImportError(QStringLiteral("%1 '%2': %3").arg(kind.name, QDir::toNativeSeparators(path), why));
}

/// Refuses a path that is kept for something else.
void RefuseOther(const QString& path, const OutputKind& kind) {
    if (IsTaken(path, kind.taken)) {
        Refuse(path, kind,
               QStringLiteral("è un file del programma, o il suo database o l'origine: indicarne un altro"));
    }
    if (!IsOfKind(path, kind.firstLine)) {
        Refuse(path, kind, QStringLiteral("esiste già e contiene altro: non viene sovrascritto, indicarne un altro"));
    }
}

} // namespace

void OpenOutput(QFile& file, const QString& path, const OutputKind& kind) {
    RefuseOther(path, kind);
    if (const QString trouble = ownFile::Open(file, path, ownFile::Start::Anew); !trouble.isEmpty()) {
        Refuse(path, kind, trouble);
    }
}

void CheckOutput(const QString& path, const OutputKind& kind) {
    RefuseOther(path, kind);
    if (const QString obstacle = ownFile::Obstacle(path); !obstacle.isEmpty()) {
        Refuse(path, kind, obstacle);
    }
    QSaveFile probe(path); // goes without a trace
    if (!probe.open(QIODevice::WriteOnly)) {
        Refuse(path, kind, probe.errorString());
    }
}

} // namespace cli
