#include "ui/ImportButtons.h"

#include "ui/mnemonics.h"

#include <QGridLayout>
#include <QPushButton>

namespace {
constexpr int ColumnCount = 2;
} // namespace

ImportButtons::ImportButtons(QWidget* parent)
    : QWidget(parent),
      m_grid(new QGridLayout(this)) {
    m_grid->setContentsMargins(0, 0, 0, 0);
    for (int column = 0; column < ColumnCount; ++column) {
        m_grid->setColumnStretch(column, 1);
    }
    for (size_t i = 0; i < m_buttons.size(); ++i) {
        const auto button = static_cast<contract::Button>(i);
        m_buttons[i] = new QPushButton(this);
        m_buttons[i]->setObjectName(ControlName(button));
        connect(m_buttons[i], &QPushButton::clicked, this, [this, button] { emit Pressed(button); });
    }
}

void ImportButtons::SetState(const WindowState& state, const QSet<QChar>& taken, const contract::Origin* origin) {
    QStringList captions;
    for (const ButtonState& button : state.imports) {
        if (button.visible) {
            captions.append(button.caption);
        }
    }
    captions = WithMnemonics(captions, taken);
    for (size_t i = 0; i < m_buttons.size(); ++i) {
        const ButtonState& button = state.imports[i];
        m_buttons[i]->setText(button.visible ? captions.takeFirst() : button.caption);
        m_buttons[i]->setVisible(button.visible);
        ShowHint(*m_buttons[i], HintOf(state, static_cast<contract::Button>(i), origin));
    }
    Place();
}

std::optional<contract::Button> ImportButtons::Focused() const {
    for (size_t i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons[i]->hasFocus()) {
            return static_cast<contract::Button>(i);
        }
    }
    return std::nullopt;
}

/// A button without a procedure stays: pressed, it says so. It is told apart before, to the eye and to a reader.
void ImportButtons::ShowHint(QPushButton& button, const ButtonHint& hint) {
    button.setToolTip(hint.text);
    button.setAccessibleDescription(hint.text);
    QFont font = button.font();
    font.setItalic(!hint.built);
    button.setFont(font);
}

void ImportButtons::Place() {
    int place = 0;
    for (QPushButton* button : m_buttons) {
        m_grid->removeWidget(button);
        if (!button->isHidden()) {
            m_grid->addWidget(button, place / ColumnCount, place % ColumnCount);
            ++place;
        }
    }
}
