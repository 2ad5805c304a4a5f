#pragma once

#include "sql/types.h"

#include <QString>
#include <QStringList>

namespace dialect {

/// Turns a statement written for SQL Server into the engine's own words. Only what the engine says differently is
/// changed; comments and quoted names are never touched, nor are literals, but for a date and time (whatever column it
/// goes to) on MySQL, which does not read it as SQL Server does, and for a backslash at the end of a line on SQL
/// Server, which would drop it. What is not known is left as it is. Other databases get the text untouched.
QString Adapt(const QString& statement, Dialect target);

/// A date and time as the statement builder writes it ("20240305 10:20:30"), as MySQL reads it.
template<class Text>
Text MySqlMoment(Text moment) {
    constexpr int BeforeDay = 6;
    constexpr int BeforeMonth = 4;
    moment.insert(BeforeDay, '-');
    moment.insert(BeforeMonth, '-');
    return moment;
}

/// A statement that switches the triggers of a table: "ALTER TABLE t DISABLE TRIGGER ALL".
struct TriggerSwitch {
    QString table; ///< without owner and brackets; empty: the statement is another one
    bool enable = false;
};

/// Reads a trigger statement; any other text gives an empty table.
TriggerSwitch ParseTriggerSwitch(const QString& statement);

/// Cuts a script into its statements, at ";" and at lines that hold "GO" alone, outside literals and comments.
/// Empty statements are left out.
QStringList SplitScript(const QString& script);

/// Whether a statement is a query, and nothing in it writes: no batch of statements without ";", no SELECT .. INTO. A
/// word behind a dot is a name.
bool OnlyReads(const QString& statement);

} // namespace dialect
