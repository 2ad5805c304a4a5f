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

    /// Hides the counterparties that an import has made and of which the source codes are known: what the trial writes
    /// anew is found by them. Raises `SqlError`.
    void Hide();
    /// Shows them again, with what the trial has given those that it has written anew. Raises `SqlError`.
    void Show();

    /// Those that it has written anew, by RECORD_ID, and those that were hidden in vain.
    const QSet<qint64>& Anew() const { return m_anew; }
    const QSet<qint64>& InVain() const { return m_inVain; }

private:
    using Values = QMap<QString, QVariant>; ///< by column
    struct Party {
        qint64 id = 0;
        Values foundBy = {};       ///< the columns by which it would be found
        Values ownLists = {};      ///< COLSC, COLSF where that is its own price list, which stays
        QString carrier = {};      ///< COVEP: the carrier that it has
        QStringList carriers = {}; ///< of one that is nothing but a carrier: the carriers of the source that it is
        QString anew = {};         ///< the code under which the trial has written it; empty: it has not
    };
    /// What the trial has written, by the code that it has given it.
    struct Written {
        QHash<QString, Values> values;
        QMultiHash<QString, QString> codes; ///< by the codes in the source, which several may have
    };

    QHash<QString, QString> Carriers();
    Written TakeAnew();
    void FindAnew(const Written& written);
    void Set(qint64 id, const Values& values);

    Session& m_session;
    QString m_table; ///< physical name
    qint64 m_last = 0;
    std::vector<Party> m_hidden;
    QSet<qint64> m_anew;
    QSet<qint64> m_inVain;
};

} // namespace proof
