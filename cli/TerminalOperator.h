#pragma once

#include "core/Operator.h"

#include <deque>

/// Answers given on the command line, each taken in the order of the questions of its kind.
struct GivenAnswers {
    std::deque<bool> questions;
    std::deque<QString> inputs;
    std::deque<QString> files;
};

/// Where the terminal operator talks.
struct TerminalStreams {
    std::function<void(const QString& line)> print;    ///< a line of text
    std::function<void(const QString& line)> complain; ///< a line that something is wrong
    /// Draws over the line under the cursor, an empty text clears it; none where no line can be drawn over.
    std::function<void(const QString& line)> draw;
    /// Reads a line that a person types, none when he gives up; no function where nobody sits.
    std::function<std::optional<QString>(const QString& prompt, bool echo)> ask;
    std::function<bool()> interrupted = [] { return false; };
    std::function<double()> seconds; ///< since any moment
};

/// The operator of the command line: prints messages, draws progress, takes answers from the command line and asks
/// for the rest. A question that nobody can answer raises `ImportError` naming it and the option that answers it.
class TerminalOperator final : public Operator {
public:
    TerminalOperator(TerminalStreams streams, GivenAnswers answers);

    /// Whether somebody sits there who can be asked.
    bool HasPerson() const { return static_cast<bool>(m_streams.ask); }
    /// Whether he has left a question without an answer.
    bool GaveUp() const { return m_gaveUp; }
    /// Answers of the command line that no question has taken.
    const GivenAnswers& AnswersLeft() const { return m_answers; }
    /// Takes answers in place of those that are left.
    void SetAnswers(GivenAnswers answers) { m_answers = std::move(answers); }
    /// The files that were chosen so far, in the order of the questions.
    const QStringList& FilesChosen() const { return m_files; }
    /// The warnings shown so far.
    const QStringList& Warnings() const { return m_warnings; }

    void Note(const QString& text) override;
    /// The details are lines before the question. The end of the input and the interrupt give it up.
    Answer Ask(const QString& question, Question style = Question::Plain, const QString& details = {}) override;
    bool CanBeAskedMore() const override { return HasPerson() && m_answers.questions.empty(); }
    bool Review(const QString& question, const QStringList& lines) override;
    std::optional<QString> Input(const QString& prompt, const QString& title, const QString& defaultText) override;
    QString OpenFile(const QString& title, const QString& filter) override;
    ErrorAnswer ChooseOnError(const ErrorEntry& error) override;
    std::unique_ptr<Progress> ShowProgress() override;

protected:
    void ShowMessage(const QString& text, Icon icon) override;
    void ShowError(const ErrorEntry& error) override;
    void ShowBusy(bool busy) override;
    double Seconds() const override { return m_streams.seconds ? m_streams.seconds() : Operator::Seconds(); }

private:
    void ClearLine();
    void Print(const QString& text);
    void Complain(const QString& text);
    std::optional<QString> Type(const QString& prompt, bool echo);
    QString AskOneOf(const QString& question, const QStringList& answers);

    TerminalStreams m_streams;
    GivenAnswers m_answers;
    QStringList m_files;
    QStringList m_warnings;
    bool m_gaveUp = false;
};
