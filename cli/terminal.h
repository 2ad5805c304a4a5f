#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The terminal that the program is run from.
namespace terminal {

/// Whether a person sits at the input; at the output; at the error output.
bool IsInput();
bool IsOutput();
bool IsErrorOutput();

/// One line that the person types; none at the end of the input and when he interrupts.
/// @param echo false hides what is typed
std::optional<QString> ReadLine(bool echo);

/// From now on the first interrupt (Ctrl-C, or a polite request to end) is only remembered; the second ends the
/// program at once. That the terminal is gone counts as one, but never ends the program; that nobody reads the output
/// any more does nothing.
void CatchInterrupt();
/// Whether an interrupt has come since.
bool Interrupted();

} // namespace terminal
