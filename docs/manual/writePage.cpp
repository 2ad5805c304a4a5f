#include "docs/manual/writePage.h"

#include <QSaveFile>
#include <QTextStream>

bool WritePage(const QString& path, const QString& page) {
    QSaveFile file(path);
    const QByteArray bytes = page.toUtf8();
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    if (!isWritten) {
        QTextStream(stderr) << path << QStringLiteral(": la pagina non si può scrivere\n");
    }
    return isWritten;
}
