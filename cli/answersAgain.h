#pragma once

#include "app/codes/apply.h"
#include "app/history/History.h"
#include "cli/choiceOptions.h"

#include <QMap>

/// The answers that a next step is given, where a command that it goes on from was given some: what is imported again
/// asks again.
namespace cli {

/// The answers of the command line to the questions of its presses that are answered by yes or no, by question.
QMap<QString, QString> AnswersGiven(const Context& context, const std::vector<AskingPress>& presses);

/// " --answer no --input TESTO", for a command that asks the questions of presses. An answer that is not known has a
/// word in its place, and so has each text: it may be a password. Nothing where a person answers who was left to.
/// @param given `AnswersGiven` of the command before
QString AnswerOptions(const Context& context, const QMap<QString, QString>& given,
                      const std::vector<AskingPress>& presses);

/// Those that import rows of a run again: the ones that it has given up and none has imported since, or its rest.
std::vector<AskingPress> PressesAgain(Session& session, const history::History& history, qint64 run, bool rejects);
/// Those that import rows again whose codes were translated, each with those of its procedures that have such rows.
std::vector<AskingPress> PressesAgain(Session& session, const std::vector<codes::RowsToRepeat>& all);

} // namespace cli
