#pragma once

#include "core/Session.h"
#include "sql/FileLock.h"

/// Keeps the import log to one run at a time. The first of two runs that overlap writes to "import.log"; the other one
/// writes to a log that has the number of its process in its name, which takes the place of "import.log" at the end,
/// or stays where the first run is still under way. The operator is told which one it is.
class RunLog {
public:
    /// @param work what the run does, in words for the operator of another run that meets it
    RunLog(Session& session, const QString& work);
    ~RunLog();
    RunLog(const RunLog&) = delete;
    RunLog& operator=(const RunLog&) = delete;

private:
    void TakeOwn(const QString& note);
    void PutInPlace() noexcept;
    void TellWhereItIs();

    Session& m_session;
    QString m_usual;   ///< path of "import.log"
    qsizetype m_first; ///< of the results of the run
    std::unique_ptr<FileLock> m_lock;
};

/// The log that tells of the last of the session's results.
QString LogOfLast(const Session& session);
