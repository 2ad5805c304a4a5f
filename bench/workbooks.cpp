// Measures the reading of large workbooks beside the bare libraries: quadrix-bench-workbooks FOLDER [ROWS].

#include "bench/measure.h"
#include "bench/workbookFiles.h"
#include "sources/workbookFile.h"
#include "sql/errors.h"

#include <QDir>
#include <QXmlStreamReader>

#include <cstdio>

#include <freexl.h>
#include <zip.h>

namespace {

constexpr double MemoryLimit = 150; ///< MiB
constexpr double TimeLimit = 2;     ///< times the bare library
constexpr double OdsTimeLimit = 3;  ///< read twice: the names of its sheets stand among their rows

struct Measured {
    const char* ending;
    long rows;
    double timeLimit;
    void (*bare)(const QString& path);
};

[[noreturn]] void Fail(const QString& what) { throw std::runtime_error(what.toStdString()); }

/// Reads what stands in a package as XML, each part to its end.
void ReadPackage(const QString& path) {
    zip_t* package = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, nullptr);
    qint64 texts = 0;
    for (zip_int64_t part = 0; part < zip_get_num_entries(package, 0); ++part) {
        if (!QByteArrayView(zip_get_name(package, part, 0)).endsWith(".xml")) {
            continue;
        }
        zip_file_t* file = zip_fopen_index(package, part, 0);
        QXmlStreamReader xml;
        QByteArray piece(1 << 16, '\0');
        for (zip_int64_t size = 1; size > 0;) {
            size = zip_fread(file, piece.data(), piece.size());
            xml.addData(piece.left(size));
            while (!xml.atEnd()) {
                texts += xml.readNext() == QXmlStreamReader::Characters ? 1 : 0;
            }
        }
        zip_fclose(file);
        if (xml.hasError() && xml.error() != QXmlStreamReader::PrematureEndOfDocumentError) {
            Fail(xml.errorString());
        }
    }
    zip_discard(package);
    if (texts == 0) {
        Fail(QStringLiteral("the bare library has found nothing in ") + path);
    }
}

void ReadWithFreexl(const QString& path) {
    const void* book = nullptr;
    unsigned rows = 0;
    unsigned short columns = 0;
    if (freexl_open(QFile::encodeName(path).constData(), &book) != FREEXL_OK ||
        freexl_select_active_worksheet(book, 0) != FREEXL_OK ||
        freexl_worksheet_dimensions(book, &rows, &columns) != FREEXL_OK) {
        Fail(QStringLiteral("the bare library cannot open ") + path);
    }
    FreeXL_CellValue value;
    for (unsigned row = 0; row < rows; ++row) {
        for (unsigned short column = 0; column < columns; ++column) {
            if (freexl_get_cell_value(book, row, column, &value) != FREEXL_OK) {
                Fail(QStringLiteral("the bare library cannot read a cell of ") + path);
            }
        }
    }
    freexl_close(book);
}

/// Reads the sheet as a source does, and has every value of its rows once.
void ReadAsSource(const QString& path, long rows) {
    try {
        const auto source = sources::OpenWorkbookFile(path, {});
        qint64 found = 0;
        const auto cursor = source->Query(QStringLiteral("SELECT COUNT(*) FROM Articoli"));
        found = cursor->Next() ? cursor->Value(0).toLongLong() : 0;
        if (found != rows) {
            Fail(QStringLiteral("%1 rows instead of %2").arg(found).arg(rows));
        }
    } catch (const Error& error) {
        Fail(error.Message());
    }
}

bool Measure(const Measured& one, const QString& folder) {
    const QString path = QDir(folder).filePath(QStringLiteral("articoli.") + QLatin1String(one.ending));
    if (!QFile::exists(path)) {
        RunApart([&] { WriteWorkbook(path, one.rows); });
    }
    const Cost bare = RunApart([&] { one.bare(path); });
    const Cost source = RunApart([&] { ReadAsSource(path, one.rows); });
    const bool within = source.peak <= MemoryLimit && source.cpu <= one.timeLimit * bare.cpu;
    std::printf("| %-5s | %8ld | %6.1f | %7.2f | %7.2f | %5.2f | %8.1f | %8.1f | %s |\n", one.ending, one.rows,
                static_cast<double>(QFileInfo(path).size()) / (1 << 20), source.cpu, bare.cpu, source.cpu / bare.cpu,
                source.peak, bare.peak, within ? "within the limits" : "BEYOND THE LIMITS");
    std::fflush(stdout);
    return within;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "quadrix-bench-workbooks FOLDER [ROWS]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const long rows = argc > 2 ? std::stol(argv[2]) : 200'000;
    QDir().mkpath(folder);
    std::printf("Limits: %.0f times the bare library (.ods %.0f), %.0f MiB\n", TimeLimit, OdsTimeLimit, MemoryLimit);
    std::printf("| %-5s | %8s | %6s | %7s | %7s | %5s | %8s | %8s |\n", "file", "rows", "MiB", "cpu s", "bare s",
                "ratio", "peak MiB", "bare MiB");
    try {
        bool within = true;
        for (const Measured& one : {Measured{"xlsx", rows, TimeLimit, ReadPackage},
                                    {"xls", std::min(rows, MostRowsOfXls), TimeLimit, ReadWithFreexl},
                                    {"ods", std::min(rows, MostRowsOfXls), OdsTimeLimit, ReadPackage}}) {
            within = Measure(one, folder) && within;
        }
        return within ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
