#pragma once

#include "adapters/contract/run/Origin.h"
#include "core/Session.h"

/// Runs the procedure of that name, over the source that is open, and returns its account.
inline const RunResult& RunProcedure(Session& session, const contract::Origin& origin, const QString& name,
                                     const QString& code = {}, bool reset = false) {
    for (const contract::Procedure& procedure : origin.procedures) {
        if (procedure.name == name) {
            procedure.run(session, code, reset);
            return session.Results.last();
        }
    }
    throw ImportError(origin.module + " non ha la procedura " + name);
}
