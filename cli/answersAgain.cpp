#include "cli/answersAgain.h"

#include "app/history/rejects.h"
#include "cli/TerminalOperator.h"

namespace cli {

namespace {

const QString AnyAnswer = QStringLiteral("RISPOSTA"); ///< as the help names the value of --answer

QStringList GivenTo(const Context& context, const QString& option) {
    return context.options.optionNames().contains(option) ? context.options.values(option) : QStringList();
}

std::vector<contract::AnswerNeed> QuestionsOf(const std::vector<AskingPress>& presses) {
    std::vector<contract::AnswerNeed> questions;
    for (const AskingPress& press : presses) {
        const auto own = contract::AnswersNeeded(press.origin, press.procedures);
        questions.insert(questions.end(), own.begin(), own.end());
    }
    return questions;
}

} // namespace

QMap<QString, QString> AnswersGiven(const Context& context, const std::vector<AskingPress>& presses) {
    QStringList left = GivenTo(context, "answer");
    QMap<QString, QString> answers;
    for (const contract::AnswerNeed& need : QuestionsOf(presses)) {
        if (need.kind == contract::AnswerKind::YesNo && !left.isEmpty()) {
            const QString answer = left.takeFirst();
            answers[need.question] = answers.value(need.question, answer) == answer ? answer : AnyAnswer;
        }
    }
    return answers;
}

QString AnswerOptions(const Context& context, const QMap<QString, QString>& given,
                      const std::vector<AskingPress>& presses) {
    const bool gaveTexts = !GivenTo(context, "input").isEmpty() || !GivenTo(context, "input-file").isEmpty();
    if (context.person.HasPerson() && given.isEmpty() && !gaveTexts) {
        return {};
    }
    QString options;
    for (const contract::AnswerNeed& need : QuestionsOf(presses)) {
        options += need.kind == contract::AnswerKind::Text
                       ? QStringLiteral(" --input TESTO")
                       : QStringLiteral(" --answer ") + given.value(need.question, AnyAnswer);
    }
    return options;
}

std::vector<AskingPress> PressesAgain(Session& session, const history::History& history, qint64 number, bool rejects) {
    const history::Run run = history.Load(number);
    std::vector<AskingPress> presses;
    for (const QString& press : rejects ? history::PressesOf(history, run, false) : QStringList(QString())) {
        ImportRequest request;
        history::Repeat(session, run, press, request);
        presses.push_back({*request.choice.origin, CalledBy(request)});
    }
    return presses;
}

std::vector<AskingPress> PressesAgain(Session& session, const std::vector<codes::RowsToRepeat>& all) {
    std::vector<AskingPress> presses;
    for (const codes::RowsToRepeat& rows : all) {
        const ImportRequest request = codes::RequestFor(session, rows);
        std::vector<const contract::Procedure*> procedures = CalledBy(request);
        std::erase_if(procedures, [&request](const auto* one) { return !request.only->Wants(one->name); });
        presses.push_back({*request.choice.origin, procedures});
    }
    return presses;
}

} // namespace cli
