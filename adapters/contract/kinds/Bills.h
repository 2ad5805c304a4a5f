#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "adapters/contract/write/Bill.h"

namespace contract {

/// The phases of a bill, in a table of their own or told by its components, each once. A number that comes again, or is
/// missing, gives way to the next free one, and is logged.
struct BillPhases {
    ChildTable rows;
    Field key;         ///< by which the components name it
    Field number = {}; ///< without it they count by tens
    Field work = {};
    Field note = {};
    Field setUpTime = {}; ///< minutes
    Field unitTime = {};  ///< minutes
    Field cost = {};      ///< per hour
    // One of these two that is blank is cleared; one that is told and not known leaves what Quadrix has.
    Field supplier = {}; ///< CDCON of who does it: `rules::KnownSupplier`
    Field machine = {};  ///< CDMAC of the machine
    Lines lines = {};    ///< further columns of DIS_FAS
    /// Whether the components of a phase that is done outside go there: they are marked as subcontracted then.
    bool sendsComponents = false;
    /// Whether it is done outside, where the source tells that beside the supplier; without it what a supplier does is.
    /// One that is done inside has no supplier.
    Field isOutside = {};
};

/// The components of a bill. One whose article is not there is left out, and logged.
struct BillComponents {
    ChildTable rows;
    Field article;   ///< its CDART: `rules::ArticleCode` makes it
    Field quantity;  ///< per unit of the parent
    Field from = {}; ///< first day on which it counts; one whose day is still to come is left out, and logged
    Field note = {};
    Field position = {};
    Field phase = {}; ///< key of the phase that consumes it; blank and 0: the first
    Field until = {}; ///< last day on which it counts; one whose day is over is left out, and logged
    Repeated repeated = Repeated::Replaces;
    Lines lines = {}; ///< further columns of DIS_COM
};

/// An import of bills of materials: a source row is a bill. One whose article is not there is left out, and logged; a
/// bill without phases gets the generic one. A bill that is there is rewritten.
struct Bills {
    Frame frame = {}; ///< %1 bills, %2 phases and %3 components may stand in the completion message
    SourceTable source;
    Field article;        ///< its CDART: `rules::ArticleCode` makes it
    Field sourceKey = {}; ///< without it the code column of the source
    /// Without it an article has one bill. Of several that become the same number the one in force counts, else the
    /// first; the log tells the other.
    Field revision = {};
    Field active = {}; ///< whether the revision is the one in force
    /// Whether it is that alone: other revisions that imports wrote lose it, also where the source has them no more.
    bool oneInForce = false;
    Field note = {};
    Lines lines = {}; ///< further columns of DIS_BAS
    BillComponents components;
    std::optional<BillPhases> phases = {};
    /// Whether the source has all of the bills, so that one of an earlier import that is not in it is told; false for a
    /// file of some of them.
    bool hasAll = true;
    /// Why the bills of an article behind its first are left out, in the operator's words; empty: they rewrite it.
    QString furtherRows = {};
    LeavesOut leavesOut = {};
    /// Sets the quantity, note and position of a component beyond its fields.
    std::function<void(ImportRun&, const SourceRow&, Component&)> component = {};
    /// Writes what the bill has beyond the declaration, behind its phases and components.
    std::function<void(ImportRun&, BillWriter&, const SourceRow&)> after = {};
    Needs further = {}; ///< what the hooks read and write
};

/// Where a revision stands among those of its article: by its number, 0 for any other text, and by that text, in
/// capitals; equal for those that are the same one, such as "1" and "01".
std::pair<qint64, QString> PlaceOfRevision(const QString& text);

/// The number of a revision: 0 for a text that is no whole number, which is logged unless it is blank.
qint64 NumberOfRevision(Session& session, const QString& text);

namespace rules {

/// A revision that is a whole number; 0 for any other text, which is logged unless it is blank.
Rule RevisionNumber();
/// The sequence of a phase that the source counts 1, 2, 3: 10, 20, 30; a blank one and 0 belong to the first.
Rule PhaseInTens();

/// Whether a revision is the newest of its article: the highest number, of equal ones and of those that are none the
/// last text. @param revisions rows that have those of the article @param column of the revision, in both
/// @param counts which of those rows tell one; none: all of them
Rule IsNewestRevision(const ChildTable& revisions, const QString& column,
                      const std::function<bool(Session&, const SourceRow&)>& counts = {});

/// The factor by which a component allows for a waste in percent (DCCOE): 5 gives 1.05, blank 1. Raises `ImportError`
/// when it is no number.
Rule WasteFactor();

} // namespace rules

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Bills& declared);
Frame FrameOf(const Bills& declared);

} // namespace contract
