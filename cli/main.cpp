#include "cli/cli.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return cli::Run(QCoreApplication::arguments());
}
