#pragma once

#include "core/Operator.h"

#include <QSet>

#include <deque>

/// An operator that plays a script and records what was asked and shown.
class ScriptedOperator final : public Operator {
public:
    struct Shown {
        QString text;
        Icon icon;
    };
    struct Asked {
        QString question;
        Question style;
        Answer answer;
        QString details;
    };
    struct Prompted {
        QString prompt;
        QString title;
        QString defaultText;
    };
    struct ProgressRecord {
        QStringList captions; ///< every different caption, in order
        float max = 0;
        float value = 0;
        int refreshes = 0;
        bool closed = false;
    };

    // The script. A question looks up its own text first, then takes the next answer of the queue, then `Otherwise`;
    // without any of them it raises `ImportError`, so that an unexpected question is seen.
    QHash<QString, bool> AnswerTo;
    QSet<QString> GiveUpAt; ///< questions at which the operator gives up
    std::deque<bool> Answers;
    std::optional<bool> Otherwise;
    std::deque<std::optional<QString>> Inputs; ///< one per input box; past the end the default text is confirmed
    std::deque<QString> Files;                 ///< one per file dialog; past the end the operator gives up
    std::deque<ErrorAnswer> ErrorAnswers;      ///< one per failing statement; past the end `Abort`
    std::function<ErrorAnswer(const ErrorEntry&)> AnswerToError; ///< asked instead of the queue when set
    std::optional<float> CancelAt; ///< cancel is pressed once a progress value reaches this

    // The record.
    QVector<Shown> Messages;
    QStringList Notes;
    QVector<Asked> Questions;
    QStringList Reviewed; ///< the list that the last review showed
    QVector<Prompted> Prompts;
    QStringList FileTitles;
    QVector<ErrorEntry> Decided;  ///< errors the operator was asked about
    QVector<ErrorEntry> Reported; ///< errors that ended a procedure
    std::deque<ProgressRecord> Progresses;
    int BusyChanges = 0;
    std::optional<double> Time; ///< seconds on the operator's clock; the real ones without
    double Thinks = 0;          ///< seconds of `Time` that pass while a question waits
    /// Everything in order: "[i] text", "[!] text", "? question = si" (or "no", "esc"), "> prompt", "file title",
    /// "error message", "progress", "progress closed".
    QStringList Events;

    void Note(const QString& text) override { Notes.append(text); }

    Answer Ask(const QString& question, Question style = Question::Plain, const QString& details = {}) override;
    bool Review(const QString& question, const QStringList& lines) override;
    std::optional<QString> Input(const QString& prompt, const QString& title, const QString& defaultText) override;
    QString OpenFile(const QString& title, const QString& filter) override;
    ErrorAnswer ChooseOnError(const ErrorEntry& error) override;
    std::unique_ptr<Progress> ShowProgress() override;

protected:
    void ShowMessage(const QString& text, Icon icon) override;
    void ShowError(const ErrorEntry& error) override;
    void ShowBusy(bool /*busy*/) override { ++BusyChanges; }
    double Seconds() const override { return Time ? *Time : Operator::Seconds(); }

private:
    Answer AnswerFor(const QString& question);
};
