#pragma once

#include "app/report/Proof.h"

namespace proof {

enum class Light {
    Green,  ///< all agrees
    Yellow, ///< what was imported agrees; something was not imported, or waits for a translation
    Red,    ///< something differs without a reason, or could not be compared
};

/// What there is to say against a kind of data, or against all of them.
struct Findings {
    // Red:
    qint64 different = 0; ///< rows of Quadrix with other values
    qint64 missing = 0;
    qint64 surplus = 0;
    QStringList troubles; ///< why something could not be compared
    // Yellow:
    qint64 givenUp = 0; ///< rows of the source that were not imported in any way
    qint64 mended = 0;  ///< rows of the source that were imported with mended values
    qint64 failedLookUps = 0;
    QSet<QString> codes;      ///< without a translation, each once, whatever meets it
    qint64 unlistedCodes = 0; ///< those beyond the ones that the results list
    qint64 gone = 0;          ///< rows of Quadrix that the source no longer has
    qint64 wanting = 0;       ///< rows of the source left out because something that they name is not in Quadrix
    qint64 partsWanting = 0;  ///< notes of parts, such as components, that were left out for the same reason
    qint64 contacts = 0;      ///< notes of telephones, addresses and contacts of the source that Quadrix has not
    qint64 unread = 0;        ///< notes of rows of a sheet that stand outside of its data
    qint64 narrow = 0;        ///< notes of columns of Quadrix that keep less of a number than they should
    qint64 uncompared = 0;    ///< rows of the source that the import leaves as they are in Quadrix
    qint64 partly = 0;        ///< counterparties of which not all columns were compared
    bool onlyRoles = false;   ///< of counterparties not all columns were compared
    QStringList empty;        ///< kinds of which no row could be compared
    // Green:
    qint64 compared = 0; ///< rows of Quadrix

    Findings& operator+=(const Findings& more);
};
Findings FindingsOf(const Kind& kind);
Findings FindingsOf(const Proof& proof);

/// The light and its reason in one sentence.
struct Verdict {
    Light light = Light::Green;
    QString reason;
};
Verdict VerdictOf(const Findings& findings);

/// How a light follows from what was found, in words for the page: green, yellow, red.
QStringList Rules();

} // namespace proof
