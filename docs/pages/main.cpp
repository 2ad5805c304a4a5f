#include "adapters/mappingPages.h"
#include "adapters/registry.h"
#include "docs/manual/writePage.h"
#include "sql/errors.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

namespace {

constexpr int WrongUsage = 2;

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
        if (!WritePage(folder.filePath("../origins.md"), mappingPages::OriginsPage(registry::All(), arguments.at(2)))) {
            return 1;
        }
    } catch (const Error& error) {
        err << error.Message() << '\n';
        return 1;
    }
    const auto pages = mappingPages::Pages(registry::All());
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        if (!WritePage(folder.filePath(page.key()), page.value())) {
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
