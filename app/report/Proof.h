#pragma once

#include "app/report/ExactSum.h"
#include "core/RunResult.h"

#include <QDateTime>

#include <vector>

/// The proof of a migration: what the source holds now, by the rules of the import, beside what Quadrix holds now.
namespace proof {

/// One way in which source and Quadrix do not agree about a row.
struct Difference {
    enum class Kind {
        Value,   ///< a column differs
        Missing, ///< the source has the row, Quadrix does not
        Surplus, ///< Quadrix has a row that an import would remove
    };

    Kind kind = Kind::Value;
    QString table = {}; ///< bare name
    QString row = {};   ///< what tells it: "DDT 117 2024 - 3 AB-01"
    QString sourceRow =
        {}; ///< the row of the source under way when Quadrix was to be changed; empty where it is not known
    QString column = {}; ///< of a value
    QString source = {}; ///< of a value: as the rules make it of the source, written the Italian way
    QString target = {}; ///< of a value: as it stands in Quadrix
    qint64 id = 0;       ///< of a value: RECORD_ID of the row
};

/// Amounts of a group of rows on both sides.
struct Total {
    struct Amount {
        QString column;
        ExactSum source;
        ExactSum target;
    };

    QString group; ///< "DDT 2024"; empty: all rows of the table
    qint64 sourceRows = 0;
    qint64 targetRows = 0;
    std::vector<Amount> amounts;

    bool Agrees() const;
};

/// A row as both sides have it.
struct Sample {
    struct Value {
        QString column;
        QString source;
        QString target;
    };

    QString row;
    std::vector<Value> values; ///< the first columns that are not empty
};

/// A table of Quadrix that the imports of a kind of data write.
struct TableFigures {
    QString table; ///< bare name
    // Its rows, each in one class:
    qint64 equal = 0;     ///< the source gives what stands there
    qint64 different = 0; ///< it gives something else
    qint64 missing = 0;   ///< not there
    qint64 surplus = 0;   ///< there, and an import would remove it
    qint64 kept = 0;   ///< written by an import, and not written anew: found again as it is, or no longer in the source
    qint64 others = 0; ///< of others: they were there before, or were written since
    std::vector<Difference> differences; ///< of the first rows of each kind of difference
    std::vector<Total> totals;
    std::vector<Sample> samples;

    qint64 OfSource() const { return equal + different + missing; }
    qint64 OfTarget() const { return equal + different + surplus; }
    qint64 Faults() const { return different + missing + surplus; }
};

/// A column that was not compared.
struct Uncompared {
    QString column;   ///< "CON_TRO.COINV"
    qint64 cells = 0; ///< in the rows that were compared
    QString reason;   ///< for the page
};

/// What one procedure found in the source.
struct Step {
    QString title; ///< "Articoli da Gescom"
    RunResult result;
};

/// What one button imports.
struct Kind {
    QString title; ///< the caption of the button, or the title of the procedure
    QString data;  ///< as the command line names it: "art"
    std::vector<Step> steps;
    std::vector<TableFigures> tables;
    std::vector<Uncompared> uncompared;
    qint64 mended = 0;      ///< rows given up that were imported with mended values, and are as they were then
    bool onlyRoles = false; ///< of counterparties those columns alone were compared that their roles give
    qint64 partly = 0;      ///< counterparties of which no import has written all columns anew
    QString trouble;        ///< why nothing could be compared; empty when it could
};

/// Rows of the source of a kind, each in one class.
struct SourceFigures {
    qint64 rows = 0;
    qint64 found = 0;   ///< in Quadrix
    qint64 missing = 0; ///< an import would write them anew
    qint64 skipped = 0; ///< by a rule
    qint64 givenUp = 0;
    qint64 notReached = 0;
};
SourceFigures FiguresOf(const Kind& kind);

struct OpenCode {
    QString table;
    QString field;
    QString code;
};

/// The whole page.
struct Proof {
    QString companyCode;
    QString companyName;
    QString origin;
    QString source;   ///< its place
    QString database; ///< that of Quadrix
    QDateTime begun;
    QDateTime ended;
    QString worker;
    QString version;
    std::vector<Kind> kinds;
    std::vector<OpenCode> openCodes; ///< the first of those in SYS_IMP without a translation, whatever they came from
    qint64 openCodeCount = 0;
};

} // namespace proof
