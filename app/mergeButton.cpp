#include "app/mergeButton.h"

#include "app/merge.h"

namespace modMain {

namespace {

const QString Title = QStringLiteral("Fusione Controparti");
const QString MergeOrigin = QStringLiteral("Kordel NetSuite");

/// A merge as one account: a counterparty of the source is a source row.
RunResult AccountOf(const Session& session, const MergeResult& merge, qsizetype firstError, double seconds) {
    RunResult account;
    account.module = QStringLiteral("modMain");
    account.procedure = QStringLiteral("FusioneControparti");
    account.outcome = merge.outcome;
    account.sourceRows = merge.matches.size();
    for (const MergeMatch& match : merge.matches.first(merge.merged)) {
        ++(match.criterion == MergeCriterion::New ? account.inserted : account.updated);
    }
    account.notReached = account.sourceRows - merge.merged;
    for (auto table = merge.copied.begin(); table != merge.copied.end(); ++table) {
        account.tables[table.key()].inserted = table.value();
    }
    for (const ErrorEntry& entry : session.Errors.Entries().mid(firstError)) {
        account.errors.append(entry.message);
    }
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

void AskAndMerge(Session& session, const QString& /*singleCode*/, bool /*reset*/) {
    const qsizetype firstError = session.Errors.Entries().size();
    const auto answers = AskOperator(session);
    const QDateTime start = QDateTime::currentDateTime();
    MergeResult merge;
    merge.outcome = RunResult::Outcome::Cancelled;
    if (answers) {
        FusioneControparti(session, answers->from, answers->to, answers->updateReferences, &merge);
    }
    const double seconds = static_cast<double>(start.msecsTo(QDateTime::currentDateTime())) / 1000;
    session.Results.append(AccountOf(session, merge, firstError, seconds));
}

contract::Procedure MergeProcedure() {
    contract::Procedure merge;
    merge.button = contract::Button::Disegni;
    merge.name = QStringLiteral("FusioneControparti");
    merge.run = AskAndMerge;
    merge.confirmation = QStringLiteral("Fondere le Controparti di due Aziende?");
    merge.opensSource = false;
    merge.asksReset = false;
    return merge;
}

} // namespace

const std::vector<contract::Procedure>& ProgramProcedures(const contract::Origin& origin) {
    static const std::vector<contract::Procedure> none;
    static const std::vector<contract::Procedure> merge{MergeProcedure()};
    return origin.name == MergeOrigin ? merge : none;
}

} // namespace modMain
