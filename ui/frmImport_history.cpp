#include "app/procedureTitle.h"
#include "ui/frmHistory.h"
#include "ui/frmImport_running.h"
#include "ui/frmResult.h"
#include "ui/told.h"
#include "ui/toolButtons.h"
#include "ui/WindowOperator.h"

#include <QToolButton>

QToolButton* frmImport::NewHistoryTool() {
    auto* history = NewToolButton("cmdHistory", "Cronologia...",
                                  "Mostra che cosa hanno fatto le importazioni, e importa di nuovo gli scarti",
                                  QKeySequence("Ctrl+H"));
    connect(history, &QToolButton::clicked, this, &frmImport::cmdHistory_Click);
    return history;
}

void frmImport::ShowRun(qint64 run) {
    Told(m_person, [this, run] {
        delete m_resultWindow;
        m_resultWindow = new frmResult(m_session, m_person, run, this);
        m_resultWindow->show();
        m_resultWindow->activateWindow();
    });
}

void frmImport::cmdHistory_Click() {
    if (m_running) {
        return;
    }
    Told(m_person, [this] {
        if (m_history == nullptr) {
            m_history = new frmHistory(m_session, m_person, this);
            m_history->Import = [this](const ImportRequest& request) { ImportAgain(request); };
            m_history->Errors = [this] { return Chosen().errors; };
            connect(m_history, &frmHistory::Opened, this, &frmImport::ShowRun);
        } else {
            m_history->Refresh();
        }
        m_history->show();
        m_history->raise();
        m_history->activateWindow();
    });
}

/// The window shows what is imported: company and origin of the earlier run.
void frmImport::ImportAgain(const ImportRequest& request) {
    if (m_running) {
        return;
    }
    const LockedChoice locked(*this);
    SelectCompany(request.choice.companyCode);
    cmbOrigine->setCurrentIndex(cmbOrigine->findText(request.choice.origin->name));
    QStringList titles;
    for (const contract::Procedure* procedure : CalledBy(request)) {
        titles.append(ProcedureTitle(*request.choice.origin, *procedure));
    }
    Start(request, titles.join(", ") + " (parte di un'esecuzione precedente)");
}
