#include "sql/text/refusal.h"

#include "sql/text/sqlTokens.h"

#include <QRegularExpression>
#include <QSet>

namespace refusal {

namespace {

/// MySQL and MariaDB: double key, Null where none may be, a row that refers to none or is referred to, value out of
/// range, too long, or of another type.
const QSet<QString>& MySqlCodes() {
    static const QSet<QString> codes{"1048", "1062", "1216", "1217", "1264", "1265", "1292", "1364",
                                     "1366", "1406", "1451", "1452", "1586", "3819", "4025"};
    return codes;
}

/// Classes of SQLSTATE: a value that is none of its column, a constraint.
bool IsStateOfValues(const QString& code) {
    constexpr qsizetype stateLength = 5;
    return code.size() == stateLength && (code.startsWith(QLatin1String("22")) || code.startsWith(QLatin1String("23")));
}

/// The value that an INSERT gives a column, as its literal stands in the text; empty when it gives none.
QString ValueOf(const QString& statement, const QString& column) {
    QStringList columns;
    QStringList values;
    for (SqlTokens tokens(statement); !tokens.AtEnd(); tokens.Skip()) {
        if (!tokens.IsCall()) {
            continue;
        }
        if (tokens.IsWord(QLatin1String("VALUES"))) {
            values = tokens.Arguments();
            break;
        }
        columns = tokens.Arguments();
    }
    for (qsizetype i = 0; i < std::min(columns.size(), values.size()); ++i) {
        if (columns.at(i).trimmed().compare(column, Qt::CaseInsensitive) == 0) {
            return values.at(i).trimmed();
        }
    }
    return {};
}

QString AlreadyThere(const QString& where, const QString& value) {
    return where + QStringLiteral(": ") +
           (value.isEmpty() ? QStringLiteral("il valore") : QString("il valore " + value)) +
           QStringLiteral(" è già presente");
}

/// SQLite names the columns: "X01_CON_TRO.CORAS, X01_CON_TRO.COIVA". @param rule what it says before them
QString ExplainNamed(const SqlError& error, const QStringList& names, bool isDouble) {
    QString table;
    QStringList columns;
    QStringList values;
    for (const QString& name : names) {
        table = name.section(u'.', 0, -2);
        columns.append(name.section(u'.', -1));
        values.append(ValueOf(error.Statement(), columns.last()));
    }
    values.removeAll(QString());
    const QString where = QStringLiteral("tabella %1, colonna %2").arg(table, columns.join(QStringLiteral(", ")));
    return isDouble ? AlreadyThere(where, values.join(QStringLiteral(", "))) : QString(where + ": manca il valore");
}

/// The pieces that an expression finds in the engine's words; empty when it does not fit.
QStringList Found(const SqlError& error, const char* expression) {
    const auto match = QRegularExpression(QLatin1String(expression)).match(error.EngineMessage());
    return match.hasMatch() ? match.capturedTexts().mid(1) : QStringList();
}

} // namespace

bool IsOfValues(const SqlError& error) {
    const QString& code = error.EngineCode();
    return code == QLatin1String("SQLITE_CONSTRAINT") || MySqlCodes().contains(code) || IsStateOfValues(code);
}

QString Explain(const SqlError& error) {
    static const QString separator = QStringLiteral(", ");
    if (const auto found = Found(error, "^UNIQUE constraint failed: (.+)$"); !found.isEmpty()) {
        return ExplainNamed(error, found.first().split(separator), true);
    }
    if (const auto found = Found(error, "^NOT NULL constraint failed: (.+)$"); !found.isEmpty()) {
        return ExplainNamed(error, found.first().split(separator), false);
    }
    if (const auto found = Found(error, "Duplicate entry ('.*') for key '(.*)'"); !found.isEmpty()) {
        return AlreadyThere(QStringLiteral("chiave %1").arg(found.at(1)), found.at(0));
    }
    if (const auto found = Found(error, "Column '(.+)' cannot be null"); !found.isEmpty()) {
        return QStringLiteral("colonna %1: manca il valore").arg(found.first());
    }
    if (const auto found =
            Found(error, "duplicate key .*object '(?:dbo\\.)?([^']+)'.*duplicate key value is \\((.*)\\)");
        !found.isEmpty()) {
        return AlreadyThere(QStringLiteral("tabella %1").arg(found.at(0)), QString(u'\'' + found.at(1) + u'\''));
    }
    return {};
}

} // namespace refusal
