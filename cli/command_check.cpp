#include "app/check.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

/// The procedures to be checked: all of the origin, or those of --data.
std::vector<const contract::Procedure*> ToCheck(const contract::Origin& origin, const QCommandLineParser& options) {
    if (const auto* named = ProcedureOf(origin, options.value("data"))) {
        return {named};
    }
    std::vector<const contract::Procedure*> procedures;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (!options.isSet("data") || procedure.button == ButtonFrom(options, origin)) {
            procedures.push_back(&procedure);
        }
    }
    if (options.isSet("data")) {
        RequireImports(origin, ButtonFrom(options, origin), procedures.size());
    }
    if (procedures.empty()) {
        throw ImportError(QStringLiteral("%1: nessuna procedura da controllare").arg(origin.name));
    }
    return procedures;
}

/// The short name of its button; empty for a procedure without one.
QString DataOf(const contract::Procedure& procedure) {
    return procedure.button ? contract::ButtonName(*procedure.button) : QString();
}

QString NameOf(const contract::Procedure& procedure) {
    return QString(DataOf(procedure) + u' ' + procedure.name).trimmed();
}

/// The sources that looking at procedures opens, in their order.
std::vector<const contract::Origin*> OpenedBy(const contract::Origin& origin,
                                              const std::vector<const contract::Procedure*>& procedures) {
    std::vector<const contract::Origin*> opened;
    const contract::Origin* open = nullptr;
    for (const contract::Procedure* procedure : procedures) {
        const contract::Origin* source = contract::SourceOf(origin, *procedure);
        if (source != nullptr && source != open) {
            opened.push_back(source);
        }
        open = source;
    }
    return opened;
}

/// Whether something necessary is missing in the source, and not in Quadrix alone.
bool LacksOfSource(const check::Finding& finding) {
    const QStringList& lines = finding.lacks.necessary;
    return std::any_of(lines.begin(), lines.end(),
                       [](const QString& line) { return line.startsWith(QLatin1String("origine: ")); });
}

Report Check(Context& context) {
    Choice choice;
    RequireAll(context.options, {"company", "origin"});
    choice.origin = &OriginFrom(context.options);
    choice.errors = ErrorAction::Abort;
    TakeCompanyOption(context, choice);
    const auto procedures = ToCheck(*choice.origin, context.options);
    RequireOpeningAnswers(context, OpenedBy(*choice.origin, procedures));
    const auto findings = check::Run(context.session, choice, procedures);
    if (!findings) {
        return {ExitFailed, {}, {}};
    }
    Report report;
    report.isAll = true;
    QStringList lines;
    QJsonArray found;
    for (const check::Finding& finding : *findings) {
        lines += check::Lines(finding, NameOf(*finding.procedure));
        found.append(QJsonObject{{"data", DataOf(*finding.procedure)},
                                 {"procedure", finding.procedure->name},
                                 {"missing", QJsonArray::fromStringList(finding.lacks.necessary)},
                                 {"missingOptional", QJsonArray::fromStringList(finding.lacks.optional)},
                                 {"narrow", QJsonArray::fromStringList(finding.lacks.narrow)},
                                 {"demanded", QJsonArray::fromStringList(finding.lacks.demanded)},
                                 {"changes", QJsonArray::fromStringList(finding.changes)}});
        report.exitCode = finding.lacks.necessary.isEmpty() ? report.exitCode : ExitFailed;
    }
    if (std::any_of(findings->begin(), findings->end(), LacksOfSource)) {
        lines.append(
            QStringLiteral("Quali nomi della sorgente possono stare al posto di ciò che manca, guardati anche i "
                           "valori: inspect --origin \"%1\"")
                .arg(choice.origin->name));
    }
    report.text = lines.join(u'\n');
    report.json["procedures"] = found;
    return report;
}

} // namespace

Command CheckCommand() {
    return {"check",
            "controlla che origine e azienda abbiano ciò che l'importazione legge e scrive; non scrive nulla",
            "Codice d'uscita 1 quando a una delle procedure manca qualcosa di necessario, anche se le altre hanno "
            "tutto: con\n--data si guarda solo ciò che si vuole importare.",
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
