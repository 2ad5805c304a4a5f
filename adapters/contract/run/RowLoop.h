#pragma once

#include "adapters/contract/run/CancellableReads.h"
#include "adapters/contract/run/HeldRows.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/MendedNumbers.h"
#include "adapters/contract/run/RowSelection.h"
#include "adapters/contract/run/RowTransaction.h"

namespace contract {

/// A loop over source rows. Rows that belong together are carried over or given up as one; several of these are
/// committed together, and what became of them counts from then on.
class RowLoop {
public:
    RowLoop(ImportRun& run, const ImportRun::Loop& loop, const ImportRun::RowWork& row,
            const std::function<void()>& groupEnd);

    /// Reads the rows and does their work. @return false when the operator cancelled
    bool Run();

private:
    /// Source rows that belong together.
    struct Unit {
        QString value = {}; ///< that tells them from others
        std::vector<HeldRows::Row> rows = {};
        QStringList keys = {};
        QVector<const RowSelection::Row*> wanted = {}; ///< those that the run is limited to and its rows are
        qint64 end = 0;                                ///< rows of the source up to its last one
    };

    void CountRows();
    void TellLeftOut();
    bool IsSelective() const;
    void FindPlace();
    void Add(const SourceRow& current, const Recordset& rows);
    void Take(Unit unit);
    bool IsBehind(const Unit& unit);
    void CheckCameBehind() const;
    bool Select(Unit& unit);
    void NoteAwaited(Unit& unit) const;
    void Mend(HeldRows::Row& row, const RowSelection::Row& wanted, const QString& key);
    void TellGivenUp(const Unit& unit, size_t row, const QString& reason);
    std::unique_ptr<CancellableReads> Cancellable() const;
    Recordset Open() const;
    void Read();
    bool IsCancelled() const;
    void Do(const Unit& unit);
    void Work(const Unit& unit);
    void Failed(const Unit& unit, Error& error, int attempt);
    void FailedInPart(const Unit& unit, Error& error, int attempt);
    void Decide(Error& error, int attempt);
    bool IsOfGoingAhead(const Error& error) const;
    void DoAgain(const Unit* last);
    void Redo();
    void Report(const std::exception_ptr& further) noexcept;
    void GiveUp(const Unit& unit, const QString& reason);
    void StopAtLimit() const;
    void GiveUpFor(const Unit& unit, const Error& error) noexcept;
    bool Commit();
    void ForgetDone();
    void Leave() noexcept;
    ovConnection& Database() const;

    ImportRun& m_run;
    Session& m_session;
    const ImportRun::Loop& m_loop;
    const ImportRun::RowWork& m_row;
    const std::function<void()>& m_groupEnd;
    RowTransaction m_transaction;
    std::optional<HeldRows> m_held;
    MendedNumbers m_mendedNumbers{[this] { return Open(); }, [this](const QString& line) { m_run.Log(line); }};
    Unit m_unit;              ///< being read
    QString m_key;            ///< of the row under way
    bool m_isWorking = false; ///< something of it may be written
    int m_loopNumber = 0;     ///< among those of the procedure, from 0
    qint64 m_before = 0;      ///< rows that an earlier run has done
    QString m_lastBefore;     ///< name of the last of them
    std::vector<Unit> m_done; ///< not committed yet
    int m_redone = 0;         ///< times since the last commit
    std::unique_ptr<Progress> m_progress;
    qint64 m_count = 0;
    qint64 m_read = 0;
};

} // namespace contract
