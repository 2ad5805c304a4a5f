#include "core/Operator.h"

void Progress::SetMax(float max) {
    m_max = max;
    Refresh();
}

void Progress::SetValue(float value) {
    m_value = value >= m_max ? m_max : value;
    Refresh();
}

void Progress::SetStep(const QString& text) {
    m_caption = QStringLiteral("Importazione in corso ") + text + QStringLiteral("...");
    Refresh();
}

Operator::Busy::Busy(Operator& person)
    : m_person(person) {
    if (m_person.m_busy++ == 0) {
        m_person.ShowBusy(true);
    }
}

Operator::Busy::~Busy() {
    if (--m_person.m_busy == 0) {
        m_person.ShowBusy(false);
    }
}
