#include "docs/manual/commandTexts.h"
#include "docs/manual/manualFaults.h"
#include "docs/manual/writePage.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

constexpr int WrongUsage = 2;

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
    const QList<manual::CommandText> commands = manual::CommandTexts(arguments.at(2));
    if (commands.isEmpty()) {
        err << arguments.at(2) << QStringLiteral(": non dice i suoi comandi\n");
        return 1;
    }
    const auto pages = manual::PagesOfCode(root, commands);
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        if (!WritePage(root.filePath(QStringLiteral("docs/manuale/") + page.key()), page.value())) {
            return 1;
        }
    }
    const QStringList faults = manual::Faults(root);
    for (const QString& fault : faults) {
        err << fault << '\n';
    }
    return faults.isEmpty() ? 0 : 1;
}
