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
    /// @param singleCode empty for all
    void ReadTwins(const QString& singleCode);
    /// Logs what a join of heads and rows leaves out.
    void TellUnjoined() const;
    /// Raises `ImportError` for a head without a day, and for one that has its rows in common with another.
    /// @param day that its column tells
    void Require(const SourceRow& head, const QVariant& day) const;

private:
    QString TiesOf(const SourceRow& head) const;

    ImportRun& m_run;
    const DocumentsKind& m_kind;
    QSet<QString> m_twins; ///< their ties, in capitals
};

} // namespace contract
