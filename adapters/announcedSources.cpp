#include "adapters/announcedSources.h"

namespace announced {

using namespace sourceSettings;

namespace {

/// Asks one text after the other; nothing when the operator gave one of them up.
struct Prompt {
    QString text;
    QString defaultText;
};
std::optional<QStringList> AskAll(Session& session, const std::vector<Prompt>& prompts) {
    QStringList answers;
    for (const Prompt& prompt : prompts) {
        const auto answer = session.Person.Input(prompt.text, QuadrixCaption, prompt.defaultText);
        if (!answer) {
            return std::nullopt;
        }
        answers.append(*answer);
    }
    return answers;
}

} // namespace

bool PrepareSam(Session& session, ovConnection& source) {
    const auto answers =
        AskAll(session, {{"Database UserName:", ""}, {"Database Password:", ""}, {"Database Name:", ""}});
    if (!answers) {
        return false;
    }
    source.ConnectionString = "Provider=MSDASQL.1;Password=" + answers->at(1) +
                              ";Persist Security Info=True;User ID=" + answers->at(0) +
                              ";Data Source=SAM;Initial Catalog=" + answers->at(2);
    ReadLine(session, source);
    return true;
}

} // namespace announced
