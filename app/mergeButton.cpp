#include "app/mergeButton.h"

#include "app/history/Recorder.h"
#include "app/mergeParts.h"
#include "app/mergeText.h"

#include <QFileInfo>

namespace modMain {

namespace {

const QString Title = QStringLiteral("Fusione Controparti");
const QString MergeModule = QStringLiteral("modMain");
const QString MergeName = QStringLiteral("FusioneControparti");
const QString MergeOrigin = QStringLiteral("Kordel NetSuite");

/// A merge as one account: a counterparty of the source is a source row; one that the destination has is left out.
RunResult AccountOf(const Session& session, const MergeResult& merge, qint64 errorsBefore, double seconds) {
    RunResult account;
    account.module = MergeModule;
    account.procedure = MergeName;
    account.outcome = merge.outcome;
    account.sourceRows = merge.matches.size();
    for (const MergeMatch& match : merge.matches.first(merge.merged)) {
        ++(match.criterion == MergeCriterion::New ? account.inserted : account.skipped);
    }
    account.notReached = account.sourceRows - merge.merged;
    for (auto table = merge.copied.begin(); table != merge.copied.end(); ++table) {
        account.tables[table.key()].inserted = table.value();
    }
    for (const ErrorEntry& entry : session.Errors.Since(errorsBefore)) {
        account.errors.append(entry.message);
    }
    account.notes = merge.notes;
    account.seconds = seconds;
    return account;
}

/// The companies to merge and whether references are updated; nothing when the operator gave up.
struct Answers {
    QString from;
    QString to;
    bool updateReferences = false;
};

std::optional<Answers> AskOperator(Session& session) {
    const auto ask = [&session](const QString& prompt, const QString& key, const QString& otherwise) {
        return session.Person.Input(prompt, Title, session.Config.PeekAppConfig("IMPORT", key, otherwise));
    };
    const auto from = ask("Codice Azienda di Partenza:", "FUSIONE_PARTENZA", {});
    if (!from) {
        return std::nullopt;
    }
    const auto to = ask("Codice Azienda di Destinazione:", "FUSIONE_DESTINAZIONE", session.UserManager.Azienda());
    if (!to) {
        return std::nullopt;
    }
    const Answer update = session.Person.Ask("Aggiornare i Riferimenti alle tabelle esistenti?");
    if (update == Answer::GivenUp) {
        return std::nullopt;
    }
    return Answers{*from, *to, update == Answer::Yes};
}

/// Whether references that an earlier merge has re-pointed are to be re-pointed again.
bool AgreesToRepeat(Operator& person, const EarlierMerge& earlier) {
    return person.Ask(EarlierMergeText(earlier) +
                          ".\n\nI riferimenti contengono già i codici nuovi: aggiornarli di nuovo li porterebbe su "
                          "controparti sbagliate, a meno che da allora l'azienda di partenza non sia stata ricaricata."
                          "\n\nAggiornarli di nuovo?",
                      Question::ExclamationNo) == Answer::Yes;
}

/// Whether counterparties are to be copied into a company whose rows bear the codes of another.
bool AgreesToCopies(Operator& person, const MergeResult& preview) {
    return person.Ask(IntoMergedText(preview) +
                          QStringLiteral(".\n\nCopiarle è giusto solo se da allora %1 è stata ricaricata.\n\nCopiarle?")
                              .arg(preview.to.code),
                      Question::ExclamationNo) == Answer::Yes;
}

/// Shows what would become of every counterparty, and asks.
bool AgreesToMatches(Operator& person, const MergeResult& preview, bool updateReferences) {
    QStringList lines;
    for (const MergeMatch& match : preview.matches) {
        lines.append(MatchLine(match));
    }
    QStringList question = MatchCounts(preview) + NoteLines(preview);
    question.append(updateReferences
                        ? QStringLiteral("I riferimenti di %1 si aggiornano.").arg(CompanyText(preview.from))
                        : QStringLiteral("I riferimenti di %1 restano come sono.").arg(CompanyText(preview.from)));
    if (const QString merged = IntoMergedText(preview); !merged.isEmpty()) {
        question.append(QStringLiteral("Attenzione: ") + merged + u'.');
    }
    if (preview.takesUp) {
        question.append(preview.earlier && !preview.earlier->IsDone()
                            ? QString(EarlierMergeText(*preview.earlier) + ": si riprende.")
                            : QStringLiteral("Una fusione precedente è rimasta interrotta: si riprende."));
    }
    question.append(QStringLiteral("\nFondere le controparti di %1 in quelle di %2?")
                        .arg(CompanyText(preview.from), CompanyText(preview.to)));
    return person.Review(question.join(u'\n'), lines);
}

/// Why there is no merge and no further question: nothing that the operator could agree to, or nobody to be asked.
QString RefusalWithoutAsking(const Operator& person, const MergeResult& preview, bool updateReferences) {
    const QString refusal = RefusalText(preview, updateReferences);
    if (!refusal.isEmpty() && !(updateReferences && person.CanBeAskedMore())) {
        return refusal;
    }
    return person.CanBeAskedMore() ? QString() : IntoMergedRefusal(preview);
}

/// Merges what the operator agrees to; cancelled when he does not.
MergeResult MergeAsked(Session& session) {
    MergeResult cancelled;
    cancelled.outcome = RunResult::Outcome::Cancelled;
    const auto answers = AskOperator(session);
    if (!answers) {
        return cancelled;
    }
    MergeResult merge = PreviewFusioneControparti(session, answers->from, answers->to, answers->updateReferences);
    if (merge.outcome != RunResult::Outcome::Done) {
        return merge;
    }
    const QString refusal = RefusalWithoutAsking(session.Person, merge, answers->updateReferences);
    if (!refusal.isEmpty()) {
        merge.outcome = RunResult::Outcome::Failed;
        Guarded(session.Errors, MergeModule, MergeName, false, [&]() -> bool { throw ImportError(refusal); });
        return merge;
    }
    const MergeConsent consent{.again = !RefusalText(merge, answers->updateReferences).isEmpty(),
                               .intoMerged = !IntoMergedRefusal(merge).isEmpty()};
    if ((consent.again && !AgreesToRepeat(session.Person, *merge.earlier)) ||
        (consent.intoMerged && !AgreesToCopies(session.Person, merge)) ||
        !AgreesToMatches(session.Person, merge, answers->updateReferences)) {
        return cancelled;
    }
    FusioneControparti(session, answers->from, answers->to, answers->updateReferences, &merge, consent);
    return merge;
}

/// Does a merge, and tells who keeps what procedures do. @return its account
RunResult Kept(Session& session, const std::function<MergeResult()>& merge) {
    const qint64 errorsBefore = session.Errors.Count();
    const double start = session.Person.WorkedSeconds();
    const qint64 logStart = QFileInfo(MergeLogFile(session)).size();
    if (session.Observer != nullptr) {
        session.Observer->ProcedureBegins(MergeModule, MergeName);
    }
    const MergeResult merged = merge();
    RunResult account = AccountOf(session, merged, errorsBefore, session.Person.WorkedSeconds() - start);
    if (merged.merged > 0) {
        account.details = MatchCounts(merged);
        account.details.append(QStringLiteral("Riferimenti aggiornati: %1").arg(merged.referencesUpdated));
        account.details.append(
            QStringLiteral("Fusione di %1 in %2").arg(CompanyText(merged.from), CompanyText(merged.to)));
        account.details.append("Log della fusione: " + MergeLogFile(session));
        account.logFile = MergeLogFile(session);
        account.logStart = logStart;
    }
    if (session.Observer != nullptr) {
        session.Observer->ProcedureEnds(account);
    }
    return account;
}

void AskAndMerge(Session& session, const QString& /*singleCode*/, bool /*reset*/) {
    session.Results.append(Kept(session, [&session] { return MergeAsked(session); }));
}

contract::Procedure MergeProcedure() {
    contract::Procedure merge;
    merge.button = contract::Button::Disegni;
    merge.name = MergeName;
    merge.run = AskAndMerge;
    merge.confirmation = QStringLiteral("Fondere le Controparti di due Aziende?");
    merge.asks = {{QStringLiteral("Codice Azienda di Partenza:"), contract::AnswerKind::Text},
                  {QStringLiteral("Codice Azienda di Destinazione:"), contract::AnswerKind::Text},
                  {QStringLiteral("Aggiornare i Riferimenti alle tabelle esistenti?")},
                  {QStringLiteral("Fondere le controparti così abbinate?")}};
    merge.opensSource = false;
    merge.asksReset = false;
    merge.takesCode = false;
    return merge;
}

} // namespace

const std::vector<contract::Procedure>& ProgramProcedures(const contract::Origin& origin) {
    static const std::vector<contract::Procedure> none;
    static const std::vector<contract::Procedure> merge{MergeProcedure()};
    return origin.name == MergeOrigin ? merge : none;
}

MergeResult MergeAndKeep(Session& session, const QString& from, const QString& to, bool updateReferences,
                         const MergeConsent& consent) {
    MergeResult merged;
    const bool areThere = Guarded(session.Errors, MergeModule, MergeName, false, [&] {
        merged.from = merge::FindCompany(session, from);
        merged.to = merge::FindCompany(session, to);
        return true;
    });
    if (!areThere) {
        return merged;
    }
    history::Recorder recorder(
        session,
        {.work =
             QStringLiteral("fusione delle controparti di %1 in quelle di %2").arg(merged.from.code, merged.to.code),
         .company = merged.to.code,
         .options = {updateReferences ? QStringLiteral("Riferimenti: si aggiornano")
                                      : QStringLiteral("Riferimenti: restano come sono")}});
    Kept(session, [&] {
        FusioneControparti(session, from, to, updateReferences, &merged, consent);
        return merged;
    });
    return merged;
}

} // namespace modMain
