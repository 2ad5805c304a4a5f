#include "docs/manual/codeText.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace manual {

namespace {

/// Place behind the literal that begins at `at`.
qsizetype BehindLiteral(const QString& code, qsizetype at) {
    for (++at; at < code.size() && code.at(at) != u'"'; ++at) {
        at += code.at(at) == u'\\' ? 1 : 0;
    }
    return at + 1;
}

} // namespace

QString TextOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList SourceFiles(const QDir& root) {
    QStringList paths;
    for (const char* floor : {"adapters", "app", "cli", "core", "sources", "sql", "ui"}) {
        QDirIterator files(root.filePath(QLatin1String(floor)), {"*.cpp", "*.h"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            paths.append(root.relativeFilePath(files.next()));
        }
    }
    paths.sort();
    return paths;
}

QStringList ArgumentsAt(const QString& code, qsizetype from) {
    QStringList arguments;
    int depth = 0;
    qsizetype begin = from;
    for (qsizetype at = from; at < code.size();) {
        const QChar sign = code.at(at);
        const bool isEnd = depth == 0 && QStringLiteral(")};").contains(sign);
        if (isEnd || (depth == 0 && sign == u',')) {
            arguments.append(code.mid(begin, at - begin).trimmed());
            begin = at + 1;
        }
        if (isEnd) {
            break;
        }
        depth += QStringLiteral("({[").contains(sign) ? 1 : QStringLiteral(")}]").contains(sign) ? -1 : 0;
        at = sign == u'"' ? BehindLiteral(code, at) : at + 1;
    }
    return arguments;
}

QString TextOfExpression(const QString& expression, const QString& code) {
    static const QRegularExpression literal(R"re(^(?:QStringLiteral\(|QLatin1String\(|QString\()?"([^"\\]*)"\)?$)re");
    static const QRegularExpression name(R"(^\w+$)");
    if (const auto found = literal.match(expression); found.hasMatch()) {
        return found.captured(1);
    }
    if (!name.match(expression).hasMatch()) {
        return {};
    }
    const QRegularExpression given(
        QStringLiteral(R"re((?<![.\w])%1 = (?:QStringLiteral\()?"([^"\\]*)")re").arg(expression));
    const auto found = given.match(code);
    return found.hasMatch() ? found.captured(1) : QString();
}

} // namespace manual
