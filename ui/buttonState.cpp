#include "ui/buttonState.h"

#include "app/importFlow.h"

#include <algorithm>

using contract::Button;
using contract::Shown;

namespace {

struct Control {
    Button button;
    const char* name; ///< behind "cmd" in the control's name and behind "Disable_" in the setting's
};

constexpr std::array<Control, contract::ButtonCount> Controls{{
    {Button::Cli, "ImportCli"},
    {Button::Art, "ImportArt"},
    {Button::Dis, "ImportDis"},
    {Button::Doc, "ImportDoc"},
    {Button::Acq, "ImportAcq"},
    {Button::Saldi, "ImportSaldi"},
    {Button::Piano, "ImportPiano"},
    {Button::Disegni, "ImportDisegni"},
}};

/// The one button of a start mode and its caption.
struct Task {
    StartMode mode;
    const char* commandLine;
    Button button;
    const char* caption;
    const char* procedure; ///< what it calls; empty for what the origin has behind the button
};

constexpr std::array<Task, 4> Tasks{{
    {StartMode::Fast, "/FAST", Button::Dis, "&Importa Distinta Base", ""},
    {StartMode::Fast2, "/FAST2", Button::Saldi, "&Importa Movimenti", ""},
    {StartMode::Fast3, "/FAST3", Button::Disegni, "&Sistema Disegni Sfridi", "CorreggiAllegatiLantek"},
    {StartMode::Fast4, "/FAST4", Button::Disegni, "&Sistema Packing List", "CorreggiPackingList2"},
}};

/// What a button says before an origin gave it another caption.
QString OwnCaption(Button button) {
    static const contract::Origin none;
    return ButtonCaption(none, button);
}

void ApplyShown(bool& visible, Shown shown) {
    if (shown != Shown::Keep) {
        visible = shown == Shown::Yes;
    }
}

void HideWhenOn(bool& visible, const std::function<bool(const QString&)>& isOn, const QString& key) {
    if (isOn(key)) {
        visible = false;
    }
}

/// What a button of an origin imports, without the word "Importa": "Controparti", "Riallinea DRORI".
QString KindOf(const contract::Origin& origin, Button button) {
    static const QString importa = QStringLiteral("Importa ");
    const QString caption = ButtonCaption(origin, button);
    return caption.startsWith(importa) ? caption.mid(importa.size()) : caption;
}

} // namespace

StartMode ParseStartMode(const QString& commandLine) {
    const QString upper = commandLine.toUpper();
    for (const Task& task : Tasks) {
        if (upper == QLatin1String(task.commandLine)) {
            return task.mode;
        }
    }
    return StartMode::None;
}

WindowState InitialState() {
    WindowState state;
    for (const Control& control : Controls) {
        state.At(control.button).caption = OwnCaption(control.button);
    }
    return state;
}

void ApplyStartMode(WindowState& state, StartMode mode) {
    for (const Task& task : Tasks) {
        if (task.mode != mode) {
            continue;
        }
        for (ButtonState& button : state.imports) {
            button.visible = false;
        }
        state.At(task.button) = {true, QString::fromLatin1(task.caption)};
        state.sequence = false;
        state.reset = false;
        state.locked = mode == StartMode::Fast2;
        state.mode = mode;
    }
}

QString TaskProcedure(StartMode mode) {
    for (const Task& task : Tasks) {
        if (task.mode == mode) {
            return QString::fromLatin1(task.procedure);
        }
    }
    return {};
}

void ApplySwitches(WindowState& state, const std::function<bool(const QString& key)>& isOn) {
    if (isOn(QStringLiteral("Disable_Configuration"))) {
        state.locked = true;
    }
    HideWhenOn(state.sequence, isOn, QStringLiteral("Disable_Sequence"));
    HideWhenOn(state.reset, isOn, QStringLiteral("Disable_Reset"));
    for (const Control& control : Controls) {
        HideWhenOn(state.At(control.button).visible, isOn, QStringLiteral("Disable_") + QLatin1String(control.name));
    }
}

void ApplyOrigin(WindowState& state, const contract::Origin& origin) {
    if (state.mode != StartMode::None) {
        return;
    }
    for (const Control& control : Controls) {
        if (control.button == Button::Saldi) {
            state.At(control.button).caption = OwnCaption(control.button);
        }
        const contract::ButtonRow& row = origin.buttons.at(static_cast<size_t>(control.button));
        ApplyShown(state.At(control.button).visible, row.shown);
        if (!row.caption.isEmpty()) {
            state.At(control.button).caption = row.caption;
        }
    }
    ApplyShown(state.sequence, origin.sequence);
}

bool IsBuilt(const contract::Origin& origin) {
    return std::any_of(Controls.begin(), Controls.end(),
                       [&origin](const Control& control) { return !ProceduresOf(origin, control.button).empty(); });
}

ButtonHint HintOf(const WindowState& state, Button button, const contract::Origin* origin) {
    if (origin == nullptr) {
        return {{}, QStringLiteral("Scegliere prima l'origine dei dati")};
    }
    const QString task = TaskProcedure(state.mode);
    QStringList names;
    if (task.isEmpty()) {
        for (const contract::Procedure* procedure : ProceduresOf(*origin, button)) {
            names.append(procedure->name);
        }
    } else if (ProcedureOf(*origin, task) != nullptr) {
        names.append(task);
    }
    const QString what = (task.isEmpty() ? KindOf(*origin, button) : task) + QStringLiteral(" da ") + origin->name;
    const QString behind =
        names.isEmpty() ? QStringLiteral("non disponibile in questa versione") : names.join(QStringLiteral(", "));
    return {what, what + QStringLiteral(": ") + behind, !names.isEmpty()};
}

QString ControlName(Button button) {
    return QStringLiteral("cmd") + QLatin1String(Controls.at(static_cast<size_t>(button)).name);
}
