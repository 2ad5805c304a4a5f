#pragma once

#include "app/reset.h"

/// Work that empties tables, as locks, messages and the history name it.
struct EmptyingWork {
    QStringList companies; ///< whose tables are emptied, by their codes
    QString name;          ///< in the operator's words
    QString module;        ///< under which it reports errors
    QString procedure;
    QStringList options = {}; ///< what was chosen, in the operator's words
};

/// Does it while nobody else works on these companies, and keeps it in the history as a run of its own, or as a
/// procedure of the run that is under way: what was emptied stands there, also after an error. Errors are reported.
/// @param empty empties the tables, each told to the observer of the session before, and tells how it went
EmptyingResult EmptyAndKeep(Session& session, const EmptyingWork& work,
                            const std::function<void(EmptyingResult&)>& empty);
