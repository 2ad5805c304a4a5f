#include "app/importFlow.h"

#include "adapters/contract/run/Origin.h"
#include "app/brokenReferences.h"
#include "app/CompanyLock.h"
#include "app/confirmation.h"
#include "app/connectSource.h"
#include "app/history/History.h"
#include "app/history/Recorder.h"
#include "app/inspect.h"
#include "app/mergeButton.h"
#include "app/procedureTitle.h"
#include "app/RunLog.h"
#include "core/modImport.h"
#include "core/runEnding.h"
#include "core/Trial.h"
#include "sources/layout/LayoutFile.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

#include <QScopeGuard>

using namespace contract;

namespace {

const QString Form = QStringLiteral("frmImport");

/// What there is to say about a button, whatever the origin.
struct ButtonTexts {
    QString control;
    QString caption;
    QString confirmation;
};

const ButtonTexts& TextsOf(Button button) {
    static const std::array<ButtonTexts, ButtonCount> texts{{
        {"cmdImportCli", "Importa Controparti", "Importare le controparti?"},
        {"cmdImportArt", "Importa Articoli", "Importare gli articoli?"},
        {"cmdImportDis", "Importa Distinte Base", "Importare le distinte base?"},
        {"cmdImportDoc", "Importa Documenti", "Importare i documenti?"},
        {"cmdImportAcq", "Importa Acquisti", "Importare gli acquisti?"},
        {"cmdImportSaldi", "Importa Saldi di Magazzino", "Importare i saldi di magazzino?"},
        {"cmdImportPiano", "Importa Piano dei Conti", "Importare il piano dei conti?"},
        {"cmdImportDisegni", "Importa Disegni", "Importare i disegni?"},
    }};
    return texts[static_cast<size_t>(button)];
}

bool Refuse(Session& session, const QString& reason) {
    session.Person.Message(reason, Icon::Exclamation);
    return false;
}

/// The codes of the companies of the chosen name, in their order; of one that is chosen by its code that one alone.
QStringList FindCompany(Session& session, const Choice& choice) {
    const QString name = TextLiteral(session.Quadrix, choice.company);
    Recordset rows = session.Quadrix.ExecuteWC("SELECT CDAZI FROM SYS_AZI WHERE AZRAS = " + name + " ORDER BY CDAZI");
    QStringList codes;
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString code = mod_ovTools::ToText(rows.Value("CDAZI"));
        if (choice.companyCode.isEmpty() || code.compare(choice.companyCode, Qt::CaseInsensitive) == 0) {
            codes.append(code);
        }
    }
    return codes;
}

/// What the procedures delete at a reset: each table once, where several of a button empty it.
std::vector<RowsToDelete> RowsToReset(Session& session, const std::vector<const Procedure*>& procedures) {
    std::vector<RowsToDelete> rows;
    for (const Procedure* procedure : procedures) {
        for (const RowsToDelete& each : DeletedByReset(session, *procedure)) {
            if (std::none_of(rows.begin(), rows.end(), [&](const auto& known) { return known.table == each.table; })) {
                rows.push_back(each);
            }
        }
    }
    return rows;
}

/// The rows that a reset leaves referring to what it deletes; empty when there are none.
QString LeftByReset(Session& session, const std::vector<RowsToDelete>& rows) {
    const QString left = brokenReferences::TextOf(brokenReferences::LeftBy(session, rows));
    return left.isEmpty()
               ? left
               : QStringLiteral("Righe che restano e si riferiscono a ciò che si elimina: %1. Chi avrà poi quei "
                                "codici avrà anche queste righe.")
                     .arg(left);
}

Answer AskReset(Session& session, const ImportRequest& request, const std::vector<const Procedure*>& procedures) {
    if (request.reset) {
        return *request.reset ? Answer::Yes : Answer::No;
    }
    const std::vector<RowsToDelete> rows = RowsToReset(session, procedures);
    QStringList lines{confirmation::RunDetails(session, *request.choice.origin, procedures),
                      confirmation::RowsText(session.Quadrix, rows)};
    if (const QString left = LeftByReset(session, rows); !left.isEmpty()) {
        lines.append(left);
    }
    const QString details = lines.join(u'\n');
    if (request.procedure.isEmpty() && request.button == Button::Cli &&
        request.choice.origin->deletesAllCounterparties) {
        return session.Person.Ask("Cancellare tutte le controparti prima di importarle?", Question::ExclamationNo,
                                  details);
    }
    return session.Person.Ask("Resettare prima di importare?", Question::PlainNo, details);
}

/// How the procedures ended whose results stand in the session from `first` on.
FlowOutcome OutcomeOf(const Session& session, qsizetype first) {
    const auto broken = FirstNotDone(session.Results.mid(first));
    return !broken                                 ? FlowOutcome::Done
           : *broken == RunResult::Outcome::Failed ? FlowOutcome::Failed
                                                   : FlowOutcome::Cancelled;
}

/// Every procedure of an origin that can run: its module's and those of the program itself.
std::vector<const Procedure*> BuiltProcedures(const Origin& origin) {
    std::vector<const Procedure*> procedures;
    for (const auto* each : {&origin.procedures, &modMain::ProgramProcedures(origin)}) {
        for (const Procedure& procedure : *each) {
            if (procedure.run) {
                procedures.push_back(&procedure);
            }
        }
    }
    return procedures;
}

/// What is called, as messages name it.
QString NameOf(const Origin& origin, const ImportRequest& request) {
    return request.procedure.isEmpty()
               ? QStringLiteral("la procedura del pulsante \"%1\"").arg(ButtonCaption(origin, request.button))
               : QStringLiteral("la procedura \"%1\"").arg(request.procedure);
}

QString QuestionOf(const Origin& origin, const ImportRequest& request) {
    if (request.procedure.isEmpty()) {
        return ConfirmationOf(origin, request.button);
    }
    const Procedure* named = ProcedureOf(origin, request.procedure);
    return named->confirmation.isEmpty() ? QStringLiteral("Eseguire \"%1\"?").arg(ProcedureTitle(origin, *named))
                                         : named->confirmation;
}

/// Opens the source of an origin in place of the one that is open; does nothing when it is that one, or without one.
FlowOutcome Open(Session& session, const Origin* source, const Origin*& open) {
    if (source == nullptr || source == open) {
        return FlowOutcome::Done;
    }
    const SourceOutcome outcome = ConnectOrTell(session, *source);
    open = source;
    return outcome == SourceOutcome::Opened   ? FlowOutcome::Done
           : outcome == SourceOutcome::Failed ? FlowOutcome::Failed
                                              : FlowOutcome::Declined;
}

/// A procedure that an earlier run has done whole, but for rows that are open still, keeps this one from being whole.
void TellLeftOut(Session& session, const Origin& origin, const Procedure& procedure, qint64 givenUp) {
    if (givenUp > 0) {
        RunResult result;
        result.module = origin.module;
        result.procedure = procedure.name;
        result.givenUpBefore = givenUp;
        session.Results.append(result);
        if (session.Observer != nullptr) {
            session.Observer->ProcedureBegins(result.module, result.procedure);
            session.Observer->ProcedureEnds(result);
        }
    }
}

/// Adds a line to what a procedure has told, which has ended.
void TellIn(Session& session, RunResult& result, const QString& line) {
    result.details.append(line);
    try {
        modImport::WriteImportLog(session, line, false);
    } catch (const Error&) {
        session.Errors.Monitoring(Form, QStringLiteral("TellIn"));
    }
}

/// What a reset leaves, to those who were not asked before it. @param first place of the first result
void TellLeft(Session& session, const QString& left, qsizetype first) {
    if (!left.isEmpty() && session.Results.size() > first) {
        TellIn(session, session.Results[first], left);
    }
}

/// The procedures behind one that broke off, which do not run: their rows stand in no account.
void TellNotRun(Session& session, const ImportRequest& request, const std::vector<const Procedure*>& procedures,
                const Procedure* broken) {
    QStringList titles;
    for (auto each = std::find(procedures.begin(), procedures.end(), broken) + 1; each < procedures.end(); ++each) {
        if (request.only == nullptr || request.only->Wants((*each)->name)) {
            titles.append(ProcedureTitle(*request.choice.origin, **each));
        }
    }
    if (!titles.isEmpty()) {
        TellIn(session, session.Results.last(),
               QStringLiteral("Non eseguite: %1").arg(titles.join(QStringLiteral(", "))));
    }
}

/// Whether the procedures are to empty their tables.
Answer ResetOf(Session& session, const ImportRequest& request, const std::vector<const Procedure*>& procedures) {
    const bool asks = request.only == nullptr && std::any_of(procedures.begin(), procedures.end(),
                                                             [](const auto* each) { return each->asksReset; });
    return asks ? AskReset(session, request, procedures) : Answer::No;
}

/// @param open the origin whose source is open; null: none is
FlowOutcome RunProcedures(Session& session, const ImportRequest& request,
                          const std::vector<const Procedure*>& procedures, Answer reset, const Origin* open,
                          history::Recorder* recorder) {
    QString left =
        reset == Answer::Yes && request.reset ? LeftByReset(session, RowsToReset(session, procedures)) : QString();
    const qsizetype first = session.Results.size();
    for (const Procedure* procedure : procedures) {
        if (recorder != nullptr) {
            recorder->Begins(procedure->name, request.choice.origin->name);
        }
        if (request.only != nullptr && !request.only->Wants(procedure->name)) {
            TellLeftOut(session, *request.choice.origin, *procedure, request.only->LeftBy(procedure->name));
            continue;
        }
        const FlowOutcome source = Open(session, SourceOf(*request.choice.origin, *procedure), open);
        if (source != FlowOutcome::Done) {
            return source;
        }
        if (request.only != nullptr) {
            request.only->Begin(procedure->name);
        }
        procedure->run(session, request.singleCode, reset == Answer::Yes && procedure->asksReset);
        TellLeft(session, std::exchange(left, {}), first);
        const FlowOutcome outcome = OutcomeOf(session, first);
        if (outcome != FlowOutcome::Done) {
            TellNotRun(session, request, procedures, procedure);
            return outcome;
        }
    }
    return FlowOutcome::Done;
}

/// What is done, for those who meet it: "importazione: Controparti da Gescom".
QString WorkOf(const Origin& origin, const std::vector<const Procedure*>& procedures) {
    QStringList titles;
    for (const Procedure* procedure : procedures) {
        titles.append(ProcedureTitle(origin, *procedure));
    }
    return QStringLiteral("importazione: ") + titles.join(QStringLiteral(", "));
}

/// The text of the layout file of the source that is read first; empty without one.
QString LayoutText(const Session& session, const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const Origin* source = FirstSourceOf(origin, procedures);
    return source == nullptr ? QString() : sources::LayoutFile::TextOf(inspection::LayoutPath(session, *source));
}

/// What the history keeps of a press beside what its procedures do.
history::RunFacts FactsOf(Session& session, const ImportRequest& request,
                          const std::vector<const Procedure*>& procedures, const QString& work) {
    const Origin& origin = *request.choice.origin;
    history::RunFacts facts{
        .origin = origin.name,
        .data = request.procedure.isEmpty() ? ButtonName(request.button) : request.procedure,
        .work = work,
        .source = confirmation::SourceText(session, origin, procedures),
        .layout = LayoutText(session, origin, procedures),
        .code = request.singleCode,
        .resumes = request.resumes,
        .isTrial = request.dryRun,
        .kept = request.kept,
    };
    if (request.only != nullptr) {
        facts.options.append(request.only->Count() > 0 ? history::OnlySomeRows
                                                       : QStringLiteral("Riprende un'esecuzione interrotta"));
    }
    facts.options.append(QStringLiteral("Errori: ") + ErrorModeName(session.Errors.Action));
    if (const QString limit = session.MostGivenUp.Text(); !limit.isEmpty()) {
        facts.options.append(QStringLiteral("Si ferma a righe abbandonate: ") + limit);
    }
    return facts;
}

FlowOutcome RunConfirmed(Session& session, const ImportRequest& request,
                         const std::vector<const Procedure*>& procedures) {
    const QString work = WorkOf(*request.choice.origin, procedures);
    const CompanyLock lock(session, {session.UserManager.Azienda()}, work);
    const RunLog log(session, work);
    session.Selection = request.only.get(); // the rows that a press is limited to, while it runs
    const auto unlimited = qScopeGuard([&] { session.Selection = nullptr; });
    const auto closer = qScopeGuard([&] { CloseSource(session); });
    const Origin* open = nullptr;
    const FlowOutcome source = Open(session, FirstSourceOf(*request.choice.origin, procedures), open);
    if (source != FlowOutcome::Done) {
        return source;
    }
    std::optional<history::Recorder> recorder; // a look at both sides is no run
    if (!request.look.before) {
        recorder.emplace(session, FactsOf(session, request, procedures, work));
    }
    const Answer reset = ResetOf(session, request, procedures); // nothing is locked while it is asked
    if (reset == Answer::GivenUp) {
        return FlowOutcome::Declined;
    }
    if (!request.dryRun) {
        return RunProcedures(session, request, procedures, reset, open, recorder ? &*recorder : nullptr);
    }
    const Trial trial(session);
    if (request.look.before) {
        request.look.before();
    }
    const FlowOutcome outcome =
        RunProcedures(session, request, procedures, reset, open, recorder ? &*recorder : nullptr);
    if (request.look.after) {
        request.look.after();
    }
    return outcome;
}

FlowOutcome Press(Session& session, const ImportRequest& request) {
    Forget(session);
    if (!CheckData(session, request.choice)) {
        return FlowOutcome::Refused;
    }
    const Origin& origin = *request.choice.origin;
    const auto procedures = CalledBy(request);
    if (procedures.empty()) {
        Refuse(
            session,
            QStringLiteral("%1: %2 non è disponibile in questa versione!").arg(origin.name, NameOf(origin, request)));
        return FlowOutcome::Unavailable;
    }
    if (!request.confirmed &&
        session.Person.Ask(QuestionOf(origin, request), Question::Plain,
                           confirmation::RunDetails(session, origin, procedures)) != Answer::Yes) {
        return FlowOutcome::Declined;
    }
    return RunConfirmed(session, request, procedures);
}

} // namespace

const QStringList& ErrorModes() {
    static const QStringList modes{"Gestiti dall'utente", "Ignora e continua", "Riprova 3 volte",
                                   "Interrompi l'azione"};
    return modes;
}

ErrorAction ErrorModeAction(int position) {
    static const QVector<ErrorAction> actions{ErrorAction::Ask, ErrorAction::Ignore, ErrorAction::Retry,
                                              ErrorAction::Abort};
    return actions.value(position, ErrorAction::Ask);
}

QString ErrorModeName(ErrorAction action) {
    for (int position = 0; position < ErrorModes().size(); ++position) {
        if (ErrorModeAction(position) == action) {
            return ErrorModes().at(position);
        }
    }
    return {};
}

void TakeCompany(Session& session, const QString& code) {
    session.UserManager.SetAzienda(code);
    session.UserManager.DataElaborazione = session.Now().date();
    session.Config.LoadConfig();
}

void Forget(Session& session) {
    session.Errors.ClearError();
    session.Translations.clear();
    session.Untranslated.Forget();
}

bool CheckData(Session& session, const Choice& choice) {
    return Guarded(session.Errors, Form, QStringLiteral("CheckData"), false, [&] {
        if (choice.company.isEmpty() && choice.companyCode.isEmpty()) {
            return Refuse(session, "Selezionare l'azienda sul quale operare!");
        }
        if (choice.origin == nullptr) {
            return Refuse(session, "Selezionare l'origine dei dati!");
        }
        session.Errors.Action = choice.errors;
        const QStringList codes = FindCompany(session, choice);
        if (codes.isEmpty()) {
            return Refuse(session, "Si è verificato un errore imprevisto sull'azienda selezionata!");
        }
        if (codes.size() > 1) {
            return Refuse(session,
                          QStringLiteral("L'azienda '%1' c'è più volte, con i codici %2: indicarla col codice!")
                              .arg(choice.company, codes.join(", ")));
        }
        TakeCompany(session, codes.first());
        return true;
    });
}

FlowOutcome RunImport(Session& session, const ImportRequest& request) {
    const QString procedure = TextsOf(request.button).control + QStringLiteral("_Click");
    return Guarded(session.Errors, Form, procedure, FlowOutcome::Failed, [&] { return Press(session, request); });
}

std::vector<const Procedure*> CalledBy(const ImportRequest& request) {
    const Origin& origin = *request.choice.origin;
    if (request.procedure.isEmpty()) {
        return ProceduresOf(origin, request.button);
    }
    const Procedure* named = ProcedureOf(origin, request.procedure);
    return named == nullptr ? std::vector<const Procedure*>() : std::vector<const Procedure*>{named};
}

std::vector<const Procedure*> ProceduresOf(const Origin& origin, Button button) {
    std::vector<const Procedure*> procedures = BuiltProcedures(origin);
    std::erase_if(procedures, [button](const Procedure* procedure) { return procedure->button != button; });
    return procedures;
}

const Procedure* ProcedureOf(const Origin& origin, const QString& name) {
    const auto procedures = BuiltProcedures(origin);
    const auto found = std::find_if(procedures.begin(), procedures.end(), [&name](const Procedure* procedure) {
        return procedure->name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == procedures.end() ? nullptr : *found;
}

QString ButtonCaption(const Origin& origin, Button button) {
    const QString& own = origin.buttons[static_cast<size_t>(button)].caption;
    return own.isEmpty() ? TextsOf(button).caption : own;
}

QString ConfirmationOf(const Origin& origin, Button button) {
    const auto procedures = ProceduresOf(origin, button);
    if (!procedures.empty() && !procedures.front()->confirmation.isEmpty()) {
        return procedures.front()->confirmation;
    }
    const QString& caption = origin.buttons[static_cast<size_t>(button)].caption;
    if (caption.isEmpty() || caption == TextsOf(button).caption) {
        return TextsOf(button).confirmation;
    }
    static const QString importa = QStringLiteral("Importa ");
    if (caption.startsWith(importa)) {
        return QStringLiteral("Importare ") + caption.mid(importa.size()) + u'?';
    }
    return QStringLiteral("Eseguire \"%1\"?").arg(caption);
}
