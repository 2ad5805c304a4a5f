#include "sql/text/dialect.h"
#include "sql/text/sqlTokens.h"

#include <algorithm>

namespace dialect {

namespace {

constexpr QLatin1String Queries[] = {QLatin1String("SELECT"), QLatin1String("WITH"),     QLatin1String("SHOW"),
                                     QLatin1String("VALUES"), QLatin1String("DESCRIBE"), QLatin1String("PRAGMA")};

constexpr QLatin1String Writing[] = {QLatin1String("INSERT"),   QLatin1String("UPDATE"),  QLatin1String("DELETE"),
                                     QLatin1String("MERGE"),    QLatin1String("INTO"),    QLatin1String("DROP"),
                                     QLatin1String("TRUNCATE"), QLatin1String("ALTER"),   QLatin1String("CREATE"),
                                     QLatin1String("EXEC"),     QLatin1String("EXECUTE"), QLatin1String("GRANT"),
                                     QLatin1String("REVOKE")};

template<size_t Count>
bool IsOneOf(const SqlTokens& tokens, const QLatin1String (&words)[Count]) {
    return std::any_of(std::begin(words), std::end(words),
                       [&tokens](QLatin1String word) { return tokens.IsWord(word); });
}

/// Steps over what may stand before a query: blanks, comments, parentheses.
void SkipLead(SqlTokens& tokens) {
    while (!tokens.AtEnd() &&
           (tokens.IsSpace() || tokens.TokenKind() == SqlTokens::Kind::Comment || tokens.Current() == u'(')) {
        tokens.Skip();
    }
}

} // namespace

bool OnlyReads(const QString& statement) {
    SqlTokens tokens(statement);
    SkipLead(tokens);
    if (!IsOneOf(tokens, Queries)) {
        return false;
    }
    bool ofName = false;
    for (; !tokens.AtEnd(); tokens.Skip()) {
        if (!ofName && tokens.TokenKind() == SqlTokens::Kind::Word && IsOneOf(tokens, Writing)) {
            return false;
        }
        ofName = tokens.Current() == u'.';
    }
    return true;
}

} // namespace dialect
