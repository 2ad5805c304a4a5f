#pragma once

#include "adapters/contract/run/Origin.h"

namespace contract {

enum class AnswerKind { YesNo, Text };

/// A question that a person must answer.
struct AnswerNeed {
    QString question;
    AnswerKind kind = AnswerKind::YesNo;
};

/// What is asked behind the confirmation and the question about the reset, in the order in which it is asked: by the
/// opening of the origin's source, where a procedure opens it, and by each procedure. Who cannot ask knows from it
/// before anything is deleted. The choice of a file, which comes before all that is written, is not among them.
std::vector<AnswerNeed> AnswersNeeded(const Origin& origin, const std::vector<const Procedure*>& procedures);

} // namespace contract
