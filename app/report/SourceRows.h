#pragma once

#include "core/Session.h"

namespace proof {

/// Which row of the source was under way when a row of Quadrix was rewritten, during the lifetime of the object.
class SourceRows final : public RunObserver {
public:
    explicit SourceRows(Session& session)
        : m_session(session),
          m_other(std::exchange(session.Observer, this)) {}
    ~SourceRows() override { m_session.Observer = m_other; }
    SourceRows(const SourceRows&) = delete;
    SourceRows& operator=(const SourceRows&) = delete;

    /// The key of the last such row, as the log names it; empty when none is known.
    /// @param table physical name @param id RECORD_ID of the row of Quadrix
    QString Of(const QString& table, qint64 id) const { return m_rows.value(table).value(id); }

    bool KeepsImages() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override {
        if (change.kind == TargetChange::Kind::Updated && !change.row.isEmpty()) {
            m_rows[change.table].insert(change.id, change.row);
        }
    }
    void ProcedureBegins(const QString&, const QString&) noexcept override {}
    void NoteStands(const QString&, const QString&) noexcept override {}
    void CodeIsOpen(const QString&, const ::OpenCode&) noexcept override {}
    void RowIsGivenUp(const RejectedRow&) noexcept override {}
    void RowsStand(int, qint64, const QString&) noexcept override {}
    void ProcedureEnds(const RunResult&) noexcept override {}

private:
    Session& m_session;
    RunObserver* m_other;                          ///< who was told before
    QHash<QString, QHash<qint64, QString>> m_rows; ///< by table
};

} // namespace proof
