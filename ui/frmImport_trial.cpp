#include "app/check.h"
#include "app/report/makeProof.h"
#include "app/report/pageFile.h"
#include "app/report/verdict.h"
#include "app/resultText.h"
#include "ui/frmCodes.h"
#include "ui/frmHelp.h"
#include "ui/frmImport_running.h"
#include "ui/ImportButtons.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"

#include <QDesktopServices>
#include <QDir>
#include <QMenu>
#include <QUrl>

/// Every procedure that the buttons of the window call.
void frmImport::cmdCheck_Click() {
    const contract::Origin* origin = Chosen().origin;
    if (m_running || !CheckData(m_session, Chosen())) {
        return;
    }
    const Running running(*this);
    std::vector<const contract::Procedure*> procedures;
    for (const contract::Procedure& procedure : origin->procedures) {
        procedures.push_back(&procedure);
    }
    const qint64 before = m_session.Errors.Count();
    const auto findings = check::Run(m_session, Chosen(), procedures);
    QStringList lines;
    for (const check::Finding& finding : findings.value_or(std::vector<check::Finding>())) {
        lines += QStringList{{}} + check::Lines(finding, finding.procedure->name);
    }
    if (!findings) {
        for (const ErrorEntry& entry : m_session.Errors.Since(before)) {
            lines.append("Errore: " + entry.message);
        }
    }
    if (lines.isEmpty()) {
        lines.append("Non c'è nulla da verificare: l'origine non ha importazioni in questa versione.");
    }
    ShowAccount("Verifica di " + origin->name + " (non è stato scritto nulla)", lines);
}

/// The codes of the origin that is chosen; of all of them without one.
void frmImport::cmdCodes_Click() {
    if (m_running) {
        return;
    }
    if (Chosen().companyCode.isEmpty()) {
        m_person.Message("Selezionare l'azienda sul quale operare!", Icon::Exclamation);
        return;
    }
    const Running running(*this);
    Told(m_person, [this] {
        TakeCompany(m_session, Chosen().companyCode);
        frmCodes(m_session, m_person, Chosen().origin, this).exec();
    });
}

/// The imports that can be tried now.
QList<contract::Button> frmImport::ButtonsToTry() const {
    const contract::Origin* origin = Chosen().origin;
    QList<contract::Button> buttons;
    for (size_t i = 0; origin != nullptr && i < m_state.imports.size(); ++i) {
        const auto button = static_cast<contract::Button>(i);
        if (m_state.At(button).visible && HintOf(m_state, button, origin).built) {
            buttons.append(button);
        }
    }
    return buttons;
}

void frmImport::TellNothingToTry(QMenu& menu) const {
    menu.addAction(Chosen().origin == nullptr ? "Scegliere prima l'origine dei dati"
                                              : "Nessuna importazione disponibile in questa versione")
        ->setEnabled(false);
}

/// Under the names that the window tells beside their buttons.
void frmImport::FillTrials(QMenu& menu) {
    menu.clear();
    for (const contract::Button button : ButtonsToTry()) {
        ImportRequest request;
        request.button = button;
        request.dryRun = true;
        connect(menu.addAction(HintOf(m_state, button, Chosen().origin).what), &QAction::triggered, this,
                [this, request] { Run(request); });
    }
    if (menu.isEmpty()) {
        TellNothingToTry(menu);
    }
}

/// The task of a start mode is a repair, which has nothing to be compared.
void frmImport::FillProofs(QMenu& menu) {
    menu.clear();
    const QList<contract::Button> buttons = ButtonsToTry();
    if (buttons.isEmpty()) {
        TellNothingToTry(menu);
        return;
    }
    if (TaskProcedure(m_state.mode).isEmpty()) {
        for (const contract::Button button : buttons) {
            connect(menu.addAction(HintOf(m_state, button, Chosen().origin).what), &QAction::triggered, this,
                    [this, button] { Prove(button); });
        }
        menu.addSeparator();
    }
    connect(menu.addAction("Tutto ciò che l'origine importa"), &QAction::triggered, this, [this] { Prove({}); });
}

void frmImport::Prove(std::optional<contract::Button> button) {
    if (m_running || !CheckData(m_session, Chosen())) {
        return;
    }
    const Running running(*this);
    const contract::Origin& origin = *Chosen().origin;
    const std::vector<proof::Wanted> wanted = button ? std::vector<proof::Wanted>{{*button}} : proof::AllOf(origin);
    Guarded(m_session.Errors, "frmImport", "Prove", false, [&] {
        const auto made = proof::Make(m_session, Chosen(), wanted);
        if (made) {
            const QString path = proof::KeepPage(SettingsFolder() + "/Verbali", *made);
            ShowAccount(
                "Quadratura con " + origin.name + " (non è stato scritto nulla)",
                {proof::VerdictOf(proof::FindingsOf(*made)).reason, "Verbale: " + QDir::toNativeSeparators(path)});
            QDesktopServices::openUrl(QUrl::fromLocalFile(path));
        }
        return made.has_value();
    });
}

/// What the origin's procedures read and write; the one behind the import button that has the focus comes first.
void frmImport::ShowHelp() {
    const contract::Origin* origin = Chosen().origin;
    const auto button = m_imports->Focused();
    QString procedure = TaskProcedure(m_state.mode);
    if (procedure.isEmpty() && origin != nullptr && button) {
        const auto procedures = ProceduresOf(*origin, *button);
        procedure = procedures.empty() ? QString() : procedures.front()->name;
    }
    frmHelp(origin, procedure, this).exec();
}
