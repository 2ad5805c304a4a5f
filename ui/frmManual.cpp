#include "ui/frmManual.h"

#include "ui/ManualPane.h"
#include "ui/windowPlace.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int ManualWidth = 130; ///< characters
constexpr int ManualHeight = 40; ///< lines

} // namespace

frmManual::frmManual(const QString& page, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmManual");
    setWindowTitle("Manuale");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* pane = new ManualPane(page);
    auto* close = new QPushButton("&Chiudi");
    close->setObjectName("cmdClose");
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* all = new QVBoxLayout(this);
    all->addWidget(pane, 1);
    all->addWidget(close, 0, Qt::AlignRight);
    windowPlace::SizeTo(*this, ManualWidth, ManualHeight);
    pane->setFocus();
}

bool ManualKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType() ||
        !static_cast<QKeyEvent*>(event)->matches(QKeySequence::HelpContents)) {
        return QObject::eventFilter(watched, event);
    }
    QWidget* window = static_cast<QWidget*>(watched)->window();
    const QString page = ManualPageOf(window);
    if (!page.isEmpty()) {
        frmManual(page, window).exec();
    }
    return !page.isEmpty();
}
