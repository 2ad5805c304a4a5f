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
    /// What there are templates for, workbooks to be filled in; without any the button for them is not there.
    void SetTemplates(const QStringList& captions);

signals:
    void Edit();
    void Try();
    void Inspect();
    /// @param position of what the template is for, in the captions
    void Template(int position);

private:
    ElidedLabel* m_text;
    QToolButton* m_template;
    QList<QToolButton*> m_buttons;
};
