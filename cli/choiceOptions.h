#pragma once

#include "app/importFlow.h"
#include "app/startUp.h"
#include "cli/Command.h"

/// What the commands on a company and an origin have in common.
namespace cli {

QCommandLineOption CompanyOption();
QCommandLineOption OriginOption();
QCommandLineOption DataOption();
QCommandLineOption ErrorsOption();
QCommandLineOption MaxRejectsOption();
QCommandLineOption YesOption();
/// What answers requests for a text, in clear and without being seen.
QCommandLineOption InputOption();
QCommandLineOption InputFileOption();
/// The lines of the files of --input-file, each one answer; "-" is the standard input. Raises `UsageError` naming a
/// file that cannot be read.
QStringList InputFileLines(const QStringList& paths);

/// The company that an option names. Raises `UsageError` naming the companies that may have been meant.
modMain::Company CompanyOf(Context& context, const QString& option);
/// The company of --company. Raises `UsageError` naming the companies that may have been meant.
void TakeCompanyOption(Context& context, Choice& choice);
/// The origin of --origin. Raises `UsageError` naming the origins that may have been meant.
const contract::Origin& OriginFrom(const QCommandLineParser& options);
/// The button of --data. Raises `UsageError` listing the kinds, with the procedures of the origin that may be meant.
contract::Button ButtonFrom(const QCommandLineParser& options, const contract::Origin& origin);
/// The same of one value of --data.
contract::Button ButtonFrom(const QString& data, const contract::Origin& origin);
/// Raises `UsageError` for a button of --data without an import behind it. @param imports that the origin has there
void RequireImports(const contract::Origin& origin, contract::Button button, size_t imports);
/// An import that is pressed, or compared as if it were.
struct AskingPress {
    const contract::Origin& origin;
    std::vector<const contract::Procedure*> procedures;
};
/// Raises `UsageError` where the command line answers more than the questions of these presses, one after the other,
/// or, with nobody there to ask, less: before anything is deleted or written.
void RequireAnswers(const Context& context, const std::vector<AskingPress>& presses);
/// The same of questions that no procedure asks.
void RequireAnswersTo(const Context& context, const std::vector<contract::AnswerNeed>& questions);
/// The same, for a command that only opens sources, one after the other.
void RequireOpeningAnswers(const Context& context, const std::vector<const contract::Origin*>& sources);
/// The way of dealing with errors of --errors; "ask" without it. Raises `UsageError` listing them.
ErrorAction ErrorsFrom(const QCommandLineParser& options);
/// Takes over how many rows may be given up (--max-rejects). Raises `UsageError` for what is no such number.
void TakeMaxRejects(Context& context);

} // namespace cli
