#pragma once

#include "sql/statementTokens.h"

#include <QStringList>

#include <deque>
#include <vector>

/// A query taken apart, as far as the names in it are concerned.
namespace sources {

enum class Clause { Select, From, Where, Group, Order };

/// A table that a part of a query reads.
struct TableUse {
    qsizetype begin = 0; ///< where its name stands in the text
    qsizetype end = 0;
    QString name;     ///< without owner and quotes; empty for a query in parentheses
    QString alias;    ///< as it is written; empty: none
    QString written;  ///< the name as it is written, without owner
    int derived = -1; ///< number of the part that stands here in parentheses; -1: none
};

/// A column, or what may be one: words that no table has stay as they are.
struct Mention {
    qsizetype begin = 0;
    qsizetype end = 0;
    qsizetype columnBegin = 0; ///< where the name itself begins, behind its qualifier
    QString qualifier;         ///< without quotes; empty: none
    QString column;            ///< without quotes; empty: all of them ("*", "T.*")
    Clause clause = Clause::Select;
};

/// A column of the result of a part.
struct SelectItem {
    qsizetype end = 0;
    int mention = -1; ///< the mention that is all of it; -1: an expression
    QString alias;    ///< without quotes; empty: none
};

/// One SELECT with what it reads from.
struct QueryPart {
    int parent = -1; ///< the part that it stands in; -1: none
    bool isUnion = false;
    bool isDistinct = false;
    bool isGrouped = false;
    std::vector<TableUse> tables;
    std::vector<Mention> mentions;
    std::vector<SelectItem> items;
};

/// The parts of a query, the outermost first; none for a statement that is no SELECT.
/// @param tokens those of the query
std::deque<QueryPart> ReadQuery(const QString& query, const QVector<StatementToken>& tokens);

/// A name without its quotes or brackets.
QString Unquoted(QStringView name);

} // namespace sources
