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
    Field supplier = {};  ///< CDCON of who does it: `rules::KnownSupplier`
};

/// The components of a bill. One whose article is not there is left out, and logged.
struct BillComponents {
    ChildTable rows;
    Field article;  ///< its CDART: `rules::ArticleCode` makes it
    Field quantity; ///< per unit of the parent
    Field note = {};
    Field position = {};
    Field phase = {}; ///< key of the phase that consumes it; blank and 0: the first
};

/// An import of bills of materials: a source row is a bill. One whose article is not there is left out, and logged; a
/// bill without phases gets the generic one. A bill that is there is rewritten.
struct Bills {
    Frame frame = {}; ///< %1 bills, %2 phases and %3 components may stand in the completion message
    SourceTable source;
    Field article;        ///< its CDART: `rules::ArticleCode` makes it
    Field sourceKey = {}; ///< without it the code column of the source
    Field revision = {};  ///< without it an article has one bill
    Field active = {};    ///< whether the revision is the one in force
    Field note = {};
    BillComponents components;
    std::optional<BillPhases> phases = {};
    LeavesOut leavesOut = {};
    /// Sets the quantity, note and position of a component beyond its fields.
    std::function<void(ImportRun&, const SourceRow&, Component&)> component = {};
    Needs further = {}; ///< what the hooks read and write
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Bills& declared);
Frame FrameOf(const Bills& declared);

} // namespace contract
