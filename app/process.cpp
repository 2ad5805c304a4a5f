#include "app/process.h"

#include "sources/libraries.h"
#include "sql/libraries.h"

#include <QStringList>
#include <QSysInfo>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace process {

void Protect() {
#ifndef Q_OS_WIN
    umask(S_IRWXG | S_IRWXO);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
#endif
}

QString VersionText(const QString& program) {
    QStringList lines{program + ' ' + QUADRIX_VERSION,
                      QStringLiteral("  compilato: " QUADRIX_BUILD ", " QUADRIX_COMPILER ", ") + QSysInfo::buildAbi(),
                      QStringLiteral("  sistema: ") + QSysInfo::prettyProductName()};
    for (const Library& library : SqlLibraries() + sources::SourceLibraries()) {
        lines.append(QStringLiteral("  %1 %2").arg(library.name, library.version));
    }
    return lines.join('\n');
}

} // namespace process
