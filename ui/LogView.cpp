#include "ui/LogView.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
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
      m_text(new QPlainTextEdit),
      m_cut(new QLabel),
      m_open(new QPushButton("Apri carte&lla")) {
    m_text->setObjectName("txtLog");
    m_text->setAccessibleName("Registro dell'importazione");
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setMaximumBlockCount(MostLines);
    m_cut->setObjectName("lblLogCut");
    m_cut->hide();
    // Where the last line stands is known only after the text has been laid out, long after it was added.
    QScrollBar* bar = m_text->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &LogView::ScrollToEnd);
    connect(bar, &QScrollBar::actionTriggered, this,
            [this, bar] { m_follows = bar->sliderPosition() == bar->maximum(); });
    m_open->setObjectName("cmdOpenLogFolder");
    connect(m_open, &QPushButton::clicked, this, &LogView::OpenFolder);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cut, 1);
    buttons->addStretch();
    buttons->addWidget(m_open);
    auto* all = new QVBoxLayout(this);
    all->addWidget(m_text, 1);
    all->addLayout(buttons);
    m_timer.setInterval(Interval);
    connect(&m_timer, &QTimer::timeout, this, &LogView::Refresh);
}

void LogView::Follow(const QString& path) {
    m_path = path;
    const QString name = QFileInfo(path).fileName();
    m_text->setPlaceholderText(QStringLiteral("Il registro (%1) è vuoto.").arg(name));
    m_cut->setText(
        QStringLiteral("Le righe più vecchie non sono mostrate: il registro intero è nel file %1.").arg(name));
    m_open->setToolTip(QStringLiteral("Apre la cartella che contiene %1").arg(name));
    m_tail = LogTail(path);
    Forget();
    Refresh();
}

void LogView::Forget() {
    m_text->clear();
    m_cut->hide();
    m_follows = true;
}

void LogView::Refresh() {
    const LogTail::Change change = m_tail.Read();
    if (change.restarted) {
        Forget();
    }
    if (change.text.isEmpty()) {
        return;
    }
    const qsizetype before = m_text->document()->isEmpty() ? 0 : m_text->blockCount();
    const bool tooMany = before + change.text.count(u'\n') > MostLines;
    m_cut->setVisible(m_cut->isVisibleTo(this) || change.skipped || tooMany);
    Append(change.text.chopped(1));
}

void LogView::Append(const QString& lines) {
    const bool first = m_text->document()->isEmpty();
    QScrollBar* across = m_text->horizontalScrollBar();
    const int place = across->value();
    m_text->appendPlainText(lines);
    if (first) {
        m_text->moveCursor(QTextCursor::StartOfBlock); // where it stands is brought into sight, sideways too
    }
    across->setValue(place);
    ScrollToEnd();
}

/// Who has scrolled up to read, or marks a text to copy it, is left where he is.
void LogView::ScrollToEnd() {
    if (m_follows && !m_text->textCursor().hasSelection()) {
        QScrollBar* bar = m_text->verticalScrollBar();
        bar->setValue(bar->maximum());
    }
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
