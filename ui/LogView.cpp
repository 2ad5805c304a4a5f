#include "ui/LogView.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QUrl>
#include <QVBoxLayout>

namespace {
constexpr int MostLines = 5000;
constexpr int Interval = 300; ///< milliseconds between two looks at the file
} // namespace

LogView::LogView(QWidget* parent)
    : QWidget(parent),
      m_text(new QPlainTextEdit) {
    m_text->setObjectName("txtLog");
    m_text->setAccessibleName("Registro dell'importazione");
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setMaximumBlockCount(MostLines);
    m_text->setPlaceholderText("Il registro (import.log) è vuoto.");
    auto* open = new QPushButton("Apri carte&lla");
    open->setObjectName("cmdOpenLogFolder");
    open->setToolTip("Apre la cartella che contiene import.log");
    connect(open, &QPushButton::clicked, this, &LogView::OpenFolder);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(open);
    auto* all = new QVBoxLayout(this);
    all->addWidget(m_text, 1);
    all->addLayout(buttons);
    m_timer.setInterval(Interval);
    connect(&m_timer, &QTimer::timeout, this, &LogView::Refresh);
}

void LogView::Follow(const QString& path) {
    m_path = path;
    m_tail = LogTail(path);
    m_text->clear();
    Refresh();
}

void LogView::Refresh() {
    const LogTail::Change change = m_tail.Read();
    if (change.restarted) {
        m_text->clear();
    }
    if (change.text.isEmpty()) {
        return;
    }
    // Who has scrolled up to read is left where he is.
    QScrollBar* bar = m_text->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    const int before = bar->value();
    m_text->appendPlainText(change.text.chopped(1));
    bar->setValue(atEnd ? bar->maximum() : before);
}

void LogView::OpenFolder() { QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(m_path).absolutePath())); }

void LogView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Refresh();
    m_timer.start();
}

void LogView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_timer.stop();
}
