#include "app/mergeButton.h"
#include "app/mergeText.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"
#include "cli/resultReport.h"

#include <QJsonArray>

using namespace modMain;

namespace cli {

namespace {

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
            {"referencesUpdated", result.referencesUpdated},
            {"takesUp", result.takesUp},
            {"notes", NotesJson(result.notes)}};
}

/// What an earlier merge out of the source means for the one at hand; empty when it means nothing.
QStringList SourceLines(const MergeResult& result, bool references) {
    if (result.takesUp && !result.earlier) {
        return {
            "Riferimenti segnati con X: una fusione precedente è rimasta interrotta; --update-references la riprende."};
    }
    if (result.earlier && !result.earlier->IsDone()) {
        return {EarlierMergeText(*result.earlier) + "; --update-references la riprende."};
    }
    const QString refusal = RefusalText(result, references);
    return refusal.isEmpty() ? QStringList() : QStringList(refusal + '.');
}

/// What earlier merges out of the two companies mean.
QStringList EarlierLines(const MergeResult& result, bool references) {
    const QString copies = IntoMergedRefusal(result);
    if (const QString merged = copies.isEmpty() ? IntoMergedText(result) : copies; !merged.isEmpty()) {
        return QStringList(merged + '.') + SourceLines(result, references);
    }
    return SourceLines(result, references);
}

QString PreviewText(const MergeResult& result, bool references) {
    QStringList lines;
    for (const MergeMatch& match : result.matches) {
        lines.append(MatchLine(match));
    }
    lines += MatchCounts(result) + NoteLines(result) + EarlierLines(result, references);
    return (lines + QStringList("Era un'anteprima: il database è rimasto com'era.")).join(u'\n');
}

QString MergedText(const Session& session, const MergeResult& result) {
    QStringList lines{QStringLiteral("Fusione di %1 in %2").arg(CompanyText(result.from), CompanyText(result.to))};
    if (result.takesUp) {
        lines.append("Ripresa di una fusione interrotta.");
    }
    lines += MatchCounts(result);
    lines.append(QStringLiteral("Controparti fuse: %1").arg(result.merged));
    for (auto table = result.copied.begin(); table != result.copied.end(); ++table) {
        lines.append(QStringLiteral("  righe copiate in %1: %2").arg(table.key()).arg(table.value()));
    }
    lines.append(QStringLiteral("Riferimenti aggiornati: %1").arg(result.referencesUpdated));
    lines += NoteLines(result);
    lines.append("Log: " + MergeLogFile(session));
    return lines.join(u'\n');
}

Report Merge(Context& context) {
    RequireAll(context.options, {"from", "to"});
    const QString from = CompanyOf(context, "from").code;
    const QString to = CompanyOf(context, "to").code;
    if (from == to) {
        throw UsageError(QStringLiteral("--from e --to vogliono due aziende diverse"));
    }
    const bool again = context.options.isSet("update-references-again");
    const bool references = again || context.options.isSet("update-references");
    const bool preview = context.options.isSet("preview");
    MergeResult result;
    if (preview) {
        result = PreviewFusioneControparti(context.session, from, to, references);
    } else {
        RequireYes(context.options, QStringLiteral("Le controparti di %1 si fondono in quelle di %2").arg(from, to));
        result = MergeAndKeep(context.session, from, to, references,
                              {.again = again, .intoMerged = context.options.isSet("into-merged")});
    }
    Report report{ExitCodeOf(result.outcome), {}, Json(result)};
    report.json["preview"] = preview;
    if (preview) {
        report.json["matches"] = MatchesJson(result);
    } else {
        report.json["log"] = MergeLogFile(context.session);
    }
    if (!result.matches.isEmpty()) {
        report.text = preview ? PreviewText(result, references) : MergedText(context.session, result);
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
        "Una fusione con --update-references si annota nel database (tabella SYS_FUS). Da allora i riferimenti, i "
        "contatti e i recapiti dell'azienda di partenza contengono i codici nuovi: si rifiuta una fusione che li "
        "aggiornerebbe di nuovo o che copierebbe altre controparti. Una fusione interrotta o fallita si riprende "
        "rilanciandola.",
        {{"from", "Codice dell'azienda di partenza.", "CODICE"},
         {"to", "Codice dell'azienda di destinazione.", "CODICE"},
         {"update-references", "Aggiorna i codici nelle tabelle dell'azienda di partenza."},
         {"update-references-again",
          "Li aggiorna anche se una fusione li ha già aggiornati: solo quando da allora l'azienda di partenza è stata "
          "ricaricata, altrimenti i codici nuovi si prendono per vecchi e si rovinano."},
         {"into-merged",
          "Copia anche in un'azienda che è stata a sua volta fusa in un'altra: solo quando da allora è stata "
          "ricaricata, altrimenti le copie prendono contatti, recapiti e documenti di altre controparti."},
         {"preview", "Elenca le corrispondenze, senza scrivere."},
         YesOption()},
        Need::Database,
        Merge};
}

} // namespace cli
