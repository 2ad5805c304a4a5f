#include "sources/libraries.h"

#include <csv.h>
#include <zip.h>

namespace sources {

QVector<Library> SourceLibraries() {
    return {{QStringLiteral("libmdb"), QStringLiteral(QUADRIX_MDB_VERSION)},
            {QStringLiteral("libzip"), QString::fromLatin1(zip_libzip_version())},
            {QStringLiteral("libcsv"), QStringLiteral("%1.%2.%3").arg(CSV_MAJOR).arg(CSV_MINOR).arg(CSV_RELEASE)}};
}

} // namespace sources
