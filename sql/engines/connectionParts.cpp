#include "sql/connectionParts.h"

#include <QRegularExpression>

#include <algorithm>

namespace odbc {

namespace {

/// End of the value that starts at `at`: the ";" after it, or the end of the text.
qsizetype EndOfValue(const QString& text, qsizetype at) {
    const QChar first = at < text.size() ? text.at(at) : QChar();
    const QChar close = first == u'{' ? QChar(u'}') : first;
    if (close == u'}' || close == u'"' || close == u'\'') {
        for (qsizetype end = text.indexOf(close, at + 1); end >= 0; end = text.indexOf(close, end + 2)) {
            if (end + 1 >= text.size() || text.at(end + 1) != close) {
                at = end + 1;
                break;
            }
        }
    }
    const qsizetype end = text.indexOf(u';', at);
    return end < 0 ? text.size() : end;
}

QString Unquoted(const QString& value) {
    const QString text = value.trimmed();
    const QChar first = text.isEmpty() ? QChar() : text.front();
    const QChar close = first == u'{' ? QChar(u'}') : first;
    if (text.size() < 2 || (close != u'}' && close != u'"' && close != u'\'') || text.back() != close) {
        return text;
    }
    QString inner = text.mid(1, text.size() - 2);
    return inner.replace(QString(2, close), QString(close));
}

} // namespace

bool Same(const QString& text, QLatin1String word) { return text.compare(word, Qt::CaseInsensitive) == 0; }

/// A piece without "=" belongs to the value before it: a password with a ";" that nobody put between braces.
Parts ReadParts(const QString& text) {
    Parts parts;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype equals = text.indexOf(u'=', at);
        const qsizetype semicolon = text.indexOf(u';', at);
        const qsizetype pieceEnd = semicolon < 0 ? text.size() : semicolon;
        if (equals < 0 || equals > pieceEnd) {
            const QString piece = text.mid(at, pieceEnd - at);
            if (!parts.isEmpty() && !piece.trimmed().isEmpty()) {
                parts.last().value += u';' + piece;
            }
            at = pieceEnd + 1;
            continue;
        }
        qsizetype start = equals + 1;
        while (start < text.size() && text.at(start) == u' ') {
            ++start;
        }
        const qsizetype end = EndOfValue(text, start);
        parts.append({text.mid(at, equals - at).trimmed(), Unquoted(text.mid(start, end - start))});
        at = end + 1;
    }
    return parts;
}

std::optional<QString> Find(const Parts& parts, QLatin1String key) {
    const auto found =
        std::find_if(parts.begin(), parts.end(), [key](const Part& part) { return Same(part.key, key); });
    return found == parts.end() ? std::nullopt : std::optional(found->value);
}

QString WriteParts(const Parts& parts) {
    QString text;
    for (const Part& part : parts) {
        text += part.key + u'=' + Quoted(part.value) + u';';
    }
    return text;
}

QString Quoted(const QString& value) {
    const bool plain = !value.isEmpty() && value == value.trimmed() &&
                       std::none_of(value.begin(), value.end(),
                                    [](QChar c) { return QStringLiteral("[]{}(),;?*=!@'\"").contains(c); });
    if (plain || value.isEmpty()) {
        return value;
    }
    QString text = value;
    return u'{' + text.replace(u'}', QLatin1String("}}")) + u'}';
}

QString WithoutPassword(const QString& text) {
    static const QRegularExpression password(
        QStringLiteral(R"(\b(PWD|Password)\s*=\s*(\{(?:[^}]|\}\})*\}|"[^"]*"|[^;\]]*))"),
        QRegularExpression::CaseInsensitiveOption);
    QString covered = text;
    return covered.replace(password, QStringLiteral("\\1=***"));
}

} // namespace odbc
