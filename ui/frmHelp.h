#pragma once

#include "adapters/contract/run/Origin.h"

#include <QDialog>

/// The manual, the keys of the window, what an origin reads and what becomes of it, and the version.
class frmHelp final : public QDialog {
    Q_OBJECT

public:
    /// @param origin the one chosen; null for none @param procedure the one whose mapping is shown first; empty: the
    /// manual is
    frmHelp(const contract::Origin* origin, const QString& procedure, QWidget* parent);
};
