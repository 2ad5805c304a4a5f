#include "sources/findFile.h"

#include <QDir>
#include <QFileInfo>

namespace sources {

QString FindFile(const QString& path) {
    const QFileInfo wanted(path);
    const auto files = wanted.dir().entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo& file : files) {
        if (file.fileName().compare(wanted.fileName(), Qt::CaseInsensitive) == 0) {
            return file.filePath();
        }
    }
    return {};
}

} // namespace sources
