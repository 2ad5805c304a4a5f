#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <algorithm>

/// What a log tells about rows, by kind: the text of a line up to its colon, such as "ARTICOLO NON TROVATO".
struct Notes {
    struct Kind {
        QString name;
        qint64 count = 0;
        QString first; ///< the rest of its first line
    };
    qint64 count = 0;
    QVector<Kind> kinds; ///< in the order in which they came up; the first 100 of them

    void Add(const QString& line) { Add({line.section(u':', 0, 0), 1, line.section(u':', 1).trimmed()}); }
    void Add(const Notes& more) {
        for (const Kind& kind : more.kinds) {
            Add(kind);
        }
    }

private:
    void Add(const Kind& more) {
        constexpr int kept = 100;
        count += more.count;
        const auto known =
            std::find_if(kinds.begin(), kinds.end(), [&](const Kind& kind) { return kind.name == more.name; });
        if (known != kinds.end()) {
            known->count += more.count;
        } else if (kinds.size() < kept) {
            kinds.append(more);
        }
    }
};

/// What one procedure did with its source rows and what it wrote. Every source row is in exactly one class.
struct RunResult {
    enum class Outcome { Done, Failed, Cancelled };

    /// Rows written into one target table (bare name).
    struct TableCount {
        qint64 inserted = 0;
        qint64 updated = 0;
    };
    /// Rows deleted from a table.
    struct Emptied {
        QString table;   ///< physical name
        qint64 rows = 0; ///< -1 where the database does not count them
    };
    /// A source row that was given up.
    struct GivenUp {
        QString rowKey;
        QString reason;
    };

    QString module;
    QString procedure;
    Outcome outcome = Outcome::Done;
    qint64 sourceRows = 0;           ///< rows the source holds for this run
    qint64 inserted = 0;             ///< source rows that became a new target row
    qint64 updated = 0;              ///< source rows that changed an existing target row
    qint64 skipped = 0;              ///< source rows left out by a rule
    QMap<QString, qint64> skippedBy; ///< rows left out, by the rule that left them out
    qint64 notReached = 0;           ///< source rows behind a cancel or an error
    qint64 givenUpCount = 0;
    qint64 givenUpBefore =
        0;               ///< rows that the runs which this one goes on with have given up, and are not imported yet
    qint64 notFound = 0; ///< rows of a file of mended rejects that the source has no more with those values
    qint64 failedLookUps = 0; ///< look-ups that failed; their rows went on as without a translation
    QVector<GivenUp> givenUp; ///< the first 1000 of them
    QMap<QString, TableCount> tables;
    QVector<Emptied> emptied; ///< what was deleted before the rows were read, in order
    QStringList untranslated; ///< codes met without a translation, as "table.field = code"; the first 1000 of them
    qint64 untranslatedCount = 0;
    Notes notes;        ///< what the log tells about its rows, beside those given up
    QStringList errors; ///< messages of the errors that ended the procedure, and of failed look-ups, each once
    double seconds = 0;
    QStringList details; ///< what else there is to tell of the run, line by line
    QString logFile;     ///< its log, where that is not the import log
    qint64 logStart = 0; ///< where in that file its lines begin, in bytes

    /// One of the numbers above, with the name that it is kept under.
    struct Number {
        const char* name;
        qint64 RunResult::*member;
    };
    /// All of them: by these results are kept and added up.
    static constexpr Number Numbers[] = {
        {"sourceRows", &RunResult::sourceRows},
        {"inserted", &RunResult::inserted},
        {"updated", &RunResult::updated},
        {"skipped", &RunResult::skipped},
        {"notReached", &RunResult::notReached},
        {"givenUp", &RunResult::givenUpCount},
        {"givenUpBefore", &RunResult::givenUpBefore},
        {"notFound", &RunResult::notFound},
        {"failedLookUps", &RunResult::failedLookUps},
        {"untranslated", &RunResult::untranslatedCount},
    };

    /// Whether the classes add up to the source rows.
    bool AddsUp() const { return inserted + updated + skipped + givenUpCount + notReached == sourceRows; }
};
