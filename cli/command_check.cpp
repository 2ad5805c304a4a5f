#include "adapters/contract/write/Cam.h"
#include "app/connectSource.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"

#include <QJsonArray>
#include <QScopeGuard>

namespace cli {

namespace {

/// What a procedure uses and does not find.
struct Finding {
    const contract::Procedure* procedure;
    contract::Lacks lacks;
};

/// The procedures to be checked: all of the origin, or those of --data.
std::vector<Finding> ToCheck(const contract::Origin& origin, const QCommandLineParser& options) {
    if (const auto* named = ProcedureOf(origin, options.value("data"))) {
        return {{named, {}}};
    }
    std::vector<Finding> findings;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (!options.isSet("data") || procedure.button == ButtonFrom(options, origin)) {
            findings.push_back({&procedure, {}});
        }
    }
    if (findings.empty()) {
        throw ImportError(QStringLiteral("%1: nessuna procedura da controllare").arg(origin.name));
    }
    return findings;
}

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
        session.Source.reset();
    }
    return lacks;
}

/// Looks at the source of a procedure, which is opened when it is not, and at the company's tables; none when it cannot
/// be opened, which has been told.
std::optional<contract::Lacks> LookFor(Session& session, const Choice& choice, const contract::Procedure& procedure) {
    if (procedure.opensSource) {
        if (!session.Source && ConnectSource(session, *choice.origin) != SourceOutcome::Opened) {
            return std::nullopt;
        }
        return Guarded(session.Errors, "frmImport", "ConnectSource", std::optional<contract::Lacks>(),
                       [&] { return std::optional(contract::LacksOf(session, procedure.needs)); });
    }
    CloseSource(session);
    return Guarded(session.Errors, "frmImport", "ConnectSource", std::optional<contract::Lacks>(), [&] {
        return std::optional(procedure.needs.reads.empty() ? contract::LacksOf(session, procedure.needs)
                                                           : MissingFromCams(session, procedure));
    });
}

/// Looks at what each procedure uses; false when that cannot be opened, which has been told.
bool LookAt(Session& session, const Choice& choice, std::vector<Finding>& findings) {
    if (!CheckData(session, choice)) {
        return false;
    }
    const auto close = qScopeGuard([&session] { CloseSource(session); });
    for (Finding& finding : findings) {
        const auto lacks = LookFor(session, choice, *finding.procedure);
        if (!lacks) {
            return false;
        }
        finding.lacks = *lacks;
    }
    return true;
}

/// The short name of its button; empty for a procedure without one.
QString DataOf(const contract::Procedure& procedure) {
    return procedure.button ? contract::ButtonName(*procedure.button) : QString();
}

QStringList Lines(const Finding& finding) {
    const QString name = QString(DataOf(*finding.procedure) + u' ' + finding.procedure->name).trimmed();
    const auto& [necessary, optional, leftOut] = finding.lacks;
    const QString verdict = !necessary.isEmpty()  ? QStringLiteral(": manca")
                            : !optional.isEmpty() ? QStringLiteral(": si può importare")
                                                  : QStringLiteral(": c'è tutto");
    QStringList lines{QString(name + verdict)};
    const auto add = [&lines](const QString& heading, const QStringList& missing) {
        lines += missing.isEmpty() ? QStringList() : QStringList(heading);
        for (const QString& each : missing) {
            lines.append("    " + each);
        }
    };
    add("  Mancano, necessarie:", necessary);
    add("  Mancano, facoltative:", optional);
    return lines;
}

Report Check(Context& context) {
    Choice choice;
    RequireAll(context.options, {"company", "origin"});
    choice.origin = &OriginFrom(context.options);
    choice.errors = ErrorAction::Abort;
    TakeCompanyOption(context, choice);
    std::vector<Finding> findings = ToCheck(*choice.origin, context.options);
    if (!LookAt(context.session, choice, findings)) {
        return {ExitFailed, {}, {}};
    }
    Report report;
    QStringList lines;
    QJsonArray procedures;
    for (const Finding& finding : findings) {
        lines += Lines(finding);
        procedures.append(QJsonObject{{"data", DataOf(*finding.procedure)},
                                      {"procedure", finding.procedure->name},
                                      {"missing", QJsonArray::fromStringList(finding.lacks.necessary)},
                                      {"missingOptional", QJsonArray::fromStringList(finding.lacks.optional)}});
        report.exitCode = finding.lacks.necessary.isEmpty() ? report.exitCode : ExitFailed;
    }
    report.text = lines.join(u'\n');
    report.json["procedures"] = procedures;
    return report;
}

} // namespace

Command CheckCommand() {
    return {"check",
            "controlla che origine e azienda abbiano ciò che l'importazione legge e scrive; non scrive nulla",
            {},
            {CompanyOption(),
             OriginOption(),
             DataOption(),
             InputOption(),
             InputFileOption(),
             {"file", "File da scegliere dove l'origine ne chiede uno.", "PERCORSO"},
             {"answer", "Risposta a una domanda: yes o no.", "RISPOSTA"}},
            Need::Database,
            Check};
}

} // namespace cli
