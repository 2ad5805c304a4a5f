#include "adapters/mappingPages.h"
#include "adapters/registry.h"
#include "sql/errors.h"

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

/// Writes the mapping pages into a folder, removes those of modules that are no more, and beside the folder the page of
/// all origins.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QTextStream err(stderr);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 || !QDir().mkpath(arguments.at(1))) {
        err << "Uso: quadrix-mappings CARTELLA SORGENTI\n";
        return WrongUsage;
    }
    QDir folder(arguments.at(1));
    try {
        if (!Write(folder.filePath("../origins.md"), mappingPages::OriginsPage(registry::All(), arguments.at(2)))) {
            err << "origins.md: la pagina non si può scrivere\n";
            return 1;
        }
    } catch (const Error& error) {
        err << error.Message() << '\n';
        return 1;
    }
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
