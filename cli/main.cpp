#include "cli/cli.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUADRIX_VERSION));
    return cli::Run(QCoreApplication::arguments());
}
