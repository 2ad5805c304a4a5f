#include "app/check.h"

#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/SourceMemory.h"
#include "adapters/contract/write/Cam.h"
#include "app/connectSource.h"
#include "sql/names.h"

#include <QScopeGuard>

namespace check {

namespace {

/// Looks at the CAM databases of a procedure that opens no source of the origin: the one in use and, for a copy, the
/// old one. Raises what their opening raises.
contract::Lacks MissingFromCams(Session& session, const contract::Procedure& procedure) {
    contract::Lacks lacks;
    const bool copies = procedure.name.contains(QLatin1String("FromLantekToLantek"));
    for (const QString& prefix :
         copies ? QStringList{"Old_CAM", contract::CurrentCam} : QStringList{contract::CurrentCam}) {
        session.Source = contract::qdxCamOpenConnection(session, prefix);
        const contract::Lacks ofCam = contract::LacksOf(session, procedure.needs);
        for (const QString& each : ofCam.necessary) {
            lacks.necessary.append(prefix + ": " + each);
        }
        for (const QString& each : ofCam.optional) {
            lacks.optional.append(prefix + ": " + each);
        }
        for (const QString& each : ofCam.narrow) {
            names::AddOnce(lacks.narrow, each);
        }
        for (const QString& each : ofCam.demanded) {
            names::AddOnce(lacks.demanded, each);
        }
        session.Source.reset();
    }
    return lacks;
}

/// Looks at the source of a procedure, which is opened when it is not, and at the company's tables; none when it cannot
/// be opened, which has been told.
/// @param open the origin whose source was opened last
std::optional<Finding> LookFor(Session& session, const Choice& choice, const contract::Procedure& procedure,
                               const contract::Origin*& open) {
    if (const contract::Origin* source = contract::SourceOf(*choice.origin, procedure)) {
        const bool isOpen = session.Source && open == source;
        open = source;
        if (!isOpen && ConnectSource(session, *source) != SourceOutcome::Opened) {
            return std::nullopt;
        }
        return Guarded(session.Errors, "frmImport", "ConnectSource", std::optional<Finding>(), [&] {
            return std::optional(Finding{&procedure, contract::LacksOf(session, procedure.needs),
                                         contract::ChangesOfSource(session, choice.origin->module, procedure.needs)});
        });
    }
    CloseSource(session);
    return Guarded(session.Errors, "frmImport", "ConnectSource", std::optional<Finding>(), [&] {
        return std::optional(Finding{&procedure, procedure.needs.reads.empty()
                                                     ? contract::LacksOf(session, procedure.needs)
                                                     : MissingFromCams(session, procedure)});
    });
}

} // namespace

std::optional<std::vector<Finding>> Run(Session& session, const Choice& choice,
                                        const std::vector<const contract::Procedure*>& procedures) {
    if (!CheckData(session, choice)) {
        return std::nullopt;
    }
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    std::vector<Finding> findings;
    const contract::Origin* open = session.Source ? choice.origin : nullptr;
    for (const contract::Procedure* procedure : procedures) {
        const auto finding = LookFor(session, choice, *procedure, open);
        if (!finding) {
            return std::nullopt;
        }
        findings.push_back(*finding);
    }
    return findings;
}

QStringList Lines(const Finding& finding, const QString& name) {
    const contract::Lacks& lacks = finding.lacks;
    const bool isAll = lacks.optional.isEmpty() && lacks.narrow.isEmpty() && lacks.demanded.isEmpty();
    const QString verdict = !lacks.necessary.isEmpty() ? QStringLiteral(": manca")
                            : isAll                    ? QStringLiteral(": c'è tutto")
                                                       : QStringLiteral(": si può importare");
    QStringList lines{QString(name + verdict)};
    const auto add = [&lines](const QString& heading, const QStringList& missing) {
        lines += missing.isEmpty() ? QStringList() : QStringList(heading);
        for (const QString& each : missing) {
            lines.append("    " + each);
        }
    };
    add("  Mancano, necessarie:", lacks.necessary);
    add("  Mancano, facoltative:", lacks.optional);
    add("  Colonne di Quadrix con meno cifre (il database arrotonda i numeri che non ci stanno, o li rifiuta):",
        lacks.narrow);
    add("  Colonne di Quadrix obbligatorie, che nessuna importazione scrive (senza un valore predefinito il database "
        "rifiuta le righe nuove):",
        lacks.demanded);
    for (const QString& change : finding.changes) {
        lines.append("  " + change);
    }
    return lines;
}

} // namespace check
