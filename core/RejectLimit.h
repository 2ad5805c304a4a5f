#pragma once

#include <QString>

#include <optional>

/// How many source rows a procedure gives up before it stops: a source that is not what was thought is noticed early,
/// not when all of its rows have been given up.
struct RejectLimit {
    /// Rows that have to be done before a share of them tells anything.
    static constexpr qint64 LeastRows = 200;

    qint64 rows = 0;    ///< 0: any number
    double percent = 0; ///< of the rows done; 0: any share

    /// "100", or "5%" and "0.5%"; none for any other text, and for 0 and more than 100%.
    static std::optional<RejectLimit> Of(const QString& text);
    /// As it is told: "100", "5%"; empty without a limit.
    QString Text() const;
    /// @param givenUp rows that were given up @param done rows that came to an end, with these
    bool IsReached(qint64 givenUp, qint64 done) const;
};
