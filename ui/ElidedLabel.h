#pragma once

#include <QFrame>

/// A line of text that is shortened in its middle where there is no room for it; the tool tip holds all of it.
class ElidedLabel final : public QFrame {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void SetText(const QString& text);
    const QString& Text() const { return m_text; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
