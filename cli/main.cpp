#include "app/process.h"
#include "cli/cli.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    process::Protect();
    const QCoreApplication application(argc, argv);
    return cli::Run(QCoreApplication::arguments());
}
