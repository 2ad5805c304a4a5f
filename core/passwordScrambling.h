#pragma once

#include <QString>

/// Which way a password goes.
enum class Scrambling { Scramble, Unscramble };

/// Hides a password from a glance at the settings file, and reads it back. It is no encryption: whoever has the text
/// can read it. The scrambled text is one character longer and differs from call to call.
/// @param printable scrambles into characters from the blank on only, none of them of code 255
/// @return the other form; an empty text comes back as it is. Raises `ImportError` for a character that code page
/// 1252 lacks, and for a text that no key makes printable.
QString ScramblePassword(const QString& text, Scrambling direction, bool printable);
