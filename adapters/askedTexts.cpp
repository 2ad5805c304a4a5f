#include "adapters/askedTexts.h"

namespace askedTexts {

std::optional<QStringList> AskAll(Session& session, const std::vector<Prompt>& prompts) {
    QStringList answers;
    for (const Prompt& prompt : prompts) {
        const auto answer = session.Person.Input(prompt.text, QuadrixCaption, prompt.proposed);
        if (!answer) {
            return std::nullopt;
        }
        answers.append(*answer);
    }
    return answers;
}

std::vector<contract::AnswerNeed> NeedsOf(const std::vector<Prompt>& prompts) {
    std::vector<contract::AnswerNeed> needs;
    for (const Prompt& prompt : prompts) {
        needs.push_back({prompt.text, contract::AnswerKind::Text});
    }
    return needs;
}

} // namespace askedTexts
