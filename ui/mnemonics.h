#pragma once

#include <QSet>
#include <QStringList>

/// The letter behind the first single "&" of a caption, in lower case; null when there is none.
QChar MnemonicOf(const QString& caption);

/// Captions with a mnemonic each, no two alike. A caption that brings its own keeps it; the others get the head of a
/// word if it is free (a later word than the first, which many captions share), else any free letter or digit, else
/// none.
/// @param taken letters (lower case) that stand for something else already
QStringList WithMnemonics(QStringList captions, QSet<QChar> taken);
