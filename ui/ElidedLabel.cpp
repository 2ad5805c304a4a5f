#include "ui/ElidedLabel.h"

#include <QPainter>

namespace {
constexpr int LeastCharacters = 16;
} // namespace

ElidedLabel::ElidedLabel(QWidget* parent)
    : QFrame(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::SetText(const QString& text) {
    m_text = text;
    setToolTip(text);
    setAccessibleName(text);
    updateGeometry();
    update();
}

QSize ElidedLabel::sizeHint() const { return {fontMetrics().horizontalAdvance(m_text), fontMetrics().height()}; }

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * LeastCharacters, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, width());
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), shown);
}
