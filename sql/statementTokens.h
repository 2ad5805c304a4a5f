#pragma once

#include <QString>
#include <QVector>

/// A piece of a statement.
struct StatementToken {
    enum class Kind {
        Blank,   ///< blanks and comments
        Word,    ///< a keyword, or a name without quotes
        Name,    ///< a name in quotes or brackets
        Literal, ///< a text, number, date or bytes
        Open,    ///< a text or a name that nothing ends: the rest of the statement
        Other,   ///< one character
    };

    Kind kind;
    qsizetype begin;
    qsizetype end;

    bool operator==(const StatementToken&) const = default;
};

/// The pieces of a statement, one behind the other, as everyone here tells them apart.
QVector<StatementToken> TokensOf(const QString& statement);
