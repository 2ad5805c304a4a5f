#include "docs/manual/commandTexts.h"
#include "docs/manual/manualFaults.h"

#include <QCoreApplication>
#include <QSaveFile>
#include <QTextStream>

namespace {

constexpr int WrongUsage = 2;

bool Write(const QString& path, const QString& content) {
    QSaveFile file(path);
    const QByteArray bytes = content.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

/// Fills the pages of docs/manuale that follow the code, and tells what is left to be done by hand.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream err(stderr);
    if (arguments.size() != 3) {
        err << "Uso: quadrix-manual CARTELLA-DEL-PROGETTO QUADRIX-IMPORT-CLI\n";
        return WrongUsage;
    }
    const QDir root(arguments.at(1));
    const auto pages = manual::PagesOfCode(root, manual::CommandTexts(arguments.at(2)));
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        const QString path = root.filePath(QStringLiteral("docs/manuale/") + page.key());
        if (!Write(path, page.value())) {
            err << path << QStringLiteral(": la pagina non si può scrivere\n");
            return 1;
        }
    }
    const QStringList faults = manual::Faults(root);
    for (const QString& fault : faults) {
        err << fault << '\n';
    }
    return faults.isEmpty() ? 0 : 1;
}
