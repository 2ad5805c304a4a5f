#pragma once

#include <QString>

/// The program as a process of its system, whatever it then does.
namespace process {

/// Called first of all: what the program makes from here on is legible to its owner alone (files 600, folders 700;
/// what is there keeps its rights), and no image of its memory, where passwords are, is left when it breaks down.
/// Where the system keeps rights otherwise (Windows: those of the user's folders) nothing happens.
void Protect();

/// What this program is made of, for whoever asks with --version: its name and version, how and for what it was built,
/// each library with the version in use, what was compiled in. Lines of text.
QString VersionText(const QString& program);

} // namespace process
