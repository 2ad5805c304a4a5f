#pragma once

#include "adapters/contract/run/Origin.h"

#include <QDialog>

/// What an origin reads and what becomes of it, the keys of the window, and the version.
class frmHelp final : public QDialog {
    Q_OBJECT

public:
    /// @param origin the one chosen; null for none @param procedure the one whose mapping is shown first; empty for
    /// none
    frmHelp(const contract::Origin* origin, const QString& procedure, QWidget* parent);
};
