#include "core/Operator.h"

#include "sql/visibleText.h"

#include <utility>

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

Operator::Operator() { m_clock.start(); }

double Operator::Seconds() const { return static_cast<double>(m_clock.nsecsElapsed()) / 1e9; }

double Operator::WorkedSeconds() const { return (m_waiting > 0 ? m_waitingSince : Seconds()) - m_waited; }

Operator::Waiting::Waiting(Operator& person)
    : m_person(person) {
    if (m_person.m_waiting++ == 0) {
        m_person.m_waitingSince = m_person.Seconds();
    }
}

Operator::Waiting::~Waiting() {
    if (--m_person.m_waiting == 0) {
        m_person.m_waited += m_person.Seconds() - m_person.m_waitingSince;
    }
}

void Operator::Message(const QString& text, Icon icon) {
    const QString seen = VisibleText(text);
    if (m_quiet != nullptr) {
        m_quiet->m_kept.append(seen);
    } else {
        ShowMessage(seen, icon);
    }
}

void Operator::ReportError(const ErrorEntry& error) {
    if (m_quiet == nullptr) {
        ShowError(error);
    }
}

Operator::Quiet::Quiet(Operator& person)
    : m_person(person),
      m_outer(std::exchange(person.m_quiet, this)) {}

Operator::Quiet::~Quiet() { m_person.m_quiet = m_outer; }

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
