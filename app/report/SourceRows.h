#pragma once

#include "app/history/History.h"
#include "core/Session.h"

namespace proof {

/// Which rows of Quadrix were rewritten, also with what stood there, which row of the source was under way then, and
/// which were given up, during the lifetime of the object.
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
    bool NamesRows() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override {
        if (change.kind == TargetChange::Kind::Updated) {
            QString& row = m_rows[change.table][change.id];
            row = change.row.isEmpty() ? row : change.row;
            for (const QString& column : change.columns) {
                m_columns[change.table].insert(column.toUpper());
            }
        }
    }
    /// Whether a row was rewritten. @param table physical name @param id its RECORD_ID
    bool IsRewritten(const QString& table, qint64 id) const {
        const auto rows = m_rows.constFind(table);
        return rows != m_rows.cend() && rows->contains(id);
    }
    /// Those rows of a table (physical name), by RECORD_ID.
    QSet<qint64> Rewritten(const QString& table) const {
        const QList<qint64> rows = m_rows.value(table).keys();
        return {rows.begin(), rows.end()};
    }
    /// Whether a column of a table (physical name) was written in a row that was there.
    bool IsRewritten(const QString& table, const QString& column) const {
        return m_columns.value(table).contains(column.toUpper());
    }

    /// The rows that were given up, as the history tells them apart.
    const QStringList& GivenUp() const { return m_givenUp; }
    /// The source is read a second time: a row that is given up again counts once.
    void AreReadAgain() { m_before = QSet<QString>(m_givenUp.begin(), m_givenUp.end()); }
    void RowIsGivenUp(const RejectedRow& row) noexcept override {
        const QString key = history::History::KeyOf(row);
        if (!m_before.contains(key)) {
            m_givenUp.append(key);
        }
    }

private:
    Session& m_session;
    RunObserver* m_other;                          ///< who was told before
    QHash<QString, QHash<qint64, QString>> m_rows; ///< by table
    QHash<QString, QSet<QString>> m_columns;       ///< that were rewritten, by table
    QStringList m_givenUp;
    QSet<QString> m_before; ///< given up when the source was read first
};

} // namespace proof
