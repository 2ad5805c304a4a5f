#include "sql/statementTokens.h"

#include "sql/text/sqlTokens.h"

namespace {

StatementToken::Kind KindOf(sqlScan::Kind kind) {
    switch (kind) {
    case sqlScan::Kind::Space:
    case sqlScan::Kind::Comment:
        return StatementToken::Kind::Blank;
    case sqlScan::Kind::Word:
        return StatementToken::Kind::Word;
    case sqlScan::Kind::Name:
    case sqlScan::Kind::Bracket:
        return StatementToken::Kind::Name;
    case sqlScan::Kind::Number:
    case sqlScan::Kind::Bytes:
    case sqlScan::Kind::Text:
    case sqlScan::Kind::Prefixed:
    case sqlScan::Kind::Moment:
        return StatementToken::Kind::Literal;
    case sqlScan::Kind::Open:
        return StatementToken::Kind::Open;
    case sqlScan::Kind::Other:
        break;
    }
    return StatementToken::Kind::Other;
}

} // namespace

QVector<StatementToken> TokensOf(const QString& statement) {
    constexpr qsizetype usualLength = 3;
    QVector<StatementToken> pieces;
    pieces.reserve(statement.size() / usualLength);
    for (SqlTokens tokens(statement); !tokens.AtEnd(); tokens.Skip()) {
        pieces.append({KindOf(tokens.TokenKind()), tokens.Position(), tokens.Position() + tokens.View().size()});
    }
    return pieces;
}
