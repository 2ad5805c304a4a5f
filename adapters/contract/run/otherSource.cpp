#include "adapters/contract/run/otherSource.h"

#include <algorithm>

namespace contract {

namespace {

/// What runs a procedure, and whose source it reads.
struct RunOver {
    const Origin* source;
    std::function<void(Session&, const QString&, bool)> run;

    void operator()(Session& session, const QString& singleCode, bool reset) const { run(session, singleCode, reset); }
};

} // namespace

Procedure OverSourceOf(const Origin& other, Procedure procedure) {
    procedure.run = RunOver{&other, procedure.run};
    return procedure;
}

const Origin* SourceOf(const Origin& origin, const Procedure& procedure) {
    if (!procedure.opensSource) {
        return nullptr;
    }
    const auto* over = procedure.run.target<RunOver>();
    return over == nullptr ? &origin : over->source;
}

const Origin* FirstSourceOf(const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const auto first = std::find_if(procedures.begin(), procedures.end(),
                                    [&](const Procedure* each) { return SourceOf(origin, *each) != nullptr; });
    return first == procedures.end() ? nullptr : SourceOf(origin, **first);
}

} // namespace contract
