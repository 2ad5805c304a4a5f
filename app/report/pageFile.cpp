#include "app/report/pageFile.h"

#include "app/report/html.h"
#include "sql/errors.h"
#include "sql/ownFile.h"

#include <QDir>
#include <QRegularExpression>
#include <QSaveFile>

namespace proof {

namespace {

[[noreturn]] void Refuse(const QString& path, const QString& why) {
    throw ImportError(QStringLiteral("Verbale '%1': %2").arg(QDir::toNativeSeparators(path), why));
}

} // namespace

void WritePage(const QString& path, const Proof& proof) {
    if (const QString obstacle = ownFile::Obstacle(path); !obstacle.isEmpty()) {
        Refuse(path, obstacle);
    }
    const QByteArray page = Html(proof).toUtf8();
    QSaveFile file(path); // a page that is there stays until this one is whole
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(page) != page.size() || !file.commit()) {
        Refuse(path, file.errorString());
    }
}

QString KeepPage(const QString& folder, const Proof& proof) {
    static const QRegularExpression unusual(QStringLiteral("[^\\w .-]"));
    const QString name =
        QStringLiteral("Quadratura %1 %2 %3.html")
            .arg(proof.companyCode, proof.origin, proof.ended.toString(QStringLiteral("yyyy-MM-dd HHmmss")));
    const QString path = QDir(folder).filePath(QString(name).replace(unusual, QStringLiteral("_")));
    QDir().mkpath(folder);
    WritePage(path, proof);
    return path;
}

} // namespace proof
