#include "ui/OriginList.h"

#include <QCoreApplication>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int KindRole = Qt::UserRole + 1;
constexpr int MostOrigins = 20;

enum Column { OriginColumn, KindColumn };

} // namespace

OriginList::OriginList(QWidget* parent)
    : ChoiceList(parent),
      m_popup(new QFrame(this, Qt::Popup)),
      m_text(new QLineEdit),
      m_found(new QTreeWidget) {
    m_popup->setFrameShape(QFrame::Box);
    m_popup->setObjectName("popOrigins");
    m_text->setObjectName("txtOrigin");
    m_text->setAccessibleName("Parte del nome o del tipo di sorgente");
    m_text->setPlaceholderText("Parte del nome o del tipo di sorgente");
    m_text->setClearButtonEnabled(true);
    m_found->setObjectName("lstOrigins");
    m_found->setAccessibleName("Origini trovate");
    m_found->setColumnCount(2);
    m_found->setHeaderHidden(true);
    m_found->setRootIsDecorated(false);
    m_found->setUniformRowHeights(true);
    m_found->setAllColumnsShowFocus(true);
    m_found->header()->setStretchLastSection(true);
    m_found->setFocusPolicy(Qt::NoFocus); // the keys go to what is typed
    auto* all = new QVBoxLayout(m_popup);
    all->setContentsMargins(2, 2, 2, 2);
    all->addWidget(m_text);
    all->addWidget(m_found, 1);
    m_text->installEventFilter(this);
    connect(m_text, &QLineEdit::textChanged, this, &OriginList::Filter);
    connect(m_text, &QLineEdit::returnPressed, this, &OriginList::Take);
    connect(m_found, &QTreeWidget::itemClicked, this, &OriginList::Take);
}

void OriginList::AddOrigin(const QString& name, const QString& kind) {
    addItem(name);
    setItemData(count() - 1, kind, KindRole);
}

void OriginList::Fill() {
    m_found->clear();
    for (int i = 0; i < count(); ++i) {
        auto* item = new QTreeWidgetItem(m_found, {itemText(i), itemData(i, KindRole).toString()});
        const QVariant colour = itemData(i, Qt::ForegroundRole);
        const QString hint = itemData(i, Qt::ToolTipRole).toString();
        for (const int column : {OriginColumn, KindColumn}) {
            item->setData(column, Qt::ForegroundRole, colour);
            item->setToolTip(column, hint);
        }
        if (i == currentIndex()) {
            m_found->setCurrentItem(item);
        }
    }
    m_found->resizeColumnToContents(OriginColumn);
    m_found->resizeColumnToContents(KindColumn);
    const int across = m_found->columnWidth(OriginColumn) + m_found->columnWidth(KindColumn) +
                       m_found->verticalScrollBar()->sizeHint().width() + 2 * fontMetrics().averageCharWidth();
    const int down = m_found->sizeHintForRow(0) * std::min(count(), MostOrigins) + m_text->sizeHint().height() + 16;
    m_popup->resize(std::max(width(), across), down);
}

void OriginList::showPopup() {
    emit Opening();
    const QSignalBlocker quiet(m_text);
    m_text->clear();
    Fill();
    const QRect room = screen()->availableGeometry();
    QPoint place = mapToGlobal(QPoint(0, height()));
    if (place.y() + m_popup->height() > room.bottom()) {
        place.setY(std::max(room.top(), mapToGlobal(QPoint(0, 0)).y() - m_popup->height()));
    }
    m_popup->move(place);
    m_popup->show();
    m_text->setFocus();
    if (m_found->currentItem() != nullptr) {
        m_found->scrollToItem(m_found->currentItem(), QAbstractItemView::PositionAtCenter);
    }
}

void OriginList::hidePopup() {
    m_popup->hide();
    ChoiceList::hidePopup();
}

void OriginList::Filter(const QString& text) {
    const QString sought = text.trimmed();
    QTreeWidgetItem* first = nullptr;
    for (int i = 0; i < m_found->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_found->topLevelItem(i);
        const bool isName = item->text(OriginColumn).contains(sought, Qt::CaseInsensitive);
        const bool isFound = isName || item->text(KindColumn).contains(sought, Qt::CaseInsensitive);
        item->setHidden(!isFound);
        const bool isBetter =
            first == nullptr || (isName && !first->text(OriginColumn).contains(sought, Qt::CaseInsensitive));
        first = isFound && isBetter ? item : first;
    }
    m_found->setCurrentItem(first);
}

void OriginList::Take() {
    const QTreeWidgetItem* item = m_found->currentItem();
    if (item != nullptr && !item->isHidden()) {
        hidePopup();
        setCurrentIndex(m_found->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(item)));
        emit activated(currentIndex());
    }
}

void OriginList::keyPressEvent(QKeyEvent* event) {
    const QString typed = event->text();
    const bool isPlain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (isPlain && !typed.isEmpty() && typed.front().isLetterOrNumber()) {
        showPopup();
        m_text->setText(typed);
        return;
    }
    ChoiceList::keyPressEvent(event);
}

/// Arrows move in the list while the keys go to what is typed.
bool OriginList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_text && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            QCoreApplication::sendEvent(m_found, event);
            return true;
        case Qt::Key_Escape:
            hidePopup();
            return true;
        default:
            break;
        }
    }
    return ChoiceList::eventFilter(watched, event);
}
