#include "sql/replayText.h"

#include "sql/text/sqlTokens.h"

QString ReplayText(const QString& statement) {
    static const QString lineBreak = QStringLiteral("\r\n");
    if (!statement.contains(lineBreak)) {
        return statement;
    }
    QString text;
    for (SqlTokens tokens(statement); !tokens.AtEnd();) {
        const bool isLiteral = tokens.IsOpaque() && tokens.Current() == u'\'';
        QString token = tokens.Take();
        if (isLiteral && token.contains(lineBreak)) {
            token = u'(' + token.replace(lineBreak, QStringLiteral("'||char(13)||char(10)||'")) + u')';
        }
        text += token;
    }
    return text;
}
