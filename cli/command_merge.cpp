#include "app/merge.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"

#include <QJsonArray>

using namespace modMain;

namespace cli {

namespace {

QString MatchLine(const MergeMatch& match) {
    return match.oldCode + u' ' + match.oldName + u" --> " + match.newCode + u' ' + match.newName + u" (" +
           MergeCriterionText(match.criterion) + u')';
}

QJsonArray MatchesJson(const MergeResult& result) {
    QJsonArray matches;
    for (const MergeMatch& match : result.matches) {
        matches.append(QJsonObject{{"oldCode", match.oldCode},
                                   {"oldName", match.oldName},
                                   {"newCode", match.newCode},
                                   {"newName", match.newName},
                                   {"criterion", MergeCriterionText(match.criterion)}});
    }
    return matches;
}

QJsonObject Json(const MergeResult& result) {
    QJsonObject criteria;
    for (int criterion = 0; criterion < MergeCriterionCount; ++criterion) {
        const auto each = static_cast<MergeCriterion>(criterion);
        criteria[MergeCriterionText(each)] = result.Count(each);
    }
    QJsonObject copied;
    for (auto table = result.copied.begin(); table != result.copied.end(); ++table) {
        copied[table.key()] = table.value();
    }
    return {{"outcome", OutcomeName(result.outcome)},
            {"counterparties", result.matches.size()},
            {"criteria", criteria},
            {"merged", result.merged},
            {"copied", copied},
            {"referencesUpdated", result.referencesUpdated}};
}

QStringList Summary(const MergeResult& result) {
    QStringList lines{QStringLiteral("Controparti: %1").arg(result.matches.size())};
    for (int criterion = 0; criterion < MergeCriterionCount; ++criterion) {
        const auto each = static_cast<MergeCriterion>(criterion);
        lines.append(QStringLiteral("  %1: %2").arg(MergeCriterionText(each)).arg(result.Count(each)));
    }
    return lines;
}

QString PreviewText(const MergeResult& result) {
    QStringList lines;
    for (const MergeMatch& match : result.matches) {
        lines.append(MatchLine(match));
    }
    return (lines + Summary(result) + QStringList("Era un'anteprima: il database è rimasto com'era.")).join(u'\n');
}

QString MergedText(const Session& session, const MergeResult& result) {
    QStringList lines = Summary(result);
    lines.append(QStringLiteral("Controparti fuse: %1").arg(result.merged));
    for (auto table = result.copied.begin(); table != result.copied.end(); ++table) {
        lines.append(QStringLiteral("  righe copiate in %1: %2").arg(table.key()).arg(table.value()));
    }
    lines.append(QStringLiteral("Riferimenti aggiornati: %1").arg(result.referencesUpdated));
    lines.append("Log: " + MergeLogFile(session));
    return lines.join(u'\n');
}

Report Merge(Context& context) {
    const QString from = Required(context.options, "from");
    const QString to = Required(context.options, "to");
    const bool references = context.options.isSet("update-references");
    const bool preview = context.options.isSet("preview");
    MergeResult result;
    if (preview) {
        result = PreviewFusioneControparti(context.session, from, to, references);
    } else {
        RequireYes(context.options, QStringLiteral("Le controparti di %1 si fondono in quelle di %2").arg(from, to));
        FusioneControparti(context.session, from, to, references, &result);
    }
    Report report{ExitCodeOf(result.outcome), {}, Json(result)};
    report.json["preview"] = preview;
    if (preview) {
        report.json["matches"] = MatchesJson(result);
    } else {
        report.json["log"] = MergeLogFile(context.session);
    }
    if (!result.matches.isEmpty()) {
        report.text = preview ? PreviewText(result) : MergedText(context.session, result);
    }
    return report;
}

} // namespace

Command MergeCommand() {
    return {
        "merge",
        "fonde le controparti di un'azienda in quelle di un'altra",
        "Le corrispondenze si cercano per partita IVA, codice fiscale, ragione sociale; le controparti senza "
        "corrispondenza si copiano con un nuovo codice. --preview le elenca e non scrive nulla.\n"
        "--update-references va usato una volta sola per fusione riuscita: dopo, i codici sono già quelli nuovi. Una "
        "fusione interrotta o fallita si completa rilanciandola.",
        {{"from", "Codice dell'azienda di partenza.", "CODICE"},
         {"to", "Codice dell'azienda di destinazione.", "CODICE"},
         {"update-references", "Aggiorna i codici nelle tabelle dell'azienda di partenza."},
         {"preview", "Elenca le corrispondenze, senza scrivere."},
         YesOption()},
        Need::Database,
        Merge};
}

} // namespace cli
