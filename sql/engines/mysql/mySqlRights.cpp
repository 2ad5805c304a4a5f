#include "sql/engines/mysql/mySqlRights.h"

#include "sql/engines/mysql/mySqlCatalog.h"
#include "sql/errors.h"

#include <QRegularExpression>

namespace mySqlRights {

namespace {

QString First(Engine& engine, const QString& query) {
    const auto rows = engine.Query(query);
    return rows->Next() ? rows->Value(0).toString() : QString();
}

/// Whether what a grant is for, "`q%`.*", "*.*" or "`q`.`X01_DOC_VER`", takes in a table; the quotes are those of the
/// session.
bool TakesIn(const QString& granted, const QString& database, const QString& table) {
    static const QRegularExpression parts(QStringLiteral("^(?:[`\"](.+)[`\"]|(\\*))\\.(?:[`\"](.+)[`\"]|(\\*))$"));
    const auto found = parts.match(granted);
    const QString ofTable = found.captured(3);
    if (!found.hasMatch() || (!ofTable.isEmpty() && ofTable.compare(table, Qt::CaseInsensitive) != 0)) {
        return false;
    }
    if (!found.captured(2).isEmpty()) {
        return true;
    }
    // In the name of a database % and _ stand for any characters, unless a backslash stands before them.
    QString pattern;
    const QString name = found.captured(1);
    for (qsizetype at = 0; at < name.size(); ++at) {
        const bool isMasked = name.at(at) == u'\\' && at + 1 < name.size();
        at += isMasked ? 1 : 0;
        const QChar c = name.at(at);
        pattern += !isMasked && c == u'%'   ? QStringLiteral(".*")
                   : !isMasked && c == u'_' ? QStringLiteral(".")
                                            : QRegularExpression::escape(QString(c));
    }
    const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern),
                                   QRegularExpression::CaseInsensitiveOption);
    return whole.match(database).hasMatch();
}

/// Tries a statement that changes no row; whether the user may not run it.
bool IsDenied(Engine& engine, const QString& statement) {
    try {
        engine.Query(statement);
        return false;
    } catch (const SqlError& error) { // another refusal is none of the rights
        return error.IsDenied();
    }
}

} // namespace

QString CurrentUser(Engine& engine) {
    const QString user = First(engine, QStringLiteral("SELECT CURRENT_USER()"));
    const qsizetype at = user.lastIndexOf(u'@');
    return QStringLiteral("'%1'@'%2'").arg(user.left(at), user.mid(at + 1));
}

QString Database(Engine& engine) { return MySqlName(First(engine, QStringLiteral("SELECT DATABASE()"))); }

bool IsGranted(Engine& engine, const QString& privilege, const QString& table) {
    static const QRegularExpression grant(QStringLiteral("^GRANT (.+) ON (\\S.*?) TO "));
    const QString database = First(engine, QStringLiteral("SELECT DATABASE()"));
    const auto grants = engine.Query(QStringLiteral("SHOW GRANTS"));
    while (grants->Next()) {
        const auto found = grant.match(grants->Value(0).toString());
        const QStringList privileges = found.captured(1).split(QStringLiteral(", "));
        if ((privileges.contains(privilege) || privileges.contains(QStringLiteral("ALL PRIVILEGES"))) &&
            TakesIn(found.captured(2), database, table)) {
            return true;
        }
    }
    return false;
}

QStringList Lacking(Engine& engine, const QString& table, const QString& column, bool writes) {
    const QString name = MySqlName(table);
    const QString field = MySqlName(column);
    const QVector<QPair<QString, QString>> tries{
        {QStringLiteral("SELECT"), QStringLiteral("SELECT %2 FROM %1 WHERE 1 = 0")},
        {QStringLiteral("INSERT"), QStringLiteral("INSERT INTO %1 (%2) SELECT NULL FROM DUAL WHERE 1 = 0")},
        {QStringLiteral("UPDATE"), QStringLiteral("UPDATE %1 SET %2 = NULL WHERE 1 = 0")},
        {QStringLiteral("DELETE"), QStringLiteral("DELETE FROM %1 WHERE 1 = 0")},
    };
    QStringList lacking;
    for (const auto& [right, statement] : writes ? tries : tries.first(1)) {
        if (IsDenied(engine,
                     QString(statement).replace(QLatin1String("%1"), name).replace(QLatin1String("%2"), field))) {
            lacking.append(QStringLiteral("diritto %1 sulla tabella '%2' (GRANT %1 ON %3.%4 TO %5)")
                               .arg(right, table, Database(engine), name, CurrentUser(engine)));
        }
    }
    return lacking;
}

} // namespace mySqlRights
