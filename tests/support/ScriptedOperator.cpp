#include "tests/support/ScriptedOperator.h"

namespace {

class ScriptedProgress final : public Progress {
public:
    ScriptedProgress(ScriptedOperator& person, ScriptedOperator::ProgressRecord& record)
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
    ScriptedOperator::ProgressRecord& m_record;
};

template<class T>
T Next(std::deque<T>& script) {
    T next = std::move(script.front());
    script.pop_front();
    return next;
}

} // namespace

Answer ScriptedOperator::Ask(const QString& question, Question style, const QString& details) {
    const Waiting waiting(*this);
    Time = Time ? std::optional(*Time + Thinks) : std::nullopt;
    const Answer answer = AnswerFor(question);
    Questions.append({question, style, answer, details});
    static const QStringList names{"si", "no", "esc"};
    Events.append("? " + question + " = " + names.at(static_cast<int>(answer)));
    return answer;
}

bool ScriptedOperator::Review(const QString& question, const QStringList& lines) {
    Reviewed = lines;
    return Ask(question, Question::ExclamationNo) == Answer::Yes;
}

std::optional<QString> ScriptedOperator::Input(const QString& prompt, const QString& title,
                                               const QString& defaultText) {
    Prompts.append({prompt, title, defaultText});
    Events.append("> " + prompt);
    return Inputs.empty() ? defaultText : Next(Inputs);
}

QString ScriptedOperator::OpenFile(const QString& title, const QString& /*filter*/) {
    FileTitles.append(title);
    Events.append("file " + title);
    return Files.empty() ? QString() : Next(Files);
}

ErrorAnswer ScriptedOperator::ChooseOnError(const ErrorEntry& error) {
    Decided.append(error);
    Events.append("error " + error.message);
    if (AnswerToError) {
        return AnswerToError(error);
    }
    return ErrorAnswers.empty() ? ErrorAnswer::Abort : Next(ErrorAnswers);
}

std::unique_ptr<Progress> ScriptedOperator::ShowProgress() {
    Events.append("progress");
    return std::make_unique<ScriptedProgress>(*this, Progresses.emplace_back());
}

void ScriptedOperator::ShowMessage(const QString& text, Icon icon) {
    Messages.append({text, icon});
    Events.append((icon == Icon::Information ? "[i] " : "[!] ") + text);
}

void ScriptedOperator::ShowError(const ErrorEntry& error) {
    Reported.append(error);
    Events.append("reported " + error.message);
}

Answer ScriptedOperator::AnswerFor(const QString& question) {
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
