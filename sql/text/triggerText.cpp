#include "sql/text/triggerText.h"

#include "sql/text/sqlTokens.h"

namespace {

bool TakeWord(SqlTokens& tokens, QLatin1String word) {
    tokens.SkipSpace();
    if (!tokens.IsWord(word)) {
        return false;
    }
    tokens.Skip();
    return true;
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
        while (tokens.IsPartOfName() || tokens.TokenKind() == SqlTokens::Kind::Text) {
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
    if (!Is(tokens.TakeName(), name)) {
        return false;
    }
    while (!tokens.AtEnd() && !tokens.IsWord(QLatin1String("ON"))) {
        tokens.Skip();
    }
    tokens.Skip();
    return Is(tokens.TakeName(), table);
}
