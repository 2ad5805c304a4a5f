#pragma once

#include <QString>

/// Which way a password goes.
enum class Scrambling { Scramble, Unscramble };

/// Hides a password from a glance at the settings file, and reads it back. It is no encryption: whoever has the text
/// can read it. The scrambled text is one character longer and differs from call to call.
/// @param printable prefers characters from the blank on, none of them of code 255; a text that has no such form is
/// scrambled as without it, into any characters but NUL and the ends of a line
/// @return the other form; an empty text comes back as it is. Raises `ImportError` for a character that code page
/// 1252 lacks, and for a text of so many different characters (more than 80) that it has no form at all.
QString ScramblePassword(const QString& text, Scrambling direction, bool printable);
