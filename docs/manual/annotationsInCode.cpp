#include "docs/manual/annotationsInCode.h"

#include <QRegularExpression>

namespace manual {

namespace {

const QString Filled = QStringLiteral("…");

/// Words in capitals: the text of a line up to its colon.
#define QUADRIX_CAPITALS R"(\p{Lu}[\p{Lu}'’]*(?: [\p{Lu}'’]+)*)"

/// A literal that begins with a kind and its colon, or with a kind whose first words are filled in.
const QRegularExpression& InText() {
    static const QRegularExpression text(
        QStringLiteral(R"re("((?:%1 )?)re" QUADRIX_CAPITALS R"re((?: \(%1\))?):(?! ?\\))re"),
        QRegularExpression::UseUnicodePropertiesOption);
    return text;
}

/// A kind that is handed to who writes the line.
const QRegularExpression& HandedOver() {
    static const QRegularExpression handed(
        QStringLiteral(
            R"re((?:\bAdd\(|CodeOrDefault\(session, |TellUnknown\(\w+, |Kind = )\s*QStringLiteral\("()re" QUADRIX_CAPITALS
            R"re()"\))re"),
        QRegularExpression::UseUnicodePropertiesOption);
    return handed;
}

/// One of several kinds that a name stands for.
const QRegularExpression& Chosen() {
    static const QRegularExpression chosen(
        QStringLiteral(R"re([?:]\s*QStringLiteral\("()re" QUADRIX_CAPITALS R"re()"\))re"),
        QRegularExpression::UseUnicodePropertiesOption);
    return chosen;
}

QString OriginOf(const QString& path) {
    static const QString origins = QStringLiteral("adapters/origins/");
    return path.startsWith(origins) ? path.mid(origins.size()).section(u'/', 0, 0) : QString();
}

QString Named(QString kind) { return kind.replace(QStringLiteral("%1"), Filled); }

void AddMatches(const QRegularExpression& form, const QString& code, const QString& origin, Annotations& annotations) {
    constexpr qsizetype shortest = 5;
    for (auto found = form.globalMatch(code); found.hasNext();) {
        const QString kind = Named(found.next().captured(1));
        if (kind.size() >= shortest) {
            annotations[kind].insert(origin);
        }
    }
}

} // namespace

void AddAnnotationsOf(const QString& code, const QString& path, Annotations& annotations) {
    AddMatches(InText(), code, OriginOf(path), annotations);
    AddMatches(HandedOver(), code, OriginOf(path), annotations);
    static const QRegularExpression choice(QStringLiteral("const QString what = ([^;]*);"));
    for (auto found = choice.globalMatch(code); found.hasNext();) {
        AddMatches(Chosen(), found.next().captured(1), OriginOf(path), annotations);
    }
}

void AddAnnotationsOfLog(const QString& log, Annotations& annotations) {
    static const QRegularExpression line(
        QStringLiteral(R"re(^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d - ()re" QUADRIX_CAPITALS R"re((?: \(\w+\))?): )re"),
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::MultilineOption);
    AddMatches(line, log, {}, annotations);
}

bool IsFilledFrom(const QString& kind, const QString& pattern) {
    const qsizetype at = pattern.indexOf(Filled);
    return at >= 0 && kind.startsWith(pattern.left(at)) && kind.endsWith(pattern.mid(at + Filled.size()));
}

} // namespace manual
