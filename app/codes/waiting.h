#pragma once

#include "app/codes/Worklist.h"

namespace codes {

/// The source rows that wait for codes, as far as the runs that are kept tell them.
class WaitingRows {
public:
    explicit WaitingRows(Session& session);

    /// Those of a code; none when no run that is kept has met it.
    std::optional<Waiting> Of(const Code& code) const;

private:
    QHash<QString, Waiting> m_rows; ///< by list and code
};

} // namespace codes
