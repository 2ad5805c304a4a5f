#include "sources/libraries.h"

#include <csv.h>
#include <xlsxwriter.h>
#include <zip.h>

namespace sources {

QVector<Library> SourceLibraries() {
    return {{QStringLiteral("libmdb"), QStringLiteral(QUADRIX_MDB_VERSION)},
            {QStringLiteral("libzip"), QString::fromLatin1(zip_libzip_version())},
            {QStringLiteral("libxlsxwriter"), QStringLiteral(LXW_VERSION)},
            {QStringLiteral("libcsv"), QStringLiteral("%1.%2.%3").arg(CSV_MAJOR).arg(CSV_MINOR).arg(CSV_RELEASE)}};
}

} // namespace sources
