#include "sql/engines/meaning.h"

#include "sql/text/writtenParts.h"

#include <QRegularExpression>

#include <algorithm>

namespace meaning {

namespace {

constexpr qsizetype LongestValue = 60;

QRegularExpressionMatch Found(const Refusal& refusal, const SqlError& error) {
    const QRegularExpression words(refusal.words, QRegularExpression::DotMatchesEverythingOption);
    return words.match(error.EngineMessage());
}

QString ValueText(const QString& statement, const QString& column) {
    const QString value = writtenParts::Value(statement, column);
    if (value.isEmpty()) {
        return QStringLiteral("lo stesso valore");
    }
    const bool isLong = value.size() > LongestValue;
    return QStringLiteral("il valore ") + (isLong ? QString(value.left(LongestValue) + QStringLiteral("…")) : value);
}

QString TableText(const QString& statement) {
    const QString table = writtenParts::Table(statement);
    return table.isEmpty() ? QString() : QStringLiteral(" della tabella '%1'").arg(table);
}

QString TextOf(const Refusal& refusal, const QRegularExpressionMatch& found, const SqlError& error) {
    const QString pattern = QString::fromUtf8(refusal.text);
    QString text;
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        if (pattern.at(at) != u'%' || at + 1 == pattern.size()) {
            text += pattern.at(at);
            continue;
        }
        const QChar what = pattern.at(++at);
        if (what == u'T') {
            text += TableText(error.Statement());
        } else if (what == u'V') {
            text += ValueText(error.Statement(), found.captured(pattern.at(++at).digitValue()));
        } else {
            text += found.captured(what.digitValue());
        }
    }
    return text;
}

} // namespace

bool Explain(SqlError& error, std::span<const Refusal> known) {
    for (const Refusal& refusal : known) {
        if (error.EngineCode() != refusal.code) {
            continue;
        }
        if (const auto found = Found(refusal, error); found.hasMatch()) {
            error.Explain(TextOf(refusal, found, error));
            error.SetMayPass(refusal.mayPass);
            error.SetDenied(refusal.isDenied);
            return true;
        }
    }
    return false;
}

} // namespace meaning
