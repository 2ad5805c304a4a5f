#pragma once

#include "app/importFlow.h"
#include "app/report/Proof.h"

namespace proof {

/// A kind of data to be compared: what a button imports, or a procedure alone.
struct Wanted {
    contract::Button button = contract::Button::Cli;
    QString procedure = {}; ///< not empty: this one alone, whatever the button
};

/// Has the questions of an import answered a second time as they were the first. Without it an import that asks is not
/// done twice.
struct Answers {
    std::function<void()> keep;  ///< called before the first time
    std::function<void()> again; ///< called before the second
};

/// Every button of an origin that imports something from its source.
std::vector<Wanted> AllOf(const contract::Origin& origin);
/// The procedures behind a kind.
std::vector<const contract::Procedure*> ProceduresOf(const contract::Origin& origin, const Wanted& wanted);

/// Compares source and Quadrix: each kind is imported once more within a transaction that is taken back, and what that
/// changes is what differs. A row of Quadrix that the source does not give, and that no import wrote, is nobody's
/// fault. What the imports ask is asked; their messages are not shown, and the import log stays as it is. None when
/// the choice is incomplete, which has been told; what goes wrong with a kind stands in it. Counterparties are imported
/// twice: as they are, and anew (`PartiesAnew`).
std::optional<Proof> Make(Session& session, Choice choice, const std::vector<Wanted>& wanted,
                          const Answers& answers = {});

} // namespace proof
