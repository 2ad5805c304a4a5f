#pragma once

#include "adapters/contract/map/Mapping.h"
#include "core/Session.h"

namespace proof {

/// An import adds to a counterparty that is there no more than the columns of its roles. So that all others are
/// compared too, those that imports have written are put out of its sight during a trial: it writes them anew, each
/// under its old code, and what it gives them is then put into the rows that were there.
class PartiesAnew {
public:
    static inline const QString Table = QStringLiteral("CON_TRO");

    explicit PartiesAnew(Session& session)
        : m_session(session) {}

    /// Hides the counterparties that an import has made of one row of the source each; those made of several have
    /// columns of each. Raises `SqlError`. @param mappings of the procedures that follow
    void Hide(const std::vector<const contract::Mapping*>& mappings);
    /// Shows them again, with what the trial has given those that it has written anew. Raises `SqlError`.
    void Show();

private:
    struct Party {
        qint64 id = 0;
        QVariantList values; ///< of the columns by which it would be found
    };

    void Translate(const contract::Mapping& mapping);
    void Set(qint64 id, const QStringList& columns, const QVariantList& values);
    bool GiveBack(const Party& party);

    Session& m_session;
    std::vector<Party> m_hidden;
};

} // namespace proof
