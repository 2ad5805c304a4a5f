#pragma once

#include "adapters/contract/run/RowSelection.h"
#include "sources/DecimalMarks.h"

namespace contract {

/// Reads numbers that were mended by hand as they would be read in the source: what the marks of "2.000" divide is
/// told by the other values of the column, which are looked at once a number asks for it.
class MendedNumbers {
public:
    /// @param open reads the rows of the source from the first one
    /// @param log takes what cannot be known of a number
    MendedNumbers(std::function<Recordset()> open, std::function<void(const QString&)> log)
        : m_open(std::move(open)),
          m_log(std::move(log)) {}

    /// @param row name of the row, for the log
    /// @return a text where the column has texts, else a number; what was made of it without its column where it is
    /// none. Raises `SqlError` when the source cannot be read.
    QVariant Read(const QString& column, const RowSelection::Row::Mended& mended, const QString& row);

private:
    void LookAtSource();

    std::function<Recordset()> m_open;
    std::function<void(const QString&)> m_log;
    QStringList m_columns; ///< of the source; empty until it is looked at
    sources::DecimalMarks m_marks{0,
                                  {QStringLiteral("scriverlo senza, nel file degli scarti o nella sorgente"),
                                   QStringLiteral("se non è un numero, correggerlo nella sorgente e importare di nuovo "
                                                  "gli scarti")}};
};

} // namespace contract
