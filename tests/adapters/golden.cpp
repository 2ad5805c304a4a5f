#include "tests/adapters/golden.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace golden {

namespace {

/// The lines of a list in brackets, one item a line as the statement builder writes them, without commas between.
QStringList Items(const QString& list) {
    QStringList items = list.split(QRegularExpression(",\\n  (?! )"));
    for (QString& item : items) {
        item = item.trimmed().replace('\n', "\\n");
    }
    return items;
}

/// How many of the statements, which follow each other, an earlier run made too.
void Count(QStringList& lines, int& repeated) {
    if (repeated > 0) {
        lines.append(QString("as before: %1").arg(repeated));
    }
    repeated = 0;
}

} // namespace

QString OneLine(const QString& statement) {
    static const QRegularExpression insert("^INSERT INTO (\\S+)\\s*\\((.*?)\\) VALUES \\((.*)\\)\\s*$",
                                           QRegularExpression::DotMatchesEverythingOption);
    const QString text = QString(statement).replace("\r\n", "\n").replace('\r', '\n');
    if (const auto match = insert.match(text); match.hasMatch()) {
        const QStringList columns = Items(match.captured(2));
        const QStringList values = Items(match.captured(3));
        if (columns.size() == values.size()) {
            QString line = "INSERT " + match.captured(1);
            for (qsizetype i = 0; i < columns.size(); ++i) {
                line += ' ' + columns.at(i) + '=' + values.at(i);
            }
            return line;
        }
    }
    static const QRegularExpression lineEnd("\\s*\\n\\s*");
    return QString(text).replace(lineEnd, " ").trimmed();
}

QString Short(const QVector<Run>& runs) {
    QStringList lines;
    QHash<QString, QSet<QString>> made; // by procedure
    for (const Run& run : runs) {
        lines.append("== " + run.line);
        QSet<QString>& before = made[run.line.section(' ', 0, 0)];
        const QSet<QString> earlier = before;
        int repeated = 0;
        for (const QString& statement : run.statements) {
            if (earlier.contains(statement)) {
                ++repeated;
                continue;
            }
            Count(lines, repeated);
            lines.append(OneLine(statement));
            before.insert(statement);
        }
        Count(lines, repeated);
    }
    return lines.join('\n') + '\n';
}

QString FirstDifference(const QString& name, const QString& expected, const QString& actual) {
    const QStringList left = expected.split('\n');
    const QStringList right = actual.split('\n');
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        if (left.value(i) != right.value(i)) {
            return QString("%1, line %2:\nexpected: %3\n  actual: %4")
                .arg(name)
                .arg(i + 1)
                .arg(left.value(i, "(end)"), right.value(i, "(end)"));
        }
    }
    return {};
}

} // namespace golden
