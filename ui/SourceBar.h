#pragma once

#include <QWidget>

class ElidedLabel;
class QToolButton;

/// The line that tells which source will be read, with what can be done about it.
class SourceBar final : public QWidget {
    Q_OBJECT

public:
    explicit SourceBar(QWidget* parent = nullptr);

    /// @param text what will be read; empty while no origin is chosen
    void SetSource(const QString& text);
    /// Whether another source can be chosen; in a window whose lists are locked none can.
    void SetChoosable(bool choosable);

signals:
    void Edit();
    void Try();
    void Inspect();

private:
    ElidedLabel* m_text;
    QList<QToolButton*> m_buttons;
};
