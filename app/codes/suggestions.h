#pragma once

#include "app/codes/Worklist.h"

namespace codes {

/// Why a code of Quadrix may be the one that is meant, the surest first.
enum class Ground {
    UsedBefore,       ///< the same code of another list has been given it
    External,         ///< Quadrix has it from this very code of a source
    EqualCode,        ///< the same code
    PaddedCode,       ///< the same but for the zeros in front
    EqualDescription, ///< the description is the same but for case, blanks and signs
    SameRate,         ///< of a VAT code
    SameDays,         ///< of a payment term
    NearDescription,
};

struct Suggestion {
    QString code;
    QString description; ///< in Quadrix
    Ground ground;
    QString reason; ///< for the operator: "stessi giorni: 30, 60"
};

/// Looks for the codes of Quadrix that codes of sources may mean. Nothing is given by itself: the operator takes one.
class Suggester {
public:
    explicit Suggester(Worklist& worklist)
        : m_worklist(worklist) {}

    /// The codes that may be meant, each once, the surest first, at most five; none for a list of any text unless the
    /// code was given one elsewhere. Raises `SqlError`.
    std::vector<Suggestion> For(const Code& code);

private:
    void AddUsedBefore(const Code& code, const CodeList& list, std::vector<Suggestion>& found);

    Worklist& m_worklist;
    QMultiHash<QString, size_t> m_given; ///< codes that have been given one, by old code in upper case
    bool m_hasGiven = false;
};

/// The number of percent that a text tells, such as "IVA 22%" or "22"; none when it tells none or several.
std::optional<double> RateIn(const QString& text);

} // namespace codes
