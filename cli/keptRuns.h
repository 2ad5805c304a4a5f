#pragma once

#include "cli/Command.h"

#include <QMap>

/// What the history has kept of a command that imports, and what is to be done about it next.
namespace cli {

/// The runs that are kept from its making on.
class KeptRuns {
public:
    explicit KeptRuns(const Session& session);

    /// Their numbers, the oldest first; none when the history could not keep them or cannot be read, which the log has
    /// told: what was imported stands.
    /// @param company its code; empty: none @param most how many the command can have made
    QList<qint64> Of(const QString& company, qsizetype most = 1) const;

private:
    const Session& m_session;
    qint64 m_before = 0; ///< the last one of any company
};

/// What a command has left open.
struct LeftOpen {
    bool untranslated = false; ///< whether codes wait for their translation
    bool resumes = false;      ///< whether the rest of its run may be told
    qint64 rejectsOf = 0;      ///< run whose rows given up were imported again, which has all that are open; 0: none
    QStringList files = {};    ///< that were chosen, which going on asks for again
    QMap<QString, QString> answers = {}; ///< `AnswersGiven`, of which the same holds
};

/// "Esecuzione: 4", and what the run has left open, by the commands that do it: first its rest when it broke off and
/// can go on, then the rows given up, then the codes. Nothing for no run.
QStringList RunLines(const Context& context, const QList<qint64>& runs, const LeftOpen& left);
/// The last of the runs; null without one.
QJsonValue RunNumberJson(const QList<qint64>& runs);

} // namespace cli
