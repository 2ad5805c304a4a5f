#pragma once

#include "core/Session.h"

#include <QFile>

/// Writes the statements of a run into a file that the database's own client can replay: each target statement in the
/// engine's words, ended by ";", those of the sources as comments.
class StatementTrace {
public:
    StatementTrace() = default;
    StatementTrace(const StatementTrace&) = delete;
    StatementTrace& operator=(const StatementTrace&) = delete;

    /// First line of a trace, by which it is known as one.
    static const QString FirstLine;

    /// Starts the file anew and listens to both connections of the session. Raises as `OpenOutput`.
    /// @param taken paths that are not written to, even where nothing is there yet
    void Start(const QString& path, Session& session, const QStringList& taken = {});
    /// Adds a statement of the target that no connection shows, such as the bounds of a transaction.
    void Target(const QString& statement);

private:
    void Source(const QString& statement);
    void Write(const QString& text);

    QString m_path;
    QFile m_file;
    QString m_trouble; ///< why a statement is missing in it; empty: none is
    const Session* m_session = nullptr;
};
