#include "app/merge.h"

#include "app/mergeParts.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"
#include "sql/Transaction.h"

#include <QFileInfo>

namespace merge {

QString TableOf(const QString& company, const QString& bareName) { return company + u'_' + bareName; }

QString Quoted(const Session& session, const QString& text) {
    return mod_ovTools::FormatSqlValue(text, DataType::NVarChar, session.Quadrix.ProviderType);
}

namespace {

QString FindCompany(Session& session, const QString& code) {
    const Recordset rows =
        session.Quadrix.ExecuteWC(u"SELECT CDAZI FROM SYS_AZI WHERE CDAZI = " + Quoted(session, code.trimmed()));
    if (rows.Eof()) {
        throw ImportError(QStringLiteral("Azienda '%1': non esiste (tabella SYS_AZI)").arg(code));
    }
    return mod_ovTools::ToText(rows.Value("CDAZI"));
}

} // namespace

Companies FindCompanies(Session& session, const QString& from, const QString& to) {
    const Companies companies{FindCompany(session, from), FindCompany(session, to)};
    if (companies.from.compare(companies.to, Qt::CaseInsensitive) == 0) {
        throw ImportError(
            QStringLiteral("Azienda '%1': di partenza e di destinazione devono essere diverse").arg(companies.from));
    }
    return companies;
}

} // namespace merge

namespace modMain {

namespace {

using merge::Companies;
using merge::Copier;
using merge::References;

const QString Module = QStringLiteral("modMain");
const QString Procedure = QStringLiteral("FusioneControparti");

/// One merge, from its checks to its log.
class Merge {
public:
    Merge(Session& session, const QString& from, const QString& to, bool updateReferences, MergeResult& result)
        : m_session(session),
          m_result(result),
          m_companies(merge::FindCompanies(session, from, to)),
          m_copier(session, m_companies) {
        if (updateReferences) {
            m_references.emplace(session, m_companies);
        }
    }

    /// Finds all matches; false when cancelled. Nothing is written up to its end.
    bool Prepare(Progress& progress) {
        auto matches = merge::FindMatches(m_session, m_companies, progress);
        if (!matches) {
            return false;
        }
        m_result.matches = std::move(*matches);
        if (m_references) {
            m_references->CheckMarks(m_result.matches);
            TranslateCopies();
        }
        return true;
    }

    /// Merges all; false when cancelled between two counterparties.
    bool Run(Progress& progress) {
        if (m_references) {
            m_references->ReadCodes();
        }
        Log(QStringLiteral("Inizio fusione controparti da %1 a %2").arg(m_companies.from, m_companies.to));
        progress.SetStep(QStringLiteral("fusione controparti"));
        progress.SetMax(static_cast<float>(m_result.matches.size()));
        for (const MergeMatch& match : m_result.matches) {
            if (progress.Cancel()) {
                LogInterrupted();
                return false;
            }
            MergeOne(match);
            progress.SetValue(static_cast<float>(m_result.merged));
        }
        if (m_references) {
            m_references->Unmark();
        }
        LogSummary();
        return true;
    }

private:
    void TranslateCopies() {
        for (const MergeMatch& match : m_result.matches) {
            m_newCodes.insert(match.oldCode, match.newCode);
        }
        m_copier.KnownReferences = &*m_references;
        m_copier.NewCodeOf = [this](const QString& oldCode) { return m_newCodes.value(oldCode, oldCode); };
    }

    void MergeOne(const MergeMatch& match) {
        Transaction transaction(m_session.Quadrix);
        QMap<QString, qint64> copied;
        qint64 updated = 0;
        if (match.criterion == MergeCriterion::New) {
            m_copier.Copy(match, copied);
        }
        if (m_references) {
            updated = m_references->Repoint(match.oldCode, match.newCode);
        }
        transaction.Keep();
        for (auto table = copied.begin(); table != copied.end(); ++table) {
            m_result.copied[table.key()] += table.value();
        }
        m_result.referencesUpdated += updated;
        ++m_result.merged;
        Log(match.oldCode + u' ' + match.oldName + u"   -->   " + match.newCode + u' ' + match.newName + u"   " +
            MergeCriterionText(match.criterion));
    }

    void Log(const QString& line) { modImport::WriteImportLog(m_session, line, false, MergeLogFile(m_session)); }

    void LogInterrupted() {
        Log(QStringLiteral("Fusione interrotta: %1 controparti fuse su %2")
                .arg(m_result.merged)
                .arg(m_result.matches.size()));
    }

    void LogSummary() {
        QStringList counts;
        for (int criterion = 0; criterion < MergeCriterionCount; ++criterion) {
            const auto each = static_cast<MergeCriterion>(criterion);
            counts.append(MergeCriterionText(each) + u' ' + QString::number(m_result.Count(each)));
        }
        Log(QStringLiteral("Controparti fuse: %1 (%2)").arg(m_result.merged).arg(counts.join(QStringLiteral(", "))));
        if (const qint64 byName = m_result.Count(MergeCriterion::Name); byName > 0) {
            Log(QStringLiteral("Corrispondenze per sola ragione sociale, da verificare: %1").arg(byName));
        }
    }

    Session& m_session;
    MergeResult& m_result;
    Companies m_companies;
    Copier m_copier;
    std::optional<References> m_references;
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
                        MergeResult* result) {
    MergeResult own;
    MergeResult& outcome = result != nullptr ? *result : own;
    outcome = {};
    return Guarded(session.Errors, Module, Procedure, false, [&] {
        const Operator::Busy busy(session.Person);
        Merge work(session, from, to, updateReferences, outcome);
        {
            const auto progress = session.Person.ShowProgress();
            outcome.outcome = OutcomeOf(work.Prepare(*progress) && work.Run(*progress));
        }
        if (outcome.outcome != RunResult::Outcome::Done) {
            return false;
        }
        session.Person.Message("Fusione completata correttamente!");
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
