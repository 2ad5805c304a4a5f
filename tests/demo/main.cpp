// Writes the source of every origin of the list into a folder, each with its settings, and "imports.tsv", which tells
// what is imported of it: quadrix-demo-sources FOLDER.

#include "adapters/registry.h"
#include "examples/examples.h"
#include "sql/errors.h"
#include "tests/demo/DemoOrigin.h"
#include "tests/support/files.h"

#include <QCoreApplication>
#include <QDir>

namespace {

void WriteAll(const QString& folder) {
    QStringList imports;
    QString dataSources;
    int number = 0;
    for (const contract::Origin* origin : registry::Origins()) {
        const QString company = QString("D%1").arg(++number, 2, 10, QChar('0'));
        QDir().mkpath(folder + '/' + company);
        DemoOrigin demo(*origin, folder + '/' + company, company);
        demo.Write();
        imports += demo.Imports();
        dataSources += demo.DataSource();
        for (const QString& procedure : demo.WithoutSource()) {
            qWarning("%s: %s non è tra le prove", qPrintable(origin->name), qPrintable(procedure));
        }
    }
    WriteFile(folder + "/imports.tsv", imports.join('\n').toUtf8() + '\n');
    WriteFile(folder + "/odbc.ini", dataSources.toUtf8());
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 || arguments.last().startsWith('-')) {
        qWarning("quadrix-demo-sources FOLDER");
        return 2;
    }
    try {
        WriteAll(QDir(arguments.last()).absolutePath());
        return 0;
    } catch (const ImportError& error) {
        qWarning("%s", qPrintable(error.Message()));
    } catch (const examples::ExampleError& error) {
        qWarning("%s", qPrintable(error.Message()));
    }
    return 1;
}
