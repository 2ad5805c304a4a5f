#include "sources/workbook/Workbook.h"

#include "sources/workbook/Ods.h"
#include "sources/workbook/Xls.h"
#include "sources/workbook/Xlsx.h"
#include "sql/errors.h"

#include <QFile>

#include <algorithm>
#include <numeric>

namespace sources {

namespace {

constexpr int Letters = 26;

/// What a file is that is no workbook, by what it begins with.
QString OtherKind(const QByteArray& start) {
    const QByteArray text = start.trimmed().toLower();
    if (start.isEmpty()) {
        return QStringLiteral("il file è vuoto");
    }
    if (start.startsWith('\x09') && start.size() > 1 && start.at(1) <= 4) {
        return QStringLiteral("è di una versione di Excel che non si legge (prima della 5.0): aprirlo con Excel e "
                              "salvarlo come .xlsx");
    }
    if (text.startsWith("<?xml") || text.startsWith("\xef\xbb\xbf<?xml")) {
        return QStringLiteral("è un file XML: aprirlo con Excel e salvarlo come .xlsx");
    }
    if (text.startsWith('<')) {
        return QStringLiteral("è una pagina HTML con il nome di un foglio di Excel: aprirlo con Excel e salvarlo come "
                              ".xlsx");
    }
    return QStringLiteral("non è una cartella di lavoro di Excel; se è un testo con separatori, aprirlo con Excel e "
                          "salvarlo come .xlsx");
}

std::unique_ptr<Workbook> Open(const QString& path, const QString& codePage) {
    constexpr qint64 shown = 512;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw ImportError(
            QStringLiteral("il file non si può aprire (%1): controllare che esista e che nessun programma "
                           "lo tenga bloccato")
                .arg(file.errorString()));
    }
    const QByteArray start = file.read(shown);
    file.close();
    if (start.startsWith("PK")) {
        Package package(path);
        return Ods::Is(package) ? std::unique_ptr<Workbook>(std::make_unique<Ods>(std::move(package)))
                                : std::make_unique<Xlsx>(path);
    }
    if (CompoundFile::IsStart(start)) {
        return std::make_unique<Xls>(path, codePage);
    }
    throw ImportError(OtherKind(start));
}

} // namespace

std::unique_ptr<Workbook> OpenWorkbook(const QString& path, const QString& codePage) {
    try {
        auto workbook = Open(path, codePage);
        if (workbook->Sheets().isEmpty()) {
            throw ImportError(QStringLiteral("non ha nessun foglio di dati"));
        }
        return workbook;
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1'").arg(path));
        throw;
    }
}

QList<int> PlacedSheets(const Workbook& workbook) {
    QList<int> sheets(workbook.Sheets().size());
    std::iota(sheets.begin(), sheets.end(), 0);
    std::stable_partition(sheets.begin(), sheets.end(), [&workbook](int sheet) { return !workbook.IsHidden(sheet); });
    return sheets;
}

QString ColumnLetters(int column) {
    QString letters;
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / Letters) {
        letters.prepend(QChar(u'A' + (rest - 1) % Letters));
    }
    return letters;
}

int ColumnOfLetters(QStringView reference) {
    int number = 0;
    for (const QChar letter : reference) {
        const int place = letter.toUpper().unicode() - u'A' + 1;
        if (place < 1 || place > Letters || number > MostColumns) {
            break;
        }
        number = number * Letters + place;
    }
    return number > MostColumns ? -1 : number - 1;
}

} // namespace sources
