#pragma once

#include "ui/buttonState.h"

#include <QSet>
#include <QWidget>

#include <optional>

class QGridLayout;
class QPushButton;

/// The eight import buttons, those that are shown close together in two columns.
class ImportButtons final : public QWidget {
    Q_OBJECT

public:
    explicit ImportButtons(QWidget* parent = nullptr);

    /// Shows the buttons as the state tells, each with a mnemonic of its own.
    /// @param taken mnemonics of the rest of the window
    /// @param origin the one chosen, whose procedures the hints name; null for none
    void SetState(const WindowState& state, const QSet<QChar>& taken, const contract::Origin* origin);

    /// The button that has the focus; none when none has it.
    std::optional<contract::Button> Focused() const;

signals:
    void Pressed(contract::Button button);

private:
    void Place();
    static void ShowHint(QPushButton& button, const ButtonHint& hint);

    QGridLayout* m_grid;
    std::array<QPushButton*, contract::ButtonCount> m_buttons{};
};
