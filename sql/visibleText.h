#pragma once

#include <QString>

/// A text in which characters that are not seen, but move a terminal's cursor or turn the order of what follows, are
/// written so that they are: "\t", "\r\n", "\x1b", "\u202e". Those are the control characters of both halves of
/// Latin 1 and the marks of writing direction of Unicode. For the eye only: a backslash of the text stays as it is.
/// Line breaks are made visible too: what comes out is one line.
QString VisibleLine(const QString& text);
/// The same for a text whose line breaks and tabs were written by the program: "\n", "\r\n" and "\t" stay.
QString VisibleText(const QString& text);
