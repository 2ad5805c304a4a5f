#pragma once

#include "adapters/contract/kinds/documentsKind.h"

namespace contract {

/// "colonne 'A', 'B'": how an error names where it comes from.
QString ColumnNames(const QStringList& columns);

/// What the heads of a source must have to become documents.
class DocumentChecks {
public:
    DocumentChecks(ImportRun& run, const DocumentsKind& kind)
        : m_run(run),
          m_kind(kind) {}

    /// Reads which heads have in common what their rows name them by, before the first of them.
    /// @param singleCode empty for all @param leavesOut heads that have no rows, for they are left out; may be null
    void ReadTwins(const QString& singleCode, const LeavesOut& leavesOut);
    /// Logs rows without their head, and what else a join of heads and rows leaves out.
    void TellUnjoined() const;
    /// Raises `ImportError` for a head without a day, and for one that has its rows in common with another.
    /// @param day that its column tells
    void Require(const SourceRow& head, const QVariant& day) const;
    /// The year of a document that has a day. One of two digits is that of the day, when this ends with them. Raises
    /// `ImportError` for what is no year, and for two digits that the day's does not end with.
    int YearOf(const SourceRow& head) const;

private:
    bool IsTwin(const SourceRow& ties, const LeavesOut& leavesOut) const;
    QString TiesOf(const SourceRow& head) const;

    ImportRun& m_run;
    const DocumentsKind& m_kind;
    QSet<QString> m_twins; ///< their ties, in capitals
};

} // namespace contract
