#include "ui/buttonState.h"

using contract::Button;
using contract::Shown;

namespace {

struct Control {
    Button button;
    const char* name; ///< behind "cmd" in the control's name and behind "Disable_" in the setting's
    const char* caption;
};

constexpr std::array<Control, contract::ButtonCount> Controls{{
    {Button::Cli, "ImportCli", "Importa Controparti"},
    {Button::Art, "ImportArt", "Importa Articoli"},
    {Button::Dis, "ImportDis", "Importa Distinte Base"},
    {Button::Doc, "ImportDoc", "Importa Documenti"},
    {Button::Acq, "ImportAcq", "Importa Documenti di Acquisto"},
    {Button::Saldi, "ImportSaldi", "Importa Saldi di Magazzino"},
    {Button::Piano, "ImportPiano", "Importa Piano dei Conti"},
    {Button::Disegni, "ImportDisegni", "Importa Disegni"},
}};

/// The one button of a start mode and its caption.
struct Task {
    StartMode mode;
    const char* commandLine;
    Button button;
    const char* caption;
};

constexpr std::array<Task, 4> Tasks{{
    {StartMode::Fast, "/FAST", Button::Dis, "&Importa Distinta Base"},
    {StartMode::Fast2, "/FAST2", Button::Saldi, "&Importa Movimenti"},
    {StartMode::Fast3, "/FAST3", Button::Disegni, "&Sistema Disegni Sfridi"},
    {StartMode::Fast4, "/FAST4", Button::Disegni, "&Sistema Packing List"},
}};

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
        state.At(control.button).caption = QString::fromLatin1(control.caption);
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
            state.At(control.button).caption = QString::fromLatin1(control.caption);
        }
        const contract::ButtonRow& row = origin.buttons.at(static_cast<size_t>(control.button));
        ApplyShown(state.At(control.button).visible, row.shown);
        if (!row.caption.isEmpty()) {
            state.At(control.button).caption = row.caption;
        }
    }
    ApplyShown(state.sequence, origin.sequence);
}

QString ControlName(Button button) {
    return QStringLiteral("cmd") + QLatin1String(Controls.at(static_cast<size_t>(button)).name);
}
