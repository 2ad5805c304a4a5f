#pragma once

#include "core/Session.h"

namespace proof {

/// Which row of the source was under way when a row of Quadrix was rewritten, during the lifetime of the object.
class SourceRows {
public:
    explicit SourceRows(Session& session);
    ~SourceRows();
    SourceRows(const SourceRows&) = delete;
    SourceRows& operator=(const SourceRows&) = delete;

    /// The key of the last such row, as the log names it; empty when none is known.
    /// @param table physical name @param id RECORD_ID of the row of Quadrix
    QString Of(const QString& table, qint64 id) const { return m_rows.value(table).value(id); }

private:
    void See(const QString& statement);

    Session& m_session;
    ovConnection::StatementObserver m_other;       ///< who listened before
    QHash<QString, QHash<qint64, QString>> m_rows; ///< by table
};

} // namespace proof
