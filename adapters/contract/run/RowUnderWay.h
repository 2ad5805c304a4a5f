#pragma once

#include "core/Session.h"

#include <QFile>

namespace contract {

/// Keeps, in a file beside the import log, which source row is under way, for the case that the program dies: each
/// statement commits by itself, so that this one row may be written in part, and a later run would find its code there
/// and take it for whole. The file is gone when a run has come to its end, whichever.
class RowUnderWay {
public:
    /// Begins anew, without a row: what a run that died has left is forgotten.
    /// @param procedure module and procedure, as they are told
    RowUnderWay(const Session& session, const QString& procedure);
    ~RowUnderWay();
    RowUnderWay(const RowUnderWay&) = delete;
    RowUnderWay& operator=(const RowUnderWay&) = delete;

    static constexpr QLatin1String Suffix{".inCorso"}; ///< of the file, behind the name of the log
    /// Puts what a run that died has left beside its log to what stands beside another one.
    static void TakeOver(const QString& fromLog, const QString& toLog);

    /// What is to be told of runs that did not come to their end; empty when the last one did, or had begun no row.
    static QString Interrupted(const Session& session);
    /// Notes that a row is under way from now on. Raises `ImportError` when that cannot be noted.
    void Begin(const QString& key);

private:
    QString m_head;
    QFile m_file;
    qsizetype m_longest = 0; ///< line so far
};

} // namespace contract
