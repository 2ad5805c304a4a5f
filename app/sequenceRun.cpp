#include "app/sequenceRun.h"

#include "adapters/sourceSettings.h"
#include "app/connectSource.h"
#include "app/mergeRecord.h"
#include "core/modImport.h"
#include "core/runEnding.h"
#include "sql/ownFile.h"

#include <QScopeGuard>

#include <algorithm>

using Outcome = SequenceEntry::Outcome;

namespace {

const QString ImportSection = QStringLiteral("IMPORT");
const QString Work = QStringLiteral("sequenza di importazione");

Outcome OutcomeOf(const QVector<RunResult>& results) {
    const auto broken = FirstNotDone(results);
    return !broken ? Outcome::Done : *broken == RunResult::Outcome::Failed ? Outcome::Failed : Outcome::Cancelled;
}

/// Whether rows were left out for want of their article.
bool LackedArticles(const QVector<RunResult>& results) {
    return std::any_of(results.cbegin(), results.cend(), [](const RunResult& result) {
        return std::any_of(result.notes.kinds.cbegin(), result.notes.kinds.cend(),
                           [](const Notes::Kind& kind) { return kind.name == u"ARTICOLO NON TROVATO"; });
    });
}

/// "righe lette 10 su 100", as far as a cancelled procedure came.
QString ReachedText(const QVector<RunResult>& results) {
    qint64 rows = 0;
    qint64 notReached = 0;
    for (const RunResult& result : results) {
        rows += result.sourceRows;
        notReached += result.notReached;
    }
    return QStringLiteral("righe lette %1 su %2").arg(rows - notReached).arg(rows);
}

/// "tabella 'CF', Cd_CF 'X1': ...": the row under way, where there was one, and what happened to it.
QString TextOf(const ErrorEntry& error) {
    return error.rowKey.isEmpty() ? error.message : QString(error.rowKey + ": " + error.message);
}

} // namespace

modMain::Company CompanyOf(Session& session, const SequenceSettings& settings) {
    const auto companies = modMain::GetCompanies(session);
    const QStringList listed = modMain::NamesInList(companies);
    const auto those = [&](const auto& textOf) {
        QVector<modMain::Company> found;
        for (qsizetype i = 0; i < companies.size(); ++i) {
            if (textOf(i).trimmed().compare(settings.company, Qt::CaseInsensitive) == 0) {
                found.append(companies.at(i));
            }
        }
        return found;
    };
    auto found = those([&](qsizetype i) { return companies.at(i).name; });
    if (found.isEmpty()) {
        found = those([&](qsizetype i) { return listed.at(i); });
    }
    if (found.isEmpty()) {
        found = those([&](qsizetype i) { return companies.at(i).code; });
    }
    if (found.isEmpty()) {
        throw ImportError(QStringLiteral("l'azienda '%1' del file '%2' non c'è").arg(settings.company, settings.file));
    }
    if (found.size() > 1) {
        QStringList codes;
        for (const modMain::Company& company : found) {
            codes.append(company.code);
        }
        throw ImportError(QStringLiteral("l'azienda '%1' del file '%2' c'è più volte, con i codici %3: scrivere in "
                                         "Azienda il codice di quella da caricare")
                              .arg(settings.company, settings.file, codes.join(", ")));
    }
    return found.first();
}

QString MergedTextOf(Session& session, const SequenceSettings& settings) {
    try {
        return merge::MergedText(session, CompanyOf(session, settings).code);
    } catch (const ImportError&) {
        return {};
    }
}

SequenceRun::SequenceRun(Session& session, const SequenceSettings& settings, const SequenceWindow& window)
    : m_session(session),
      m_settings(settings),
      m_window(window) {
    m_result.logFile = settings.logFile;
}

SequenceResult SequenceRun::Guard(const QString& procedure, const std::function<void()>& body) {
    const Operator::Busy busy(m_session.Person);
    m_procedure = procedure;
    // Not through the settings file, where a sequence that is killed would leave it.
    m_session.DocumentsFrom = m_settings.from;
    m_session.DocumentsFromSetting = FirstDaySetting;
    const auto back = qScopeGuard([this] {
        m_session.DocumentsFrom = {};
        m_session.DocumentsFromSetting.clear();
        m_session.Written.reset();
    });
    try {
        m_progress = m_session.Person.ShowProgress();
        body();
        m_progress->SetStep("sequenza di importazione"); // the last thing that a terminal shows of it
        m_progress.reset();
        CloseSource(m_session);
        Conclude();
    } catch (const Declined&) {
        m_progress.reset();
        m_result.outcome = RunResult::Outcome::Cancelled;
    } catch (const Stopped&) {
        m_progress.reset();
        m_result.outcome = RunResult::Outcome::Cancelled;
        Guarded(m_session.Errors, QStringLiteral("frmImport"), procedure, false, [&] {
            TellStopped();
            return true;
        });
    } catch (...) {
        m_progress.reset();
        m_session.Errors.Monitoring(QStringLiteral("frmImport"), procedure);
        if (m_current >= 0 && Current().outcome == Outcome::NotReached) {
            Current().outcome = Outcome::Failed;
            Current().message = TextOf(m_session.Errors.Entries().last());
            Guarded(m_session.Errors, QStringLiteral("frmImport"), procedure, false, [&] {
                LogOutcome();
                return true;
            });
        }
    }
    CloseSource(m_session);
    return m_result;
}

/// It ended well when nothing is left to be looked at: only then is that said.
void SequenceRun::Conclude() {
    const bool allDone = std::all_of(m_result.entries.cbegin(), m_result.entries.cend(),
                                     [](const SequenceEntry& entry) { return entry.outcome == Outcome::Done; });
    m_result.outcome = allDone ? RunResult::Outcome::Done : RunResult::Outcome::Failed;
    const QStringList shortcomings = Shortcomings();
    if (shortcomings.isEmpty()) {
        m_session.Person.Message("Importazione terminata correttamente!");
    } else {
        m_session.Person.Message("Importazione terminata, ma non tutto è riuscito:\n" + shortcomings.join(u'\n'),
                                 Icon::Exclamation);
    }
}

/// What is to be told of the steps that did not go smoothly: a text that several share once, the sources first.
QStringList SequenceRun::Shortcomings() const {
    QStringList unreachable;
    QStringList others;
    for (const SequenceEntry& entry : m_result.entries) {
        if (entry.outcome == Outcome::NotConnected) {
            const auto tells = [&entry](const QString& text) { return text.startsWith(entry.message); };
            if (std::none_of(unreachable.cbegin(), unreachable.cend(), tells)) {
                unreachable.append(entry.message);
            }
        } else if (entry.outcome != Outcome::Done) {
            others.append(entry.step + ": " + entry.message);
        } else {
            others += entry.isToBeRepeated ? QStringList(entry.step + ": " + entry.message) : QStringList();
            for (const RunResult& result : entry.results) {
                if (const QString losses = LossesText(result); !losses.isEmpty()) {
                    others.append(entry.step + ": " + losses);
                }
            }
        }
    }
    return unreachable + others;
}

void SequenceRun::TellStopped() {
    const auto done = std::count_if(m_result.entries.cbegin(), m_result.entries.cend(), [](const SequenceEntry& entry) {
        return entry.outcome != Outcome::NotReached && entry.outcome != Outcome::Cancelled;
    });
    QString text =
        QStringLiteral("Sequenza interrotta: passi eseguiti %1 su %2").arg(done).arg(m_result.entries.size());
    if (m_current >= 0 && Current().outcome == Outcome::Cancelled) {
        text += QStringLiteral(", a metà di \"%1\" (%2)").arg(Current().step, Current().message);
    }
    text += QStringLiteral("; quanto è stato scritto rimane.");
    Log(text);
    m_session.Person.Message(text, Icon::Exclamation);
}

void SequenceRun::Log(const QString& message) {
    modImport::WriteImportLog(m_session, message, !m_logStarted, m_settings.logFile);
    m_logStarted = true;
}

void SequenceRun::SelectCompany() {
    m_company = CompanyOf(m_session, m_settings);
    if (m_window.SelectCompany) {
        m_window.SelectCompany(m_company);
    }
    // The gate wants an origin; each source is selected when its turn comes.
    const Choice choice{m_company.name, m_company.code, registry::Origins().front(), m_session.Errors.Action};
    if (!CheckData(m_session, choice)) {
        throw ImportError(
            QStringLiteral("l'azienda '%1' del file '%2' non c'è").arg(m_settings.company, m_settings.file));
    }
    m_locks.push_back(std::make_unique<CompanyLock>(m_session, QStringList(m_session.UserManager.Azienda()), Work));
    m_runLog.emplace(m_session, Work);
    m_recorder.emplace(m_session, history::RunFacts{.work = Work, .options = FirstDayOptions(m_settings.from)});
}

void SequenceRun::CheckLog() const {
    QFile file;
    const QString trouble = ownFile::Open(file, m_settings.logFile, ownFile::Start::Append);
    if (!trouble.isEmpty()) {
        throw ImportError(QStringLiteral("Log '%1': %2").arg(m_settings.logFile, trouble));
    }
}

void SequenceRun::LockAllCompanies() {
    m_locks.push_back(std::make_unique<CompanyLock>(m_session, AllCompanies(m_session), Work));
}

void SequenceRun::Plan(const QStringList& steps) {
    for (const QString& step : steps) {
        m_result.entries.append({step});
    }
}

void SequenceRun::PlanFirst(const QString& step) { m_result.entries.insert(m_current + 1, {step}); }

void SequenceRun::Begin(const QString& step) {
    if (m_progress->Cancel()) {
        throw Stopped();
    }
    ++m_current;
    m_errorsBefore = m_session.Errors.Count();
    float all = 0;
    for (const SequenceEntry& entry : std::as_const(m_result.entries)) {
        all += WeightOf(entry);
    }
    m_progress->SetMax(all);
    m_progress->SetStep(step);
}

void SequenceRun::End(Outcome outcome, const QString& message, const QStringList& lines) {
    Current().outcome = outcome; // so it ended, also when the log can no longer be written
    Current().message = message;
    for (const QString& line : lines) {
        Log(line);
    }
    if (outcome == Outcome::Cancelled) {
        throw Stopped(); // logged with how far the whole came
    }
    LogOutcome();
    m_progress->SetValue(m_progress->Value() + WeightOf(Current()));
}

/// The log of a step tells how it ended; that it was skipped stands there already.
void SequenceRun::LogOutcome() {
    const SequenceEntry& entry = Current();
    if (!m_logStarted || entry.outcome == Outcome::NotConnected || entry.outcome == Outcome::Unavailable) {
        return;
    }
    QString line = entry.step + ": " + OutcomeText(entry.outcome);
    line += entry.message.isEmpty() ? QString() : QString(" (" + entry.message + ')');
    for (const RunResult& result : entry.results) {
        line += ". " + RowsLine(result);
    }
    Log(line);
}

void SequenceRun::KeepStep(const QString& module, const std::function<void(RunResult& account)>& work) {
    RunResult account;
    account.module = module;
    account.procedure = Current().step;
    const double start = m_session.Person.WorkedSeconds();
    m_recorder->ProcedureBegins(account.module, account.procedure);
    const auto end = [&] {
        account.seconds = m_session.Person.WorkedSeconds() - start;
        m_recorder->ProcedureEnds(account);
    };
    try {
        work(account);
    } catch (const std::exception& error) {
        account.outcome = RunResult::Outcome::Failed;
        account.errors.append(MessageOf(error));
        end();
        throw;
    }
    end();
}

void SequenceRun::SkipNotConnected(const QString& text) {
    const auto errors = m_session.Errors.Since(m_errorsBefore);
    const QString reason = errors.isEmpty() ? QString() : errors.last().message;
    if (!reason.isEmpty()) {
        Log(reason);
    }
    Log(text);
    End(Outcome::NotConnected, reason.isEmpty() ? text : QString(text + ' ' + reason));
}

const contract::Origin& SequenceRun::OriginOf(const QString& name) const {
    const contract::Origin* origin = m_settings.findOrigin(name);
    if (origin == nullptr) {
        throw ImportError(QStringLiteral("l'origine '%1' non è nell'elenco").arg(name));
    }
    return *origin;
}

void SequenceRun::WriteKeys(const QString& section, const QString& prefix) {
    QVector<QPair<QString, QString>> before;
    WrittenSettings written{m_settings.file, section, prefix, {}};
    try {
        for (const auto& [key, value] : m_settings.sources.value(section)) {
            const QString old = m_session.Config.PeekAppConfig(ImportSection, prefix + key);
            m_session.Config.SetAppConfig(ImportSection, prefix + key, value);
            before.append({prefix + key, old});
            written.keys.append(key);
        }
        m_session.Written = written;
    } catch (Error& error) {
        error.AddContext(QStringLiteral("le chiavi della sezione %1 non si possono scrivere").arg(section));
        for (const auto& [key, value] : before) { // the server of one source with the database of another is none
            m_session.Config.SetAppConfig(ImportSection, key, value);
        }
        throw;
    }
}

bool SequenceRun::Connect(const QString& origin) {
    if (m_window.SelectOrigin) {
        m_window.SelectOrigin(origin);
    }
    const QString section = origin.toUpper();
    if (!m_settings.sources.contains(section)) {
        Log(QStringLiteral("Il file '%1' non ha la sezione %2").arg(m_settings.file, section));
        return false;
    }
    const Operator::Quiet quiet(m_session.Person);
    return Guarded(m_session.Errors, QStringLiteral("frmImport"), m_procedure, false, [&] {
        WriteKeys(section);
        const sourceSettings::OfOrigin written(m_session, {}); // what was just written holds
        return ConnectSource(m_session, OriginOf(origin)) == SourceOutcome::Opened;
    });
}

bool SequenceRun::ConnectQuietly(const QString& origin) {
    const QString section = origin.toUpper();
    if (!m_settings.sources.contains(section)) {
        return false;
    }
    try {
        WriteKeys(section);
        const sourceSettings::OfOrigin written(m_session, {}); // what was just written holds
        const bool opened = OpenSource(m_session, OriginOf(origin)) == SourceOutcome::Opened;
        m_session.Source->Errors = nullptr; // nobody is asked about its failures
        return opened;
    } catch (const Error& error) {
        Log(origin + ": " + error.Message());
        CloseSource(m_session);
        return false;
    }
}

qint64 SequenceRun::Quietly(const QString& title, const std::function<qint64()>& work) {
    try {
        return work();
    } catch (const Error& error) {
        Log(title + ": " + error.Message());
        return 0;
    }
}

const contract::Procedure* SequenceRun::Find(const QString& origin, const QString& procedure) const {
    return ProcedureOf(OriginOf(origin), procedure);
}

void SequenceRun::Import(const QString& origin, const QString& procedure) {
    const contract::Procedure* found = Find(origin, procedure);
    if (found == nullptr) {
        const QString text = QStringLiteral("%1: la procedura \"%2\" non è disponibile in questa versione!")
                                 .arg(OriginOf(origin).module, procedure);
        Log(text);
        End(Outcome::Unavailable, text);
        return;
    }
    m_recorder->Begins(found->name, OriginOf(origin).name);
    RunProcedure(*found);
    m_recorder->Begins({}, {});
    const Outcome outcome = OutcomeOf(Current().results);
    QString message;
    if (outcome == Outcome::Failed) {
        message = Current().results.last().errors.join(u'\n');
        if (const auto errors = m_session.Errors.Since(m_errorsBefore);
            !errors.isEmpty() && !errors.last().rowKey.isEmpty()) {
            message = errors.last().rowKey + ": " + message;
        }
        LogStatement();
    } else if (outcome == Outcome::Cancelled) {
        message = ReachedText(Current().results);
    } else if (LackedArticles(Current().results) &&
               m_session.Quadrix.ExecuteCommand("SELECT COUNT(*) FROM " +
                                                m_session.Quadrix.GetFullTableName("ART_ICO")) == 0) {
        message = "l'azienda non ha articoli: importarli e ripetere il passo";
        Current().isToBeRepeated = true;
    }
    End(outcome, message);
}

/// The statement that has failed, which no box shows to whoever is not there.
void SequenceRun::LogStatement() {
    const auto& errors = m_session.Errors.Entries();
    if (errors.size() > m_errorsBefore && !errors.last().statement.isEmpty()) {
        Log("Istruzione: " + errors.last().statement);
    }
}

/// What the procedure logs stands in the log of the sequence too: its own log holds the last procedure alone.
void SequenceRun::RunProcedure(const contract::Procedure& procedure) {
    const qsizetype first = m_session.Results.size();
    m_session.LogCopy = m_settings.logFile;
    const auto back = qScopeGuard([this] { m_session.LogCopy.clear(); });
    const Operator::Quiet quiet(m_session.Person);
    procedure.run(m_session, {}, false);
    Current().results += m_session.Results.mid(first);
    Current().told = quiet.Kept();
    for (const QString& text : quiet.Kept()) {
        Log(text);
    }
}

void SequenceRun::ImportFrom(SecondSource& source, const QString& origin, const QString& procedure) {
    const auto swap = [&] {
        std::swap(m_session.Source, source.connection);
        std::swap(m_session.Layout, source.layout);
    };
    swap();
    const auto back = qScopeGuard(swap);
    Import(origin, procedure);
}
