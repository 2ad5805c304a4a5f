#pragma once

#include "adapters/contract/run/ImportRun.h"

#include <functional>

namespace contract {

/// What the writer below writes.
std::vector<TableNeed> SheetFormatNeeds();

/// A format of a sheet article.
struct SheetFormat {
    QString article;
    QString code;       ///< CDFMT
    double length = 0;  ///< mm
    double width = 0;   ///< mm
    double weight = 0;  ///< kg; 0: what its measures and the article's thickness weigh, where the density is known
    double density = 0; ///< kg/dm3
    QString description = {};
    QString offcut = {};   ///< code of the offcut that it is; empty for a whole sheet
    QString external = {}; ///< code in the source
    QString old = {};      ///< reference that it had before
    bool isActive = true;
};

/// Writes a format of a sheet article: inserted when the article lacks it, else updated. What it leaves empty or zero
/// stays as it is. Raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
/// @param id gets its RECORD_ID; may be null
RowOutcome WriteSheetFormat(ImportRun& run, const SheetFormat& format, qint64* id = nullptr);

/// The code for a format of a sheet article that another format of the article, of another code of the source, may
/// have: the one that it has already, else the format's own, else that with the next free number behind it, which is
/// logged. A format whose code the source has no more has been given another one there: it is rewritten, and that is
/// logged too.
/// @param isInSource whether the source has a code, of the same sheet
QString FreeFormatCode(ImportRun& run, const SheetFormat& format,
                       const std::function<bool(const QString& external)>& isInSource);

/// What a sheet article is searched by (ARCDR), as every article: its code and description, at most 100 characters.
QString SearchText(const QString& code, const QString& description);

/// A format as stock knows it.
struct KnownFormat {
    QString article; ///< empty: there is none
    QString code;
    QString offcut;
    double length = 0; ///< mm
    double width = 0;  ///< mm
};

/// The format that has a code of the source; with an empty article when there is none. Of several the one of the sheet
/// that the source tells now, else the first. @param sheet gives that sheet's CDART; asked where there are several
KnownFormat FindFormat(ImportRun& run, const QString& externalCode, const std::function<QString()>& sheet = {});
/// Tells which offcuts of other articles earlier imports have written for the code of the source that an offcut has: it
/// is of this one's article now, and they stay. A format that is no offcut is what the product of that code is itself.
void TellFormerOffcuts(ImportRun& run, const SheetFormat& format);

} // namespace contract
