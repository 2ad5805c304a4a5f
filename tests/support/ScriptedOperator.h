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

    Answer Ask(const QString& question, Question style = Question::Plain, const QString& details = {}) override {
        const Waiting waiting(*this);
        Time = Time ? std::optional(*Time + Thinks) : std::nullopt;
        const Answer answer = AnswerFor(question);
        Questions.append({question, style, answer, details});
        static const QStringList names{"si", "no", "esc"};
        Events.append("? " + question + " = " + names.at(static_cast<int>(answer)));
        return answer;
    }

    bool Review(const QString& question, const QStringList& lines) override {
        Reviewed = lines;
        return Ask(question, Question::ExclamationNo) == Answer::Yes;
    }

    std::optional<QString> Input(const QString& prompt, const QString& title, const QString& defaultText) override {
        Prompts.append({prompt, title, defaultText});
        Events.append("> " + prompt);
        return Inputs.empty() ? defaultText : Next(Inputs);
    }

    QString OpenFile(const QString& title, const QString& /*filter*/) override {
        FileTitles.append(title);
        Events.append("file " + title);
        return Files.empty() ? QString() : Next(Files);
    }

    ErrorAnswer ChooseOnError(const ErrorEntry& error) override {
        Decided.append(error);
        Events.append("error " + error.message);
        if (AnswerToError) {
            return AnswerToError(error);
        }
        return ErrorAnswers.empty() ? ErrorAnswer::Abort : Next(ErrorAnswers);
    }

    std::unique_ptr<Progress> ShowProgress() override {
        Events.append("progress");
        return std::make_unique<ScriptedProgress>(*this, Progresses.emplace_back());
    }

protected:
    void ShowMessage(const QString& text, Icon icon) override {
        Messages.append({text, icon});
        Events.append((icon == Icon::Information ? "[i] " : "[!] ") + text);
    }
    void ShowError(const ErrorEntry& error) override {
        Reported.append(error);
        Events.append("reported " + error.message);
    }
    void ShowBusy(bool /*busy*/) override { ++BusyChanges; }
    double Seconds() const override { return Time ? *Time : Operator::Seconds(); }

private:
    class ScriptedProgress final : public Progress {
    public:
        ScriptedProgress(ScriptedOperator& person, ProgressRecord& record)
            : m_person(person),
              m_record(record) {}
        ScriptedProgress(const ScriptedProgress&) = delete;
        ScriptedProgress& operator=(const ScriptedProgress&) = delete;
        ~ScriptedProgress() override {
            m_record.closed = true;
            m_person.Events.append("progress closed");
        }

        bool Cancel() const override { return m_person.CancelAt && Value() >= *m_person.CancelAt; }

    protected:
        void Refresh() override {
            m_record.max = Max();
            m_record.value = Value();
            ++m_record.refreshes;
            if (!Caption().isEmpty() && (m_record.captions.isEmpty() || m_record.captions.last() != Caption())) {
                m_record.captions.append(Caption());
            }
        }

    private:
        ScriptedOperator& m_person;
        ProgressRecord& m_record;
    };

    template<class T>
    static T Next(std::deque<T>& script) {
        T next = std::move(script.front());
        script.pop_front();
        return next;
    }

    Answer AnswerFor(const QString& question) {
        const auto word = [](bool yes) { return yes ? Answer::Yes : Answer::No; };
        if (GiveUpAt.contains(question)) {
            return Answer::GivenUp;
        }
        if (const auto known = AnswerTo.constFind(question); known != AnswerTo.constEnd()) {
            return word(*known);
        }
        if (!Answers.empty()) {
            return word(Next(Answers));
        }
        if (Otherwise) {
            return word(*Otherwise);
        }
        Events.append("? " + question + " without an answer");
        throw ImportError("Domanda senza risposta nel copione: " + question);
    }
};
