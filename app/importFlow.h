#pragma once

#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/RowSelection.h"

/// The four ways of dealing with errors, as the window lists them ("Gestiti dall'utente" first).
const QStringList& ErrorModes();
/// What the collector does in the mode at that position of the list; the mapping is not the identity.
ErrorAction ErrorModeAction(int position);

/// The mode that does that.
QString ErrorModeName(ErrorAction action);

/// What is chosen in the main window before anything is started.
struct Choice {
    QString company;     ///< its name (AZRAS); empty: none is chosen
    QString companyCode; ///< CDAZI, where it is known: tells companies of one name apart
    const contract::Origin* origin = nullptr;
    ErrorAction errors = ErrorAction::Ask;
};

/// Takes a company under work: from here on its code stands in front of the company tables.
/// @param code CDAZI, as it stands in SYS_AZI
void TakeCompany(Session& session, const QString& code);

/// Forgets what an earlier press of a button has left: it must not be taken for this one's, as the operator may have
/// filled in translations since.
void Forget(Session& session);

/// The gate in front of every import, reset and sequence: checks the choice and takes the company under work.
/// False when something is missing; the operator has been told then.
bool CheckData(Session& session, const Choice& choice);

/// Looks at the database around what a trial does to it, within its transaction and with the source open. What they
/// raise ends the press. Either may be empty.
struct TrialLook {
    std::function<void()> before; ///< the first procedure
    std::function<void()> after;  ///< the last one, before everything is taken back
};

/// One press of an import button.
struct ImportRequest {
    Choice choice;
    contract::Button button = contract::Button::Cli;
    QString procedure;         ///< not empty: this procedure alone, by its name, whatever the button
    QString singleCode;        ///< empty for all
    bool confirmed = false;    ///< the confirmation has been given beforehand
    std::optional<bool> reset; ///< answer to the reset question given beforehand
    bool dryRun = false;       ///< what the procedures do to the database is taken back at the end
    /// The source rows that the procedures are limited to, such as those that an earlier run has given up; null: all.
    /// Nothing is emptied then.
    std::shared_ptr<contract::RowSelection> only;
    qint64 resumes = 0;  ///< the run of the history that `only` goes on with; 0: none
    TrialLook look = {}; ///< at such a trial
    /// Is told the number of the run in the history at its end; not of one that is not kept, or in which
    /// no procedure ran. It raises nothing.
    std::function<void(qint64 run)> kept = {};
};

enum class FlowOutcome {
    Done,
    Failed,      ///< told or reported
    Cancelled,   ///< in the middle of a procedure
    Declined,    ///< the operator said no, or gave up the opening of the source
    Refused,     ///< something is not chosen
    Unavailable, ///< the origin has no procedure for the button, or none of that name
};

/// The flow behind an import button: gate, confirmation, source, reset question, procedures, closing of the source.
/// The results of the procedures are appended to those of the session. A procedure that fails or is cancelled ends the
/// press: those after it do not run.
FlowOutcome RunImport(Session& session, const ImportRequest& request);

/// The procedures that a press calls, in order; empty when the origin has none for it.
std::vector<const contract::Procedure*> CalledBy(const ImportRequest& request);
/// The procedures that a button of an origin calls, in order; empty when there are none.
std::vector<const contract::Procedure*> ProceduresOf(const contract::Origin& origin, contract::Button button);
/// The procedure of that name (compared without case); none when the origin has none.
const contract::Procedure* ProcedureOf(const contract::Origin& origin, const QString& name);
/// What a button says for an origin that has been chosen alone: its own caption, else the usual one.
QString ButtonCaption(const contract::Origin& origin, contract::Button button);
/// The question that a button of an origin starts with, such as "Importare le controparti?".
QString ConfirmationOf(const contract::Origin& origin, contract::Button button);
