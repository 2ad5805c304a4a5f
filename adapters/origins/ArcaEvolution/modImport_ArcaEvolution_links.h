#pragma once

#include "adapters/contract/kinds/Documents.h"

/// What the documents of Arca Evolution and the links between their rows have in common.
namespace modImport_ArcaEvolution {

/// Of documents to subcontractors, whoever they stand with.
inline const QString WorkMark = QStringLiteral("L");

/// Kind and side of a document. Raises `ImportError` where the side is none.
QString MarkOf(const contract::SourceRow& head);
/// The family of a document that is imported.
const contract::Family& FamilyOf(const contract::SourceRow& head);
/// The accounting year, that of the date when the source has none.
int YearOf(const contract::SourceRow& head);
/// CDCON of a code of the source; empty when nobody has it.
QString PartyOf(Session& session, const QString& code);
contract::Rule SeriesOfNumber();
contract::Rule NumberBeforeSlash();

/// The rows that rows of documents come from, and what a document gives away.
class RowsUnderWay {
public:
    explicit RowsUnderWay(contract::ImportRun& run)
        : m_run(run) {}

    void Begin(const contract::SourceRow& head) {
        m_family = &FamilyOf(head);
        m_gifts = 0;
    }
    void SetOrigin(const contract::SourceRow& row, contract::TargetRow& target);
    void Written(const contract::SourceRow& row, const contract::WrittenRow& written);
    void SetTotals(const contract::SourceRow& head, const contract::WrittenDocument& document);
    /// Links the rows whose origin came behind them, and tells those that have none.
    void LinkRest();

private:
    /// A row whose origin row has not been there yet.
    struct OpenLink {
        const contract::Family& family;
        qint64 row;
        qint64 origin; ///< Id_DORig
    };
    void OpenLinksBefore();
    qint64 OriginRow(const contract::Family& family, qint64 sourceRow);
    void TellUnlinked(const OpenLink& link) const;

    contract::ImportRun& m_run;
    const contract::Family* m_family = nullptr; ///< of the document
    qint64 m_missing = 0; ///< Id_DORig that the row under way comes from and that is not there yet; 0: none
    std::vector<OpenLink> m_openLinks;
    double m_gifts = 0; ///< amount of the rows of the document that are given away
};

} // namespace modImport_ArcaEvolution
