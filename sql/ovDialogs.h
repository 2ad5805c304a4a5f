#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The open-file and input dialogs, shown by whoever talks to the operator.
class ovDialogs {
public:
    /// Shows the open-file dialog; an empty path means that the operator gave up.
    std::function<QString(const QString& title, const QString& filter)> ShowOpenFile;
    /// Asks for a text; none means that the operator gave up.
    std::function<std::optional<QString>(const QString& prompt, const QString& title, const QString& defaultText)>
        ShowInput;

    QString DialogTitle;
    QString Filter;   ///< "description|pattern" pairs joined with "|"
    QString FileName; ///< the file chosen by `ovShowOpen`

    /// Shows the open-file dialog; true when the operator chose a file, which then is `FileName`.
    bool ovShowOpen();
    /// Asks for a text; none when the operator gave up.
    std::optional<QString> ShowInputBox(const QString& prompt, const QString& title, const QString& defaultText) const;
};
