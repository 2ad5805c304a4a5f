#pragma once

#include "ui/ChoiceList.h"
#include "ui/frmImport.h"
#include "ui/LogView.h"
#include "ui/OriginList.h"

/// An operation under way, for its lifetime: no other one starts, and the window closes behind it when that was asked.
class frmImport::Running {
public:
    explicit Running(frmImport& window)
        : m_window(window) {
        m_window.m_running = true;
    }
    ~Running() {
        m_window.m_running = false;
        m_window.m_log->Refresh();
        if (m_window.m_closeAfter) {
            QMetaObject::invokeMethod(&m_window, &QWidget::close, Qt::QueuedConnection);
        }
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    frmImport& m_window;
};

/// A window whose lists are locked shows another company and origin while it works on them, and what it was locked on
/// behind that: it stores what it shows when it closes. Buttons that the settings hide stay hidden.
class frmImport::LockedChoice {
public:
    explicit LockedChoice(frmImport& window)
        : m_window(window),
          m_state(window.m_state),
          m_company(window.Chosen().companyCode),
          m_origin(window.cmbOrigine->currentIndex()) {}
    ~LockedChoice() {
        if (m_state.locked) {
            m_window.SelectCompany(m_company);
            m_window.cmbOrigine->setCurrentIndex(m_origin);
            m_window.m_state = m_state;
            m_window.ShowState();
        }
    }
    LockedChoice(const LockedChoice&) = delete;
    LockedChoice& operator=(const LockedChoice&) = delete;

private:
    frmImport& m_window;
    WindowState m_state;
    QString m_company; ///< its code: the list may be read anew meanwhile
    int m_origin;
};
