#pragma once

#include "adapters/contract/kinds/ImportTable.h"
#include "tests/support/embedded.h"
#include "tests/support/TestTarget.h"

/// A company and a source of its own.
class Trial : public TestTarget {
public:
    explicit Trial(const QString& source) {
        Session& session = Get();
        session.Source = std::make_unique<ovConnection>();
        session.Source->Errors = &session.Errors;
        session.Errors.Action = ErrorAction::Ignore;
        OpenEmbedded(*session.Source).ExecuteScript(source);
    }

    /// Runs a procedure twice: the second time must leave what the first one wrote.
    const RunResult& Run(const contract::Procedure& procedure, const QString& rows) {
        procedure.run(Get(), {}, false);
        const QStringList before = Rows(rows);
        procedure.run(Get(), {}, false);
        Again = Rows(rows) == before;
        return Get().Results.last();
    }

    bool Again = false; ///< whether the second run left the rows as they were
};

inline contract::Frame FrameNamed(const char* procedure) {
    return {.module = "modImport_Prova", .procedure = procedure};
}
