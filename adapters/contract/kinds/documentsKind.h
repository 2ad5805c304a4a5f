#pragma once

#include "adapters/contract/kinds/Documents.h"

namespace contract {

/// The causes of kinds of documents, each once; those that the documents tell are not among them.
QStringList CausesOf(const std::vector<DocumentKind>& kinds);
/// Their families, each once.
std::vector<Family> FamiliesOf(const std::vector<DocumentKind>& kinds);

/// What a row of a document is told by: its number, without one its article.
DocumentRow IdentityOf(Session& session, const DocumentRowFields& fields, const SourceRow& row);

/// The declaration with what follows from it; the procedure and its needs live on it.
class DocumentsKind {
public:
    explicit DocumentsKind(Documents documents);

    contract::Needs Needs() const;
    /// The kind of a mark; null for one that is not imported.
    const DocumentKind* KindOf(const QString& mark) const;

    Documents declared;
    QString headCondition; ///< as it is declared, without that on the rows
    QString rowCondition;  ///< as it is declared, over J1
    QStringList ties;      ///< columns of the heads that the rows name; none where a table has them both
    /// Columns that are not written for each head or row: written over, those that are not are emptied.
    QStringList furtherOfHead;
    QStringList furtherOfRow;
    std::vector<Mapping> pages; ///< with the named fields
    Mapping head;
    Mapping row;
    std::optional<ProductionOrderWriter> production = {};
};

} // namespace contract
