#pragma once

#include "adapters/contract/run/Origin.h"

/// Workbooks that the origin "Excel" reads, to be filled in by who has the data.
namespace sheetTemplate {

/// The imports of an origin that have a template; empty for every origin but "Excel".
std::vector<contract::Button> ButtonsOf(const contract::Origin& origin);

/// What was written.
struct Written {
    QString sheet;
    qsizetype columns = 0;
    QStringList lists; ///< titles of the codes that are offered
    qsizetype codes = 0;

    QString Text(const QString& path) const; ///< for the operator
};

/// Writes the template of an import: the headers that it reads with what each is, and a row as an example, which can be
/// imported as it is. Raises `ImportError` naming the path: it does not end in ".xlsx", cannot be written, or holds
/// something else than a template that nobody has filled in.
/// @param session whose company, which is under work, has the codes that the columns offer; null: none are offered
Written Write(Session* session, contract::Button button, const QString& path);

} // namespace sheetTemplate
