#pragma once

#include "app/importFlow.h"

/// The check of what an import would use, and its rehearsal: nothing that they do to the database stays.
namespace check {

/// What a procedure uses and does not find, and what has changed.
struct Finding {
    const contract::Procedure* procedure = nullptr;
    contract::Lacks lacks;
    QStringList changes = {}; ///< of its tables of the source since the last import, a line each
};

/// Looks at what each procedure reads and writes, in the source, which is opened, and in the company of the choice.
/// None when the choice is incomplete or the source cannot be opened, which has been told then.
std::optional<std::vector<Finding>> Run(Session& session, const Choice& choice,
                                        const std::vector<const contract::Procedure*>& procedures);

/// What was found of a procedure, in lines of text under its name.
QStringList Lines(const Finding& finding, const QString& name);

} // namespace check
