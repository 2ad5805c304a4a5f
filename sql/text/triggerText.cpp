#include "sql/text/triggerText.h"

#include "sql/text/sqlTokens.h"

namespace {

bool IsNameToken(const SqlTokens& tokens) {
    return tokens.TokenKind() == SqlTokens::Kind::Word || tokens.TokenKind() == SqlTokens::Kind::Name ||
           tokens.TokenKind() == SqlTokens::Kind::Bracket || tokens.TokenKind() == SqlTokens::Kind::Number;
}

QString Unquoted(const QString& token) {
    const QChar quote = token.isEmpty() ? QChar() : token.front();
    if (quote == u'[') {
        return token.mid(1, token.size() - 2);
    }
    if (quote != u'"' && quote != u'`') {
        return token;
    }
    return token.mid(1, token.size() - 2).replace(QString(2, quote), QString(quote));
}

bool TakeWord(SqlTokens& tokens, QLatin1String word) {
    tokens.SkipSpace();
    if (!tokens.IsWord(word)) {
        return false;
    }
    tokens.Skip();
    return true;
}

/// The last part of a name: "t" of "base.`t`".
QString TakeName(SqlTokens& tokens) {
    tokens.SkipSpace();
    QString name;
    while (IsNameToken(tokens) || tokens.Current() == u'.') {
        name = tokens.Current() == u'.' ? QString() : QString(name + Unquoted(tokens.Text()));
        tokens.Skip();
    }
    return name;
}

/// "DEFINER=`anna`@`%`": what stands behind the equals sign has no blank in it, but within quotes.
void SkipDefiner(SqlTokens& tokens) {
    if (!TakeWord(tokens, QLatin1String("DEFINER"))) {
        return;
    }
    tokens.SkipSpace();
    if (tokens.Current() == u'=') {
        tokens.Skip();
        tokens.SkipSpace();
        while (IsNameToken(tokens) || tokens.TokenKind() == SqlTokens::Kind::Text) {
            tokens.Skip();
        }
    }
}

bool Is(const QString& found, const QString& name) { return found.compare(name, Qt::CaseInsensitive) == 0; }

} // namespace

bool IsTriggerText(const QString& statement, const QString& name, const QString& table) {
    SqlTokens tokens(statement);
    if (!TakeWord(tokens, QLatin1String("CREATE"))) {
        return false;
    }
    SkipDefiner(tokens);
    if (!TakeWord(tokens, QLatin1String("TRIGGER"))) {
        return false;
    }
    if (TakeWord(tokens, QLatin1String("IF"))) {
        TakeWord(tokens, QLatin1String("NOT"));
        TakeWord(tokens, QLatin1String("EXISTS"));
    }
    if (!Is(TakeName(tokens), name)) {
        return false;
    }
    while (!tokens.AtEnd() && !tokens.IsWord(QLatin1String("ON"))) {
        tokens.Skip();
    }
    tokens.Skip();
    return Is(TakeName(tokens), table);
}
