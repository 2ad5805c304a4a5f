#pragma once

#include "adapters/contract/run/Origin.h"

namespace inspection {

/// The first rows of a table of the source as a mapping would write them.
struct Preview {
    struct Line {
        QString target;       ///< "CON_TRO.CORAS"
        QString sources;      ///< logical columns; empty for none
        QString rule;         ///< what it does, in a few words
        bool isAdded = false; ///< by the layout file
        struct Value {
            QString text;
            QString trouble; ///< why the value would not be written; empty when it would
        };
        std::vector<Value> values; ///< one for each row; the text of one that the rule leaves out is empty
    };
    std::vector<Line> lines;
    QStringList rows = {}; ///< what they are called: by their number in the file, where it numbers them
    QString trouble;       ///< why nothing can be shown; empty when something can
};

/// A mapping of an origin, with the procedure that writes by it.
struct PreviewOf {
    const contract::Procedure* procedure = nullptr;
    const contract::Mapping* mapping = nullptr;
    QString title; ///< "CON_TRO da ARCLFR (ImportContropartiGescom)"
};

/// What can be previewed of an origin: each target table from each source table of a procedure, once.
std::vector<PreviewOf> Previews(const contract::Origin& origin);

/// The first rows, at most ten, of the source that is open, by the rules of the mapping and of the layout file, for the
/// company under work. What rules write meanwhile is taken back. A code that only a run assigns is told to be one, and
/// a value that hangs on the role of a counterparty is told for each role. Raises nothing.
Preview MakePreview(Session& session, const contract::Origin& origin, const PreviewOf& of);

} // namespace inspection
