#include "sql/text/writtenParts.h"

#include "sql/text/sqlTokens.h"

#include <algorithm>
#include <optional>

namespace writtenParts {

namespace {

using Kind = SqlTokens::Kind;

const Writing Unclear{Writing::Kind::Unclear};

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

/// The name when the text is one and nothing else.
std::optional<QString> NameIn(const QString& text) {
    SqlTokens tokens(text);
    const QString name = tokens.TakeName();
    tokens.SkipSpace();
    return tokens.AtEnd() && !name.isEmpty() ? std::optional(name) : std::nullopt;
}

bool Is(const std::optional<QString>& name, const QString& column) {
    return name && name->compare(column, Qt::CaseInsensitive) == 0;
}

Writing WritingOf(const QString& value) {
    const QString literal = AsLiteral(value.trimmed());
    return literal.isEmpty() ? Unclear : Writing{Writing::Kind::Literal, literal};
}

Writing Inserted(SqlTokens& tokens, const QString& column) {
    tokens.SkipSpace();
    if (tokens.Current() != u'(') {
        return Unclear;
    }
    const QStringList columns = TakeList(tokens);
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("VALUES"))) {
        return Unclear;
    }
    SkipWord(tokens);
    const QStringList values = tokens.Current() == u'(' ? TakeList(tokens) : QStringList();
    tokens.SkipSpace();
    if (!tokens.AtEnd() || values.size() != columns.size()) {
        return Unclear; // further rows, or what is done instead of inserting
    }
    Writing found;
    for (qsizetype place = 0; place < columns.size(); ++place) {
        const auto name = NameIn(columns.at(place));
        found = !name ? Unclear : Is(name, column) ? WritingOf(values.at(place)) : found;
    }
    return found;
}

/// What stands before one of the marks, or WHERE, of its own level.
QString TakePiece(SqlTokens& tokens, QStringView marks) {
    QString piece;
    for (int depth = 0; !tokens.AtEnd(); piece += tokens.Take()) {
        const QChar c = tokens.IsOpaque() ? QChar() : tokens.Current();
        if (depth == 0 && (marks.contains(c) || tokens.IsWord(QLatin1String("WHERE")))) {
            break;
        }
        depth += c == u'(' ? 1 : c == u')' ? -1 : 0;
    }
    return piece;
}

Writing Updated(SqlTokens& tokens, const QString& column) {
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("SET"))) {
        return Unclear;
    }
    Writing found;
    do {
        tokens.Skip();
        const QString target = TakePiece(tokens, u"=,");
        const auto name = NameIn(target);
        if (!name || tokens.Current() != u'=') {
            return Unclear;
        }
        tokens.Skip();
        const QString value = TakePiece(tokens, u",");
        if (Is(name, column)) {
            found = found.kind == Writing::Kind::None ? WritingOf(value) : Unclear;
        }
    } while (tokens.Current() == u',');
    return found;
}

/// Whether what stands behind the name of a table is what an INSERT or UPDATE of it goes on with.
bool GoesOn(const SqlTokens& tokens) {
    static constexpr QLatin1String words[] = {QLatin1String("SET"), QLatin1String("VALUES"), QLatin1String("SELECT"),
                                              QLatin1String("DEFAULT")};
    return tokens.Current() == u'(' || std::any_of(std::begin(words), std::end(words),
                                                   [&tokens](QLatin1String word) { return tokens.IsWord(word); });
}

} // namespace

QString Table(const QString& statement) {
    SqlTokens tokens(statement);
    return ToTable(tokens) ? TakeTable(tokens) : QString();
}

QString TableName(const QString& statement) {
    SqlTokens tokens(statement);
    if (!ToTable(tokens)) {
        return {};
    }
    const QString name = tokens.TakeName();
    tokens.SkipSpace();
    return GoesOn(tokens) ? name : QString();
}

Writing Of(const QString& statement, const QString& column) {
    SqlTokens tokens(statement);
    const bool isUpdate = tokens.FollowedBy(QLatin1String("UPDATE"), 0);
    if (!ToTable(tokens)) {
        return Unclear;
    }
    TakeTable(tokens);
    return isUpdate ? Updated(tokens, column) : Inserted(tokens, column);
}

QString Value(const QString& statement, const QString& column) { return Of(statement, column).literal; }

} // namespace writtenParts
