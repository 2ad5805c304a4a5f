#pragma once

#include <QString>

#include <functional>

/// The open-file dialog, shown by whoever talks to the operator.
class ovDialogs {
public:
    /// Shows it; an empty path means that the operator gave up.
    std::function<QString(const QString& title, const QString& filter)> ShowOpenFile;

    QString DialogTitle;
    QString Filter;   ///< "description|pattern" pairs joined with "|"
    QString FileName; ///< the file chosen last; empty when the operator gave up

    /// Shows the dialog; true when the operator chose a file, which then is `FileName`.
    bool ovShowOpen();
};
