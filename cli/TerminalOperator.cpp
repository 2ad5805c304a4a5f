#include "cli/TerminalOperator.h"

#include "cli/TerminalProgress.h"

namespace {

template<class T>
std::optional<T> TakeFirst(std::deque<T>& answers) {
    if (answers.empty()) {
        return std::nullopt;
    }
    T first = std::move(answers.front());
    answers.pop_front();
    return first;
}

ImportError Unanswered(const QString& question, const QString& option) {
    return ImportError(QStringLiteral("Manca la risposta a \"%1\": ripetere il comando con %2").arg(question, option));
}

/// Whether what is typed must not be seen.
bool IsSecret(const QString& prompt) { return prompt.contains(QLatin1String("password"), Qt::CaseInsensitive); }

QString Yes(bool yes) { return yes ? QStringLiteral("sì") : QStringLiteral("no"); }

} // namespace

TerminalOperator::TerminalOperator(TerminalStreams streams, GivenAnswers answers)
    : m_streams(std::move(streams)),
      m_answers(std::move(answers)) {}

void TerminalOperator::ClearLine() {
    if (m_streams.draw) {
        m_streams.draw({});
    }
}

void TerminalOperator::Print(const QString& text) {
    ClearLine();
    m_streams.print(text);
}

void TerminalOperator::Complain(const QString& text) {
    ClearLine();
    m_streams.complain(text);
}

void TerminalOperator::ShowMessage(const QString& text, Icon icon) {
    if (icon == Icon::Exclamation) {
        m_warnings.append(text);
        Complain("Attenzione: " + text);
    } else {
        Print(text);
    }
}

void TerminalOperator::Note(const QString& text) { Complain(text); }

/// A line that the person types; none when he gives up.
std::optional<QString> TerminalOperator::Type(const QString& prompt, bool echo) {
    const Waiting waiting(*this);
    auto typed = m_streams.ask(prompt, echo);
    m_gaveUp = m_gaveUp || !typed;
    return typed;
}

/// Asks until one of the answers is typed by its first letter; the empty text when the person gives up.
QString TerminalOperator::AskOneOf(const QString& question, const QStringList& answers) {
    const QString prompt = question + QStringLiteral(" [%1] ").arg(answers.join(u'/'));
    while (const auto typed = Type(prompt, true)) {
        const QString text = typed->trimmed().toLower();
        for (const QString& answer : answers) {
            if (!text.isEmpty() && answer.startsWith(text[0], Qt::CaseInsensitive)) {
                return answer;
            }
        }
    }
    return {};
}

Answer TerminalOperator::Ask(const QString& question, Question /*style*/, const QString& details) {
    const auto given = TakeFirst(m_answers.questions);
    if (!given && !m_streams.ask) {
        throw Unanswered(question, "--answer yes oppure --answer no");
    }
    if (!details.isEmpty()) {
        Print(details);
    }
    if (given) {
        Print(question + u' ' + Yes(*given));
        return *given ? Answer::Yes : Answer::No;
    }
    const QString typed = AskOneOf(question, {"sì", "no"});
    if (typed.isEmpty()) {
        return Answer::GivenUp;
    }
    return typed == u"no" ? Answer::No : Answer::Yes;
}

bool TerminalOperator::Review(const QString& question, const QStringList& lines) {
    return Ask(question, Question::ExclamationNo, lines.join(u'\n')) == Answer::Yes;
}

std::optional<QString> TerminalOperator::Input(const QString& prompt, const QString& /*title*/,
                                               const QString& defaultText) {
    if (auto given = TakeFirst(m_answers.inputs)) {
        return given;
    }
    if (!m_streams.ask) {
        throw Unanswered(prompt, IsSecret(prompt) ? "--input-file FILE" : "--input TESTO");
    }
    const QString hint = defaultText.isEmpty() ? QString(" ") : QString(" [" + defaultText + "] ");
    const auto typed = Type(prompt + hint, !IsSecret(prompt));
    return typed && typed->isEmpty() ? defaultText : typed;
}

QString TerminalOperator::OpenFile(const QString& title, const QString& /*filter*/) {
    auto file = TakeFirst(m_answers.files);
    if (!file) {
        if (!m_streams.ask) {
            throw Unanswered(title, "--file PERCORSO");
        }
        file = Type(title + QStringLiteral(": "), true).value_or(QString()).trimmed();
    }
    m_files += file->isEmpty() ? QStringList() : QStringList(*file);
    return *file;
}

ErrorAnswer TerminalOperator::ChooseOnError(const ErrorEntry& error) {
    ShowError(error);
    if (!m_streams.ask) {
        return ErrorAnswer::Abort;
    }
    static const QVector<std::pair<QString, ErrorAnswer>> choices{{"riprova", ErrorAnswer::Retry},
                                                                  {"termina", ErrorAnswer::Abort},
                                                                  {"ignora", ErrorAnswer::Ignore},
                                                                  {"sempre ignora", ErrorAnswer::IgnoreAll}};
    constexpr qsizetype outsideARow = 2;
    QStringList names;
    for (const auto& choice : choices.first(error.rowKey.isEmpty() ? outsideARow : choices.size())) {
        names.append(choice.first);
    }
    const QString typed = AskOneOf("Cosa fare?", names);
    const auto chosen =
        std::find_if(choices.begin(), choices.end(), [&](const auto& choice) { return choice.first == typed; });
    return chosen == choices.end() ? ErrorAnswer::Abort : chosen->second;
}

void TerminalOperator::ShowError(const ErrorEntry& error) {
    const QString where =
        error.module.isEmpty() ? QString() : QString(" (" + error.module + u'.' + error.procedure + u')');
    QStringList lines{QString("Errore" + where + ": " + error.message)};
    const auto add = [&lines](const QString& name, const QString& text) {
        if (!text.isEmpty() && !lines.first().contains(text)) {
            lines.append(QString("  " + name + ": " + text));
        }
    };
    add("Riga", error.rowKey);
    add("Database", error.engineMessage);
    add("Istruzione", error.statement);
    Complain(lines.join(u'\n'));
}

std::unique_ptr<Progress> TerminalOperator::ShowProgress() {
    return std::make_unique<TerminalProgress>(m_streams, *this);
}

void TerminalOperator::ShowBusy(bool /*busy*/) {}
