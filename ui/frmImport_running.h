#pragma once

#include "ui/frmImport.h"
#include "ui/LogView.h"

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
