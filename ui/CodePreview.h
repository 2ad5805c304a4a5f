#pragma once

#include "app/codes/preview.h"

#include <QDialog>

/// What applying codes to the rows that are there would change, cell by cell, before it is done. No is the default, and
/// what Escape means.
class CodePreview final : public QDialog {
    Q_OBJECT

public:
    /// @param lines what is done: the codes with their rows
    CodePreview(const QStringList& lines, const codes::Preview& preview, QWidget* parent);
};
