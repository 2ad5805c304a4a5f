#pragma once

#include "adapters/contract/run/Origin.h"

/// The task that the program was started for.
enum class StartMode { None, Fast, Fast2, Fast3, Fast4 };

/// The start mode of a command line (without the program's name): the whole of it must be "/FAST" to "/FAST4", in any
/// case; `None` for everything else.
StartMode ParseStartMode(const QString& commandLine);

/// A button as the window shows it.
struct ButtonState {
    bool visible = true;
    QString caption;
};

/// What the window shows and locks; changed by what happens to it, in the order in which it happens.
struct WindowState {
    std::array<ButtonState, contract::ButtonCount> imports;
    bool sequence = true;
    bool reset = true;
    bool locked = false; ///< company, origin and error mode cannot be changed
    StartMode mode = StartMode::None;

    ButtonState& At(contract::Button button) { return imports.at(static_cast<size_t>(button)); }
    const ButtonState& At(contract::Button button) const { return imports.at(static_cast<size_t>(button)); }
};

/// The window before anything was chosen: every button with its own caption.
WindowState InitialState();

/// Reduces the window to one task; `None` changes nothing.
void ApplyStartMode(WindowState& state, StartMode mode);

/// The procedure that the one button of a start mode calls, whatever it calls otherwise; empty: it calls what the
/// origin has behind it.
QString TaskProcedure(StartMode mode);

/// Hides and locks what the settings take away. @param isOn whether the setting of that name is 1
void ApplySwitches(WindowState& state, const std::function<bool(const QString& key)>& isOn);

/// What choosing an origin does. Buttons that its row does not mention keep what an earlier choice gave them. A window
/// reduced to one task keeps its one button as it is.
void ApplyOrigin(WindowState& state, const contract::Origin& origin);

/// What a button runs, as it is told beside it.
struct ButtonHint {
    QString what;      ///< "Controparti da Arca 2000"; empty when no origin is chosen
    QString text;      ///< the same with the procedures that are called
    bool built = true; ///< whether there is a procedure behind the button in this version
};

/// What a button runs now, whatever its caption says.
/// @param origin the one chosen; null for none
ButtonHint HintOf(const WindowState& state, contract::Button button, const contract::Origin* origin);

/// Whether any button of an origin has a procedure behind it in this version.
bool IsBuilt(const contract::Origin& origin);

/// Name of the control of an import button, for example "cmdImportCli".
QString ControlName(contract::Button button);
