#pragma once

#include "core/Session.h"

namespace proof {

/// An import adds to a counterparty that is there no more than the columns of its roles. So that all others are
/// compared too, those that imports have written are put out of its sight during a trial: it writes them anew, and what
/// it gives them is then put into the rows that were there. Only their own code is not: a new one may be another.
class PartiesAnew {
public:
    static inline const QString Table = QStringLiteral("CON_TRO");

    explicit PartiesAnew(Session& session)
        : m_session(session),
          m_table(session.Quadrix.GetFullTableName(Table)) {}

    /// Hides the counterparties that an import has made of one row of the source each; those made of several have
    /// columns of each. Raises `SqlError`.
    void Hide();
    /// Shows them again, with what the trial has given those that it has written anew. Raises `SqlError`.
    void Show();

private:
    using Values = QMap<QString, QVariant>; ///< by column
    struct Party {
        qint64 id = 0;
        Values foundBy;  ///< the columns by which it would be found
        Values ownLists; ///< COLSC, COLSF where that is its own price list, which an import of counterparties leaves
    };

    QHash<QString, Values> TakeAnew();
    void Set(qint64 id, const Values& values);

    Session& m_session;
    QString m_table; ///< physical name
    qint64 m_last = 0;
    std::vector<Party> m_hidden;
};

} // namespace proof
