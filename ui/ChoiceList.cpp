#include "ui/ChoiceList.h"

#include <QWheelEvent>

void ChoiceList::showPopup() {
    emit Opening();
    QComboBox::showPopup();
}

// An open list is a window of its own, which the wheel scrolls.
void ChoiceList::wheelEvent(QWheelEvent* event) { event->ignore(); }
