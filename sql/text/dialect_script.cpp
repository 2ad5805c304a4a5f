#include "sql/text/dialect.h"
#include "sql/text/sqlTokens.h"

namespace dialect {

TriggerSwitch ParseTriggerSwitch(const QString& statement) {
    SqlTokens tokens(statement);
    tokens.SkipSpace();
    if (!tokens.IsWord(QLatin1String("ALTER"))) {
        return {};
    }
    QStringList words;
    for (; !tokens.AtEnd(); tokens.Skip()) {
        const bool ofName = !words.isEmpty() && (tokens.Current() == u'.' || words.last().endsWith(u'.'));
        if (ofName) {
            words.last() += tokens.Text();
        } else if (!tokens.IsSpace()) {
            words.append(tokens.Text());
        }
    }
    const auto word = [&words](int index) { return words.value(index).toUpper(); };
    const bool enable = word(3) == QLatin1String("ENABLE");
    if (words.size() != 6 || word(1) != QLatin1String("TABLE") || word(4) != QLatin1String("TRIGGER") ||
        word(5) != QLatin1String("ALL") || (!enable && word(3) != QLatin1String("DISABLE"))) {
        return {};
    }
    QString table = words.at(2).section(u'.', -1);
    return {table.remove(u'[').remove(u']'), enable};
}

QStringList SplitScript(const QString& script) {
    QStringList statements;
    QString statement;
    const auto end = [&] {
        if (!statement.trimmed().isEmpty()) {
            statements.append(statement.trimmed());
        }
        statement.clear();
    };
    for (SqlTokens tokens(script); !tokens.AtEnd();) {
        if (tokens.Current() == u';' || tokens.IsLineOfGo()) {
            tokens.Skip();
            end();
        } else {
            statement += tokens.Take();
        }
    }
    end();
    return statements;
}

} // namespace dialect
