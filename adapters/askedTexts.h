#pragma once

#include "adapters/contract/run/Origin.h"

/// What an origin asks for to open its source.
namespace askedTexts {

/// A text to be typed.
struct Prompt {
    QString text;
    QString proposed = {};
};

/// Asks for one after the other; none when the operator gives one of them up.
std::optional<QStringList> AskAll(Session& session, const std::vector<Prompt>& prompts);
/// What they are for the check before a run.
std::vector<contract::AnswerNeed> NeedsOf(const std::vector<Prompt>& prompts);

} // namespace askedTexts
