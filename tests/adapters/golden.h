#pragma once

#include <QStringList>
#include <QVector>

/// What is kept of a run to compare it with, short enough to be read.
namespace golden {

/// A line of "run.txt" and the statements that it made, in order.
struct Run {
    QString line;
    QStringList statements;
};

/// A statement in one line; an INSERT as "INSERT TABLE COLUMN=value ..".
QString OneLine(const QString& statement);

/// The statements of runs, one a line under the line of "run.txt". Those that an earlier run of the same procedure made
/// too are counted: "as before: 12".
QString Short(const QVector<Run>& runs);

/// The first difference between the lines of two texts, with the name of what is compared; empty when there is none.
QString FirstDifference(const QString& name, const QString& expected, const QString& actual);

} // namespace golden
