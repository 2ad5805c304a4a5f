#pragma once

#include "app/history/History.h"
#include "app/importFlow.h"

namespace history {

/// A part of an earlier run that is to be imported again, and what is asked before.
struct Again {
    ImportRequest request;
    QString question;
    QString details; ///< company, origin, what is done, source, and how many rows
};

/// The rows that a run has given up, as their source has them now, or as files of `WriteRejects` have them mended
/// (`files` empty: the former), press by press, unasked. Raises `ImportError` for a run without such rows, for one that
/// cannot be repeated and for mistakes in the files.
std::vector<ImportRequest> RejectRequests(Session& session, const History& history, qint64 run,
                                          const QStringList& files);
/// What a run that broke off has not reached, in one press. Refused as by `RestOf`, and where the last row that it has
/// written is not there: an older copy of the database has come back.
ImportRequest RestRequest(Session& session, const History& history, qint64 run);

/// `RejectRequests` with what is asked before each. Takes the company of the run under work. None when it is not there
/// or cannot be worked on, which the operator has been told.
std::vector<Again> RejectsAgain(Session& session, const History& history, qint64 run, const QStringList& files,
                                ErrorAction errors);
/// `RestRequest` in the same way.
std::optional<Again> RestAgain(Session& session, const History& history, qint64 run, ErrorAction errors);

/// Whether a run broke off and can go on: it was interrupted, failed or was killed, was no trial, was not taken back,
/// and has written to this database.
bool CanGoOn(const Run& run);
/// How many rows it has given up.
qint64 RejectsIn(const Run& run);

} // namespace history
