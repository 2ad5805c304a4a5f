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

namespace {

/// What the compiler says that it has built in; a build to work with has nothing.
QStringList Protections() {
    QStringList protections;
#if defined(__SSP_STRONG__) || defined(__SSP_ALL__)
    protections.append(QStringLiteral("stack protector"));
#endif
#if defined(_FORTIFY_SOURCE) && _FORTIFY_SOURCE > 0
    protections.append(QStringLiteral("fortify %1").arg(_FORTIFY_SOURCE));
#endif
#if defined(__pie__) || defined(__pic__)
    protections.append(QStringLiteral("PIE"));
#endif
#ifndef NDEBUG
    protections.append(QStringLiteral("asserzioni"));
#endif
    return protections;
}

} // namespace

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
                      QStringLiteral("  opzioni: ") + Protections().join(QStringLiteral(", ")),
                      QStringLiteral("  sistema: ") + QSysInfo::prettyProductName()};
    for (const Library& library : SqlLibraries() + sources::SourceLibraries()) {
        lines.append(QStringLiteral("  %1 %2").arg(library.name, library.version));
    }
    return lines.join('\n');
}

} // namespace process
