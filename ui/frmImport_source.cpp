#include "adapters/registry.h"
#include "app/sourceChoice.h"
#include "app/template/sheetTemplate.h"
#include "ui/ChoiceList.h"
#include "ui/frmImport_running.h"
#include "ui/frmInspect.h"
#include "ui/frmSource.h"
#include "ui/SourceBar.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"

/// What will be read by the origin that is chosen.
void frmImport::ShowSource() {
    const contract::Origin* origin = Chosen().origin;
    QString line;
    QStringList templates;
    if (origin != nullptr) {
        for (const contract::Button button : sheetTemplate::ButtonsOf(*origin)) {
            templates.append(HintOf(m_state, button, origin).what);
        }
        try {
            line = sourceChoice::Line(m_session, *origin);
        } catch (const ImportError& error) {
            line = error.Message(); // settings that cannot be read have been told when the connection was tried
        }
    }
    m_source->SetSource(line);
    m_source->SetTemplates(templates);
}

void frmImport::cmdSource_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    Told(m_person, [this] { frmSource(m_session, *Chosen().origin, this).exec(); });
    ShowSource();
}

void frmImport::cmdTrySource_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    const Running running(*this);
    const contract::Origin& origin = *Chosen().origin;
    const QString failed = "Impossibile connettersi a " + origin.name + "!\n";
    const auto tryToOpen = [&] {
        const sourceChoice::Trial trial = sourceChoice::Try(m_session, origin);
        if (trial.text.isEmpty()) {
            return;
        }
        const QString text = sourceChoice::Line(m_session, origin) + "\n\n" + trial.text;
        if (trial.isOpen) {
            m_person.Message(text);
        } else {
            m_person.Message(failed + text, Icon::Exclamation);
        }
    };
    Told(m_person, tryToOpen, failed);
}

void frmImport::cmdInspect_Click() {
    if (m_running || Chosen().origin == nullptr) {
        return;
    }
    const Running running(*this);
    Told(m_person, [this] {
        if (!Chosen().companyCode.isEmpty()) {
            TakeCompany(m_session, Chosen().companyCode); // the preview writes for it, and takes it back
        }
        frmInspect::Show(m_session, *Chosen().origin, this);
    });
    ShowSource();
}

void frmImport::WriteTemplate(contract::Button button) {
    if (m_running) {
        return;
    }
    const QString path = m_person.SaveFile("Modello da compilare", "modello.xlsx", "Cartella di lavoro|*.xlsx");
    if (path.isEmpty()) {
        return;
    }
    const Running running(*this);
    const bool hasCompany = !Chosen().companyCode.isEmpty();
    Told(m_person, [&] {
        const Operator::Busy busy(m_person);
        if (hasCompany) {
            TakeCompany(m_session, Chosen().companyCode);
        }
        ShowAccount("Modello per l'origine " + Chosen().origin->name,
                    {sheetTemplate::Write(hasCompany ? &m_session : nullptr, button, path).Text(path)});
    });
}
