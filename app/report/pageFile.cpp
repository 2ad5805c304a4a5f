#include "app/report/pageFile.h"

#include "app/report/html.h"
#include "sql/errors.h"
#include "sql/ownFile.h"

#include <QDir>
#include <QRegularExpression>

namespace proof {

namespace {

[[noreturn]] void Refuse(const QString& path, const QString& why) {
    throw ImportError(QStringLiteral("Verbale '%1': %2").arg(QDir::toNativeSeparators(path), why));
}

} // namespace

void WritePage(QFile& file, const QString& path, const Proof& proof) {
    const QByteArray page = Html(proof).toUtf8();
    if (file.write(page) != page.size() || !file.flush()) {
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
    QFile file;
    if (const QString trouble = ownFile::Open(file, path, ownFile::Start::Anew); !trouble.isEmpty()) {
        Refuse(path, trouble);
    }
    WritePage(file, path, proof);
    return path;
}

} // namespace proof
