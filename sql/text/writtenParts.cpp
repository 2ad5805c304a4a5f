#include "sql/text/writtenParts.h"

#include "sql/text/sqlTokens.h"

namespace writtenParts {

namespace {

using Kind = SqlTokens::Kind;

void SkipWord(SqlTokens& tokens) {
    tokens.Skip();
    tokens.SkipSpace();
}

/// Steps to the name of the table; false when the statement writes into none.
bool ToTable(SqlTokens& tokens) {
    tokens.SkipSpace();
    const bool isInsert = tokens.IsWord(QLatin1String("INSERT"));
    const bool isDelete = tokens.IsWord(QLatin1String("DELETE"));
    if (!isInsert && !isDelete && !tokens.IsWord(QLatin1String("UPDATE"))) {
        return false;
    }
    SkipWord(tokens);
    if ((isInsert && tokens.IsWord(QLatin1String("INTO"))) || (isDelete && tokens.IsWord(QLatin1String("FROM")))) {
        SkipWord(tokens);
    }
    return true;
}

QString TakeTable(SqlTokens& tokens) {
    QString table;
    while (!tokens.AtEnd() && !tokens.IsSpace() && tokens.Current() != u'(') {
        table += tokens.Take();
    }
    return table;
}

bool IsLiteral(const SqlTokens& tokens) {
    return tokens.TokenKind() == Kind::Text || tokens.TokenKind() == Kind::Number;
}

/// The text when it is one literal, with its minus; empty when it is anything else.
QString AsLiteral(const QString& text) {
    SqlTokens tokens(text);
    if (tokens.Current() == u'-') {
        tokens.Skip();
    }
    const bool isLiteral = IsLiteral(tokens);
    tokens.Skip();
    return isLiteral && tokens.AtEnd() ? text : QString();
}

/// What stands between the parentheses at the place of the tokens, which then stand behind them.
QStringList TakeList(SqlTokens& tokens) {
    const QString list = QStringLiteral("x") + tokens.TakeParenthesis();
    return SqlTokens(list).Arguments();
}

bool IsColumn(const QString& name, const QString& column) {
    QString bare = name.trimmed();
    bare.remove(u'[').remove(u']').remove(u'"').remove(u'`');
    return bare.compare(column, Qt::CaseInsensitive) == 0;
}

QString Inserted(SqlTokens& tokens, const QString& column) {
    tokens.SkipSpace();
    const QStringList columns = TakeList(tokens);
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("VALUES"))) {
        return {};
    }
    SkipWord(tokens);
    const QStringList values = TakeList(tokens);
    tokens.SkipSpace();
    const auto isColumn = [&column](const QString& name) { return IsColumn(name, column); };
    const auto place = std::find_if(columns.begin(), columns.end(), isColumn) - columns.begin();
    return tokens.AtEnd() ? AsLiteral(values.value(place).trimmed()) : QString();
}

QString Updated(SqlTokens& tokens, const QString& column) {
    for (; !tokens.AtEnd() && !tokens.IsWord(QLatin1String("WHERE")); tokens.Skip()) {
        const bool isName = tokens.TokenKind() == Kind::Word || tokens.TokenKind() == Kind::Bracket;
        if (!isName || !IsColumn(tokens.Text(), column)) {
            continue;
        }
        SkipWord(tokens);
        if (tokens.Current() == u'=') {
            SkipWord(tokens);
            return IsLiteral(tokens) ? tokens.Text() : QString();
        }
    }
    return {};
}

} // namespace

QString Table(const QString& statement) {
    SqlTokens tokens(statement);
    return ToTable(tokens) ? TakeTable(tokens) : QString();
}

QString Value(const QString& statement, const QString& column) {
    SqlTokens tokens(statement);
    const bool isUpdate = tokens.FollowedBy(QLatin1String("UPDATE"), 0);
    if (!ToTable(tokens)) {
        return {};
    }
    TakeTable(tokens);
    return isUpdate ? Updated(tokens, column) : Inserted(tokens, column);
}

} // namespace writtenParts
