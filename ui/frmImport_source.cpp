#include "adapters/registry.h"
#include "app/sourceChoice.h"
#include "ui/ChoiceList.h"
#include "ui/frmImport_running.h"
#include "ui/frmInspect.h"
#include "ui/frmSource.h"
#include "ui/SourceBar.h"
#include "ui/WindowOperator.h"

/// What will be read by the origin that is chosen.
void frmImport::ShowSource() {
    const contract::Origin* origin = Chosen().origin;
    QString line;
    if (origin != nullptr) {
        try {
            line = sourceChoice::Line(m_session, *origin);
        } catch (const ImportError& error) {
            line = error.Message(); // settings that cannot be read have been told when the connection was tried
        }
    }
    m_source->SetSource(line);
}

void frmImport::cmdSource_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    frmSource(m_session, *Chosen().origin, this).exec();
    ShowSource();
}

void frmImport::cmdTrySource_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    const Running running(*this);
    const contract::Origin& origin = *Chosen().origin;
    const sourceChoice::Trial trial = sourceChoice::Try(m_session, origin);
    if (trial.text.isEmpty()) {
        return;
    }
    const QString text = sourceChoice::Line(m_session, origin) + "\n\n" + trial.text;
    if (trial.isOpen) {
        m_person.Message(text);
    } else {
        m_person.Message("Impossibile connettersi a " + origin.name + "!\n" + text, Icon::Exclamation);
    }
}

void frmImport::cmdInspect_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    const Running running(*this);
    if (!Chosen().companyCode.isEmpty()) {
        TakeCompany(m_session, Chosen().companyCode); // the preview writes for it, and takes it back
    }
    frmInspect::Show(m_session, *Chosen().origin, this);
    ShowSource();
}
