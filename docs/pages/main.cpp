#include "adapters/mappingPages.h"
#include "adapters/registry.h"

#include <QCoreApplication>
#include <QDir>
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

/// Writes the mapping pages into a folder and removes those of modules that are no more.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QTextStream err(stderr);
    if (QCoreApplication::arguments().size() != 2 || !QDir().mkpath(QCoreApplication::arguments().last())) {
        err << "Uso: quadrix-mappings CARTELLA\n";
        return WrongUsage;
    }
    QDir folder(QCoreApplication::arguments().last());
    const auto pages = mappingPages::Pages(registry::All());
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        if (!Write(folder.filePath(page.key()), page.value())) {
            err << folder.filePath(page.key()) << QStringLiteral(": la pagina non si può scrivere\n");
            return 1;
        }
    }
    for (const QString& file : folder.entryList({"*.md"}, QDir::Files)) {
        if (!pages.contains(file)) {
            folder.remove(file);
        }
    }
    return 0;
}
