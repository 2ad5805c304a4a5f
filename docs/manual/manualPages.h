#pragma once

#include "docs/manual/annotationsInCode.h"
#include "docs/manual/settingsInCode.h"

#include <QDir>

/// The pages of the manual that follow the code: what the code knows of a setting, an annotation or a command is filled
/// in, what it means is written by hand. What is new in the code is added at the end of its page, to be described.
namespace manual {

/// What the pages are filled from.
struct InCode {
    SettingUses settings;
    Annotations annotations;
    QMap<QString, QString> originNames; ///< as the list shows them, by the folder of their module
};

/// Reads the project below a folder.
InCode ReadCode(const QDir& root);

/// A command of the command line and what its `--help` says.
struct CommandText {
    QString name;
    QString help;
};

/// The page of the settings with the defaults of the code. A row of several keys, and a default that no call tells as a
/// text, stay as they stand.
QString WithSettings(const QString& page, const SettingUses& settings);
/// The page of the annotations with the origins that write each of them.
QString WithAnnotations(const QString& page, const InCode& code);
/// The page of the command line with the texts of the commands below its last heading.
QString WithCommands(const QString& page, const QList<CommandText>& commands);

/// The pages that follow the code, by their names below docs/manuale, as they should be.
QMap<QString, QString> PagesOfCode(const QDir& root, const QList<CommandText>& commands);

} // namespace manual
