#pragma once

#include "app/codes/Worklist.h"

namespace codes {

/// A code of Quadrix that the operator gives to a code of a source.
struct Change {
    QString table; ///< TBNAM
    QString field; ///< TBFLD
    QString oldCode;
    QString newCode;          ///< empty takes the translation away
    bool isMade = false;      ///< the code is made in its base table when Quadrix does not have it
    QString description = {}; ///< of a code that is made
};

/// The change with the code as Quadrix spells it. Raises `ImportError` saying why it cannot be made: a code that
/// Quadrix does not have, with those that are near; one that is too long; a table that codes cannot be made in.
Change Checked(Worklist& worklist, Change change);

/// What was saved.
struct Saved {
    int changed = 0;
    int unchanged = 0;
    QStringList made = {}; ///< codes that were made, as "TAB_MOP.ZZ99"

    QString Text() const;
};

/// Checks the changes and writes them, with the codes that are made, all or none; the worklist is read anew. Whoever
/// has changed a code since the worklist was read is not written over. Raises `ImportError`, naming the code, or
/// `SqlError`.
Saved Save(Worklist& worklist, const std::vector<Change>& changes);

} // namespace codes
