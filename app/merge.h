#pragma once

#include "app/startUp.h"

namespace modMain {

/// How a counterparty of the source company found its counterparty in the destination.
enum class MergeCriterion { VatNumber, TaxCode, Name, New };
inline constexpr int MergeCriterionCount = 4;

/// "PARTITA IVA", "CODICE FISCALE", "RAGIONE SOCIALE", "NUOVO!!!!".
QString MergeCriterionText(MergeCriterion criterion);

/// A counterparty of the source company and the one it becomes.
struct MergeMatch {
    QString oldCode;
    QString oldName;
    QString newCode;
    QString newName;
    MergeCriterion criterion = MergeCriterion::New;
    bool isRecognisable = true; ///< has a name or a number; another merge finds no copy of one that has not
};

/// A merge with references, as the target database remembers it (table SYS_FUS).
struct EarlierMerge {
    qint64 id = 0; ///< RECORD_ID
    Company from;
    Company to; ///< without a name when it is no longer there
    QDateTime begun;
    QDateTime ended; ///< invalid: it was interrupted
    QString by;      ///< who was at work, at which machine

    bool IsDone() const { return ended.isValid(); }
};

/// What a merge did, or would do.
struct MergeResult {
    RunResult::Outcome outcome = RunResult::Outcome::Failed;
    Company from;
    Company to;
    std::optional<EarlierMerge> earlier;       ///< the last merge with references out of the source company
    std::optional<EarlierMerge> ofDestination; ///< the last one out of the destination
    bool takesUp = false;                      ///< completes a merge with references that was interrupted
    QVector<MergeMatch> matches;  ///< every counterparty of the source, by old code; empty before all are known
    qint64 merged = 0;            ///< how many of them were dealt with, from the first
    QMap<QString, qint64> copied; ///< rows written into the destination, by bare table name
    qint64 referencesUpdated = 0; ///< rows of the source company that were re-pointed
    Notes notes;                  ///< what the merge log tells beside the matches

    /// How many of the matches were found so.
    qint64 Count(MergeCriterion criterion) const;
};

/// What a merge does although an earlier one with references speaks against it: for companies that have been filled
/// anew since then.
struct MergeConsent {
    bool again = false;      ///< merges and re-points the references of a source company that was merged already
    bool intoMerged = false; ///< copies into a destination that was itself merged into another company
};

/// Merges the counterparties of a company into another of the same database. Each is matched by VAT number, else tax
/// code, else part of the name; a number of one repeated character, such as "00000000000", matches nobody. One without
/// a match is copied under the destination's next code, with its contacts and
/// branches and the telephone numbers and web addresses of all of them. A copied code of another counterparty (the
/// preferred carrier) becomes that one's new code; one that is no counterparty of the source is kept and noted.
///
/// On request the columns of the source company's tables that hold counterparty codes (dictionary SYS_SYS) are
/// re-pointed to the new codes. A re-pointed code is written with "X" for "0" until all are done, which tells it from
/// an old code that is still to come; a run that fails or is cancelled leaves such codes, and the next run completes
/// them. It finds what the first has copied as it finds everybody; a copy without name and numbers is not found, and
/// made again: each one is noted.
///
/// After a run that ended well the codes are new ones, and re-pointing them again would lead them astray. Contacts,
/// branches, numbers and addresses bear new codes too: a counterparty that is copied now would get those of another
/// one. The database remembers the run, and a further one is an error before anything is written when it would re-point
/// or copy. So is one that would copy into a company whose rows bear the codes of another since a merge out of it. A
/// code in the references that no counterparty of the source has means somebody else afterwards, or nobody: it is
/// noted.
///
/// Each counterparty is merged as a whole or not at all. The matches are written to the merge log (`MergeLogFile`).
/// @param from,to company codes. Unknown ones, twice the same, a code that is not six digits, tables or columns that
/// one of the companies lacks, and a merge into a third company that was interrupted are errors before anything is
/// written
/// @param result what was done, also after an error; may be null
/// @return whether it ran to its end; errors are reported under "modMain", "FusioneControparti"
bool FusioneControparti(Session& session, const QString& from, const QString& to, bool updateReferences,
                        MergeResult* result = nullptr, const MergeConsent& consent = {});

/// The matches that a merge would make; writes nothing. Errors as `FusioneControparti`, but an earlier merge is only
/// told in the result.
MergeResult PreviewFusioneControparti(Session& session, const QString& from, const QString& to, bool updateReferences);

/// "C:\fusione.log" on Windows, else "fusione.log" in the folder of the import log.
QString MergeLogFile(const Session& session);

} // namespace modMain
