#include "app/history/mayUndo.h"

#include "adapters/registry.h"
#include "core/Trial.h"

#include <algorithm>

namespace history {

namespace {

/// Resets and merges keep no images of what they write over; a sequence may begin with one.
bool IsImport(const Run& run) {
    static const QStringList own{"frmImport", "modImport", "modMain"};
    return run.procedures.empty() ||
           std::any_of(run.procedures.begin(), run.procedures.end(),
                       [](const ProcedureRun& procedure) { return !own.contains(procedure.result.module); });
}

/// Whether nothing of a run stands in Quadrix, whatever it has done.
bool IsOutside(const Run& run) {
    return !run.procedures.empty() && std::all_of(run.procedures.begin(), run.procedures.end(), WorksOutside);
}

} // namespace

bool WorksOutside(const ProcedureRun& run) {
    for (const contract::Origin* origin : registry::All()) {
        for (const contract::Procedure& procedure : origin->procedures) {
            if (origin->module == run.result.module && procedure.name == run.result.procedure) {
                return procedure.needs.writes.empty() && procedure.needs.mappings.empty();
            }
        }
    }
    return false;
}

void CheckMayUndo(Session& session, const Run& run) {
    const auto refuse = [&run](const QString& why) {
        throw ImportError(QStringLiteral("l'esecuzione %1 %2").arg(QString::number(run.id), why));
    };
    if (run.isTrial) {
        refuse(QStringLiteral("era una prova: non ha lasciato nulla da annullare"));
    }
    if (run.isElsewhere) {
        refuse(ElsewhereText(run));
    }
    if (run.isUnderWay) {
        refuse(QStringLiteral("è ancora in corso"));
    }
    if (!IsImport(run)) {
        refuse(
            QStringLiteral("non è un'importazione: ciò che ha svuotato o fuso torna solo con una copia del database"));
    }
    if (IsOutside(run)) {
        refuse(QStringLiteral("ha scritto soltanto nel database del CAM, fuori da Quadrix: ciò che vi ha copiato o "
                              "svuotato si riporta com'era da lì, o con una sua copia"));
    }
    for (const ProcedureRun& procedure : run.procedures) {
        if (!procedure.undone.isEmpty()) {
            refuse(QStringLiteral("è già stata annullata (%1)").arg(procedure.undone));
        }
    }
    if (const QStringList tables = TablesWithoutTransactions(session, run.company); !tables.isEmpty()) {
        refuse(
            QStringLiteral("non si può annullare, nemmeno per prova: ciò che si scrive in %1 non si può riportare "
                           "com'era se l'annullamento non riesce per intero. Le tabelle devono essere di un tipo con "
                           "transazioni, come InnoDB")
                .arg(tables.join(QStringLiteral(", "))));
    }
}

bool CanUndo(const Run& run) {
    return !run.isTrial && !run.isElsewhere && !run.isUnderWay && !run.procedures.empty() && IsImport(run) &&
           !IsOutside(run) &&
           std::all_of(run.procedures.begin(), run.procedures.end(),
                       [](const ProcedureRun& procedure) { return procedure.undone.isEmpty(); });
}

} // namespace history
