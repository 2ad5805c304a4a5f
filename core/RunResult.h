#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

/// Lines to tell about, as many as there may be.
struct Notes {
    qint64 count = 0;
    QStringList lines; ///< the first 1000 of them

    void Add(const QString& line) {
        constexpr int kept = 1000;
        ++count;
        if (lines.size() < kept) {
            lines.append(line);
        }
    }
    void Add(const Notes& more) {
        count += more.count;
        lines += more.lines;
    }
};

/// What one procedure did with its source rows and what it wrote. Every source row is in exactly one class.
struct RunResult {
    enum class Outcome { Done, Failed, Cancelled };

    /// Rows written into one target table (bare name).
    struct TableCount {
        qint64 inserted = 0;
        qint64 updated = 0;
        qint64 takenBack = 0; ///< inserted by a row that was given up, and deleted again
    };
    /// A source row that was given up.
    struct GivenUp {
        QString rowKey;
        QString reason;
    };

    QString module;
    QString procedure;
    Outcome outcome = Outcome::Done;
    qint64 sourceRows = 0; ///< rows the source holds for this run
    qint64 inserted = 0;   ///< source rows that became a new target row
    qint64 updated = 0;    ///< source rows that changed an existing target row
    qint64 skipped = 0;    ///< source rows left out by a rule
    qint64 notReached = 0; ///< source rows behind a cancel or an error
    qint64 givenUpCount = 0;
    QVector<GivenUp> givenUp; ///< the first 1000 of them
    QMap<QString, TableCount> tables;
    QStringList untranslated; ///< codes met without a translation, as "table.field = code"
    Notes notes;              ///< what the log tells about its rows, beside those given up
    QStringList errors;       ///< messages of the errors that ended the procedure
    double seconds = 0;

    /// Whether the classes add up to the source rows.
    bool AddsUp() const { return inserted + updated + skipped + givenUpCount + notReached == sourceRows; }
};
