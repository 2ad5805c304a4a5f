#pragma once

#include <QLabel>

/// Plain text over as many lines as it takes: the layout around it never cuts one off, and long paths are broken.
class WrappedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappedLabel(const QString& text = {}, QWidget* parent = nullptr);

    /// Shows a text; paths may be broken behind each separator.
    void SetText(const QString& text);
    /// The text as it was given.
    const QString& Text() const { return m_text; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void KeepHeight();

    QString m_text;
};
