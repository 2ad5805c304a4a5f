#include "app/merge.h"

#include "adapters/contract/run/RowTransaction.h"
#include "app/CompanyLock.h"
#include "app/mergeRecord.h"
#include "app/mergeText.h"
#include "core/modImport.h"
#include "core/Trial.h"
#include "sql/companyCode.h"
#include "sql/mod_ovTools.h"
#include "sql/Transaction.h"
#include "sql/visibleText.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace merge {

QString TableOf(const QString& company, const QString& bareName) { return company + u'_' + bareName; }

modMain::Company FindCompany(Session& session, const QString& code) {
    QStringList known;
    for (const modMain::Company& company : modMain::GetCompanies(session)) {
        if (company.code.compare(code.trimmed(), Qt::CaseInsensitive) == 0) {
            CheckCompanyCode(company.code);
            return company;
        }
        known.append(modMain::CompanyText(company));
    }
    throw ImportError(QStringLiteral("Azienda '%1': non esiste (tabella SYS_AZI; aziende presenti: %2)")
                          .arg(code, known.join(QStringLiteral(", "))));
}

} // namespace merge

namespace modMain {

namespace {

using merge::Companies;
using merge::Copier;
using merge::References;

const QString Module = QStringLiteral("modMain");
const QString Procedure = QStringLiteral("FusioneControparti");

/// Codes of the companies, whose names go into the result.
Companies FindCompanies(Session& session, const QString& from, const QString& to, MergeResult& result) {
    result.from = merge::FindCompany(session, from);
    result.to = merge::FindCompany(session, to);
    if (result.from.code == result.to.code) {
        throw ImportError(
            QStringLiteral("Azienda '%1': di partenza e di destinazione devono essere diverse").arg(result.from.code));
    }
    return {result.from.code, result.to.code};
}

/// What was written for a counterparty.
struct Written {
    merge::Copied copied;
    qint64 updated = 0; ///< rows that refer to it
};

/// One merge, from its checks to its log.
class Merge {
public:
    Merge(Session& session, const QString& from, const QString& to, bool updateReferences, MergeResult& result)
        : m_session(session),
          m_result(result),
          m_companies(FindCompanies(session, from, to, result)),
          m_references(session, m_companies),
          m_updates(updateReferences),
          m_copier(session, m_companies, m_references),
          m_records(session),
          m_trial(session.Quadrix.InTransaction() ? u". " + WasTrial : QString()),
          m_together(std::max(1, contract::RowsTogether(session))) {
        m_result.earlier = m_records.LastOf(m_companies.from);
        m_result.ofDestination = m_records.LastOf(m_companies.to);
        CheckInterrupted();
        if (m_updates) {
            m_references.Check();
        }
    }

    /// Raises `ImportError` when, as far as is known, an earlier merge would make this one go astray.
    void RefuseRepeated(const MergeConsent& consent) const {
        const QString ofSource = consent.again ? QString() : RefusalText(m_result, m_updates);
        const QString refusal = ofSource.isEmpty() && !consent.intoMerged ? IntoMergedRefusal(m_result) : ofSource;
        if (!refusal.isEmpty()) {
            throw ImportError(refusal);
        }
    }

    /// Finds all matches; false when cancelled. Nothing is written up to its end.
    bool Prepare(Progress& progress) {
        auto matches = merge::FindMatches(m_session, m_companies, progress);
        if (!matches) {
            return false;
        }
        m_result.matches = std::move(*matches);
        if (m_updates) {
            m_references.CheckMarks(m_result.matches);
            m_references.ReadCodes();
            m_result.takesUp = m_references.HasMarks() || IsInterrupted();
            m_strangers = m_references.NotesOfStrangers(m_result.matches, m_result.takesUp);
            for (const QString& note : std::as_const(m_strangers)) {
                m_result.notes.Add(VisibleLine(note));
            }
        }
        TranslateCopies();
        return true;
    }

    /// Merges all; false when cancelled between two counterparties.
    bool Run(Progress& progress) {
        if (m_updates) {
            m_records.Prepare();
            if (IsInterrupted()) {
                m_records.TakeUp(*m_result.earlier);
            }
        }
        Log(QStringLiteral("Inizio fusione controparti da %1 a %2").arg(m_companies.from, m_companies.to) +
            (m_trial.isEmpty() ? u"" : u" (prova)"));
        if (m_result.takesUp) {
            Log(QStringLiteral("Si riprende una fusione interrotta: i riferimenti segnati con X si completano"));
        }
        WriteLines(m_strangers);
        progress.SetStep(QStringLiteral("fusione controparti"));
        progress.SetMax(static_cast<float>(m_result.matches.size()));
        while (m_result.merged < m_result.matches.size()) {
            if (progress.Cancel()) {
                LogInterrupted();
                return false;
            }
            MergeTogether(progress);
        }
        if (m_updates) {
            EndReferences();
        }
        LogSummary();
        return true;
    }

private:
    /// Codes marked for another destination would be taken for codes of this one.
    void CheckInterrupted() const {
        if (IsInterrupted() && m_result.earlier->to.code != m_companies.to) {
            throw ImportError(EarlierMergeText(*m_result.earlier) +
                              QStringLiteral(": completarla prima di farne un'altra"));
        }
    }
    bool IsInterrupted() const { return m_result.earlier && !m_result.earlier->IsDone(); }

    void TranslateCopies() {
        for (const MergeMatch& match : m_result.matches) {
            m_newCodes.insert(match.oldCode, match.newCode);
        }
        m_copier.NewCodeOf = [this](const QString& oldCode) {
            const auto known = m_newCodes.constFind(oldCode);
            return known == m_newCodes.constEnd() ? std::nullopt : std::optional(*known);
        };
    }

    /// Merges the next counterparties in one transaction, as many as half a second takes. Where one fails those before
    /// it are merged.
    void MergeTogether(Progress& progress) {
        const auto rest = m_result.matches.cbegin() + m_result.merged;
        const auto end = rest + std::min(m_together, m_result.matches.size() - m_result.merged);
        Transaction transaction(m_session.Quadrix);
        QElapsedTimer time;
        time.start();
        std::vector<Written> written;
        size_t marked = 0; // of them, those before the mark
        try {
            if (m_updates) {
                m_records.Begin(m_companies); // nothing done, nothing noted
            }
            for (auto next = rest; next != end; ++next) {
                m_session.Quadrix.SetMark();
                marked = written.size();
                written.push_back(Write(*next));
                progress.SetValue(static_cast<float>(next - m_result.matches.cbegin() + 1));
                if (time.elapsed() > contract::MostMillisecondsTogether || progress.Cancel()) {
                    break;
                }
            }
        } catch (...) {
            written.resize(marked);
            KeepBeforeMark(transaction, written);
            throw;
        }
        transaction.Keep();
        Tell(written);
    }

    /// Keeps what came before an error, which tells more than what may go wrong here.
    void KeepBeforeMark(Transaction& transaction, const std::vector<Written>& written) noexcept {
        if (written.empty()) {
            return;
        }
        try {
            m_session.Quadrix.RollbackToMark();
            transaction.Keep();
            Tell(written);
        } catch (...) {
            m_session.Errors.Monitoring(Module, Procedure);
        }
    }

    /// Copies it and re-points what refers to it, whole or not at all.
    Written Write(const MergeMatch& match) {
        try {
            Written written;
            if (match.criterion == MergeCriterion::New) {
                written.copied = m_copier.Copy(match);
            }
            written.updated = m_updates ? m_references.Repoint(match.oldCode, match.newCode) : 0;
            return written;
        } catch (Error& error) {
            error.AddContext(
                QStringLiteral("Controparte %1 %2 di %3").arg(match.oldCode, match.oldName, m_companies.from));
            throw;
        }
    }

    /// Counts and logs counterparties whose rows stand now.
    void Tell(const std::vector<Written>& written) {
        QStringList lines;
        for (const Written& one : written) {
            const MergeMatch& match = m_result.matches.at(m_result.merged);
            ++m_result.merged;
            m_result.referencesUpdated += one.updated;
            for (auto table = one.copied.rows.begin(); table != one.copied.rows.end(); ++table) {
                m_result.copied[table.key()] += table.value();
            }
            lines += match.oldCode + u' ' + match.oldName + u"   -->   " + match.newCode + u' ' + match.newName +
                     u"   " + MergeCriterionText(match.criterion);
            for (const QString& note : one.copied.notes) {
                m_result.notes.Add(VisibleLine(note));
                lines += note;
            }
        }
        WriteLines(lines);
    }

    /// A value must not pass for a line of its own.
    void WriteLines(QStringList lines) const {
        for (QString& line : lines) {
            line = VisibleLine(line);
        }
        modImport::WriteLog(m_session, lines, MergeLogFile(m_session));
    }

    /// With the marks goes what tells them from old codes: in the same moment it is noted that all are new.
    void EndReferences() {
        Transaction transaction(m_session.Quadrix);
        m_references.Unmark();
        m_records.End();
        transaction.Keep();
    }

    void Log(const QString& line) { modImport::WriteImportLog(m_session, line, false, MergeLogFile(m_session)); }

    void LogInterrupted() {
        Log(QStringLiteral("Fusione interrotta: %1 controparti fuse su %2")
                .arg(m_result.merged)
                .arg(m_result.matches.size()) +
            m_trial);
    }

    void LogSummary() {
        QStringList counts;
        for (int criterion = 0; criterion < MergeCriterionCount; ++criterion) {
            const auto each = static_cast<MergeCriterion>(criterion);
            counts.append(MergeCriterionText(each) + u' ' + QString::number(m_result.Count(each)));
        }
        Log(QStringLiteral("Controparti fuse: %1 (%2)").arg(m_result.merged).arg(counts.join(QStringLiteral(", "))) +
            m_trial);
        if (const qint64 byName = m_result.Count(MergeCriterion::Name); byName > 0) {
            Log(QStringLiteral("Corrispondenze per sola ragione sociale, da verificare: %1").arg(byName));
        }
    }

    Session& m_session;
    MergeResult& m_result;
    Companies m_companies;
    References m_references;
    bool m_updates; ///< the references are re-pointed
    Copier m_copier;
    merge::Records m_records;
    QString m_trial;         ///< what its end tells of a trial
    qsizetype m_together;    ///< counterparties that are committed together at the most
    QStringList m_strangers; ///< notes on references to none of them
    QHash<QString, QString> m_newCodes;
};

RunResult::Outcome OutcomeOf(bool ended) { return ended ? RunResult::Outcome::Done : RunResult::Outcome::Cancelled; }

} // namespace

QString MergeCriterionText(MergeCriterion criterion) {
    switch (criterion) {
    case MergeCriterion::VatNumber:
        return "PARTITA IVA";
    case MergeCriterion::TaxCode:
        return "CODICE FISCALE";
    case MergeCriterion::Name:
        return "RAGIONE SOCIALE";
    case MergeCriterion::New:
        break;
    }
    return "NUOVO!!!!";
}

qint64 MergeResult::Count(MergeCriterion criterion) const {
    return std::count_if(matches.begin(), matches.end(),
                         [criterion](const MergeMatch& match) { return match.criterion == criterion; });
}

QString MergeLogFile(const Session& session) {
#ifdef Q_OS_WIN
    Q_UNUSED(session)
    return QStringLiteral("C:\\fusione.log");
#else
    return QFileInfo(session.LogFile).absolutePath() + QStringLiteral("/fusione.log");
#endif
}

bool FusioneControparti(Session& session, const QString& from, const QString& to, bool updateReferences,
                        MergeResult* result, const MergeConsent& consent) {
    MergeResult own;
    MergeResult& outcome = result != nullptr ? *result : own;
    outcome = {};
    return Guarded(session.Errors, Module, Procedure, false, [&] {
        const Operator::Busy busy(session.Person);
        const Companies companies = FindCompanies(session, from, to, outcome);
        // Without references the source company is only read.
        const CompanyLock lock(session,
                               updateReferences ? QStringList{companies.from, companies.to} : QStringList(companies.to),
                               QStringLiteral("fusione controparti da %1 a %2").arg(companies.from, companies.to));
        Merge work(session, from, to, updateReferences, outcome);
        work.RefuseRepeated(consent);
        {
            const auto progress = session.Person.ShowProgress();
            bool goesOn = work.Prepare(*progress);
            if (goesOn) {
                work.RefuseRepeated(consent); // now it is known who would be copied
            }
            goesOn = goesOn && work.Run(*progress);
            outcome.outcome = OutcomeOf(goesOn);
        }
        if (outcome.outcome != RunResult::Outcome::Done) {
            return false;
        }
        session.Person.Message("Fusione completata correttamente!" +
                               (session.Quadrix.InTransaction() ? u'\n' + WasTrial + u'.' : QString()));
        return true;
    });
}

MergeResult PreviewFusioneControparti(Session& session, const QString& from, const QString& to, bool updateReferences) {
    MergeResult result;
    Guarded(session.Errors, Module, Procedure, false, [&] {
        const Operator::Busy busy(session.Person);
        Merge work(session, from, to, updateReferences, result);
        const auto progress = session.Person.ShowProgress();
        result.outcome = OutcomeOf(work.Prepare(*progress));
        return true;
    });
    return result;
}

} // namespace modMain
