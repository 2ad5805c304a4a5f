#include "adapters/registry.h"
#include "app/importFlow.h"
#include "cli/choiceOptions.h"
#include "cli/commands.h"

#include <QJsonArray>

namespace cli {

namespace {

using contract::Button;
using contract::Origin;

QStringList ProcedureNames(const Origin& origin, Button button) {
    QStringList names;
    for (const contract::Procedure* procedure : ProceduresOf(origin, button)) {
        names.append(procedure->name);
    }
    return names;
}

/// Whether opening a source lets its file be chosen. @param source null: none is opened
bool WantsFile(const Origin* source) {
    return source != nullptr && source->source.prepare.place == contract::Place::Chosen;
}

/// The questions that a press asks, in their order, as "import --answer" and "--input" answer them; in front of them
/// the file of the source, where one is to be chosen.
QJsonArray QuestionsJson(const Origin& origin, const std::vector<const contract::Procedure*>& procedures) {
    QJsonArray questions;
    if (WantsFile(contract::FirstSourceOf(origin, procedures))) {
        questions.append(QJsonObject{{"question", "File dell'origine"}, {"option", "file"}});
    }
    for (const contract::AnswerNeed& need : contract::AnswersNeeded(origin, procedures)) {
        const bool text = need.kind == contract::AnswerKind::Text;
        questions.append(QJsonObject{{"question", need.question}, {"option", text ? "input" : "answer"}});
    }
    return questions;
}

QJsonArray ButtonsJson(const Origin& origin) {
    static const QStringList shown{"keep", "yes", "no"};
    QJsonArray buttons;
    for (int index = 0; index < contract::ButtonCount; ++index) {
        const auto button = static_cast<Button>(index);
        const auto row = static_cast<int>(origin.buttons[static_cast<size_t>(index)].shown);
        buttons.append(QJsonObject{{"data", contract::ButtonName(button)},
                                   {"shown", shown.at(row)},
                                   {"caption", ButtonCaption(origin, button)},
                                   {"questions", QuestionsJson(origin, ProceduresOf(origin, button))},
                                   {"procedures", QJsonArray::fromStringList(ProcedureNames(origin, button))}});
    }
    return buttons;
}

/// The procedures that no button calls.
QStringList NamesWithoutButton(const Origin& origin) {
    QStringList names;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (!procedure.button) {
            names.append(procedure.name);
        }
    }
    return names;
}

/// Of every procedure that asks something, under its name.
QJsonObject QuestionsByProcedure(const Origin& origin) {
    QJsonObject asking;
    for (const contract::Procedure& procedure : origin.procedures) {
        const QJsonArray questions = QuestionsJson(origin, {&procedure});
        if (!questions.isEmpty()) {
            asking[procedure.name] = questions;
        }
    }
    return asking;
}

/// The data that an origin can import now: "cli (Importa Controparti)", and the procedures without a button.
QStringList ReadyData(const Origin& origin) {
    QStringList ready;
    for (int index = 0; index < contract::ButtonCount; ++index) {
        const auto button = static_cast<Button>(index);
        if (!ProceduresOf(origin, button).empty()) {
            ready.append(QString(contract::ButtonName(button) + " (" + ButtonCaption(origin, button) + u')'));
        }
    }
    return ready + NamesWithoutButton(origin);
}

Report ListOrigins(Context& context) {
    const QString sought = context.options.value("search");
    QJsonArray origins;
    QStringList lines;
    for (const Origin* origin : registry::Origins()) {
        if (!origin->name.contains(sought, Qt::CaseInsensitive) &&
            !origin->source.kind.contains(sought, Qt::CaseInsensitive)) {
            continue;
        }
        origins.append(QJsonObject{{"name", origin->name},
                                   {"module", origin->module},
                                   {"kind", origin->source.kind},
                                   {"buttons", ButtonsJson(*origin)},
                                   {"built", !ReadyData(*origin).isEmpty()},
                                   {"questions", QuestionsByProcedure(*origin)},
                                   {"otherProcedures", QJsonArray::fromStringList(NamesWithoutButton(*origin))},
                                   {"withoutButton", QJsonArray::fromStringList(NamesWithoutButton(*origin))}});
        lines.append(QStringLiteral("%1 %2 %3")
                         .arg(origin->name, -22)
                         .arg(origin->source.kind, -22)
                         .arg(ReadyData(*origin).isEmpty() ? "(non disponibile in questa versione)"
                                                           : ReadyData(*origin).join(", ")));
    }
    return {ExitDone, lines.join(u'\n'), {{"origins", origins}}, true};
}

} // namespace

Command OriginsCommand() {
    return {"origins",
            "elenca le origini, il tipo di sorgente e i dati che si importano",
            {},
            {{"search", "Solo le origini con questo testo nel nome o nel tipo di sorgente.", "TESTO"}},
            Need::Nothing,
            ListOrigins};
}

} // namespace cli
