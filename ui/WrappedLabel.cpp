#include "ui/WrappedLabel.h"

WrappedLabel::WrappedLabel(const QString& text, QWidget* parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    SetText(text);
}

void WrappedLabel::SetText(const QString& text) {
    if (text == m_text) {
        return;
    }
    m_text = text;
    static const QChar zeroWidthSpace(0x200B);
    QString shown = text;
    for (const QChar separator : {u'/', u'\\'}) {
        shown.replace(separator, QString(separator) + zeroWidthSpace);
    }
    setText(shown);
    KeepHeight();
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    KeepHeight();
}

// A window's least height takes no account of lines that are wrapped, so each label sees to its own.
void WrappedLabel::KeepHeight() { setMinimumHeight(std::max(0, heightForWidth(width()))); }
